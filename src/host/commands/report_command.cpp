// The command that makes a page of pictures and tables of a production table.
#include <memory>

#include "host/client/message_sink.hpp"
#include "host/command_line.hpp"
#include "host/commands/report_decline.hpp"
#include "host/commands/report_fluid.hpp"
#include "host/commands/report_production.hpp"
#include "host/commands/report_records.hpp"
#include "host/data/columns.hpp"
#include "host/data/output.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr const char* kNotes =
    "The file is one that 'vqhost accumulate' takes: a first column of dates in ascending order, "
    "or\n"
    "of days with --start-data, then series; a rate is the mean of the interval that ends at its\n"
    "row. The page stands on its own: pictures, tables, the numbers as CSV to copy, and what was\n"
    "done to the data in words. It asks nothing of the network. A unit in a header, 'oil "
    "(sm3/d)',\n"
    "is taken from there. Stacked are the series that are numbered alike, W-1, W-2, else all "
    "rates\n"
    "of the first one's unit. The decline is an exponential line through the rows from the "
    "largest\n"
    "rate on. Fluid tables are those of 'vqhost volume-factor'; one makes a page without a FILE "
    "too.\n"
    "Long records, rows of many wells, are taken with --by and the options of 'vqhost "
    "accumulate'.\n"
    "Examples: vqhost report samples/field_wells.csv --cumulative field_oil_cum --unit sm3\n"
    "            --period quarter --decline W-1 --limit 50 -o report.html\n"
    "          vqhost report --live samples/live_oil.csv --points samples/fluid_points.csv\n"
    "            -o fluid.html";

struct Options {
  ReportChoice report;
  RecordOptions records;
  DeclineChoice decline;
  FluidChoice fluid;
  std::string columns;
  std::string cumulative;
  std::string stacked;
  std::string declining;
  std::optional<std::string> start_data;
  std::optional<std::string> start;
  std::optional<std::string> decline_from;
  std::optional<std::string> decline_to;
  std::int32_t bins = 20;
  std::string title;
  std::string output;
};

std::vector<std::string> names_in(const std::string& list) {
  return list.empty() ? std::vector<std::string>{} : split(list, ',');
}

void take_texts(Options& options) {
  const auto format = options.records.dates();
  options.report.data.start_data = moment_option(options.start_data, "--start-data", format);
  options.report.start = moment_option(options.start, "--start", format);
  options.decline.from = moment_option(options.decline_from, "--decline-from", format);
  options.decline.to = moment_option(options.decline_to, "--decline-to", format);
  options.report.data.columns = names_in(options.columns);
  options.report.data.cumulative = names_in(options.cumulative);
  options.report.stacked = names_in(options.stacked);
  options.decline.series = names_in(options.declining);
  if (options.decline.limit && !(*options.decline.limit > 0.0)) {
    throw UsageError("--limit: a rate above 0 is wanted");
  }
}

void check(const Options& options) {
  if (options.report.data.path.empty() && !options.fluid.wanted()) {
    throw UsageError("a FILE is wanted, or a fluid table: --live, --dead or --water");
  }
  if (options.output.empty()) throw UsageError("-o is missing: the page to write, report.html");
  for (const std::string& input :
       {options.report.data.path, options.fluid.table(), options.fluid.points}) {
    check_output(Output{options.output}, input);
  }
}

int run(Options options) {
  check(options);
  take_texts(options);
  const bool production = !options.report.data.path.empty();
  const std::string source =
      file_name(production ? options.report.data.path : options.fluid.table());
  const MessageSink sink;
  std::vector<ReportData> parts;
  if (production && options.records.any()) {
    parts = read_report_records(options.report, options.records);
  } else if (production) {
    parts.push_back(read_report_data(options.report));
  }
  Page page(options.title.empty() ? source : options.title,
            production ? "Production by " + period_words(options.report) + ", from " + source
                       : "Volume factors, from " + source);
  for (const ReportData& data : parts) add_key_figures(page, data);
  for (const ReportData& data : parts) {
    add_stack(page, data);
    add_cumulative(page, data);
    add_periods(page, data);
    add_declines(page, data, options.decline);
    add_histograms(page, data, options.bins);
  }
  if (options.fluid.wanted()) add_fluid(page, options.fluid);
  if (production) add_story(page, parts.back());
  const std::string text = page.text("Made by vqhost report of vqmath63.");
  constexpr std::size_t kKilobyte = 1000;
  put_text(options.output, text,
           "a page of " + std::to_string((text.size() + kKilobyte - 1) / kKilobyte) + " kB");
  return kSuccess;
}

void declare(Command& command) {
  const auto options = std::make_shared<Options>();
  Options& o = *options;
  command
      .optional_argument("FILE", o.report.data.path,
                         "CSV file with a header; - reads the standard input")
      .option("-o,--output", "OUT.html", o.output, "The page to write; - is the standard output")
      .option("--title", "TEXT", o.title, "Title of the page (default: the file's name)")
      .option("--period", "WORD", o.report.period, "Reporting period word (default month)")
      .count("--frequency", o.report.frequency, "Periods together (default 1)")
      .option("--start", "DATE", o.start, "Start of reporting (default: the first date)")
      .option("--start-data", "DATE", o.start_data,
              "Moment of time 0, where the first column holds days")
      .option("--columns", "COL,...", o.columns,
              "Series by header or number (default: all columns of numbers)")
      .option("--cumulative", "COL,...", o.cumulative,
              "Series that are cumulative values; all others are rates")
      .option("--empty-as", "VALUE", o.report.data.empty_as,
              "Value of missing cells (default: an error)")
      .repeatable("--unit", "[COL=]UNIT", o.report.units,
                  "Unit of volumes, of which rates are so many a day; of one series with COL=")
      .option("--stack", "COL,...", o.stacked, "Series to show on top of one another")
      .option("--decline", "COL,...", o.declining,
              "Series to put a decline through (default: that of the largest volume)")
      .option("--decline-from", "DATE", o.decline_from,
              "First row of the decline (default: that of the largest rate)")
      .option("--decline-to", "DATE", o.decline_to, "Last row of the decline (default: the last)")
      .option("--limit", "RATE", o.decline.limit,
              "Rate at which a decline ends (default: a tenth of where it begins)")
      .count("--bins", o.bins, "Bins of the histograms (1 to 200, default 20)", 200)
      .option("--live", "TABLE.csv", o.fluid.live, "Also factors of live oil from this table")
      .option("--dead", "TABLE.csv", o.fluid.dead, "Or of dead oil")
      .option("--water", "TABLE.csv", o.fluid.water, "Or of water")
      .option("--table-columns", "COL,...", o.fluid.columns,
              "The fluid table's columns by header or number")
      .option("--pressure-unit", "UNIT", o.fluid.pressure_unit, "Unit of the table's pressures")
      .option("--points", "IN.csv", o.fluid.points, "Points whose factors are asked for")
      .option("--point-columns", "COL,...", o.fluid.point_columns,
              "Their columns by header or number");
  declare_records(command, o.records);
  command.notes(kNotes).does([options] { return run(*options); });
}

const RegisteredCommand kRegistered{
    "report", "Make a page of pictures and tables of a production table", &declare};

}  // namespace
}  // namespace vqmath63::host
