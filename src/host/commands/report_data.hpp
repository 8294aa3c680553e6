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
  std::string header;       ///< of its column
  std::string unit;         ///< of its values; empty where nobody told it
  std::string volume_unit;  ///< of rate x days
  bool rate = true;
  std::span<const float> values;   ///< a moment each, of the interval that ends there
  std::span<const float> periods;  ///< a period each: mean of a rate, else the value at its end
  std::vector<double> volumes{};   ///< of a rate, a period each
  double volume = 0.0;             ///< their sum
  int colour = 8;                  ///< 1 to 7 in the order of the file; 8 for all others
  std::size_t members = 1;         ///< how many groups of the file it is the sum of
};

struct ReportData {
  std::string path;
  std::string what;                ///< which series of records these are the groups of; else empty
  std::string period_words;        ///< "month", "3 months"
  std::string row_word = "row";    ///< what ends at the moments, "day" of records
  std::size_t rows = 0;            ///< of the file
  std::vector<double> moments;     ///< day counts
  std::size_t first_value = 0;     ///< of the moments, the first that has values
  std::vector<double> boundaries;  ///< of the periods, one more than there are
  std::vector<ReportSeries> series;
  std::vector<std::size_t> stacked;  ///< indices into series; none or at least two
  std::vector<std::string> story;    ///< sentences

  std::size_t periods() const { return boundaries.size() - 1; }
  double days(std::size_t period) const { return boundaries[period + 1] - boundaries[period]; }
  /// "W-1, W-2 and W-3".
  std::string names_of(const std::vector<std::size_t>& which) const;
  /// A title of what is shown, and a name of a place in the page.
  std::string titled(const std::string& title) const;
  std::string place(const std::string& name) const;

  // What the series' values lie in.
  Production production;
  Accumulated accumulated;
  std::vector<std::vector<float>> numbers;
};

/// Reads and accumulates a table of one field. Unless the user names them, what is stacked are the
/// rates that are numbered alike ("W-1", "W-2", ...), the largest such set, else all rates; of one
/// unit in each case.
ReportData read_report_data(const ReportChoice& choice);

/// What amounts count whose unit nobody told.
inline constexpr const char* kUnitsOfTheFile = "units";

/// Names a series after its column: a unit stands in a header, "oil (sm3/d)" or "oil [sm3/d]", of
/// an amount "oil (sm3)".
void name_series(ReportSeries& series, const std::string& header, bool amount);

/// Gives series the units that the user told, which are of volumes; rates are so many a day.
/// UsageError for a name that is no series.
void take_units(std::vector<ReportSeries*> series, const std::vector<std::string>& units);

/// Colours of their own for the largest volumes, in the order of the file.
void give_colours(std::vector<ReportSeries>& series);

/// "rows of the file", "days".
inline std::string row_words(const ReportData& data) {
  return data.row_word == "row" ? "rows of the file" : data.row_word + "s";
}

/// The last part of a path, which is what a page that is sent tells of it; "standard input" for -.
std::string file_name(const std::string& path);

/// "month", "3 months".
std::string period_words(const ReportChoice& choice);

/// A sentence of a note that a command would print.
std::string sentence(std::string note);

/// A number in words: at most five digits, in groups.
std::string number_words(double value);

}  // namespace vqmath63::host
