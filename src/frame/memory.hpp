// Memory for the elements of arrays: zero pages that nobody has touched, or an early refusal.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <type_traits>

namespace vqmath63 {

/// Fault 7 when the machine plainly cannot give so many bytes to be written to, and once more for
/// their copy on the way to the host. Asks it from some hundred megabytes on: where memory is
/// handed out on trust, to find out by writing ends the process.
void expect_memory(std::uint64_t bytes);

/// Asks the system for large pages below a block that was just allocated, where it has them and the
/// block is large: to get its memory page by page takes longer than most of what is done with it.
void prefer_large_pages(void* block, std::size_t bytes) noexcept;

namespace detail {

/// Fault 7 for elements that no array can have, of 4 GiB or more in all, and as expect_memory. It
/// is where automation arrays end, so that the same call fails alike on every platform.
void expect_elements(std::size_t count, std::size_t size);

/// Memory for elements, zero on request; fault 7 where there is none. Large blocks come from the
/// system as zero pages, which cost nothing until they are written.
void* take_memory(std::size_t count, std::size_t size, bool zero);

/// True when a T without a value is all bits zero, and a copy of a T a copy of its bits.
template <class T>
constexpr bool is_plain() {
  if constexpr (std::is_trivially_copyable_v<T>) {
    constexpr auto bytes = std::bit_cast<std::array<std::byte, sizeof(T)>>(T{});
    return std::all_of(bytes.begin(), bytes.end(), [](std::byte b) { return b == std::byte{}; });
  } else {
    return false;
  }
}

template <class T>
struct ReleaseElements {
  void operator()(T* elements) const noexcept {
    if constexpr (is_plain<T>()) {
      std::free(elements);
    } else {
      delete[] elements;
    }
  }
};

}  // namespace detail

template <class T>
using OwnedElements = std::unique_ptr<T[], detail::ReleaseElements<T>>;

/// Elements of their own, without a value (zero, false, empty) each.
template <class T>
OwnedElements<T> make_elements(std::size_t count) {
  if constexpr (detail::is_plain<T>()) {
    return OwnedElements<T>(static_cast<T*>(detail::take_memory(count, sizeof(T), true)));
  } else {
    detail::expect_elements(count, sizeof(T));
    return OwnedElements<T>(new T[count]());
  }
}

/// Elements that are copies of those that start at `first`.
template <class T>
OwnedElements<T> copy_elements(const T* first, std::size_t count) {
  OwnedElements<T> made;
  if constexpr (detail::is_plain<T>()) {
    made.reset(static_cast<T*>(detail::take_memory(count, sizeof(T), false)));
  } else {
    made = make_elements<T>(count);
  }
  std::copy_n(first, count, made.get());
  return made;
}

}  // namespace vqmath63
