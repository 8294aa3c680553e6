// ztStatistics: descriptive statistics, tests and null handling of samples.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>

#include "frame/array.hpp"
#include "frame/companions.hpp"
#include "statistics/sums.hpp"

namespace vqmath63 {

/// Measures of samples 1 to n, n being the upper bound of the (first) array and taken before all
/// else; an element 0 is ignored, a second array is read at the same indices whatever its bounds.
/// Sums are running Singles in index order; every other expression is worked out in double
/// precision and rounded once. The instance keeps the summary of its last summary call. O(n) unless
/// said. NaN: flows to the result.
///
/// @failure An unallocated array, an upper bound below 1, a second array that is too short (9), an
/// overflow (6) or 0 / 0 (5) is one error line, and the result is 0 or what is said of it.
/// @param xA samples 1 to n, in any unit
/// @param yA samples 1 to n, in a unit of their own
/// @param qOK receives True where all went well
/// @return in the unit of the samples
class ztStatistics {
 public:
  /// A summary of zeros with standard deviations 1; creates the instance's two companions. One that
  /// cannot be created then is asked for again by each method that needs it.
  ztStatistics();
  ~ztStatistics() = default;  // releases the companions
  ztStatistics(const ztStatistics&) = delete;
  ztStatistics& operator=(const ztStatistics&) = delete;

  /// @name The kept summary
  /// A summary call overwrites only what it works out, once its pass over the data is done; nothing
  /// is reset in between. At first standard deviations are 1, all else 0.

  /// Of x: mean, standard deviations with the divisors n - 1 and n, sum, sum of squares.
  /// $$ \bar x = \frac{1}{n} \sum_i x_i, \quad \sigma_n = \sqrt{\frac{1}{n} \sum_i (x_i - \bar
  /// x)^2} $$
  float get_xBar() const { return x_.bar; }
  float get_xSigmaN1() const { return x_.sigma_n1; }
  float get_xSigmaN() const { return x_.sigma_n; }
  float get_SigmaX() const { return x_.sums.sum; }
  float get_SigmaX2() const { return x_.sums.squares; }

  /// Magnitude of the last sample, |x(n)| and |y(n)|: not a sum.
  float get_SigmaAbsX() const { return x_.sums.absolute; }
  float get_SigmaAbsY() const { return y_.sums.absolute; }

  /// Of x: median and mode (as Median and Mode), largest and smallest sample.
  float get_xMedian() const { return x_.median; }
  float get_xMode() const { return x_.mode; }
  float get_xMax() const { return x_.sums.maximum; }
  float get_xMin() const { return x_.sums.minimum; }

  /// Of y, as of x; SigmaXY is the sum of the products x(i) y(i).
  float get_yBar() const { return y_.bar; }
  float get_ySigmaN() const { return y_.sigma_n; }
  float get_ySigmaN1() const { return y_.sigma_n1; }
  float get_yMedian() const { return y_.median; }
  float get_yMax() const { return y_.sums.maximum; }
  float get_yMin() const { return y_.sums.minimum; }
  float get_SigmaY() const { return y_.sums.sum; }
  float get_SigmaY2() const { return y_.sums.squares; }
  float get_SigmaXY() const { return sigma_xy_; }

  /// @name Summaries, kept in the instance

  /// Sums, mean, extremes and both standard deviations of x. The deviations come from the sums, as
  /// s = sum of squares - sum^2 / n, which is taken as 0 where it is below 1e-15 of the sum of
  /// squares: sqrt|s/n| and sqrt|s/(n-1)| (0 for n = 1). qOK tells success. NaN: in the sums, the
  /// mean and the deviations; the extremes take one as element 1 only.
  /// $$ s = \sum_i x_i^2 - \frac{1}{n} \left(\sum_i x_i\right)^2 $$
  void BasicStatistics(const Array1<const float>& xA, bool& qOK);

  /// BasicStatistics, then Median and Mode when it did well. O(n) with the built-in sort. NaN: as
  /// in each of them.
  void Statistics(const Array1<const float>& xA, bool& qOK);

  /// The same pass over two arrays at once, and the sum of their products. Means and deviations use
  /// one reciprocal of n, rounded to Single. xSigmaN1 receives the n-1 form, xSigmaN is not
  /// touched, and only y's s is ever taken as 0. NaN: as BasicStatistics.
  void BasicStatisticsPairs(const Array1<const float>& xA, const Array1<const float>& yA,
                            bool& qOK);

