// What variants and the elements of safe arrays own, and how it is copied and let go of.
#pragma once

#include <cstddef>

#include "automation/system/codes.hpp"
#include "automation/system/functions.hpp"
#include "automation/system/interfaces.hpp"

namespace vqmath63::automation::system {

/// Copies a text byte by byte, null to null. False when memory is short.
inline bool copy_text(BSTR source, BSTR& copy) {
  copy = source == nullptr ? nullptr
                           : SysAllocStringByteLen(reinterpret_cast<const char*>(source),
                                                   SysStringByteLen(source));
  return source == nullptr || copy != nullptr;
}

/// The size in bytes of an element or a referenced value of the type; 0 where there is none.
ULONG size_of_type(VARTYPE vt);

/// Whether a variant may bear the type: a known one, alone, as an array or by reference.
bool is_variant_type(VARTYPE vt);

/// Copies a value that is no reference into a variant that holds nothing.
HRESULT copy_value(const VARIANT& source, VARIANT& copy);

/// Moves `made` into `destination`; where that cannot be cleared, `made` is given up.
HRESULT replace_variant(VARIANT& destination, VARIANT& made);

/// What the elements of a safe array own.
enum class Kind { kPlain, kText, kInterface, kVariant };

Kind kind_of(const SAFEARRAY& array);

/// Lets go of what one element owns. It is emptied first: Release may run code that looks at it.
void clear_element(Kind kind, void* element);

/// The same for elements first to end - 1, counted as they lie in memory.
void clear_elements(const SAFEARRAY& array, std::size_t first, std::size_t end);

/// Copies one element with what it owns into a place that holds nothing.
HRESULT copy_element(Kind kind, const void* from, void* to, std::size_t size);

/// Holds a lock for as long as it lives.
class Locked {
 public:
  explicit Locked(SAFEARRAY* array) : array_(array), result_(SafeArrayLock(array)) {}
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;
  ~Locked() {
    if (SUCCEEDED(result_)) SafeArrayUnlock(array_);
  }
  HRESULT result() const { return result_; }

 private:
  SAFEARRAY* array_;
  HRESULT result_;
};

}  // namespace vqmath63::automation::system
