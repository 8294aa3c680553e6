// ztAccumulate: a dated production profile onto calendar periods.
#pragma once

#include <cstdint>
#include <string>

#include "frame/array.hpp"
#include "frame/date.hpp"

namespace vqmath63 {

/// Turns a dated table of production data into one row per reporting period. The settings are
/// properties, none of which is validated when it is set; Accumulate does the work.
class ztAccumulate {
 public:
  /// Defaults: Period "Month", Frequency 1, StartDate and StartData the current date and time
  /// (read one after the other), AccumulateIndex 1, DataPeriod "day", Rates true, every column a
  /// rate.
  ztAccumulate();
  /// Resets the settings once more before the object goes away.
  ~ztAccumulate();
  ztAccumulate(const ztAccumulate&) = delete;
  ztAccumulate& operator=(const ztAccumulate&) = delete;

  /// Start of reporting.
  void put_StartDate(Date value) { start_date_ = value; }
  Date get_StartDate() const { return start_date_; }
  /// Stored, without effect.
  void put_Silent(bool value) { silent_ = value; }
  /// Reporting periods per row.
  void put_Frequency(std::int32_t value) { frequency_ = value; }
  std::int32_t get_Frequency() const { return frequency_; }
  /// Stored and returned, without effect on Accumulate: RateArray decides.
  void put_Rates(bool value) { rates_ = value; }
  bool get_Rates() const { return rates_; }
  /// Per column of the data (1 is the time column), true for a rate, false for a cumulative value.
  /// The array is copied.
  void put_RateArray(const Array1<const Boolean>& value);
  /// First row of the data that is used, from 1.
  void put_AccumulateIndex(std::int32_t value) { accumulate_index_ = value; }
  /// Period word in which the data count their time.
  void put_DataPeriod(std::string value) { data_period_ = std::move(value); }
  /// Reporting period word.
  void put_Period(std::string value) { period_ = std::move(value); }
  std::string get_Period() const { return period_; }
  /// Moment of time 0 of the data.
  void put_StartData(Date value) { start_data_ = value; }
  Date get_StartData() const { return start_data_; }
  /// Stored, without effect.
  void put_ProductionProfile(bool value) { production_profile_ = value; }

  /// Accumulates dArr (time column and series, one sample a row) into dAccumulate, one row per
  /// reporting period; see AccumulateData. Unless RateArray was set, every series is a rate. NaN:
  /// as a time error 5; in a series it is in the periods that its sample reaches into.
  void Accumulate(const Array2<const float>& dArr, Array2<float>& dAccumulate, bool& qOK);

 private:
  void InitAccumulate(bool& qOK);

  std::string period_;
  Date start_date_;
  Date start_data_;
  std::int32_t frequency_ = 0;
  std::int32_t accumulate_index_ = 0;
  std::string data_period_;
  bool silent_ = false;
  std::int32_t reserved_ = 0;  // set when initialised, never read
  bool production_profile_ = false;
  bool rates_ = false;
  bool rate_array_supplied_ = false;
  Array1<Boolean> rate_array_;
};

}  // namespace vqmath63
