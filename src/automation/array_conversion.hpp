// Element-by-element conversion between a host's arrays and arrays of a member's own type.
#pragma once

#include <string>
#include <vector>

#include "automation/owners.hpp"

namespace vqmath63::automation {

/// Outcome of a conversion: a result code, and for a failure the words on what was wrong, to follow
/// the description of what was wanted: "; its element (2) cannot be converted".
struct Conversion {
  HRESULT result = S_OK;
  std::string detail;
};

/// What the host's elements were before they were converted, as numbers: with them the results that
/// the host has already are told from those it has yet to get.
using HostNumbers = std::vector<double>;

/// A new array of `element` with the dimensions of `source`, an array of variants or numbers.
/// `numbers`, unless null, receives the host's own. Fails with DISP_E_TYPEMISMATCH or
/// DISP_E_OVERFLOW and the index of the first bad element.
Conversion convert_array(SAFEARRAY* source, VARTYPE element, LCID locale, OwnedArray& out,
                         HostNumbers* numbers);

/// A new array with the dimensions and numbers of `source` and elements of `element`, which may be
/// VT_VARIANT.
HRESULT recast_array(SAFEARRAY* source, VARTYPE element, OwnedArray& out);

/// Puts the numbers of `source` (none, for a null array) into the first rows and columns of
/// `target`, and empties the rest of it. A line goes along a row or a column. DISP_E_ARRAYISLOCKED
/// where there is too little room.
HRESULT fill_array(SAFEARRAY* source, SAFEARRAY* target);

/// Which results the host has yet to get. After a call that succeeded: those whose number is not
/// what the host has, bit for bit. After one that failed: only those that the call has changed.
class Results {
 public:
  Results(SAFEARRAY* array, const HostNumbers& host, bool succeeded);
  std::size_t count() const { return host_.size(); }
  /// True for an array of the same bounds.
  bool fit(const SAFEARRAY& target) const;
  bool any_due() const;
  /// True when the result at `offset` has to be stored; it then stands in `value`.
  bool is_due(std::size_t offset, VARIANT& value) const;

 private:
  const SAFEARRAY& array_;
  const HostNumbers& host_;
  const std::byte* first_;
  std::size_t size_;
  VARTYPE type_ = VT_EMPTY;
  bool succeeded_;
};

/// Writes the results that are due into `target`, an array of variants or numbers.
HRESULT write_back(const Results& results, SAFEARRAY* target);

}  // namespace vqmath63::automation
