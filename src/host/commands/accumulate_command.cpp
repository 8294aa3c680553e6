// The command that accumulates a dated production table onto reporting periods.
#include <iostream>
#include <memory>

#include "host/client/message_sink.hpp"
#include "host/command_line.hpp"
#include "host/commands/accumulate_records.hpp"
#include "host/commands/accumulation.hpp"
#include "host/commands/period_table.hpp"
#include "host/commands/production.hpp"
#include "host/data/output.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr const char* kNotes =
    "The file has a header and, row by row in ascending time, a first column of dates (YYYY-MM-DD\n"
    "or YYYY-MM-DD hh:mm) or of numbers, then series. A rate is the mean of the interval that "
    "ends\n"
    "at its row. Of each period the table has the mean of a rate and the last value of a\n"
    "cumulative series. Only what the rows cover is reported. Times and values are Singles of 24\n"
    "bits: period ends are shown as the roundest clock time within that precision (20 seconds at\n"
    "ten years).\n";

// What is there to know of records, with where their intervals lie.
constexpr const char* kRecords =
    "\nRecords, with any of --by, --volumes, --stamp, --gap and the options below them: dated "
    "rows\n"
    "of one or of many wells, as many as there are. Periods go by the calendar unless --start "
    "says\n"
    "otherwise, and have the mean of a rate over the days of the group's rows, the sum of an "
    "amount,\n"
    "the last cumulative value. Where the row of the 4th is missing:\n"
    "\n"
    "  row of             1    2    3         5\n"
    "  --stamp end     +--1-+--2-+--3-+.gap.+--5-+\n"
    "  --stamp begin        +--1-+--2-+--3-+.gap.+--5-+\n"
    "  day                  1    2    3     4    5     6\n"
    "\n"
    "  --gap zero           nothing in the gap\n"
    "  --gap hold           the gap is a part of the row beside it, whose rate it has and over\n"
    "                       which that row's amount is spread\n"
    "\n";

constexpr const char* kExamples =
    "Examples: vqhost accumulate samples/field_wells.csv --start 2015-01-01 --period quarter\n"
    "            --cumulative field_oil_cum\n"
    "          vqhost accumulate samples/months.csv --time month --start-data 2023-01-31 -o "
    "out.csv\n"
    "          vqhost accumulate samples/daily_records.csv --by well --stamp begin --total\n"
    "            --volumes oil_vol,gas_vol,water_vol --period quarter";

std::string notes() {
  return std::string(kNotes) + "Period words: " + period_words_text() + ".\n" + kRecords +
         kExamples;
}

struct Options {
  ProductionChoice data;
  std::optional<std::string> data_period;
  std::string columns;
  std::string cumulative;
  std::optional<std::string> start_data;
  std::optional<std::string> start;
  PeriodSettings periods;
  RecordOptions records;
  Output output;
};

int run(Options options) {
  check_output(options.output, options.data.path);
  const auto format = options.records.dates();
  options.data.start_data = moment_option(options.start_data, "--start-data", format);
  const auto start = moment_option(options.start, "--start", format);
  if (!options.columns.empty()) options.data.columns = split(options.columns, ',');
  if (!options.cumulative.empty()) options.data.cumulative = split(options.cumulative, ',');
  if (options.records.any()) {
    if (options.start_data || options.data_period || options.periods.from_row > 1) {
      throw UsageError(
          "records have dates: --time, --start-data and --from-row say nothing of them");
    }
    accumulate_records(options.records,
                       {options.data.path, options.data.columns, options.data.cumulative,
                        options.data.empty_as, start, options.periods, options.output});
    return kSuccess;
  }
  options.data.from_row = static_cast<std::size_t>(options.periods.from_row);

  const Production production = read_production(options.data);
  options.periods.data_period = options.data_period.value_or("day");
  const std::string& word = options.periods.data_period;
  if (production.dated && !same_letters(word, "day") && !same_letters(word, "days")) {
    throw UsageError("--time " + word + ": the first column of " + options.data.path +
                     " holds dates, which need no period word");
  }
  for (const auto* notes : {&production.left_out, &production.doubts, &production.notes}) {
    for (const std::string& note : *notes) std::cerr << "vqhost: " << note << '\n';
  }
  const MessageSink sink;
  options.periods.start = start.value_or(production.start_data);
  const Accumulated accumulated = accumulate(production, options.periods);
  put_periods(options.output, production, accumulated);
  return kSuccess;
}

void declare(Command& command) {
  const auto options = std::make_shared<Options>();
  Options& o = *options;
  o.periods.period = "month";
  command.argument("FILE", o.data.path, "CSV file with a header; - reads the standard input")
      .option("--time,--data-period", "WORD", o.data_period,
              "Period word in which a first column of numbers counts (default day)")
      .option("--start-data", "DATE", o.start_data,
              "Moment of time 0 (default: the first date; needed with numbers)")
      .option("--start", "DATE", o.start, "Start of reporting (default: the same)")
      .option("--period", "WORD", o.periods.period, "Reporting period word (default month)")
      .count("--frequency", o.periods.frequency, "Periods per row (default 1)")
      .option("--columns", "COL,...", o.columns,
              "Series by header or number (default: all columns of numbers)")
      .option("--cumulative", "COL,...", o.cumulative,
              "Series that are cumulative values; all others are rates")
      .count("--from-row", o.periods.from_row, "First row used (default 1)")
      .option("--empty-as", "VALUE", o.data.empty_as, "Value of missing cells (default: an error)")
      .output(o.output);
  declare_records(command, o.records);
  command.notes(&notes).does([options] { return run(*options); });
}

const RegisteredCommand kRegistered{
    "accumulate", "Accumulate a dated production table onto calendar periods", &declare};

}  // namespace
}  // namespace vqmath63::host
