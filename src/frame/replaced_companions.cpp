#include "frame/replaced_companions.hpp"

#include <utility>

#include "frame/host_code.hpp"

namespace vqmath63 {
namespace {

/// What is common to all: the host's companion, whose end runs its code too.
template <class Companion>
class Replaced : public Companion {
 public:
  explicit Replaced(std::shared_ptr<Companion> theirs) : theirs_(std::move(theirs)) {}
  ~Replaced() override {
    const HostCode code;
    theirs_.reset();
  }

 protected:
  template <class Result, class... Parameters, class... Arguments>
  Result pass(Result (Companion::*operation)(Parameters...), Arguments&... arguments) {
    const HostCode code;
    return ((*theirs_).*operation)(arguments...);
  }

 private:
  std::shared_ptr<Companion> theirs_;
};

class ReplacedErrorHandler final : public Replaced<ztErrorHandler> {
 public:
  using Replaced::Replaced;
  void ReportError(std::string& message, bool& flag) override {
    pass(&ztErrorHandler::ReportError, message, flag);
  }
  void SetLogToFile(bool& qLogToFile) override { pass(&ztErrorHandler::SetLogToFile, qLogToFile); }
  void SetLogFile(std::string& LOGFILE) override { pass(&ztErrorHandler::SetLogFile, LOGFILE); }
  void SetVersionText(std::string& text) override { pass(&ztErrorHandler::SetVersionText, text); }
};

class ReplacedCommonMaths final : public Replaced<ztCommonMaths> {
 public:
  using Replaced::Replaced;
  double VectorAngle(double X, double Y) override {
    return pass(&ztCommonMaths::VectorAngle, X, Y);
  }
  void PolarToRectangular(double Radius, double Theta, double& X, double& Y) override {
    pass(&ztCommonMaths::PolarToRectangular, Radius, Theta, X, Y);
  }
  void RectangularToPolar(double X, double Y, double& Radius, double& Theta) override {
    pass(&ztCommonMaths::RectangularToPolar, X, Y, Radius, Theta);
  }
  double ArcTan(double x) override { return pass(&ztCommonMaths::ArcTan, x); }
  std::int32_t CeilToLong(double X) override { return pass(&ztCommonMaths::CeilToLong, X); }
  double CeilToDouble(double X) override { return pass(&ztCommonMaths::CeilToDouble, X); }
  std::int32_t FloorToLong(double X) override { return pass(&ztCommonMaths::FloorToLong, X); }
  double FloorToDouble(double X) override { return pass(&ztCommonMaths::FloorToDouble, X); }
  void BracketIndex(float& value, Array1<float>& list, std::int32_t& lower, std::int32_t& upper,
                    std::int32_t& spare) override {
    pass(&ztCommonMaths::BracketIndex, value, list, lower, upper, spare);
  }
  void InterpolateTable(Array1<float>& abscissae, std::int32_t& x_column, std::int32_t& y_column,
                        Array2<float>& table, bool& ok, std::int32_t& mode) override {
    pass(&ztCommonMaths::InterpolateTable, abscissae, x_column, y_column, table, ok, mode);
  }
  void SegmentCrossPoint(float& x1i, float& y1i, float& x2i, float& y2i, float& x1j, float& y1j,
                         float& x2j, float& y2j, float& xi, float& yi, bool& qInt) override {
    pass(&ztCommonMaths::SegmentCrossPoint, x1i, y1i, x2i, y2i, x1j, y1j, x2j, y2j, xi, yi, qInt);
  }
};

class ReplacedArrayTools final : public Replaced<ztArrayTools> {
 public:
  using Replaced::Replaced;
  void ApplyMask(Array1<Boolean>& mask, Array1<float>& values, std::int32_t& count, bool& ok,
                 bool& keepFlag) override {
    pass(&ztArrayTools::ApplyMask, mask, values, count, ok, keepFlag);
  }
  void RemoveNullEntries(float& nullValue, Array1<float>& values, std::int32_t& count,
                         Array1<std::int32_t>& removedList, std::int32_t& removedCount,
                         bool& ok) override {
    pass(&ztArrayTools::RemoveNullEntries, nullValue, values, count, removedList, removedCount, ok);
  }
  void RemoveListedEntries(Array1<std::int32_t>& removedList, std::int32_t& removedCount,
                           Array1<float>& values, std::int32_t& newCount, bool& ok) override {
    pass(&ztArrayTools::RemoveListedEntries, removedList, removedCount, values, newCount, ok);
  }
  void InitialiseFlagArray(std::int32_t& count, bool& flagA, bool& flagB, Array1<Boolean>& arr,
                           bool& ok) override {
    pass(&ztArrayTools::InitialiseFlagArray, count, flagA, flagB, arr, ok);
  }
};

class ReplacedSortTools final : public Replaced<ztSortTools> {
 public:
  using Replaced::Replaced;
  void SortAscending(Array1<float>& values, bool& qOK) override {
    pass(&ztSortTools::SortAscending, values, qOK);
  }
};

class ReplacedDateTools final : public Replaced<ztDateTools> {
 public:
  using Replaced::Replaced;
  double DaysOfDate(Date date) override { return pass(&ztDateTools::DaysOfDate, date); }
  Date DateOfDays(double days) override { return pass(&ztDateTools::DateOfDays, days); }
  double AddMonths(double days, std::int64_t months) override {
    return pass(&ztDateTools::AddMonths, days, months);
  }
  std::int64_t MonthsBetween(double from, double to) override {
    return pass(&ztDateTools::MonthsBetween, from, to);
  }
};

}  // namespace

std::shared_ptr<ztErrorHandler> as_host_code(std::shared_ptr<ztErrorHandler> theirs) {
  return std::make_shared<ReplacedErrorHandler>(std::move(theirs));
}
std::shared_ptr<ztCommonMaths> as_host_code(std::shared_ptr<ztCommonMaths> theirs) {
  return std::make_shared<ReplacedCommonMaths>(std::move(theirs));
}
std::shared_ptr<ztArrayTools> as_host_code(std::shared_ptr<ztArrayTools> theirs) {
  return std::make_shared<ReplacedArrayTools>(std::move(theirs));
}
std::shared_ptr<ztSortTools> as_host_code(std::shared_ptr<ztSortTools> theirs) {
  return std::make_shared<ReplacedSortTools>(std::move(theirs));
}
std::shared_ptr<ztDateTools> as_host_code(std::shared_ptr<ztDateTools> theirs) {
  return std::make_shared<ReplacedDateTools>(std::move(theirs));
}

}  // namespace vqmath63
