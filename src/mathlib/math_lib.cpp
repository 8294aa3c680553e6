// The members of ztMathLib whose work is done elsewhere: tolerant arithmetic and Bessel functions.
#include "mathlib/math_lib.hpp"

#include "mathlib/bessel.hpp"
#include "mathlib/locations.hpp"
#include "tolerant/tolerant_arithmetic.hpp"

namespace vqmath63 {
namespace {

using namespace locations;

double trapped(const Location& where, double (*function)(double), double X) {
  return trap<double>(where, [&](double& result) { result = function(X); });
}

double trapped(const Location& where, double (*function)(std::int32_t, double), std::int32_t n,
               double X) {
  return trap<double>(where, [&](double& result) { result = function(n, X); });
}

}  // namespace

void ztMathLib::Arithmetic(const double& dReal1, const double& dReal2, const std::string& Operation,
                           double& Result) const {
  vqmath63::Arithmetic(dReal1, dReal2, Operation, Result);
}

float ztMathLib::ArithmeticSingle(const float& dReal1, const float& dReal2,
                                  const std::string& Operation) const {
  return vqmath63::ArithmeticSingle(dReal1, dReal2, Operation);
}

float ztMathLib::ArithmeticDiff(const float& sReal1, const float& sReal2,
                                const float& Epslon) const {
  return vqmath63::ArithmeticDiff(sReal1, sReal2, Epslon);
}

double ztMathLib::I0(double X) const {
  return trapped(kI0, vqmath63::I0, X);
}
double ztMathLib::i1(double X) const {
  return trapped(kI1, vqmath63::i1, X);
}
double ztMathLib::J0(double X) const {
  return trapped(kJ0, vqmath63::J0, X);
}
double ztMathLib::J1(double X) const {
  return trapped(kJ1, vqmath63::J1, X);
}
double ztMathLib::K0(double X) const {
  return trapped(kK0, vqmath63::K0, X);
}
double ztMathLib::K1(double X) const {
  return trapped(kK1, vqmath63::K1, X);
}
double ztMathLib::y0(double X) const {
  return trapped(kY0, vqmath63::y0, X);
}
double ztMathLib::y1(double X) const {
  return trapped(kY1, vqmath63::y1, X);
}
double ztMathLib::Ibn(std::int32_t n, double X) const {
  return trapped(kIbn, vqmath63::Ibn, n, X);
}
double ztMathLib::Jbn(std::int32_t n, double X) const {
  return trapped(kJbn, vqmath63::Jbn, n, X);
}
double ztMathLib::Kbn(std::int32_t n, double X) const {
  return trapped(kKbn, vqmath63::Kbn, n, X);
}
double ztMathLib::Ybn(std::int32_t n, double X) const {
  return trapped(kYbn, vqmath63::Ybn, n, X);
}

}  // namespace vqmath63
