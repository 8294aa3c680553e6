// The command that works out volume factors of oil and water from tables.
#include <cmath>
#include <iostream>
#include <memory>

#include "host/client/message_sink.hpp"
#include "host/command_line.hpp"
#include "host/commands/volume_table.hpp"
#include "host/data/columns.hpp"
#include "host/data/output.hpp"
#include "host/data/values.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr const char* kNotes =
    "Tables are CSV files with a header, in any units that agree with the points:\n"
    "  --live   primary,pressure,factor: a row an entry. Rows of the same primary value "
    "(dissolved\n"
    "           gas, for instance) are a curve; they stand together in ascending pressure, the\n"
    "           first of them is the curve's saturation point. Curves stand in ascending order of\n"
    "           the primary value. The last row of all is never read as a point of its curve, so\n"
    "           let the last curve go one row beyond what is needed.\n"
    "           0.5,1200,1.20\n"
    "           0.5,3000,1.17\n"
    "           0.8,2000,1.31\n"
    "           0.8,3000,1.29\n"
    "           0.8,4000,1.28\n"
    "  --dead   pressure,factor: two rows or more in ascending pressure\n"
    "  --water  pressure,factor,compressibility: one row, the reference\n"
    "Columns of these names are taken, else the first ones of the file; --columns names others.\n"
    "Of points likewise: primary,pressure for live oil, pressure else. Their column 'state' says "
    "which\n"
    "are saturated, at or below the saturation pressure, and for which the table is extended.\n"
    "Examples: vqhost volume-factor --live samples/live_oil.csv --primary 0.6 --pressure 2500\n"
    "          vqhost volume-factor --live samples/live_oil.csv --points samples/fluid_points.csv\n"
    "          vqhost volume-factor --dead samples/dead_oil.csv --pressure 1800\n"
    "          vqhost volume-factor --water samples/water.csv --pressure 3100";

struct Options {
  std::string live;
  std::string dead;
  std::string water;
  std::string columns;
  std::optional<double> primary;
  std::optional<double> pressure;
  std::string points;
  std::string point_columns;
  Output output;
};

std::unique_ptr<VolumeTable> read_table(const Options& options) {
  if (!options.live.empty()) return read_live_oil(options.live, options.columns);
  if (!options.dead.empty()) return read_dead_oil(options.dead, options.columns);
  return read_water(options.water, options.columns);
}

float number_of(const char* option, std::optional<double> value) {
  check_single(option, value);
  if (!std::isfinite(*value)) throw UsageError(std::string(option) + ": a number is wanted");
  return static_cast<float>(*value);
}

void check_options(const Options& options) {
  const int tables = static_cast<int>(!options.live.empty()) +
                     static_cast<int>(!options.dead.empty()) +
                     static_cast<int>(!options.water.empty());
  if (tables != 1) throw UsageError("one table is wanted: --live, --dead or --water");
  const bool live = !options.live.empty();
  if (!options.points.empty()) {
    if (options.primary || options.pressure) {
      throw UsageError("--points stands for --primary and --pressure, not beside them");
    }
    for (const std::string& table : {options.live, options.dead, options.water}) {
      check_output(options.output, table);
    }
    check_output(options.output, options.points);
    return;
  }
  if (!options.point_columns.empty()) throw UsageError("--point-columns goes with --points");
  if (!options.pressure) throw UsageError("--pressure is missing, or --points");
  if (live && !options.primary) throw UsageError("--primary is missing, for live oil");
  if (!live && options.primary) throw UsageError("--primary is for live oil only");
}

int one_point(VolumeTable& table, const Options& options) {
  Point point;
  if (options.primary) point.primary = number_of("--primary", options.primary);
  point.pressure = number_of("--pressure", options.pressure);
  const auto factor = table.factor(point);
  if (!factor) throw WorkError("there is no factor: qOK is False");
  Facts facts{{"factor", plain_text(*factor)}};
  for (const auto& fact : table.story(point)) facts.push_back(fact);
  put_facts(options.output, facts);
  return kSuccess;
}

int many_points(VolumeTable& table, const Columns& points, const Output& output) {
  const std::size_t last = points.count() - 1;
  std::vector<TableColumn> columns;
  for (std::size_t c = 0; c <= last; ++c) columns.push_back({points.name(c), Align::kPoint});
  columns.push_back({"factor", Align::kPoint});
  if (table.state({})) columns.push_back({"state", Align::kLeft});
  std::vector<Point> at;
  for (std::size_t i = 0; i < points.rows(); ++i) {
    at.push_back({last > 0 ? points.single(i, 0) : 0.0F, points.single(i, last)});
  }
  const std::vector<std::optional<float>> factors = table.factors(at);
  std::vector<Texts> rows;
  std::size_t outside = 0;
  std::size_t failures = 0;
  for (std::size_t i = 0; i < points.rows(); ++i) {
    auto& row = rows.emplace_back();
    for (std::size_t c = 0; c <= last; ++c) row.push_back(points.text(i, c));
    const auto& factor = factors[i];
    row.push_back(factor ? plain_text(*factor) : "");
    if (const auto state = table.state(at[i])) row.push_back(*state);
    failures += factor ? 0U : 1U;
    outside += table.outside(at[i]) ? 1U : 0U;
  }
  put_table(output, std::move(columns), rows);
  if (outside > 0) {
    std::cerr << "vqhost: for " << counted(outside, "point") << " the table is extended\n";
  }
  if (failures > 0) throw WorkError("there is no factor for " + counted(failures, "point"));
  return kSuccess;
}

int run(const Options& options) {
  check_options(options);
  const MessageSink sink;
  const std::unique_ptr<VolumeTable> table = read_table(options);
  if (options.points.empty()) return one_point(*table, options);
  const Columns points =
      numbers_of(options.points, "--point-columns", options.point_columns,
                 options.live.empty() ? std::vector<std::string>{"pressure"}
                                      : std::vector<std::string>{"primary", "pressure"});
  for (std::size_t i = 0; i < points.rows(); ++i) {
    for (std::size_t c = 0; c < points.count(); ++c) points.single(i, c);  // does it fit?
  }
  return many_points(*table, points, options.output);
}

void declare(Command& command) {
  const auto options = std::make_shared<Options>();
  Options& o = *options;
  command.option("--live", "TABLE.csv", o.live, "Live oil: curves of factors over pressure")
      .option("--dead", "TABLE.csv", o.dead, "Dead oil: one curve")
      .option("--water", "TABLE.csv", o.water, "Water: reference and compressibility")
      .option("--columns", "COL,...", o.columns, "The table's columns by header or number")
      .option("--primary", "P", o.primary, "Primary value of a point of live oil")
      .option("--pressure", "P", o.pressure, "Pressure of a point")
      .option("--points", "IN.csv", o.points, "Points of a file instead; - is the standard input")
      .option("--point-columns", "COL,...", o.point_columns, "Their columns by header or number")
      .output(o.output)
      .notes(kNotes)
      .does([options] { return run(*options); });
}

const RegisteredCommand kRegistered{
    "volume-factor", "Work out volume factors of oil and water from tables", &declare};

}  // namespace
}  // namespace vqmath63::host
