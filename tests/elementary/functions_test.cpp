// The elementary functions against values of 1300 bits, and their quick ways against the sure ones.
#include "elementary/functions.hpp"

#include <bit>
#include <cmath>
#include <cstdint>
#include <map>
#include <random>
#include <vector>

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

using Function = double (*)(double, double);
struct Ways {
  Function portable, fused, sure;
  Domain domain;

  // Those that this processor can go; what is called goes the last one.
  std::vector<Function> quick() const {
    return fused == nullptr ? std::vector{portable} : std::vector{portable, fused};
  }
};

#ifdef __x86_64__
#define VQ_WAYS(name, wrapped) wrapped(portable::name), kFused ? wrapped(fused::name) : nullptr
#else
#define VQ_WAYS(name, wrapped) wrapped(portable::name), nullptr
#endif
#define VQ_ONE(name) alone<name>
#define VQ_TWO(name) name

const std::map<std::string, Ways> kFunctions = {
    {"exp", {VQ_WAYS(exp, VQ_ONE), alone<sure::exp>, Domain::kAll}},
    {"log", {VQ_WAYS(log, VQ_ONE), alone<sure::log>, Domain::kPositive}},
    {"log1p", {VQ_WAYS(log1p, VQ_ONE), alone<sure::log1p>, Domain::kPositive}},
    {"log10", {VQ_WAYS(log10, VQ_ONE), alone<sure::log10>, Domain::kPositive}},
    {"sin", {VQ_WAYS(sin, VQ_ONE), alone<sure::sin>, Domain::kAll}},
    {"cos", {VQ_WAYS(cos, VQ_ONE), alone<sure::cos>, Domain::kAll}},
    {"tan", {VQ_WAYS(tan, VQ_ONE), alone<sure::tan>, Domain::kAll}},
    {"atan", {VQ_WAYS(atan, VQ_ONE), sure_atan, Domain::kAll}},
    {"pow", {VQ_WAYS(pow, VQ_TWO), sure::pow, Domain::kBoth}},
    {"atan2", {VQ_WAYS(atan2, VQ_TWO), sure_atan2, Domain::kBoth}},
    {"hypot", {VQ_WAYS(hypot, VQ_TWO), sure::hypot, Domain::kBoth}},
};

bool same(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) ||
         (std::isnan(a) && std::isnan(b));
}

TEST(ElementaryTest, values_are_the_correctly_rounded_ones) {
  each_row("elementary_cases.tsv", "", 326, [](const TableRow& row) {
    const double x = row["x"];
    const double y = row["y"];
    const double value = row["value"];
    for (const Function quick : kFunctions.at(row["function"]).quick()) {
      const double got = quick(x, y);
      EXPECT_TRUE(same(got, value)) << std::hexfloat << got << " of " << x << ", " << y;
    }
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
      const double sure = ways.sure(x, y);
      for (const Function quick : ways.quick()) {
        if (same(quick(x, y), sure) || ++differences > 5) continue;
        ADD_FAILURE() << std::hexfloat << name << " of " << x << ", " << y << " is " << quick(x, y)
                      << " by a quick way, " << sure << " by the sure one";
      }
    }
  }
}

}  // namespace
}  // namespace vqmath63::elementary