  /// BasicStatisticsPairs, then Median and Mode of both arrays. qOK True says nothing about the
  /// first step. NaN: as in each of them.
  void StatisticsPairs(const Array1<const float>& xA, const Array1<const float>& yA, bool& qOK);

  /// @name Measures of one call
  /// They leave the kept summary alone. 0 after a failure, unless said.
  /// @return in the unit of the samples; 0 after a failure

  /// Largest and smallest sample. NaN: counts as element 1 only.
  float Maximum(const Array1<const float>& xA);
  float Minimum(const Array1<const float>& xA);
  /// Index of the largest and of the smallest sample; the first of ties. NaN: counts as element 1
  /// only.
  /// @return from 1; 0 after a failure
  std::int32_t Index_of_Maximum_Of_X(const Array1<const float>& xA);
  std::int32_t Index_Of_Minimum_Of_X(const Array1<const float>& xA);

  /// Multiplies x in place by the reciprocal (a Single) of its largest signed value, so that
  /// samples without a positive one change sign. True, also for a Maximum of 0, when nothing is
  /// changed; False after a failure, with the samples before the failing one scaled. NaN: stays
  /// one; as element 1 it makes every sample one.
  /// @param xA samples 1 to n, which become fractions of the largest
  /// @return False after a failure
  bool Normalise(Array1<float>& xA);

  /// Sums of the samples, of their squares and of their magnitudes.
  /// $$ \sum_i x_i, \quad \sum_i x_i^2, \quad \sum_i |x_i| $$
  /// @return in the unit of the samples, SumOfX2 in its square; 0 after a failure
  float SumOfX(const Array1<const float>& xA);
  float SumOfX2(const Array1<const float>& xA);
  float SumofAbsX(const Array1<const float>& xA);
  /// Sum of the products of two arrays.
  /// $$ \sum_i x_i y_i $$
  /// @return in the product of the two units; 0 after a failure
  float SumOfXY(const Array1<const float>& xA, const Array1<const float>& yA);

  /// xArray(1), whatever iList(1) holds, plus xArray(iList(k)) for k = 2 to nList where iList(k) is
  /// an index from 1 to the upper bound; other entries are skipped. -32768 without a message for an
  /// upper bound below nList, and after a failure.
  /// @param iList indices into xArray, from element 1 on
  /// @param nList how many of them count
  /// @param xArray samples, from element 1 on
  /// @return in the unit of the samples; -32768 after a failure
  float SumListX(const Array1<const std::int32_t>& iList, const std::int32_t& nList,
                 const Array1<const float>& xArray);

  /// Mean, SumOfX / n.
  /// $$ \bar x = \frac{1}{n} \sum_i x_i $$
  float average(const Array1<const float>& xA);
  /// Variance with the divisor n, r being 1/n rounded to Single.
  /// $$ r \left( \sum_i x_i^2 - r \left(\sum_i x_i\right)^2 \right) $$
  /// @return in the square of the samples' unit; 0 after a failure
  float Variance(const Array1<const float>& xA);
  /// Standard deviations; SigmaN divides by n, SigmaN1 by n - 1 and is 0 for n = 1.
  /// $$ \sqrt{\left| \frac{1}{n} \left( \sum_i x_i^2 - \frac{1}{n} (\sum_i x_i)^2 \right) \right|}
  /// $$
  float SigmaN(const Array1<const float>& xA);
  float SigmaN1(const Array1<const float>& xA);
  /// Covariance, with the divisor n. 0 without a message for unequal upper bounds.
  /// $$ \frac{1}{n} \sum_i (x_i - \bar x)(y_i - \bar y) $$
  /// @return in the product of the two units; 0 after a failure
  float Cov(const Array1<const float>& xA, const Array1<const float>& yA);

  /// Middle sample in ascending order, mean of the middle two for even n. When the sort companion
  /// says that it failed: the first sample. O(n) with the built-in sort. NaN: counts as largest.
  float Median(const Array1<const float>& xA);

  /// Not the most frequent value, but the last one to win a count of changes over the ascending
  /// samples: mode and current value begin as the smallest sample, run and best as 1. Each sample
  /// other than the current value adds 1 to the run while that is not above best; else the current
  /// value becomes the mode, the run best, and the sample current with a run of 1. So the mode of
  /// 1, 2, 2, 2, 5 is 1. ModeBin where no value won. The first sample when the sort companion says
  /// that it failed. NaN: goes last, each one a change of value.
  float Mode(const Array1<const float>& xA);

