// ztRegression: straight lines through transformed samples.
#pragma once

#include <cstdint>
#include <string>

#include "frame/array.hpp"
#include "regression/line_fit.hpp"

namespace vqmath63 {

/// Fits y = A + B x to samples after the transform that the type word asks for.
///
/// | first letter of the word | type          | fitted line                                      |
/// |--------------------------|---------------|--------------------------------------------------|
/// | L, or no word at all     | "Linear"      | y = A + B x                                      |
/// | E                        | "Exponential" | ln y = A + B x                                   |
/// | P                        | "Polynomial"  | ln y = A + B ln x, after a weighted polynomial   |
/// |                          |               | fit whose coefficients are not kept              |
/// | any other                | as before     | as before; the word is kept for reading back     |
///
/// @failure What a step of the fit cannot do is one error line under that step's name; what it did
/// not reach is 0.
class ztRegression {
 public:
  /// Type "Linear", order 1, A = B = R = 0.
  ztRegression() noexcept;

  /// Chooses the type by the word's first letter, in any case, and turns the word into the type's
  /// name. Every word in L is linear ("Logarithmic" too), every word in P polynomial ("Power" too).
  /// @param value "Linear", "Exponential" or "Polynomial"; the first letter decides
  /// @return the type's name
  void put_RegressionType(std::string value);
  /// The type's name, or the word last set when it named no type.
  std::string get_RegressionType() const { return text_; }

  /// Number of coefficients of the polynomial fit, of the powers 0 to one less; 1 at first. No
  /// value is rejected here; below 1 Regression fails (9) for the polynomial type, and above 42
  /// there is no fit.
  /// @param value 1 to 42
  void put_RegressionOrder(std::int32_t value) { order_ = value; }

  /// Fits samples 1 to the upper bound of xA and keeps the line in A, B and R; `weights` is for the
  /// polynomial fit only. qOK is true after a fit that failed as well, with zero for what it did
  /// not reach. With a polynomial order below 1 the call itself fails (9), and A, B and R stay.
  /// NaN: flows to A, B and R; of an exponential fit a y of NaN stops the fit and leaves zeros.
  /// $$ B = \frac{n \sum xy - \sum x \sum y}{n \sum x^2 - (\sum x)^2}, \quad A = \bar y - B \bar x
  /// $$
  /// @param xA abscissae 1 to n, above 0 for the polynomial type
  /// @param yA ordinates, above 0 but for the linear type
  /// @param weights of the samples, for the polynomial type; else not read
  /// @param qOK receives True, also where the fit failed
  void Regression(const Array1<const float>& xA, const Array1<const float>& yA,
                  const Array1<const float>& weights, bool& qOK);

  /// Intercept, slope and correlation coefficient of the last Regression; 0 before it.
  /// $$ R = \frac{\sum (x - \bar x)(y - \bar y)}{\sqrt{\sum (x - \bar x)^2 \sum (y - \bar y)^2}} $$
  /// @return A in the unit of y (of its logarithm), B in that over the unit of x; R from -1 to 1
  float get_A() const { return line_.intercept; }
  float get_B() const { return line_.slope; }
  float get_R() const { return line_.correlation; }

 private:
  void InitRegression();
  void setRegressionMethod(bool& ok);
  void fit_polynomial(const Array1<const float>& xA, const Array1<const float>& yA,
                      const Array1<const float>& weights) const;

  std::string text_;
  std::int32_t type_ = 0;
  std::int32_t order_ = 0;
  Line line_;
};

}  // namespace vqmath63
