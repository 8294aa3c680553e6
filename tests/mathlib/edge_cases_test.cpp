// Functions of ztMathLib at their limits, with bad arguments and in failure.
#include <cmath>
#include <limits>

#include "frame/arrays.hpp"
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

// The error lines for "5 Gamma, 6 Module.Beta", each a number and the routine that reports it.
Lines error_lines(const std::string& failures) {
  Lines lines;
  for (const std::string& failure : split(failures, ',')) {
    std::int32_t error = 0;
    std::string routine;
    std::istringstream(failure) >> error >> routine;
    const std::size_t dot = routine.find('.');
    const std::string module = dot == routine.npos ? "ztMathLib" : routine.substr(0, dot);
    routine.erase(0, dot + 1);  // all of it without a dot
    lines.push_back(error_line(error, module + " (Code) (" + routine + ")"));
  }
  return lines;
}

// "(remark) 1 2 0.5: 0.25 ~1e-15 !5 Beta" without the remark, cut at its marks.
struct Point {
  std::string arguments, want, tolerance = "0", failures;
  explicit Point(std::string text) {
    if (text.front() == '(') text.erase(0, text.find(')') + 2);
    const auto take = [&](const char* mark, std::string& out) {
      const std::size_t at = text.find(mark);
      if (at == text.npos) return;
      out = text.substr(at + 2);
      text.erase(at);
    };
    take(" !", failures);
    take(" ~", tolerance);
    take(": ", want);
    arguments = text;
  }
};

TEST_F(EdgeCasesTest, results_and_failures) {
  int points = 0;
  each_row("edge_cases.tsv", "", 55, [&](const TableRow& row) {
    std::istringstream texts(row["points"].text);
    for (std::string text; std::getline(texts >> std::ws, text, ';'); ++points) {
      const Point point(text);
      // One number is x, two are a and b.
      std::vector<double> numbers;
      std::istringstream words(point.arguments);
      for (std::string word; words >> word;) numbers.push_back(argument(word));
      if (numbers.size() == 1) numbers.insert(numbers.begin(), 2, 0.0);
      numbers.resize(3);
      const SpecialCase edge{"edge",     row["function"],    "", numbers[0], numbers[1],
                             numbers[2], number(point.want), 0};
      const double tolerance = number(point.tolerance), got = evaluate(edge);
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
      EXPECT_EQ(lines, error_lines(point.failures)) << call.str();
      lines.clear();
    }
  });
  EXPECT_EQ(points, 299);
}

TEST_F(EdgeCasesTest, radians_have_no_trap) {
  const ztMathLib lib;
  EXPECT_EQ(fault_of([&] { lib.RTD(std::numeric_limits<double>::max()); }), 6);
  EXPECT_TRUE(std::isinf(lib.RTD(std::numeric_limits<double>::infinity())));
  EXPECT_TRUE(lines.empty());
}

}  // namespace
}  // namespace vqmath63
