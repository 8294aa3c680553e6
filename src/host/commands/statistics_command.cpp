// The command that summarises the columns of a file, and shows their histograms.
#include <algorithm>
#include <cmath>
#include <iostream>
#include <memory>

#include "host/client/dispatch_client.hpp"
#include "host/client/message_sink.hpp"
#include "host/command_line.hpp"
#include "host/data/columns.hpp"
#include "host/data/csv.hpp"
#include "host/data/output.hpp"
#include "host/data/values.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr const char* kNotes =
    "Of each column of numbers one row: n, the number of values; nulls, those removed; their\n"
    "mean; their standard deviations with divisor n (sd_n) and n - 1 (sd_n1); the smallest value,\n"
    "first quartile, median, third quartile and largest value. Of an odd n the middle value\n"
    "belongs to both halves of which the quartiles are medians; of an even n the upper half\n"
    "begins with value n/2. Values are Singles of 24 bits, and so are the sums that mean and\n"
    "deviations come from: beside a mean thousands of times larger, a deviation has no digits.\n"
    "A bin of a histogram holds its lower edge, the last one both edges; bars are scaled down to\n"
    "at most 50 characters where a count is larger. With --format or -o there is one table, that\n"
    "of the bins where --histogram asks for them.\n"
    "Examples: vqhost statistics samples/field_wells.csv\n"
    "          vqhost statistics samples/field_wells.csv --columns W-1,W-2 --null 0 --empty-as 0\n"
    "          vqhost statistics samples/field_wells.csv --columns W-1 --histogram 12";

constexpr std::int32_t kMostBins = 1000;

struct Options {
  std::string path;
  std::string columns;
  std::optional<double> null;
  std::optional<double> empty_as;
  std::int32_t bins = 0;  // 0: no histogram
  Output output;
};

// A column of the file as the component takes it.
struct Series {
  std::string name;
  ArrayOwner values;  // Singles
  std::size_t rows = 0;
  std::size_t nulls = 0;
};

// What is told of one column; a measure that could not be worked out is empty.
struct Summary {
  std::string name;
  std::size_t n = 0;
  std::size_t nulls = 0;
  std::optional<float> mean{};
  std::optional<float> sigma_n{};
  std::optional<float> sigma_n1{};
  std::optional<float> minimum{};
  std::optional<float> first_quartile{};
  std::optional<float> median{};
  std::optional<float> third_quartile{};
  std::optional<float> maximum{};
};

std::string bar(float count, float largest) {
  constexpr float kLongest = 50.0F;
  const float length = largest > kLongest ? count / largest * kLongest : count;
  const auto characters = static_cast<std::size_t>(std::lround(length));
  return std::string(count > 0.0F ? std::max<std::size_t>(characters, 1) : 0, '#');
}

// A row for each summary; what is empty is a dash to a reader.
void put_summaries(const Output& output, const std::vector<Summary>& summaries) {
  std::vector<TableColumn> columns{{"column", Align::kLeft}};
  for (const char* name :
       {"n", "nulls", "mean", "sd_n", "sd_n1", "min", "q1", "median", "q3", "max"}) {
    columns.push_back({name});
  }
  const char* const empty = output.for_reading() ? "-" : "";
  put_table(output, std::move(columns), [&](TableWriter& table) {
    for (const Summary& s : summaries) {
      Texts row{s.name, std::to_string(s.n), std::to_string(s.nulls)};
      for (const auto& value : {s.mean, s.sigma_n, s.sigma_n1, s.minimum, s.first_quartile,
                                s.median, s.third_quartile, s.maximum}) {
        row.push_back(value ? plain_text(*value) : empty);
      }
      table.row(row);
    }
  });
}

// A series in bins.
struct Histogram {
  const Series* series;
  ArrayOwner centres{};  // none where it could not be worked out
  ArrayOwner counts{};

  std::size_t bins() const {
    return centres.get() == nullptr ? 0 : centres.get()->rgsabound[0].cElements;
  }
  float centre(std::size_t k) const { return static_cast<float*>(centres.get()->pvData)[k]; }
  float count(std::size_t k) const { return static_cast<float*>(counts.get()->pvData)[k]; }
};

