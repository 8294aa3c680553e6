// ztAccumulate: a dated production profile onto calendar periods.
#pragma once

#include <cstdint>
#include <string>

#include "frame/array.hpp"
#include "frame/date.hpp"

namespace vqmath63 {

/// Turns a dated table of production data into one row per reporting period. The settings are
/// properties, none of which is validated when it is set; Accumulate does the work.
///
/// @failure A value that Accumulate cannot use fails there, not where it is set.
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

  /// Start of reporting: period k ends k x Frequency x Period after it. At first the moment of
  /// creation.
  /// @param value a date and time, local
  /// @return the date and time
  void put_StartDate(Date value) { start_date_ = value; }
  Date get_StartDate() const { return start_date_; }
  /// Stored, without effect.
  /// @param value True or False
  void put_Silent(bool value) { silent_ = value; }
  /// Periods per row, 1 at first. Below 1 Accumulate fails (5).
  /// @param value 1 or more
  /// @return the number last set
  void put_Frequency(std::int32_t value) { frequency_ = value; }
  std::int32_t get_Frequency() const { return frequency_; }
  /// Stored and returned, without effect on Accumulate: RateArray decides.
  /// @param value True or False
  /// @return the value last set
  void put_Rates(bool value) { rates_ = value; }
  bool get_Rates() const { return rates_; }
  /// Per column of the data (1 is the time column), true for a rate, false for a cumulative value.
  /// The array is copied. A column beyond its end fails in Accumulate (9).
  /// @param value an element a column, from 1 on
  void put_RateArray(const Array1<const Boolean>& value);
  /// First row of the data that is used, 1 at first. Outside the rows Accumulate fails (9).
  /// @param value a row of the data, from 1 on
  void put_AccumulateIndex(std::int32_t value) { accumulate_index_ = value; }
  /// Unit in which column 1 of the data counts time, a word as of Period; "day" at first. With any
  /// other word Accumulate fails (5).
  /// @param value a period word
  void put_DataPeriod(std::string value) { data_period_ = std::move(value); }
  /// Reporting period: minute, hour, day, week, month, bi-monthly, quarter, half-year or year, in
  /// any letter case, all but bi-monthly in the plural too; "Month" at first. From month on periods
  /// go by the calendar. With any other word qOK of Accumulate is false, without a message.
  /// @param value a period word
  /// @return the word last set
  void put_Period(std::string value) { period_ = std::move(value); }
  std::string get_Period() const { return period_; }
  /// Moment of time 0 of the data; at first that of creation.
  /// @param value a date and time, local
  /// @return the date and time
  void put_StartData(Date value) { start_data_ = value; }
  Date get_StartData() const { return start_data_; }
  /// Stored, without effect.
  /// @param value True or False
  void put_ProductionProfile(bool value) { production_profile_ = value; }

  /// Accumulates dArr (time column and series, one sample a row) into dAccumulate, one row per
  /// reporting period that the data cover: column 1 the days from the start of the first period to
  /// the end of this one, then of a rate its mean over the period, of a cumulative its value at the
  /// end. A rate is the mean of the interval that ends at its sample. Unless RateArray was set,
  /// every series is a rate. qOK true and dAccumulate re-dimensioned when all went well. Fails (5)
  /// for a time that steps back, and when nothing lies after StartDate. NaN: as a time error 5; in
  /// a series it is in the periods that its sample reaches into.
  /// $$ \bar q_k = \frac{1}{t_k - t_{k-1}} \int_{t_{k-1}}^{t_k} q(t) \, dt $$
  /// @param dArr rows of samples: column 1 the time since StartData in units of DataPeriod, not
  /// stepping back; further columns rates or cumulative values
  /// @param dAccumulate receives a row a period: column 1 elapsed days, further columns in the
  /// units of the data
  /// @param qOK receives True where all went well
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
