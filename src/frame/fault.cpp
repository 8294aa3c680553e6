#include "frame/fault.hpp"

#include <new>

namespace vqmath63 {
namespace {

struct NumberedText {
  std::int32_t number;
  const char* text;
};

constexpr std::int32_t result_code(std::uint32_t code) {
  return static_cast<std::int32_t>(code);
}

constexpr std::int32_t kUnspecifiedFailure = result_code(0x80004005U);

// Classic texts of automation hosts, then those of the system for common result codes.
constexpr NumberedText kTexts[] = {
    {number_of(ErrorNumber::kInvalidCall), "Invalid procedure call or argument"},
    {number_of(ErrorNumber::kOverflow), "Overflow"},
    {number_of(ErrorNumber::kOutOfMemory), "Out of memory"},
    {number_of(ErrorNumber::kSubscript), "Subscript out of range"},
    {number_of(ErrorNumber::kArrayLocked), "This array is fixed or temporarily locked"},
    {number_of(ErrorNumber::kDivisionByZero), "Division by zero"},
    {number_of(ErrorNumber::kTypeMismatch), "Type mismatch"},
    {number_of(ErrorNumber::kObjectNotSet), "Object variable not set"},
    {number_of(ErrorNumber::kCannotCreateObject), "Component can't create object"},
    {result_code(0x80004001U), "Not implemented"},
    {result_code(0x80004002U), "No such interface supported"},
    {result_code(0x80004003U), "Invalid pointer"},
    {result_code(0x80004004U), "Operation aborted"},
    {kUnspecifiedFailure, "Unspecified error"},
    {result_code(0x8000FFFFU), "Catastrophic failure"},
    {result_code(0x80010108U), "The object invoked has disconnected from its clients"},
    {result_code(0x80020003U), "Member not found"},
    {result_code(0x80020005U), "Type mismatch"},
    {result_code(0x80020006U), "Unknown name"},
    {result_code(0x80020009U), "Exception occurred"},
    {result_code(0x8002000AU), "Out of present range"},
    {result_code(0x8002000BU), "Invalid index"},
    {result_code(0x8002000EU), "Invalid number of parameters"},
    {result_code(0x80040154U), "Class not registered"},
    {result_code(0x80070005U), "Access is denied"},
    {result_code(0x8007000EU), "Not enough storage is available to complete this operation"},
    {result_code(0x80070057U), "The parameter is incorrect"},
};

}  // namespace

const char* error_text(std::int32_t number) noexcept {
  for (const NumberedText& row : kTexts) {
    if (row.number == number) return row.text;
  }
  return number < 0 ? "Automation error" : "Application-defined or object-defined error";
}

void raise_fault(ErrorNumber number) {
  throw Fault(number);
}

void raise_companion_failure(std::int32_t result) {
  const auto code = static_cast<std::uint32_t>(result);
  constexpr std::uint32_t kControlFacility = 0x800A0000U;
  if ((code & 0xFFFF0000U) == kControlFacility) {
    throw Fault(static_cast<std::int32_t>(code & 0xFFFFU));
  }
  throw Fault(result);
}

Fault fault_in_flight() noexcept {
  try {
    throw;
  } catch (const Fault& fault) {
    return fault;
  } catch (const std::bad_alloc&) {
    return Fault(ErrorNumber::kOutOfMemory);
  } catch (...) {
    return Fault(kUnspecifiedFailure);
  }
}

}  // namespace vqmath63