// To be read: centre, count and a bar of one character each, or scaled so that the largest count
// has 50; a count above 0 shows at least one.
void show(const Histogram& histogram) {
  const Series& series = *histogram.series;
  const std::size_t bins = histogram.bins();
  std::cout << '\n' << series.name << ": " << counted(series.rows, "value");
  if (series.rows > 0) std::cout << (bins == 0 ? ", no histogram" : " in " + counted(bins, "bin"));
  std::cout << '\n';
  if (bins == 0) return;
  float largest = 0.0F;
  for (std::size_t k = 0; k < bins; ++k) largest = std::max(largest, histogram.count(k));
  put_table({}, {{"  centre"}, {"count"}, {"", Align::kLeft}}, [&](TableWriter& table) {
    for (std::size_t k = 0; k < bins; ++k) {
      table.row({plain_text(histogram.centre(k)), plain_text(histogram.count(k)),
                 bar(histogram.count(k), largest)});
    }
  });
}

void put_bins(const Output& output, const std::vector<Histogram>& histograms) {
  put_table(output, {{"column", Align::kLeft}, {"centre"}, {"count"}}, [&](TableWriter& table) {
    for (const Histogram& histogram : histograms) {
      for (std::size_t k = 0; k < histogram.bins(); ++k) {
        table.row({histogram.series->name, plain_text(histogram.centre(k)),
                   plain_text(histogram.count(k))});
      }
    }
  });
}

// The chosen columns, by default all of numbers; the others are told of.
std::vector<Series> read_series(const Options& options) {
  const CsvFile file(options.path);
  std::vector<std::size_t> chosen;
  if (!options.columns.empty()) {
    for (const std::string& name : split(options.columns, ',')) {
      const std::size_t c = file.column(name);
      if (std::find(chosen.begin(), chosen.end(), c) == chosen.end()) chosen.push_back(c);
    }
  }
  const bool all = chosen.empty();
  CsvReading reading;
  reading.empty_as = options.empty_as;
  reading.wants.assign(file.headers().size(), all ? Want::kNumbersIfAny : Want::kNothing);
  for (const std::size_t c : chosen) reading.wants[c] = Want::kNumbers;
  tell_notes(file);
  CsvTable table = read_rows(file, reading);
  for (std::size_t c = 0; all && c < table.columns.size(); ++c) {
    if (!table.columns[c].values.empty()) {
      chosen.push_back(c);
    } else {
      std::cerr << "vqhost: column '" << file.headers()[c]
                << "' holds no numbers and is left out\n";
    }
  }
  if (chosen.empty()) throw WorkError(file.path() + ": there is no column of numbers");
  std::vector<Series> series;
  for (const std::size_t c : chosen) {
    series.push_back({file.headers()[c], singles(file, table, c), table.lines.size()});
    table.columns[c].values = {};
  }
  return series;
}

Value lent(const ArrayOwner& array, SAFEARRAY*& place) {
  place = array.get();
  return Value::array_reference(VT_R4, &place);
}

void remove_nulls(DispatchObject& statistics, double null, Series& series) {
  Value left = Value::whole_number(0);
  ArrayOwner kept;
  SAFEARRAY* place = nullptr;
  std::vector<Argument> arguments;
  arguments.push_back({Value::number(null)});
  arguments.push_back({lent(series.values, place)});
  arguments.push_back({Value::array_reference(VT_R4, kept.place())});
  arguments.push_back({Value::reference(left)});
  if (!statistics.succeeds("RemoveNulls", std::move(arguments))) {
    throw WorkError("column '" + series.name + "': RemoveNulls did not succeed: qOK is False");
  }
  const auto rows = static_cast<std::size_t>(left.get().lVal);
  series.nulls = series.rows - rows;
  series.rows = rows;
  std::swap(*series.values.place(), *kept.place());
}

float measure(DispatchObject& statistics, const char* member, const Series& series,
              std::int32_t quartile = 0) {
  SAFEARRAY* place = nullptr;
  std::vector<Argument> arguments;
  arguments.push_back({lent(series.values, place)});
  if (quartile != 0) arguments.push_back({Value::whole_number(quartile)});
  return statistics.call(member, std::move(arguments)).get().fltVal;
}

