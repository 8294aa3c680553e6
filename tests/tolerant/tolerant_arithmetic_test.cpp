// Tolerant arithmetic: the tolerance at its edge, operation texts, failures.
#include "tolerant/tolerant_arithmetic.hpp"

#include <limits>

#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"

namespace vqmath63 {
namespace {

constexpr double kMax = std::numeric_limits<double>::max();
constexpr float kLargest = std::numeric_limits<float>::max();
constexpr float kTiny = std::numeric_limits<float>::denorm_min();
constexpr double kKept = 77;  // what Result holds before the call

class TolerantTest : public CompanionTest {};

TEST_F(TolerantTest, double_form) {
  struct Row {
    const char* name;
    double a;
    std::string operation;
    double b;
    double want;
    std::int32_t fault = 0;
  };
  const Row rows[] = {
      // 1e-15 of the larger operand: 4 and 5 units of 2^-52 below 1 lie on either side.
      {"just inside", 1, "-", 1 - 0x1p-50, 0},
      {"just outside", 1, "-", 1 - 5 * 0x1p-52, 5 * 0x1p-52},
      // 1 / 1e15 is the Double next to 1e-15 and so the tolerance itself, which stays.
      {"the tolerance itself", 1e15, "-", 999999999999999, 1},
      {"the tolerance itself in a sum", -999999999999999, "+", 1e15, 1},
      {"next below it", 1000000000000001, "-", 1e15, 0},
      {"relative to the larger", 1e-16, "+", 0, 1e-16},
      {"sum just inside", -8, "+", 8 + 0x1p-48, 0},
      {"two zeros", 0, "+", 0, 0},
      {"product has no tolerance", 1e-200, "*", 1e-100, 1e-200 * 1e-100},
      {"zero over zero", 0, "/", -0.0, 1e308},
      {"NaN over zero", kNaN, "/", 0, 1e308},
      {"empty", 1, "", 2, kKept},
      {"blank after", 1, "+ ", 2, kKept},
      {"with a zero character", 1, std::string("+\0", 2), 2, kKept},
      {"sum overflows", kMax, "+", kMax, kKept, 6},
      {"difference overflows", -kMax, "-", kMax, kKept, 6},
      {"quotient overflows", kMax, "/", 0.5, kKept, 6},
      {"infinities cancel", kInf, "-", kInf, kKept, 5},
      // The sum stands; it is its ratio that is invalid.
      {"infinity", kInf, "+", 1, kInf, 5},
      {"NaN", kNaN, "+", 1, kNaN},
      {"subnormals", 5e-324, "+", 5e-324, 1e-323},
  };
  for (const Row& row : rows) {
    double result = kKept;
    Arithmetic(row.a, row.b, row.operation, result);
    EXPECT_TRUE(same(result, row.want)) << row.name << ": " << result;
    EXPECT_EQ(taken(), error_lines(row.fault, "ztMathLib (Code) (Arithmetic)")) << row.name;
  }
}

TEST_F(TolerantTest, double_form_writes_over_its_own_operand) {
  double x = 3;
  Arithmetic(x, x, "+", x);
  EXPECT_EQ(x, 6);
}

TEST_F(TolerantTest, single_forms) {
  struct Row {
    const char* name;
    float a;
    std::string operation;
    float b;
    float want;
    std::int32_t fault = 0;
  };
  const Row rows[] = {
      // Units of 2^-23 below 1: eight are 9.5e-7, nine 1.07e-6.
      {"just inside", 1, "-", 1 - 8 * 0x1p-23F, 0},
      {"just outside", 1, "-", 1 - 9 * 0x1p-23F, 9 * 0x1p-23F},
      {"the tolerance itself stays", 1000000, "-", 999999, 1},
      {"next below it", 1000000.0625F, "-", 999999.0625F, 0},
      {"relative to the larger", 1e-30F, "+", 0, 1e-30F},
      {"field coordinates", 6700000, "-", 6700005, 0},
      {"tiny product", 1e-30F, "*", 1e-30F, 0},
      {"over minus zero", -1, "/", -0.0F, 3.402823e38F},
      {"sum overflows", kLargest, "+", kLargest, 0, 6},
      {"quotient overflows", kLargest, "/", 0.5F, 0, 6},
      {"infinity", kInf, "+", 1, 0, 5},
      {"infinite quotient", kInf, "/", 2, kInf},
      {"NaN", kNaN, "-", 1, kNaN},
      {"subnormals", kTiny, "+", kTiny, 2 * kTiny},
  };
  for (const Row& row : rows) {
    for (const bool member : {false, true}) {
      const float got = member ? ArithmeticSingle(row.a, row.b, row.operation)
                               : ArithmeticS(row.a, row.b, row.operation);
      EXPECT_TRUE(same(got, row.want)) << row.name << ": " << got;
      EXPECT_EQ(taken(), error_lines(row.fault, "ztMathLib (Code) (ArithmeticS)")) << row.name;
    }
  }
  EXPECT_EQ(std::bit_cast<std::uint32_t>(ArithmeticS(1, 0, "/")), 0x7F7FFFFDU);
}

TEST_F(TolerantTest, difference_with_a_tolerance) {
  struct Row {
    const char* name;
    float a, b, epsilon;
    float want;
    std::int32_t fault = 0;
  };
  const Row rows[] = {
      {"equal to the tolerance", 4, 3, 0.25F, 1},
      {"below the tolerance", 4, 3, 0.2500001F, 0},
      {"a ratio that rounds up to it", 3, 2, 1 / 3.0F, 1},
      {"the larger is the second", 3, 4, 0.26F, 0},
      {"the larger by magnitude", 3, -4, 1.74F, 7},
      {"no tolerance", 1, 1.0000001F, 0, 1 - 1.0000001F},
      {"negative tolerance", 1, 1, -1, 0},
      {"NaN tolerance", 1, 1.5F, kNaN, -0.5F},
      {"overflow", kLargest, -kLargest, 1e-6F, 0, 6},
      {"NaN", kNaN, 1, 1e-6F, kNaN},
  };
  for (const Row& row : rows) {
    const float got = ArithmeticDiff(row.a, row.b, row.epsilon);
    EXPECT_TRUE(same(got, row.want)) << row.name << ": " << got;
    EXPECT_EQ(taken(), error_lines(row.fault, "ztMathlib (Code) (ArithmeticDiff)")) << row.name;
  }
}

}  // namespace
}  // namespace vqmath63
