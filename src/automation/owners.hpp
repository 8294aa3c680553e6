// Owners of automation values: each lets go of what it holds at the end of its scope.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "automation/types.hpp"
#include "frame/host_code.hpp"

namespace vqmath63::automation {

/// Numbers, dates, Booleans and nothing at all: there is nothing to let go of.
constexpr bool is_plain_value(VARTYPE vt) noexcept {
  return vt <= VT_DATE || vt == VT_BOOL;
}

/// Clears a variant. To let go of an object is to run code of the host whose object it is.
inline HRESULT clear(VARIANT& variant) noexcept {
  if (is_plain_value(variant.vt)) {
    variant.vt = VT_EMPTY;
    return S_OK;
  }
  if (variant.vt != VT_DISPATCH && variant.vt != VT_UNKNOWN) return VariantClear(&variant);
  const HostCode code;
  return VariantClear(&variant);
}

/// A VARIANT of our own, empty at first. Its fields are used directly.
struct Variant : VARIANT {
  Variant() noexcept : VARIANT() {}
  Variant(Variant&& other) noexcept : VARIANT(other) { other.vt = VT_EMPTY; }
  ~Variant() { clear(*this); }
  Variant& operator=(Variant&& other) noexcept {
    std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
    return *this;
  }
  /// Gives the value away.
  VARIANT release() noexcept {
    const VARIANT value = *this;
    vt = VT_EMPTY;
    return value;
  }
};

/// Descriptor feature of our own (one of the reserved bits): the elements belong to somebody else,
/// so that whoever replaces or owns the array leaves it alone.
inline constexpr USHORT kForeignElements = 0x8000;

/// Frees an array; one that is locked is left, and a failure. Elements may be objects of a host.
inline HRESULT destroy(SAFEARRAY* array) noexcept {
  if (array == nullptr || (array->fFeatures & kForeignElements) != 0) return S_OK;
  const HostCode code;
  return SafeArrayDestroy(array);
}

/// A variable for an array of our own, until it is handed over.
class OwnedArray {
 public:
  explicit OwnedArray(SAFEARRAY* array = nullptr) noexcept : array_(array) {}
  OwnedArray(OwnedArray&& other) noexcept : array_(other.release()) {}
  OwnedArray& operator=(OwnedArray&& other) noexcept {
    std::swap(array_, other.array_);
    return *this;
  }
  ~OwnedArray() { destroy(array_); }

  SAFEARRAY* get() const noexcept { return array_; }
  SAFEARRAY* operator->() const noexcept { return array_; }
  explicit operator bool() const noexcept { return array_ != nullptr; }
  /// For who may put another array in its place.
  SAFEARRAY** place() noexcept { return &array_; }
  SAFEARRAY* release() noexcept { return std::exchange(array_, nullptr); }

 private:
  SAFEARRAY* array_;
};

/// A new array with all elements zero, the first dimension's bounds first; none where memory ends
/// or the system cannot count its bytes.
inline OwnedArray create_array(VARTYPE element, std::size_t element_size, UINT dims,
                               SAFEARRAYBOUND* bounds) noexcept {
#ifdef _WIN32
  constexpr std::uint64_t kMostBytes = 0xFFFFFFFF;  // beyond it some systems allocate too little
  std::uint64_t bytes = element_size;
  for (UINT d = 0; d < dims; ++d) {
    const std::uint64_t count = bounds[d].cElements;
    if (count != 0 && bytes > kMostBytes / count) return OwnedArray();
    bytes *= count;
  }
#else
  static_cast<void>(element_size);  // the system looks itself
#endif
  return OwnedArray(SafeArrayCreate(element, dims, bounds));
}

struct FreeText {
  void operator()(OLECHAR* text) const noexcept { SysFreeString(text); }
};
/// A BSTR of our own, until it is handed over.
using OwnedText = std::unique_ptr<OLECHAR, FreeText>;

/// Puts a text into a variable that owns its text.
inline void replace_text(BSTR& variable, OwnedText text) noexcept {
  const OwnedText old(std::exchange(variable, text.release()));
}

/// One reference to an object behind an interface, or none.
template <class Interface>
class Reference {
 public:
  Reference() = default;
  /// Takes a reference over.
  explicit Reference(Interface* taken) noexcept : object_(taken) {}
  Reference(Reference&& other) noexcept : object_(other.release()) {}
  Reference& operator=(Reference&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Reference() {
    if (object_ == nullptr) return;
    const HostCode code;
    object_->Release();
  }

  /// A reference more to an object that its holder may let go.
  static Reference to(Interface* held) noexcept {
    if (held != nullptr) {
      const HostCode code;
      held->AddRef();
    }
    return Reference(held);
  }

  Interface* get() const noexcept { return object_; }
  Interface* operator->() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }
  /// Where a function that gives a reference puts it; the owner must be empty.
  Interface** place() noexcept { return &object_; }
  void** untyped_place() noexcept { return reinterpret_cast<void**>(&object_); }
  Interface* release() noexcept { return std::exchange(object_, nullptr); }

 private:
  Interface* object_ = nullptr;
};

/// A lock on an array: its elements stay where they are, and nobody can free or resize it.
class ArrayLock {
 public:
  explicit ArrayLock(SAFEARRAY* array) noexcept
      : array_(array),
        result_(array == nullptr || SUCCEEDED(SafeArrayLock(array)) ? S_OK : DISP_E_ARRAYISLOCKED) {
  }
  ArrayLock(ArrayLock&& other) noexcept
      : array_(std::exchange(other.array_, nullptr)), result_(other.result_) {}
  ArrayLock& operator=(ArrayLock&&) = delete;
  ~ArrayLock() { unlock(); }

  HRESULT result() const noexcept { return result_; }
  SAFEARRAY* array() const noexcept { return array_; }
  void unlock() noexcept {
    if (array_ != nullptr && SUCCEEDED(result_)) SafeArrayUnlock(array_);
    array_ = nullptr;
  }

 private:
  SAFEARRAY* array_;
  HRESULT result_;
};

}  // namespace vqmath63::automation
