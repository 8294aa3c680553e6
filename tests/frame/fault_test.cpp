// Error numbers and their texts.
#include "frame/fault.hpp"

#include <new>

#include "companion_fixture.hpp"

namespace vqmath63 {
namespace {

std::int32_t code(std::uint32_t result) {
  return static_cast<std::int32_t>(result);
}

TEST(Fault, texts_are_the_classic_ones) {
  const std::pair<std::int32_t, const char*> rows[] = {
      {5, "Invalid procedure call or argument"},
      {6, "Overflow"},
      {7, "Out of memory"},
      {9, "Subscript out of range"},
      {10, "This array is fixed or temporarily locked"},
      {11, "Division by zero"},
      {13, "Type mismatch"},
      {91, "Object variable not set"},
      {429, "Component can't create object"},
      {0, "Application-defined or object-defined error"},
      {code(0x80070005U), "Access is denied"},
      {code(0x80001234U), "Automation error"},
  };
  for (const auto& [number, text] : rows) EXPECT_STREQ(Fault(number).what(), text) << number;
}

TEST(Fault, every_failure_amounts_to_a_number) {
  EXPECT_EQ(fault_of([] { raise_companion_failure(code(0x800A0009U)); }), 9);
  EXPECT_EQ(fault_of([] { raise_companion_failure(code(0x80070005U)); }), code(0x80070005U));
  const auto in_flight = [](const auto& thrown) {
    try {
      throw thrown;
    } catch (...) {
      return fault_in_flight().number();
    }
  };
  EXPECT_EQ(in_flight(Fault(ErrorNumber::kDivisionByZero)), 11);
  EXPECT_EQ(in_flight(std::bad_alloc()), 7);
  EXPECT_EQ(in_flight(3), code(0x80004005U));
}

}  // namespace
}  // namespace vqmath63
