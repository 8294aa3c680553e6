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
/// precision and rounded once. The instance keeps the summary of its last summary call. Every
/// method is trapped: a failure (unallocated array, upper bound below 1, second array too short,
/// overflow, 0/0) is one error line and the result named below. O(n) unless said. NaN: flows to the
/// result.
class ztStatistics {
 public:
  /// A summary of zeros with standard deviations 1; creates the instance's two companions. One that
  /// cannot be created then is asked for again by each method that needs it.
  ztStatistics();
  ~ztStatistics() = default;  // releases the companions
  ztStatistics(const ztStatistics&) = delete;
  ztStatistics& operator=(const ztStatistics&) = delete;

  // The kept summary. A summary call overwrites only what it works out, once its pass over the
  // data is done; nothing is reset in between.

  float get_xBar() const { return x_.bar; }
  float get_xSigmaN1() const { return x_.sigma_n1; }
  float get_xSigmaN() const { return x_.sigma_n; }
  float get_SigmaX() const { return x_.sums.sum; }
  float get_SigmaX2() const { return x_.sums.squares; }
  /// |x(n)|, the magnitude of the last sample and not a sum.
  float get_SigmaAbsX() const { return x_.sums.absolute; }
  float get_xMedian() const { return x_.median; }
  float get_xMode() const { return x_.mode; }
  float get_xMax() const { return x_.sums.maximum; }
  float get_xMin() const { return x_.sums.minimum; }
  float get_yBar() const { return y_.bar; }
  float get_ySigmaN() const { return y_.sigma_n; }
  float get_ySigmaN1() const { return y_.sigma_n1; }
  float get_yMedian() const { return y_.median; }
  float get_yMax() const { return y_.sums.maximum; }
  float get_yMin() const { return y_.sums.minimum; }
  float get_SigmaY() const { return y_.sums.sum; }
  float get_SigmaY2() const { return y_.sums.squares; }
  /// |y(n)|, as SigmaAbsX.
  float get_SigmaAbsY() const { return y_.sums.absolute; }
  float get_SigmaXY() const { return sigma_xy_; }

  /// Sums, mean, extremes and both standard deviations of x. The deviations come from the sums, as
  /// s = sum of squares - sum^2 / n, which is taken as 0 where it is below 1e-15 of the sum of
  /// squares: sqrt|s/n| and sqrt|s/(n-1)| (0 for n = 1). qOK tells success. NaN: in the sums, the
  /// mean and the deviations; the extremes take one as element 1 only.
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

  // Measures of one call, which leave the kept summary alone. 0 after a failure, unless said.

  /// Largest and smallest sample. NaN: counts as element 1 only.
  float Maximum(const Array1<const float>& xA);
  float Minimum(const Array1<const float>& xA);
  /// Index of the extreme, from 1; the first of ties. NaN: counts as element 1 only.
  std::int32_t Index_of_Maximum_Of_X(const Array1<const float>& xA);
  std::int32_t Index_Of_Minimum_Of_X(const Array1<const float>& xA);

  /// Multiplies x in place by the reciprocal (a Single) of its largest signed value, so that
  /// samples without a positive one change sign. True, also for a Maximum of 0, when nothing is
  /// changed; False after a failure, with the samples before the failing one scaled. NaN: stays
  /// one; as element 1 it makes every sample one.
  bool Normalise(Array1<float>& xA);

  float SumOfX(const Array1<const float>& xA);
  float SumOfX2(const Array1<const float>& xA);
  float SumofAbsX(const Array1<const float>& xA);
  float SumOfXY(const Array1<const float>& xA, const Array1<const float>& yA);

  /// xArray(1), whatever iList(1) holds, plus xArray(iList(k)) for k = 2 to nList where iList(k) is
  /// an index from 1 to the upper bound; other entries are skipped. -32768 without a message for an
  /// upper bound below nList, and after a failure.
  float SumListX(const Array1<const std::int32_t>& iList, const std::int32_t& nList,
                 const Array1<const float>& xArray);

