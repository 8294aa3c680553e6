// What a report shows of a production table: its series by row and by period, their units, and what
// was done to the data, in words.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/commands/accumulation.hpp"
#include "host/commands/production.hpp"

namespace vqmath63::host {

/// What the user chose of the production table and its periods.
struct ReportChoice {
  ProductionChoice data;
  std::string period = "month";
  std::int32_t frequency = 1;
  std::optional<double> start;       ///< of reporting, a day count
  std::vector<std::string> units;    ///< "sm3" for all series, or "gas=ksm3" for one
  std::vector<std::string> stacked;  ///< series whose sum means something; empty: as told below
};

struct ReportSeries {
  std::string name;
  std::string unit;         ///< of its values; empty where nobody told it
  std::string volume_unit;  ///< of rate x days
  bool rate = true;
  std::span<const float> values;   ///< a row each
  std::span<const float> periods;  ///< a period each: mean of a rate, else the value at its end
  double volume = 0.0;             ///< of a rate, over all periods
  int colour = 8;                  ///< 1 to 7 in the order of the file; 8 for all others
};

struct ReportData {
  Production production;
  Accumulated accumulated;
  std::string period_words;     ///< "month", "3 months"
  std::vector<double> moments;  ///< of the rows, day counts
  std::vector<ReportSeries> series;
  std::vector<std::size_t> stacked;  ///< indices into series; none or at least two
  std::vector<std::string> story;    ///< sentences
  std::string path;

  /// "W-1, W-2 and W-3".
  std::string names_of(const std::vector<std::size_t>& which) const;
};

/// Reads and accumulates. Unless the user names them, what is stacked are the rates that are
/// numbered alike ("W-1", "W-2", ...), the largest such set, else all rates; of one unit in each
/// case.
///
/// A unit stands in a header, "oil (sm3/d)" or "oil [sm3/d]", or is given as that of volumes, of
/// which rates are so many a day.
ReportData read_report_data(const ReportChoice& choice);

/// A number in words: at most five digits, in groups.
std::string number_words(double value);

}  // namespace vqmath63::host
