// Reads the committed values of the mathematical functions and calls a function by its name.
#pragma once

#include <cmath>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "frame/test_table.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63 {

struct SpecialCase {
  std::string kind, function, interval;
  double a, b, x;
  double value;
  double rest_or_size;

  std::string name() const {
    std::ostringstream text;
    text.precision(17);
    text << function << " a=" << a << " b=" << b << " x=" << x;
    return text.str();
  }
};

/// The rows of one kind.
inline std::vector<SpecialCase> special_cases(const std::string& kind) {
  std::vector<SpecialCase> cases;
  for (const TableRow& row : table_rows("special_cases.tsv")) {
    if (row.fields[0] != kind) continue;
    cases.push_back({kind, row["function"], row["interval"], row["a"], row["b"], row["x"],
                     row["value"], row["rest_or_size"]});
  }
  return cases;
}

using M = ztMathLib;

/// The member's value over the columns a, b and x of a row: of x, or of a when that is a count; of
/// a and b, or a and x in the incomplete Gamma functions; or of all three.
template <class R, class A, class... More>
double value_of(R (M::*f)(A, More...) const, const SpecialCase& row) {
  using T = std::decay_t<A>;
  const M lib;
  if constexpr (sizeof...(More) == 2) {
    return (lib.*f)(row.a, row.b, row.x);
  } else if constexpr (sizeof...(More) == 1) {
    const double second = row.function.starts_with("Gamma_") ? row.x : row.b;
    return (lib.*f)(static_cast<T>(row.a), static_cast<T>(second));
  } else {
    return (lib.*f)(static_cast<T>(std::is_integral_v<T> ? row.a : row.x));
  }
}

/// The value of the member that the row names.
inline double evaluate(const SpecialCase& row) {
  const auto try_all = [&](auto... named) {
    double value = 0;
    const auto is_it = [&](const auto& one) {
      if (row.function != one.first) return false;
      value = value_of(one.second, row);
      return true;
    };
    if (!(is_it(named) || ...)) throw std::invalid_argument("unknown " + row.function);
    return value;
  };
#define VQ(name) std::pair(#name, &M::name)
  return try_all(VQ(aLog), VQ(aLog10), VQ(Ln), VQ(Log10), VQ(sine), VQ(cosine), VQ(acos), VQ(asin),
                 VQ(acot), VQ(acsc), VQ(asec), VQ(cot), VQ(csc), VQ(Sec), VQ(sinh), VQ(cosh),
                 VQ(tanh), VQ(coth), VQ(csch), VQ(sech), VQ(asinh), VQ(acosh), VQ(atanh), VQ(acoth),
                 VQ(acsch), VQ(asech), VQ(Cube_Root), VQ(cubed), VQ(Squared), VQ(Square_Root),
                 VQ(RTD), VQ(DTR), VQ(Gamma), VQ(LoGamma), VQ(Erf), VQ(Factorial), VQ(beta),
                 VQ(Max), VQ(Min), VQ(Sign), VQ(Quadrant), VQ(x_to_Power_y), VQ(y_Root_of_X),
                 VQ(Factor), VQ(Combination), VQ(Permutation), VQ(Gamma_P), VQ(Gamma_CF),
                 VQ(Gamma_Series), VQ(Beta_CF), VQ(BetaI));
#undef VQ
}

}  // namespace vqmath63
