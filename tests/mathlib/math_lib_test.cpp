// ztMathLib as a class: companions and location texts.
#include "mathlib/math_lib.hpp"

#include "frame/companion_fixture.hpp"
#include "mathlib/locations.hpp"

namespace vqmath63 {
namespace {

class MathLibTest : public CompanionTest {
 protected:
  // Answers with numbers of its own, or fails after it has begun to write.
  struct Maths final : ztCommonMaths {
    explicit Maths(MathLibTest& owner) : test(owner) {}
    double VectorAngle(double X, double Y) override { return told("VectorAngle", X, Y), 11; }
    void PolarToRectangular(double Radius, double Theta, double& X, double& Y) override {
      X = 21;
      told("PolarToRectangular", Radius, Theta);
      Y = 22;
    }
    void RectangularToPolar(double X, double Y, double& Radius, double& Theta) override {
      Radius = 31;
      told("RectangularToPolar", X, Y);
      Theta = 32;
    }
    double ArcTan(double x) override { return told("ArcTan", x, 0), 41; }
    std::int32_t CeilToLong(double X) override { return told("CeilToLong", X, 0), 51; }
    double CeilToDouble(double X) override { return told("CeilToDouble", X, 0), 52; }
    std::int32_t FloorToLong(double X) override { return told("FloorToLong", X, 0), 53; }
    double FloorToDouble(double X) override { return told("FloorToDouble", X, 0), 54; }
    void BracketIndex(float&, Array1<float>&, std::int32_t&, std::int32_t&,
                      std::int32_t&) override {}
    void InterpolateTable(Array1<float>&, std::int32_t&, std::int32_t&, Array2<float>&, bool&,
                          std::int32_t&) override {}
    void SegmentCrossPoint(float&, float&, float&, float&, float&, float&, float&, float&, float&,
                           float&, bool&) override {}
    void told(const char* operation, double a, double b) {
      test.calls.push_back(operation);
      test.given = {a, b};
      if (test.failing) throw Fault(70);
    }
    MathLibTest& test;
  };

  MathLibTest() {
    companion_makers().CommonMaths = [this] { return std::make_shared<Maths>(*this); };
  }

  std::vector<std::string> calls;
  std::vector<double> given;
  bool failing = false;
  const ztMathLib lib{};
};

TEST_F(MathLibTest, companion_members_hand_on_and_fail_with_their_companion) {
  double p = 0;
  double q = 0;
  struct Row {
    const char* operation;
    std::function<double()> call;
    double want, after_failure;
    const char* location;  // none for a member without a trap
  };
  const std::string error = "Error:" + std::string(error_text(70)) + " (No.70) ";
  const Row rows[] = {
      {"VectorAngle", [&] { return lib.angle(3, 4); }, 11, 0, "In [ztMathLib (Code) (Angle)] "},
      {"PolarToRectangular", [&] { return lib.Polar_to_Rectangular(3, 4, p, q), p * 100 + q; },
       2122, 2100, "In [ztMathLib (Code) (Polar_to_Rectangular)] "},
      {"RectangularToPolar", [&] { return lib.Rectangular_to_Polar(3, 4, p, q), p * 100 + q; },
       3132, 0, nullptr},
      {"ArcTan", [&] { return lib.atan(3); }, 41, 0, nullptr},
      {"CeilToLong", [&] { return lib.Ceil(3); }, 51, 0,
       "In [ztAnalyse - ztMathLib (Code) (Ceil)] "},
      {"CeilToDouble", [&] { return lib.dCeil(3); }, 52, 0,
       "In [ztAnalyse - ztMathLib (Code) (dCeil)] "},
      {"FloorToLong", [&] { return lib.Floor(3); }, 53, 0,
       "In [ztAnalyse - ztMathLib (Code) (Floor)] "},
      {"FloorToDouble", [&] { return lib.dFloor(3); }, 54, 0,
       "In [ztAnalyse - ztMathLib (Code) (dFloor)] "},
  };
  for (const Row& row : rows) {
    for (const bool fails : {false, true}) {
      failing = fails;
      p = q = 0;
      calls.clear();
      lines.clear();
      double got = 0;
      const std::int32_t fault = fault_of([&] { got = row.call(); });
      EXPECT_EQ(calls, std::vector<std::string>{row.operation});
      EXPECT_EQ(given[0], 3) << row.operation;
      const bool untrapped = row.location == nullptr;
      EXPECT_EQ(fault, fails && untrapped ? 70 : 0) << row.operation;
      if (!(fails && untrapped)) {
        EXPECT_EQ(got, fails ? row.after_failure : row.want) << row.operation;
      }
      const auto want = fails && !untrapped ? std::vector<std::string>{error + row.location}
                                            : std::vector<std::string>{};
      EXPECT_EQ(lines, want) << row.operation;
    }
  }
  EXPECT_EQ(p, 0) << "the last member wrote nothing";
}

TEST_F(MathLibTest, built_in_companions_answer_in_radians_and_round) {
  companion_makers() = built_in_makers();
  double x = 0;
  double y = 0;
  lib.Rectangular_to_Polar(-3, 0, x, y);
  EXPECT_EQ(x, 3);
  EXPECT_NEAR(y, 3.141592653589793, 1e-15);
  EXPECT_EQ(lib.Ceil(-1.5), -1);
  EXPECT_EQ(lib.Floor(-1.5), -2);
  EXPECT_EQ(lib.dCeil(1e300), 1e300);
  EXPECT_EQ(lib.atan(0), 0);
}

TEST_F(MathLibTest, location_texts_that_no_failure_can_show) {
  const std::pair<Location, const char*> rows[] = {
      {locations::kSquare_Root, "In [ztMathLib (Code) (Square_Root] "},
      {locations::kCube_Root, "In [ztMathLib (Code) (cube_root)] "},
      {locations::kDTR, "In [ztMathLib (Code) (DTR)] "},
      {locations::kErf, "In [ztMathLib (Code) (Erf)] "},
      {locations::kLn, "In [ztMathLib (Code) (Ln)] "},
      {locations::kMax, "In [ztMathLib (Code) (Max)] "},
      {locations::kCombination, "In [ztMathLib (Code) (Combination)] "},
  };
  for (const auto& [location, want] : rows) EXPECT_EQ(location.text(), want);
}

}  // namespace
}  // namespace vqmath63