  /// Mean of the fullest bin over ascending samples. With n/2 bins, then n/4, ... but never fewer
  /// than 2, and at most floor(log2 n) times: all bins are as wide as the range divided by their
  /// number; the first begins at sample 1 and holds both its edges; a sample outside the open bin
  /// closes it and opens the next one, which lies one width further, wherever the sample is; the
  /// bin open at the end does not count. The first number of bins of which one holds more than one
  /// sample gives the result, the mean of the fullest (the first of equals). 0 when none does. O(n
  /// log n). NaN: as first or last sample gives 0, elsewhere it closes the bin.
  /// @param dSort samples 1 to n, ascending
  float ModeBin(const Array1<const float>& dSort);

  /// Median of the lower (1) or upper (3) half of the ascending samples, or of them all (2); 0 for
  /// any other number. The middle sample of an odd n belongs to both halves; of an even n the upper
  /// half begins with sample n/2, so that it has n/2 + 1. 0 when the sort companion fails. NaN:
  /// counts as largest.
  /// @param xA samples 1 to n, in any order
  /// @param ithQuartile 1, 2 or 3
  float Quartile(const Array1<const float>& xA, const std::int32_t& ithQuartile);

  /// @name Rows without nulls
  /// qOK tells success; a null value equal to NaN removes the NaN. Arrays of different upper bounds
  /// give qOK False without a message, and nothing is changed but NewLength. When no row is left,
  /// the count is 0 and the resulting arrays have bounds 1 to 1.
  /// @param xNull the value that stands for a missing sample
  /// @param dNull the value that stands for a missing sample
  /// @param iNull 0: rows are only counted; else they are taken out
  /// @param xA samples 1 to n
  /// @param xB samples 1 to n
  /// @param xC samples 1 to n
  /// @param xANew receives what is left of xA
  /// @param xBNew receives what is left of xB
  /// @param xCNew receives what is left of xC
  /// @param nANew receives how many samples are left
  /// @param NewLength receives how many rows are left
  /// @param nRows receives how many rows are left
  /// @param dX samples 1 to n, from which rows are taken out
  /// @param dY samples 1 to n, from which rows are taken out
  /// @param dZ samples 1 to n, from which rows are taken out
  /// @param qMask for each row, True to keep it
  /// @param qFlag without effect

  /// xANew, a copy of xA without its nulls; nANew their number. NaN: is kept, unless xNull is NaN.
  void RemoveNulls(float& xNull, const Array1<const float>& xA, Array1<float>& xANew,
                   std::int32_t& nANew, bool& qOK);
  /// Copies of the arrays without the rows in which one of them is null; NewLength is the number of
  /// rows left. NaN: is kept, unless xNull is NaN.
  void RemoveNullsXY(float& xNull, const Array1<const float>& xA, const Array1<const float>& xB,
                     Array1<float>& xANew, Array1<float>& xBNew, std::int32_t& NewLength,
                     bool& qOK);
  void RemoveNullsXYZ(float& xNull, const Array1<const float>& xA, const Array1<const float>& xB,
                      const Array1<const float>& xC, Array1<float>& xANew, Array1<float>& xBNew,
                      Array1<float>& xCNew, std::int32_t& NewLength, bool& qOK);
  /// Rows in which one of the arrays is null, taken out in place. With iNull = 0 the rows are only
  /// counted. NaN: is kept, unless dNull is NaN.
  void RemoveNullValues(float& dNull, const std::int32_t& iNull, Array1<float>& dX,
                        Array1<float>& dY, std::int32_t& nRows, bool& qOK);
  void RemoveNullValuesXYZ(float& dNull, const std::int32_t& iNull, Array1<float>& dX,
                           Array1<float>& dY, Array1<float>& dZ, std::int32_t& nRows, bool& qOK);
  /// Keeps the rows whose mask entry is True, in place; nRows is their number. When none is kept,
  /// only dX is emptied. A mask shorter than the data is error 9. qFlag is ignored. NaN: a sample
  /// like any other.
  void MaskValuesXY(Array1<Boolean>& qMask, Array1<float>& dX, Array1<float>& dY,
                    std::int32_t& nRows, bool& qOK, const bool& qFlag);
  void MaskValuesXYZ(Array1<Boolean>& qMask, Array1<float>& dX, Array1<float>& dY,
                     Array1<float>& dZ, std::int32_t& nRows, bool& qOK, const bool& qFlag);

  /// @name Tests and intervals
  /// Results are written, and qOK becomes True, only when all is worked out.
  /// @param xObserved observed counts, bins 1 to n
  /// @param xExpected expected counts, bins 1 to n, above 0
  /// @param nConstraints how many degrees of freedom the data have taken, usually 1
  /// @param ChiSq receives chi squared
  /// @param Probability receives the chance of a larger value, 0 to 1
  /// @param dLevel level of confidence, between 0 and 1

