// Factorials and counts of selections: members of ztMathLib.
#include "frame/checked.hpp"
#include "mathlib/factorial_table.hpp"
#include "mathlib/locations.hpp"
#include "mathlib/math_lib.hpp"
#include "tolerant/out_of_range.hpp"

namespace vqmath63 {
namespace {

using namespace locations;

constexpr auto kEntries = static_cast<std::int32_t>(kFactorials.size());

bool impossible(std::int32_t total, std::int32_t taken) {
  return total < 0 || taken < 0 || total < taken;
}

}  // namespace

double ztMathLib::Factorial(std::int32_t n) const {
  return trap<double>(kFactorial, [&](double& result) {
    if (n >= kEntries) {
      result = kOutOfRange;
    } else if (n >= 0) {  // below 0 the result is 0, unlike elsewhere
      result = kFactorials[static_cast<std::size_t>(n)];
    }
  });
}

double ztMathLib::Combination(std::int32_t TotalComb, std::int32_t NumOfComb) const {
  return trap<double>(kCombination, [&](double& result) {
    if (impossible(TotalComb, NumOfComb)) {
      result = kOutOfRange;
    } else if (TotalComb < 2) {  // then NumOfComb is below 2 as well
      result = 1.0;
    } else {
      const Double all = Factorial(TotalComb);
      const Double taken = Factorial(NumOfComb);
      const Double left = Factorial(TotalComb - NumOfComb);
      // The first is the largest of the three: in range, all are.
      result = all == kOutOfRange ? kOutOfRange : (all / (left * taken)).value();
    }
  });
}

double ztMathLib::Permutation(std::int32_t TotalComb, std::int32_t NumOfComb) const {
  return trap<double>(kPermutation, [&](double& result) {
    if (impossible(TotalComb, NumOfComb)) {
      result = kOutOfRange;
    } else if (TotalComb < 2) {
      result = 1.0;
    } else {
      const Double all = Factorial(TotalComb);
      const Double left = Factorial(TotalComb - NumOfComb);
      result = all == kOutOfRange ? kOutOfRange : (all / left).value();
    }
  });
}

}  // namespace vqmath63
