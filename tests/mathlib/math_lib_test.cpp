// ztMathLib as a class: its companion.
#include "mathlib/math_lib.hpp"

#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"

namespace vqmath63 {
namespace {

class MathLibTest : public CompanionTest {
 protected:
  const ztMathLib lib{};
};

TEST_F(MathLibTest, members_fail_with_their_companion_under_their_own_location) {
  companion_makers().CommonMaths = nullptr;
  double p = 0;
  double q = 0;
  struct Row {
    std::function<double()> call;
    const char* place;  // none for a member without a trap
  } const rows[] = {
      {[&] { return lib.angle(3, 4); }, "ztMathLib (Code) (Angle)"},
      {[&] { return lib.Polar_to_Rectangular(3, 4, p, q), p; },
       "ztMathLib (Code) (Polar_to_Rectangular)"},
      {[&] { return lib.Rectangular_to_Polar(3, 4, p, q), p; }, nullptr},
      {[&] { return lib.atan(3); }, nullptr},
      {[&] { return lib.Ceil(3); }, "ztAnalyse - ztMathLib (Code) (Ceil)"},
      {[&] { return lib.dCeil(3); }, "ztAnalyse - ztMathLib (Code) (dCeil)"},
      {[&] { return lib.Floor(3); }, "ztAnalyse - ztMathLib (Code) (Floor)"},
      {[&] { return lib.dFloor(3); }, "ztAnalyse - ztMathLib (Code) (dFloor)"},
  };
  for (const Row& row : rows) {
    const bool trapped = row.place != nullptr;
    EXPECT_EQ(fault_of([&] { EXPECT_EQ(row.call(), 0); }), trapped ? 0 : 429);
    EXPECT_EQ(taken(), trapped ? error_lines(429, row.place) : Lines{});
  }
}

TEST_F(MathLibTest, whole_doubles_go_beyond_a_long) {
  EXPECT_EQ(lib.dCeil(1e300), 1e300);
  EXPECT_EQ(lib.dFloor(-1e300), -1e300);
}

}  // namespace
}  // namespace vqmath63
