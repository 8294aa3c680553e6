// The five companion services as interfaces, and this thread's shared references to them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "frame/array.hpp"
#include "frame/date.hpp"

namespace vqmath63 {

// A companion fails by throwing: Fault with a number of its own, raise_companion_failure(result)
// for an automation result, or anything else (an unspecified failure). The calling routine's trap
// turns that into its error line.

/// Error sink and log.
class ztErrorHandler {
 public:
  virtual ~ztErrorHandler() = default;
  /// Takes one finished line. `flag` is false for the close-down line only.
  virtual void ReportError(std::string& message, bool& flag) = 0;
  /// Switches copying of received lines to the log file on or off.
  virtual void SetLogToFile(bool& qLogToFile) = 0;
  /// Sets the log file's path (UTF-8).
  virtual void SetLogFile(std::string& LOGFILE) = 0;
  /// Stores the library's version line; it heads each session of the log.
  virtual void SetVersionText(std::string& version_text) = 0;
};

/// Shared mathematical helpers. Angles are radians in (-pi, pi].
class ztCommonMaths {
 public:
  virtual ~ztCommonMaths() = default;
  /// Angle of the point (X, Y) seen from the origin; 0 for the origin itself.
  virtual double VectorAngle(double X, double Y) = 0;
  /// X and Y of the point at distance Radius and angle Theta (any angle).
  virtual void PolarToRectangular(double Radius, double Theta, double& X, double& Y) = 0;
  /// Inverse of PolarToRectangular.
  virtual void RectangularToPolar(double X, double Y, double& Radius, double& Theta) = 0;
  virtual double ArcTan(double x) = 0;
  /// Smallest integer not below X; fault 6 outside the 32-bit range and for NaN.
  virtual std::int32_t CeilToLong(double X) = 0;
  /// The same as a Double; the sign of zero, NaN and infinities are kept.
  virtual double CeilToDouble(double X) = 0;
  /// Largest integer not above X; fault 6 outside the 32-bit range and for NaN.
  virtual std::int32_t FloorToLong(double X) = 0;
  /// The same as a Double; the sign of zero, NaN and infinities are kept.
  virtual double FloorToDouble(double X) = 0;
  /// Finds the interval of the ascending list that holds `value`: `lower` is the largest i in
  /// 1 .. n-1 with list(i) <= value, else 1, so that a value outside takes an end interval;
  /// `upper` is lower + 1. `spare` is set to 0. O(log n).
  virtual void BracketIndex(float& value, Array1<float>& list, std::int32_t& lower,
                            std::int32_t& upper, std::int32_t& spare) = 0;
  /// For each abscissa k, writes into row k of the y column the value of the y column interpolated
  /// linearly at that abscissa along the x column of `table` (rows, columns). End segments extend
  /// beyond the table; of equal neighbouring abscissae the first row's value counts; one row gives
  /// that row's value. All are evaluated on the table as it came. `mode` is 0.
  virtual void InterpolateTable(Array1<float>& abscissae, std::int32_t& x_column,
                                std::int32_t& y_column, Array2<float>& table, bool& ok,
                                std::int32_t& mode) = 0;
  /// Crossing point of segment i, (x1i, y1i)-(x2i, y2i), with segment j. End points belong to
  /// both segments. Worked out in double precision; parallel or degenerate segments do not cross.
  /// Without a crossing xi = yi = 0 and qInt is false.
  virtual void SegmentCrossPoint(float& x1i, float& y1i, float& x2i, float& y2i, float& x1j,
                                 float& y1j, float& x2j, float& y2j, float& xi, float& yi,
                                 bool& qInt) = 0;
};

/// Array helpers. Arrays are addressed from index 1.
class ztArrayTools {
 public:
  virtual ~ztArrayTools() = default;
  /// Keeps, in order, the elements of `values` whose mask entry equals keepFlag, shrinks `values`
  /// to them and sets `count`. A mask shorter than the data is fault 9 and leaves them as they
  /// were; a longer one is read as far as the data go. When nothing is kept, `values` comes back
  /// with bounds 1 to 1 and count 0.
  virtual void ApplyMask(Array1<Boolean>& mask, Array1<float>& values, std::int32_t& count,
                         bool& ok, bool& keepFlag) = 0;
  /// Removes in place the elements equal to nullValue (a NaN removes the NaN elements). `count` is
  /// the number kept, `removedList` the removed positions, `removedCount` their number. With
  /// nothing left (or nothing removed) the respective array has bounds 1 to 1.
  virtual void RemoveNullEntries(float& nullValue, Array1<float>& values, std::int32_t& count,
                                 Array1<std::int32_t>& removedList, std::int32_t& removedCount,
                                 bool& ok) = 0;
  /// Removes from `values` the elements at the first removedCount positions of `removedList`,
  /// which ascend; newCount is the number kept.
  virtual void RemoveListedEntries(Array1<std::int32_t>& removedList, std::int32_t& removedCount,
                                   Array1<float>& values, std::int32_t& newCount, bool& ok) = 0;
  /// Resizes arr to elements 1 to count, every element true. Fault 9 for a count below 1.
  virtual void InitialiseFlagArray(std::int32_t& count, bool& flagA, bool& flagB,
                                   Array1<Boolean>& arr, bool& ok) = 0;
};

/// Sorting.
class ztSortTools {
 public:
  virtual ~ztSortTools() = default;
  /// Sorts elements 1 to n into ascending order in place, NaN last, and sets qOK. On failure qOK
  /// is false and the values are still the same values in some order.
  virtual void SortAscending(Array1<float>& values, bool& qOK) = 0;
};

/// Calendar arithmetic, in day counts (see day_count).
class ztDateTools {
 public:
  virtual ~ztDateTools() = default;
  /// Day count of a date and back.
  virtual double DaysOfDate(Date date) = 0;
  virtual Date DateOfDays(double days) = 0;
  /// The moment `months` calendar months after `days` (before, when negative): the same day of the
  /// month, clamped to the month's end, at the same time of day. Fault 5 outside the calendar of
  /// automation dates (years 100 to 9999).
  virtual double AddMonths(double days, std::int64_t months) = 0;
  /// Whole months from the month of `from` to the month of `to`, days disregarded.
  virtual std::int64_t MonthsBetween(double from, double to) = 0;
};

class ztStatistics;  // of a room above, which alone makes and uses it

/// The thread's shared references. Each is empty until the first routine that needs it creates the
/// object; CLOSEALLCOMMONGLOBALS releases them all, in the order in which they stand here but for
/// the error sink, which is the last.
struct CommonGlobals {
  std::shared_ptr<ztErrorHandler> ErrorHandler;
  std::shared_ptr<ztCommonMaths> CommonMaths;
  std::shared_ptr<ztArrayTools> ArrayTools;
  std::shared_ptr<ztDateTools> DateTools;
  /// Works out the sums of the line fits.
  std::shared_ptr<ztStatistics> Statistics;
};

/// How this thread creates its companions. A host puts its own makers in place of the built-in
/// ones; a maker that throws or returns nothing makes the routine that needs it fail: error 7 when
/// memory has ended, else 429. The next routine that needs the companion asks again.
struct CompanionMakers {
  std::function<std::shared_ptr<ztErrorHandler>()> ErrorHandler;
  std::function<std::shared_ptr<ztCommonMaths>()> CommonMaths;
  std::function<std::shared_ptr<ztArrayTools>()> ArrayTools;
  std::function<std::shared_ptr<ztSortTools>()> SortTools;
  std::function<std::shared_ptr<ztDateTools>()> DateTools;
};

/// This thread's references and makers.
CommonGlobals& common_globals();
CompanionMakers& companion_makers();

/// The built-in makers.
CompanionMakers built_in_makers();

/// The thread's shared companions, created now if the reference is empty. The caller's copy keeps
/// the companion alive through its call, even when that call leads to a close-down.
std::shared_ptr<ztErrorHandler> error_handler();
std::shared_ptr<ztCommonMaths> common_maths();
std::shared_ptr<ztArrayTools> array_tools();
std::shared_ptr<ztDateTools> date_tools();

/// A new array companion and a new sort companion (held per statistics instance, never shared).
std::shared_ptr<ztArrayTools> create_array_tools();
std::shared_ptr<ztSortTools> create_sort_tools();

}  // namespace vqmath63
