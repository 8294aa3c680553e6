// Reads the committed values of the mathematical functions and calls a function by its name.
#pragma once

#include <algorithm>
#include <cmath>
#include <sstream>
#include <stdexcept>
#include <string>
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

struct NamedFunction {
  const char* name;
  double (*call)(const ztMathLib& lib, double a, double b, double x);
};

/// The members by name, over the columns a, b and x of a row.
inline double evaluate(const SpecialCase& row) {
#define VQ_OF_X(name)                                                                 \
  {                                                                                   \
#name, [](const ztMathLib& lib, double, double, double x) { return lib.name(x); } \
  }
#define VQ_OF_AB(name)                                                                            \
  {                                                                                               \
#name,                                                                                        \
        [](const ztMathLib& lib, double a, double b, double) -> double { return lib.name(a, b); } \
  }
#define VQ_OF_COUNTS(name)                                                                        \
  {                                                                                               \
#name,                                                                                          \
        [](const ztMathLib& lib, double a, double b,                                                \
           double) -> double { return lib.name(static_cast<std::int32_t>(a), static_cast<std::int32_t>(b)); } \
  }
#define VQ_OF_AX(name)                                                                     \
  {                                                                                        \
#name, [](const ztMathLib& lib, double a, double, double x) { return lib.name(a, x); } \
  }
#define VQ_OF_ABX(name)                                                                         \
  {                                                                                             \
#name, [](const ztMathLib& lib, double a, double b, double x) { return lib.name(a, b, x); } \
  }
  static constexpr NamedFunction kFunctions[] = {
      VQ_OF_X(aLog),
      VQ_OF_X(aLog10),
      VQ_OF_X(Ln),
      VQ_OF_X(Log10),
      VQ_OF_X(sine),
      VQ_OF_X(cosine),
      VQ_OF_X(acos),
      VQ_OF_X(asin),
      VQ_OF_X(acot),
      VQ_OF_X(acsc),
      VQ_OF_X(asec),
      VQ_OF_X(cot),
      VQ_OF_X(csc),
      VQ_OF_X(Sec),
      VQ_OF_X(sinh),
      VQ_OF_X(cosh),
      VQ_OF_X(tanh),
      VQ_OF_X(coth),
      VQ_OF_X(csch),
      VQ_OF_X(sech),
      VQ_OF_X(asinh),
      VQ_OF_X(acosh),
      VQ_OF_X(atanh),
      VQ_OF_X(acoth),
      VQ_OF_X(acsch),
      VQ_OF_X(asech),
      VQ_OF_X(Cube_Root),
      VQ_OF_X(cubed),
      VQ_OF_X(Squared),
      VQ_OF_X(Square_Root),
      VQ_OF_X(RTD),
      VQ_OF_X(DTR),
      VQ_OF_X(Gamma),
      VQ_OF_X(LoGamma),
      VQ_OF_X(Erf),
      VQ_OF_AB(beta),
      VQ_OF_AB(Max),
      VQ_OF_AB(Min),
      VQ_OF_AB(Sign),
      VQ_OF_AB(Quadrant),
      VQ_OF_AB(x_to_Power_y),
      VQ_OF_AB(y_Root_of_X),
      VQ_OF_COUNTS(Factor),
      VQ_OF_COUNTS(Combination),
      VQ_OF_COUNTS(Permutation),
      VQ_OF_AX(Gamma_P),
      VQ_OF_AX(Gamma_CF),
      VQ_OF_AX(Gamma_Series),
      VQ_OF_ABX(Beta_CF),
      VQ_OF_ABX(BetaI),
      {"Factorial", [](const ztMathLib& lib, double a, double, double) {
         return lib.Factorial(static_cast<std::int32_t>(a));
       }}};
#undef VQ_OF_X
#undef VQ_OF_AB
#undef VQ_OF_COUNTS
#undef VQ_OF_AX
#undef VQ_OF_ABX
  const auto found = std::find_if(std::begin(kFunctions), std::end(kFunctions),
                                  [&](const NamedFunction& f) { return row.function == f.name; });
  if (found == std::end(kFunctions)) throw std::invalid_argument("unknown " + row.function);
  return found->call(ztMathLib(), row.a, row.b, row.x);
}

}  // namespace vqmath63