// What the component tells of a series; `failures` counts the series whose sums leave the range of
// Single.
Summary summary(DispatchObject& statistics, const Series& series, int& failures) {
  Summary told{series.name, series.rows, series.nulls};
  if (series.rows == 0) return told;
  SAFEARRAY* place = nullptr;
  std::vector<Argument> arguments;
  arguments.push_back({lent(series.values, place)});
  if (statistics.succeeds("BasicStatistics", std::move(arguments))) {
    told.mean = statistics.get("xBar").get().fltVal;
    told.sigma_n = statistics.get("xSigmaN").get().fltVal;
    told.sigma_n1 = statistics.get("xSigmaN1").get().fltVal;
  } else {
    std::cerr << "vqhost: column '" << series.name
              << "': BasicStatistics did not succeed: qOK is False\n";
    ++failures;
  }
  told.minimum = measure(statistics, "Minimum", series);
  told.first_quartile = measure(statistics, "Quartile", series, 1);
  told.median = measure(statistics, "Median", series);
  told.third_quartile = measure(statistics, "Quartile", series, 3);
  told.maximum = measure(statistics, "Maximum", series);
  return told;
}

// Counts a series into bins; `failures` counts those that could not be.
Histogram histogram_of(DispatchObject& sample, const Series& series, std::int32_t bins,
                       int& failures) {
  Histogram histogram{&series};
  if (series.rows == 0) return histogram;
  SAFEARRAY* place = nullptr;
  std::vector<Argument> arguments;
  arguments.push_back({lent(series.values, place)});
  arguments.push_back({Value::whole_number(bins)});
  arguments.push_back({Value::array_reference(VT_R4, histogram.centres.place())});
  arguments.push_back({Value::array_reference(VT_R4, histogram.counts.place())});
  if (!sample.succeeds("BinVector", std::move(arguments))) {
    std::cerr << "vqhost: column '" << series.name
              << "': BinVector did not succeed: qOK is False\n";
    ++failures;
    return {&series};
  }
  return histogram;
}

int run(const Options& options) {
  check_output(options.output, options.path);
  check_single("--null", options.null);
  check_single("--empty-as", options.empty_as);
  std::vector<Series> all = read_series(options);
  const MessageSink sink;
  DispatchObject statistics = DispatchObject::create("ztStatistics");
  DispatchObject sample = DispatchObject::create("ztSample");
  int failures = 0;
  std::vector<Summary> summaries;
  for (Series& series : all) {
    if (options.null) remove_nulls(statistics, *options.null, series);
    summaries.push_back(summary(statistics, series, failures));
  }
  std::vector<Histogram> histograms;
  for (const Series& series : all) {
    if (options.bins == 0) break;
    histograms.push_back(histogram_of(sample, series, options.bins, failures));
  }
  if (options.bins > 0 && !options.output.among_words()) {
    put_bins(options.output, histograms);
  } else {
    put_summaries(options.output, summaries);
    for (const Histogram& histogram : histograms) show(histogram);
  }
  return failures == 0 ? kSuccess : kWorkFailed;
}

void declare(Command& command) {
  const auto options = std::make_shared<Options>();
  Options& o = *options;
  command.argument("FILE", o.path, "CSV file with a header; - reads the standard input")
      .option("--columns", "COL,...", o.columns,
              "Columns by header or number (default: all columns of numbers)")
      .option("--null", "VALUE", o.null, "Remove this value before all else")
      .option("--empty-as", "VALUE", o.empty_as,
              "Value of missing cells (default: an error); that of --null makes them nulls")
      .count("--histogram", o.bins, "Also show a histogram of so many bins (1 to 1000)", kMostBins)
      .output(o.output)
      .notes(kNotes)
      .does([options] { return run(*options); });
}

const RegisteredCommand kRegistered{"statistics", "Summarise the columns of numbers of a file",
                                    &declare};

}  // namespace
}  // namespace vqmath63::host
