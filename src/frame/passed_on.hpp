// Companions that pass every call on to another one, with something around each operation.
#pragma once

#include <memory>
#include <utility>

#include "frame/companions.hpp"

namespace vqmath63::passed_on {

/// What is common to all. An `Around` is made of references to the arguments of each operation,
/// and of nothing for the other companion's end, and lives for as long as the work lasts.
template <class Companion, class Around>
class PassedOn : public Companion {
 public:
  explicit PassedOn(std::shared_ptr<Companion> theirs) : theirs_(std::move(theirs)) {}
  ~PassedOn() override {
    [[maybe_unused]] const Around around;
    theirs_.reset();
  }

 protected:
  template <class Result, class... Parameters, class... Arguments>
  Result pass(Result (Companion::*operation)(Parameters...), Arguments&... arguments) {
    const Around around(arguments...);
    return ((*theirs_).*operation)(arguments...);
  }

 private:
  std::shared_ptr<Companion> theirs_;
};

template <class Around>
class ErrorHandler final : public PassedOn<ztErrorHandler, Around> {
 public:
  using PassedOn<ztErrorHandler, Around>::PassedOn;
  void ReportError(std::string& message, bool& flag) override {
    this->pass(&ztErrorHandler::ReportError, message, flag);
  }
  void SetLogToFile(bool& qLogToFile) override {
    this->pass(&ztErrorHandler::SetLogToFile, qLogToFile);
  }
  void SetLogFile(std::string& LOGFILE) override {
    this->pass(&ztErrorHandler::SetLogFile, LOGFILE);
  }
  void SetVersionText(std::string& text) override {
    this->pass(&ztErrorHandler::SetVersionText, text);
  }
};

template <class Around>
class CommonMaths final : public PassedOn<ztCommonMaths, Around> {
 public:
  using PassedOn<ztCommonMaths, Around>::PassedOn;
  double VectorAngle(double X, double Y) override {
    return this->pass(&ztCommonMaths::VectorAngle, X, Y);
  }
  void PolarToRectangular(double Radius, double Theta, double& X, double& Y) override {
    this->pass(&ztCommonMaths::PolarToRectangular, Radius, Theta, X, Y);
  }
  void RectangularToPolar(double X, double Y, double& Radius, double& Theta) override {
    this->pass(&ztCommonMaths::RectangularToPolar, X, Y, Radius, Theta);
  }
  double ArcTan(double x) override { return this->pass(&ztCommonMaths::ArcTan, x); }
  std::int32_t CeilToLong(double X) override { return this->pass(&ztCommonMaths::CeilToLong, X); }
  double CeilToDouble(double X) override { return this->pass(&ztCommonMaths::CeilToDouble, X); }
  std::int32_t FloorToLong(double X) override { return this->pass(&ztCommonMaths::FloorToLong, X); }
  double FloorToDouble(double X) override { return this->pass(&ztCommonMaths::FloorToDouble, X); }
  void BracketIndex(float& value, Array1<float>& list, std::int32_t& lower, std::int32_t& upper,
                    std::int32_t& spare) override {
    this->pass(&ztCommonMaths::BracketIndex, value, list, lower, upper, spare);
  }
  void InterpolateTable(Array1<float>& abscissae, std::int32_t& x_column, std::int32_t& y_column,
                        Array2<float>& table, bool& ok, std::int32_t& mode) override {
    this->pass(&ztCommonMaths::InterpolateTable, abscissae, x_column, y_column, table, ok, mode);
  }
  void SegmentCrossPoint(float& x1i, float& y1i, float& x2i, float& y2i, float& x1j, float& y1j,
                         float& x2j, float& y2j, float& xi, float& yi, bool& qInt) override {
    this->pass(&ztCommonMaths::SegmentCrossPoint, x1i, y1i, x2i, y2i, x1j, y1j, x2j, y2j, xi, yi,
               qInt);
  }
};

template <class Around>
class ArrayTools final : public PassedOn<ztArrayTools, Around> {
 public:
  using PassedOn<ztArrayTools, Around>::PassedOn;
  void ApplyMask(Array1<Boolean>& mask, Array1<float>& values, std::int32_t& count, bool& ok,
                 bool& keepFlag) override {
    this->pass(&ztArrayTools::ApplyMask, mask, values, count, ok, keepFlag);
  }
  void RemoveNullEntries(float& nullValue, Array1<float>& values, std::int32_t& count,
                         Array1<std::int32_t>& removedList, std::int32_t& removedCount,
                         bool& ok) override {
    this->pass(&ztArrayTools::RemoveNullEntries, nullValue, values, count, removedList,
               removedCount, ok);
  }
  void RemoveListedEntries(Array1<std::int32_t>& removedList, std::int32_t& removedCount,
                           Array1<float>& values, std::int32_t& newCount, bool& ok) override {
    this->pass(&ztArrayTools::RemoveListedEntries, removedList, removedCount, values, newCount, ok);
  }
  void InitialiseFlagArray(std::int32_t& count, bool& flagA, bool& flagB, Array1<Boolean>& arr,
                           bool& ok) override {
    this->pass(&ztArrayTools::InitialiseFlagArray, count, flagA, flagB, arr, ok);
  }
};

template <class Around>
class SortTools final : public PassedOn<ztSortTools, Around> {
 public:
  using PassedOn<ztSortTools, Around>::PassedOn;
  void SortAscending(Array1<float>& values, bool& qOK) override {
    this->pass(&ztSortTools::SortAscending, values, qOK);
  }
};

template <class Around>
class DateTools final : public PassedOn<ztDateTools, Around> {
 public:
  using PassedOn<ztDateTools, Around>::PassedOn;
  double DaysOfDate(Date date) override { return this->pass(&ztDateTools::DaysOfDate, date); }
  Date DateOfDays(double days) override { return this->pass(&ztDateTools::DateOfDays, days); }
  double AddMonths(double days, std::int64_t months) override {
    return this->pass(&ztDateTools::AddMonths, days, months);
  }
  std::int64_t MonthsBetween(double from, double to) override {
    return this->pass(&ztDateTools::MonthsBetween, from, to);
  }
};

}  // namespace vqmath63::passed_on
