// Functions of ztMathLib at their limits, with bad arguments and in failure.
#include <cmath>
#include <limits>

#include "frame/companion_fixture.hpp"
#include "mathlib/special_cases.hpp"

namespace vqmath63 {
namespace {

class EdgeCasesTest : public CompanionTest {};

// "707.47>" is the number next above 707.47, "707.47<" the one below.
double argument(std::string text) {
  const char last = text.back();
  if (last != '<' && last != '>') return number(text);
  text.pop_back();
  const double infinity = std::numeric_limits<double>::infinity();
  return std::nextafter(number(text), last == '>' ? infinity : -infinity);
}

// The error lines for "5 Gamma, 6 Beta", each a number and the routine that reports it.
std::vector<std::string> error_lines(const std::string& failures) {
  std::vector<std::string> lines;
  std::istringstream text(failures);
  for (std::string failure; std::getline(text >> std::ws, failure, ',');) {
    const std::size_t blank = failure.find(' ');
    const std::size_t dot = failure.find('.');
    const std::string module =
        dot == std::string::npos ? "ztMathLib" : failure.substr(blank + 1, dot - blank - 1);
    const std::string routine = failure.substr((dot == std::string::npos ? blank : dot) + 1);
    const std::string error = failure.substr(0, blank);
    lines.push_back("Error:" + std::string(error_text(std::stoi(error))) + " (No." + error +
                    ") In [" + module + " (Code) (" + routine + ")] ");
  }
  return lines;
}

TEST_F(EdgeCasesTest, results_and_failures) {
  each_row("edge_cases.tsv", "", 292, [&](const TableRow& row) {
    const double a = argument(row["a"]), b = argument(row["b"]), x = argument(row["x"]);
    const SpecialCase edge{"edge", row["function"], "", a, b, x, row["want"], 0};
    const double tolerance = row["tolerance"];
    const double got = evaluate(edge);
    std::ostringstream call;
    call.precision(17);
    call << edge.name() << " is " << got << ", wanted " << edge.value;
    if (tolerance == 0) {
      EXPECT_TRUE(same(got, edge.value)) << call.str();
      if (edge.value == 0 && edge.x != 0) {
        EXPECT_EQ(std::signbit(got), std::signbit(edge.value)) << call.str();
      }
    } else {
      EXPECT_NEAR(got, edge.value, std::abs(edge.value) * tolerance) << call.str();
    }
    EXPECT_EQ(lines, error_lines(row["failures"])) << call.str();
    lines.clear();
  });
}

TEST_F(EdgeCasesTest, factor_is_the_search_as_it_stands) {
  const ztMathLib lib;
  for (std::int32_t a = -40; a <= 40; ++a) {
    for (std::int32_t b = -40; b <= 40; ++b) {
      const double half = std::min(std::abs(a), std::abs(b)) / 2.0;
      std::int32_t want = 1;
      for (std::int32_t k = 2; k <= std::nearbyint(half) && want == 1; ++k) {
        if (a % k == 0 && b % k == 0) want = k;
      }
      EXPECT_EQ(lib.Factor(a, b), want) << a << ", " << b;
    }
  }
}

TEST_F(EdgeCasesTest, degrees_are_read_only_and_radians_have_no_trap) {
  const ztMathLib lib;
  double degrees = 180;
  EXPECT_NEAR(lib.DTR(degrees), 3.1415926535897403, 1e-15);
  EXPECT_EQ(degrees, 180);
  EXPECT_EQ(fault_of([&] { lib.RTD(std::numeric_limits<double>::max()); }), 6);
  EXPECT_TRUE(std::isinf(lib.RTD(std::numeric_limits<double>::infinity())));
  EXPECT_TRUE(lines.empty());
}

}  // namespace
}  // namespace vqmath63
