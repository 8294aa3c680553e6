// The one exception of the library: a run-time fault carrying its classic error number.
#pragma once

#include <cstdint>
#include <exception>

namespace vqmath63 {

/// Classic run-time error numbers of automation hosts.
enum class ErrorNumber : std::int32_t {
  kInvalidCall = 5,          ///< invalid floating-point operation; argument outside a domain
  kOverflow = 6,             ///< floating-point or integer overflow; conversion that does not fit
  kOutOfMemory = 7,          ///< memory exhausted
  kSubscript = 9,            ///< array index outside the bounds; array unallocated
  kArrayLocked = 10,         ///< re-dimensioning of an array that its owner holds fixed
  kDivisionByZero = 11,      ///< finite non-zero dividend over zero
  kTypeMismatch = 13,        ///< argument of the wrong type
  kObjectNotSet = 91,        ///< use of an empty object reference
  kCannotCreateObject = 429  ///< a companion that cannot be created
};

/// The number that hosts see.
constexpr std::int32_t number_of(ErrorNumber number) noexcept {
  return static_cast<std::int32_t>(number);
}

/// Standard description of an error number: a classic number, or the result code of a failed
/// companion call (a negative number). Never null; "Application-defined or object-defined error"
/// for an unknown classic number, "Automation error" for an unknown result code.
const char* error_text(std::int32_t number) noexcept;

/// A run-time fault on its way to the nearest trap.
class Fault : public std::exception {
 public:
  explicit Fault(std::int32_t number) noexcept : number_(number) {}
  explicit Fault(ErrorNumber number) noexcept : number_(number_of(number)) {}

  std::int32_t number() const noexcept { return number_; }
  /// The standard description of number().
  const char* what() const noexcept override { return error_text(number_); }

 private:
  std::int32_t number_;
};

/// Throws Fault(number); out of line so that the checks around it stay small.
[[noreturn]] void raise_fault(ErrorNumber number);

/// Throws the fault of a companion that failed with the automation result `result` (negative).
/// A result of the control facility (0x800A....) is its classic number again.
[[noreturn]] void raise_companion_failure(std::int32_t result);

/// The fault that the exception in flight amounts to: a Fault itself, memory exhaustion
/// (error 7), or any other exception of a replaced companion (unspecified failure).
/// To be called from inside a catch block only.
Fault fault_in_flight() noexcept;

}  // namespace vqmath63
