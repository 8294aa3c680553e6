// Error numbers and their texts.
#include "frame/fault.hpp"

#include <new>

#include "companion_fixture.hpp"
#include "test_table.hpp"

namespace vqmath63 {
namespace {

std::int32_t code(std::uint32_t result) {
  return static_cast<std::int32_t>(result);
}

TEST(Fault, texts_are_the_classic_ones) {
  each_row("frame.tsv", "error texts", 12,
           [](const TableRow& row) { EXPECT_EQ(Fault(row["number"]).what(), row["text"].text); });
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
