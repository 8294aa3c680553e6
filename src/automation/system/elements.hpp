// The elements of a safe array as owners: of texts, interfaces and variants.
#pragma once

#include <cstddef>

#include "automation/system/codes.hpp"
#include "automation/system/functions.hpp"

namespace vqmath63::automation::system {

/// What the elements own.
enum class Kind { kPlain, kText, kInterface, kVariant };

Kind kind_of(const SAFEARRAY& array);

/// Lets go of what one element owns. It is emptied first: Release may run code that looks at it.
void clear_element(Kind kind, void* element);

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