  /// SumOfX / n.
  float average(const Array1<const float>& xA);
  /// (SumOfX2 - SumOfX^2 r) r, r = 1/n rounded to Single.
  float Variance(const Array1<const float>& xA);
  /// sqrt|(SumOfX2 - SumOfX^2 / n) / n|; SigmaN1 divides by n - 1 and is 0 for n = 1.
  float SigmaN(const Array1<const float>& xA);
  float SigmaN1(const Array1<const float>& xA);
  /// Sum of (x(i) - average x) (y(i) - average y), divided by n. 0 without a message for unequal
  /// upper bounds.
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
  float ModeBin(const Array1<const float>& dSort);

  /// Median of the lower (1) or upper (3) half of the ascending samples, or of them all (2); 0 for
  /// any other number. The middle sample of an odd n belongs to both halves; of an even n the upper
  /// half begins with sample n/2, so that it has n/2 + 1. 0 when the sort companion fails. NaN:
  /// counts as largest.
  float Quartile(const Array1<const float>& xA, const std::int32_t& ithQuartile);

  // Rows without nulls. qOK tells success; xNull equal to NaN removes the NaN. Arrays of different
  // upper bounds give qOK False without a message, and nothing is changed but NewLength. When no
  // row is left, the count is 0 and the resulting arrays have bounds 1 to 1.

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
  /// The same in place. With iNull = 0 the rows are only counted. NaN: is kept, unless dNull is
  /// NaN.
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

  // Tests and intervals. Results are written, and qOK becomes True, only when all is worked out.

  /// Sum of (x(i) - y(i))^2. 0 without a message for unequal upper bounds.
  float SumOfSquareDifferences(const Array1<const float>& xA, const Array1<const float>& yA);

  /// Chi squared of observed counts against expected ones, sum of (o - e)^2 / e, with n -
  /// nConstraints degrees of freedom; Probability is the chance of a larger value. Error 5 for an
  /// expected count <= 0 or no degree of freedom. Source: Pearson, Phil. Mag. 50 (1900). NaN: flows
  /// to ChiSq and Probability, and qOK is True.
  void ChiSquared(const Array1<const float>& xObserved, const Array1<const float>& xExpected,
                  const std::int32_t& nConstraints, float& ChiSq, float& Probability, bool& qOK);
  /// Chi squared of two sets of counts of equal effort, sum of (x - y)^2 / (x + y). A bin empty in
  /// both sets takes no part and leaves one degree of freedom less; error 5 for other counts whose
  /// sum is <= 0, or no degree of freedom. NaN: as ChiSquared.
  void Chi2Squared(const Array1<const float>& xA, const Array1<const float>& yA,
                   const std::int32_t& nConstraints, float& ChiSq, float& Probability, bool& qOK);

  /// Student's t for two samples of equal variance, each over its own n, with nx + ny - 2 degrees
  /// of freedom; Probability is the chance of a larger |t|. Moments in double precision. Error 5
  /// without a degree of freedom or for samples that are all the same; error 11 for samples without
  /// spread and different means. Source: Student, Biometrika 6 (1908). NaN: flows to t and
  /// Probability, and qOK is True.
  void t_Test(const Array1<const float>& xA, const Array1<const float>& yA, float& t,
              float& Probability, bool& qOK);

  /// Half width of the confidence interval of the mean, q s / sqrt(n): s the n-1 standard deviation
  /// (in double precision), q the two-sided Student quantile at level dLevel in (0, 1) with n - 1
  /// degrees of freedom. Error 5 outside (0, 1) and for n < 2. NaN: flows to the result;
  /// as dLevel error 5.
  float ConfidenceLimit(const Array1<const float>& xA, const double& dLevel);
  /// The interval itself: mean -/+ half width. NaN: as ConfidenceLimit.
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