  /// Sum of squared differences of two arrays. 0 without a message for unequal upper bounds.
  /// $$ \sum_i (x_i - y_i)^2 $$
  /// @return in the square of the samples' unit; 0 after a failure
  float SumOfSquareDifferences(const Array1<const float>& xA, const Array1<const float>& yA);

  /// Chi squared of observed counts against expected ones, with n - nConstraints degrees of
  /// freedom; Probability is the chance of a larger value. Error 5 for an expected count <= 0 or no
  /// degree of freedom. Source: Pearson, Phil. Mag. 50 (1900). NaN: flows to ChiSq and Probability,
  /// and qOK is True.
  /// $$ \chi^2 = \sum_i \frac{(o_i - e_i)^2}{e_i}, \quad p = 1 - P(\nu / 2, \chi^2 / 2) $$
  void ChiSquared(const Array1<const float>& xObserved, const Array1<const float>& xExpected,
                  const std::int32_t& nConstraints, float& ChiSq, float& Probability, bool& qOK);
  /// Chi squared of two sets of counts of equal effort. A bin empty in both sets takes no part and
  /// leaves one degree of freedom less; error 5 for other counts whose sum is <= 0, or no degree of
  /// freedom. NaN: as ChiSquared.
  /// $$ \chi^2 = \sum_i \frac{(x_i - y_i)^2}{x_i + y_i} $$
  /// @param xA counts of the first set, bins 1 to n
  /// @param yA counts of the second set, bins 1 to n
  void Chi2Squared(const Array1<const float>& xA, const Array1<const float>& yA,
                   const std::int32_t& nConstraints, float& ChiSq, float& Probability, bool& qOK);

  /// Student's t for two samples of equal variance, each over its own n, with nx + ny - 2 degrees
  /// of freedom; Probability is the chance of a larger |t|. Moments in double precision. Error 5
  /// without a degree of freedom or for samples that are all the same; error 11 for samples without
  /// spread and different means. Source: Student, Biometrika 6 (1908). NaN: flows to t and
  /// Probability, and qOK is True.
  /// $$ t = \frac{\bar x - \bar y}{s \sqrt{1/n_x + 1/n_y}}, \quad p = I_{\nu/(\nu+t^2)}(\nu/2, 1/2)
  /// $$
  /// @param yA samples of the second set, as many as there are
  /// @param t receives Student's t
  void t_Test(const Array1<const float>& xA, const Array1<const float>& yA, float& t,
              float& Probability, bool& qOK);

  /// Half width of the confidence interval of the mean: s the n-1 standard deviation (in double
  /// precision), q the two-sided Student quantile at level dLevel with n - 1 degrees of freedom.
  /// Error 5 outside (0, 1) and for n < 2. NaN: flows to the result; as dLevel error 5.
  /// $$ q \frac{s}{\sqrt{n}} $$
  float ConfidenceLimit(const Array1<const float>& xA, const double& dLevel);
  /// The confidence interval of the mean: mean -/+ the half width of ConfidenceLimit. NaN: as
  /// ConfidenceLimit.
  /// @param xLower receives the lower end
  /// @param xUpper receives the upper end
  void ConfidenceInterval(const Array1<const float>& xA, const double& dLevel, float& xLower,
                          float& xUpper, bool& qOK);

 private:
  // What is kept of one array.
  struct Kept {
    Summary sums;
    float bar = 0.0F;
    float sigma_n = 1.0F;
    float sigma_n1 = 1.0F;
    float median = 0.0F;
    float mode = 0.0F;
  };

  bool InitStatistics();
  // Elements 1 to n, sorted by the instance's companion; ok is its flag.
  Array1<float> sorted_copy(const Array1<const float>& x, bool& ok);
  // Median and Mode, which share one sort: the first leaves its sorted copy in `sorted` where
  // nobody can tell, the second sorts when it is handed none.
  float median(const Array1<const float>& xA, Array1<float>& sorted);
  float mode(const Array1<const float>& xA, Array1<float> sorted);
  // Applies the mask to the first of the arrays and, if some but not all rows stay, to the others.
  void mask_rows(Array1<Boolean>& mask, Array1<float>& first,
                 std::initializer_list<Array1<float>*> others, std::int32_t& rows);

  Kept x_;
  Kept y_;
  float sigma_xy_ = 0.0F;
  std::shared_ptr<ztArrayTools> array_tools_;
  std::shared_ptr<ztSortTools> sort_tools_;
};

}  // namespace vqmath63
