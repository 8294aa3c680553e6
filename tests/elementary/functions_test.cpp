// The elementary functions against values of 1300 bits, and their quick ways against the sure ones.
#include "elementary/functions.hpp"

#include <bit>
#include <cmath>
#include <cstdint>
#include <map>
#include <random>

#include "elementary/sure.hpp"
#include "frame/test_table.hpp"

namespace vqmath63::elementary {
namespace {

template <double kFunction(double)>
double alone(double x, double) {
  return kFunction(x);
}
double sure_atan(double x, double) {
  return std::copysign(nearest(sure::angle(std::fabs(x), 1.0, std::atan(std::fabs(x)))), x);
}
double sure_atan2(double y, double x) {
  return nearest(sure::angle(y, x, std::atan2(y, x)));
}

enum class Domain { kAll, kPositive, kBoth };

struct Ways {
  double (*quick)(double, double);
  double (*sure)(double, double);
  Domain domain;
};

const std::map<std::string, Ways> kFunctions = {
    {"exp", {alone<exp>, alone<sure::exp>, Domain::kAll}},
    {"log", {alone<log>, alone<sure::log>, Domain::kPositive}},
    {"log1p", {alone<log1p>, alone<sure::log1p>, Domain::kPositive}},
    {"log10", {alone<log10>, alone<sure::log10>, Domain::kPositive}},
    {"sin", {alone<sin>, alone<sure::sin>, Domain::kAll}},
    {"cos", {alone<cos>, alone<sure::cos>, Domain::kAll}},
    {"tan", {alone<tan>, alone<sure::tan>, Domain::kAll}},
    {"atan", {alone<atan>, sure_atan, Domain::kAll}},
    {"pow", {pow, sure::pow, Domain::kBoth}},
    {"atan2", {atan2, sure_atan2, Domain::kBoth}},
    {"hypot", {hypot, sure::hypot, Domain::kBoth}},
};

bool same(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) ||
         (std::isnan(a) && std::isnan(b));
}

TEST(ElementaryTest, values_are_the_correctly_rounded_ones) {
  each_row("elementary_cases.tsv", "", 254, [](const TableRow& row) {
    const double x = row["x"];
    const double y = row["y"];
    const double value = row["value"];
    const double got = kFunctions.at(row["function"]).quick(x, y);
    EXPECT_TRUE(same(got, value)) << std::hexfloat << got << " of " << x << ", " << y;
  });
}

TEST(ElementaryTest, quick_ways_answer_as_the_sure_ones_do) {
  for (const auto& [name, ways] : kFunctions) {
    std::mt19937_64 bits(15);
    const auto real = [&] { return static_cast<double>(bits() >> 11) * 0x1p-53; };
    // Any finite number, an ordinary one, one beside 1, and a whole one.
    const auto argument = [&](bool positive) {
      const double choices[] = {std::bit_cast<double>(bits() % 0x7FF0'0000'0000'0000),
                                20.0 * real(), std::ldexp(real(), -static_cast<int>(bits() % 60)),
                                1.0 + std::ldexp(real() - 0.5, -static_cast<int>(bits() % 50)),
                                std::floor(200.0 * real()) + 1.0};
      const double chosen = choices[bits() % 5];
      return positive || bits() % 2 == 0 ? chosen : -chosen;
    };
    int differences = 0;
    for (int i = 0; i < 20'000; ++i) {
      const double x = argument(ways.domain != Domain::kAll);
      const double y = argument(name != "pow");
      if (x == 0.0 || y == 0.0) continue;
      const double quick = ways.quick(x, y);
      const double sure = ways.sure(x, y);
      if (same(quick, sure) || ++differences > 5) continue;
      ADD_FAILURE() << std::hexfloat << name << " of " << x << ", " << y << " is " << quick
                    << " by the quick way, " << sure << " by the sure one";
    }
  }
}

}  // namespace
}  // namespace vqmath63::elementary
