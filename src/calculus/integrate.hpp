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
class ztIntegrate {
 public:
  /// The rule numbers by name.
  enum Rule : std::int32_t { kTrapezoidal = 1, kSimpson = 2, kForward = 3, kBackward = 4 };

  /// A new instance has rule 1.
  ztIntegrate();

  /// Always 0: the rule cannot be read back. Re-applies the stored rule to itself.
  std::int32_t IntegerationRule();

  /// Sets the rule; no value is rejected.
  void put_IntegrationRule(const std::int32_t& rule);

  /// Area under y over x by the instance's rule, samples 1 to the upper bound of xVals. 0 after a
  /// failure, which is reported under the rule's name. NaN: flows to the area, unless the rule does
  /// not read it (Simpson reads two abscissae).
  float Integral(const Array1<const float>& xVals, const Array1<const float>& yVals);

 private:
  void InitIntegrate();

  std::int32_t rule_ = 0;
};

}  // namespace vqmath63
