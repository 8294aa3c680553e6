// ztIntegrate: integration of a sampled curve by one of four quadrature rules.
#pragma once

#include <cstdint>

#include "frame/array.hpp"

namespace vqmath63 {

/// Integrates sampled curves under a rule number kept in the instance.
///
/// | rule            | quadrature                                  |
/// |-----------------|---------------------------------------------|
/// | 2               | Simpson                                     |
/// | 3               | Forward (left-hand ordinate)                |
/// | 4               | Backward (right-hand ordinate)              |
/// | 1 and any other | Trapezoidal                                 |
///
/// @failure One error line under the rule's name, and the area is 0: an array without elements from
/// 1 on, or yVals shorter than xVals (9), an overflow (6).
class ztIntegrate {
 public:
  /// The rule numbers by name.
  enum Rule : std::int32_t { kTrapezoidal = 1, kSimpson = 2, kForward = 3, kBackward = 4 };

  /// A new instance has rule 1.
  ztIntegrate() noexcept;

  /// Always 0: the rule cannot be read back. Re-applies the stored rule to itself.
  /// @return 0
  std::int32_t IntegerationRule();

  /// Sets the rule; no value is rejected.
  /// @param value 2, 3 or 4; any other is trapezoidal
  void put_IntegrationRule(const std::int32_t& rule);

  /// Area under y over x by the instance's rule, samples 1 to the upper bound of xVals. Simpson's
  /// rule takes the first step for all, and gives way to the trapezoidal one for an even number of
  /// samples. NaN: flows to the area, unless the rule does not read it (Simpson reads two
  /// abscissae). O(n).
  /// $$ \int_{x_1}^{x_n} y \, dx \approx \sum_{i=1}^{n-1} \frac{y_i + y_{i+1}}{2} (x_{i+1} - x_i)
  /// $$
  /// @param xVals abscissae 1 to n, at any spacing; for Simpson's rule at equal spacing
  /// @param yVals ordinates, at the same indices
  /// @return in units of y times units of x; 0 after a failure
  float Integral(const Array1<const float>& xVals, const Array1<const float>& yVals);

 private:
  void InitIntegrate();

  std::int32_t rule_ = 0;
};

}  // namespace vqmath63
