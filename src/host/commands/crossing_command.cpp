// The command that finds where segments meet the surface of a grid cell.
#include <cmath>
#include <iostream>
#include <memory>

#include "host/client/message_sink.hpp"
#include "host/command_line.hpp"
#include "host/commands/cell.hpp"
#include "host/data/columns.hpp"
#include "host/data/output.hpp"
#include "host/data/values.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr const char* kNotes =
    "Cells are laid out as 'vqhost inside --help' tells. The surface is twelve triangles: two of "
    "the\n"
    "top, two of the bottom, two of each side. Crossings stand in that order, not in their order\n"
    "along the segment, which the position tells: 0 at its beginning, 1 at its end. One on an "
    "edge\n"
    "that triangles share, such as a face's diagonal, stands there for each of them.\n"
    "A segment wholly inside meets nothing; whether its ends are inside is told. Limits as "
    "'vqhost\n"
    "inside --help' tells them, --oblique included; and a crossing within rounding of a segment's\n"
    "end may be missed: let the segment go a little further.\n"
    "--segments takes a file of columns x1,y1,z1,x2,y2,z2, a segment a row; --path one of x,y,z, "
    "a\n"
    "survey whose rows are joined, so that segment 1 goes from row 1 to row 2. Else their first\n"
    "columns are taken; --columns names others.\n"
    "Examples: vqhost crossing samples/cell.csv --from 30,20,-5 --to 30,20,25\n"
    "          vqhost crossing samples/cell.csv --path samples/survey.csv -o crossings.csv";

struct Options {
  std::string cell;
  std::string columns;
  std::string cell_columns;
  std::string from;
  std::string to;
  std::string segments;
  std::string path;
  bool oblique = false;
  Output output;
};

// Begin and end.
using Segment = std::array<Spot, 2>;

struct Crossing {
  Spot point;
  double position;  // along the segment, 0 at its beginning and 1 at its end
};

double position_on(const Segment& s, const Spot& point) {
  double along = 0.0;
  double length2 = 0.0;
  for (std::size_t c = 0; c < 3; ++c) {
    const double d = s[1][c] - s[0][c];
    along += d * (point[c] - s[0][c]);
    length2 += d * d;
  }
  return along / length2;
}

Spot spot_at(const Segment& s, double position) {
  Spot spot{};
  for (std::size_t c = 0; c < 3; ++c) spot[c] = s[0][c] + position * (s[1][c] - s[0][c]);
  return spot;
}

// A Single as it is; others to a millionth.
std::string coordinate_text(double value) {
  constexpr double kSteps = 1e6;
  const auto single = static_cast<float>(value);
  if (static_cast<double>(single) == value) return plain_text(single);
  return plain_text(std::round(value * kSteps) / kSteps);
}

ArrayOwner two_singles(double first, double second) {
  ArrayOwner array(new_array(VT_R4, 2));
  static_cast<float*>(array.get()->pvData)[0] = static_cast<float>(first);
  static_cast<float*>(array.get()->pvData)[1] = static_cast<float>(second);
  return array;
}

// The cell as the component answers of it.
class Surface {
 public:
  explicit Surface(Cell& cell) : cell_(cell), functions_(DispatchObject::create("ztMathLib")) {}

  /// The crossings in the component's order.
  std::vector<Crossing> crossings(const Segment& segment) {
    const Segment s{cell_.view()(segment[0]), cell_.view()(segment[1])};
    ArrayOwner x = two_singles(s[0][0], s[1][0]);
    ArrayOwner y = two_singles(s[0][1], s[1][1]);
    ArrayOwner z = two_singles(s[0][2], s[1][2]);
    ArrayOwner points;
    VARIANT_BOOL meets = VARIANT_FALSE;
    std::vector<Argument> arguments;
    for (ArrayOwner* ends : {&x, &y, &z}) {
      arguments.push_back({Value::array_reference(VT_R4, ends->place())});
    }
    arguments.push_back(cell_.top());
    arguments.push_back(cell_.bottom());
    arguments.push_back({Value::boolean_reference(&meets)});
    arguments.push_back({Value::array_reference(VT_R4, points.place())});
    if (!functions_.succeeds("Line_Through_Cube", std::move(arguments))) {
      throw WorkError("Line_Through_Cube did not succeed: qOK is False");
    }
    std::vector<Crossing> found;
    if (meets == VARIANT_FALSE) return found;
    const float* at = static_cast<const float*>(points.get()->pvData);
    for (std::size_t k = points.get()->rgsabound[0].cElements; k > 0; --k, at += 3) {
      Crossing crossing{{at[0], at[1], at[2]}, 0.0};
      crossing.position = position_on(s, crossing.point);
      if (cell_.view().changes()) crossing.point = spot_at(segment, crossing.position);
      found.push_back(crossing);
    }
    return found;
  }

  bool holds(const Spot& point) {
    std::vector<Argument> arguments;
    for (const double c : cell_.view()(point)) arguments.push_back({Value::number(c)});
    arguments.push_back(cell_.top());
    arguments.push_back(cell_.bottom());
    return functions_.call("Point_In_Cube", std::move(arguments)).get().boolVal != VARIANT_FALSE;
  }

 private:
  Cell& cell_;
  DispatchObject functions_;
};

void add_rows(std::vector<Texts>& rows, const std::vector<Crossing>& crossings,
              const std::string& number) {
  for (const Crossing& crossing : crossings) {
    Texts& row = rows.emplace_back();
    if (!number.empty()) row.push_back(number);
    for (const double c : crossing.point) row.push_back(coordinate_text(c));
    row.push_back(plain_text(static_cast<float>(crossing.position)));
  }
}

void put(const Options& options, const Texts& names, const std::vector<Texts>& rows) {
  if (options.output.among_words() && rows.empty()) return;
  std::vector<TableColumn> columns;
  for (const std::string& name : names) columns.push_back({name, Align::kPoint});
  put_table(options.output, std::move(columns), rows);
}

std::string ends_text(bool first, bool last) {
  if (first == last) return first ? "both its ends are inside" : "both its ends are outside";
  return first ? "it begins inside and ends outside" : "it begins outside and ends inside";
}

void one_segment(Surface& surface, const Options& options) {
  const Segment segment{spot_from_text("--from", options.from), spot_from_text("--to", options.to)};
  const auto crossings = surface.crossings(segment);
  const std::string ends = ends_text(surface.holds(segment[0]), surface.holds(segment[1]));
  if (crossings.empty()) {
    say_beside(options.output, "the segment does not meet the cell's surface; " + ends);
  } else {
    say_beside(options.output, "the segment meets " + counted(crossings.size(), "triangle") +
                                   " of the cell's surface; " + ends);
  }
  std::vector<Texts> rows;
  add_rows(rows, crossings, "");
  put(options, {"x", "y", "z", "position"}, rows);
}

std::vector<Segment> read_segments(const Options& options) {
  const bool path = !options.path.empty();
  const auto names = path ? std::vector<std::string>{"x", "y", "z"}
                          : std::vector<std::string>{"x1", "y1", "z1", "x2", "y2", "z2"};
  const Columns table =
      numbers_of(path ? options.path : options.segments, "--columns", options.columns, names);
  const auto spot = [&](std::size_t row, std::size_t first) {
    Spot at{};
    for (std::size_t c = 0; c < 3; ++c) {
      table.single(row, first + c);  // does it fit?
      at[c] = table[first + c][row];
    }
    return at;
  };
  std::vector<Segment> segments;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    if (!path) {
      segments.push_back({spot(row, 0), spot(row, 3)});
    } else if (row > 0) {
      segments.push_back({spot(row - 1, 0), spot(row, 0)});
    }
  }
  if (segments.empty()) throw WorkError(table.path() + ": a path has 2 rows or more; there is 1");
  return segments;
}

void many_segments(Surface& surface, const Options& options) {
  const auto segments = read_segments(options);
  std::vector<Texts> rows;
  std::size_t meeting = 0;
  for (std::size_t i = 0; i < segments.size(); ++i) {
    const auto crossings = surface.crossings(segments[i]);
    meeting += crossings.empty() ? 0U : 1U;
    add_rows(rows, crossings, std::to_string(i + 1));
  }
  say_beside(options.output, std::to_string(meeting) + " of " +
                                 counted(segments.size(), "segment") +
                                 (meeting == 1 ? " meets" : " meet") + " the cell's surface");
  put(options, {"segment", "x", "y", "z", "position"}, rows);
}

void check_options(const Options& options) {
  const int ways = static_cast<int>(!options.from.empty() || !options.to.empty()) +
                   static_cast<int>(!options.segments.empty()) +
                   static_cast<int>(!options.path.empty());
  if (ways != 1) throw UsageError("one is wanted: --from and --to, --segments or --path");
  if (options.from.empty() != options.to.empty()) {
    throw UsageError(options.from.empty() ? "--from is missing" : "--to is missing");
  }
  if (!options.from.empty() && !options.columns.empty()) {
    throw UsageError("--columns goes with --segments or --path");
  }
  for (const std::string& input : {options.cell, options.segments, options.path}) {
    check_output(options.output, input);
  }
}

int run(const Options& options) {
  check_options(options);
  const MessageSink sink;
  Cell cell(options.cell, options.cell_columns, options.oblique);
  Surface surface(cell);
  if (options.from.empty()) {
    many_segments(surface, options);
  } else {
    one_segment(surface, options);
  }
  if (sink.errors() == 0) return kSuccess;
  throw WorkError("the component reported an error: crossings may be missing");
}

void declare(Command& command) {
  const auto options = std::make_shared<Options>();
  Options& o = *options;
  command
      .argument("CELL", o.cell, "CSV file of the cell's eight corners; - reads the standard input")
      .option("--from", "X,Y,Z", o.from, "Where the segment begins")
      .option("--to", "X,Y,Z", o.to, "Where it ends")
      .option("--segments", "FILE.csv", o.segments, "Segments of a file instead")
      .option("--path", "FILE.csv", o.path, "Segments that join the points of a file instead")
      .option("--columns", "COL,...", o.columns, "Their columns by header or number")
      .option("--cell-columns", "COL,...", o.cell_columns, "The cell's columns")
      .flag("--oblique", o.oblique, "Turn and slant all coordinates alike, against rounding")
      .output(o.output)
      .notes(kNotes)
      .does([options] { return run(*options); });
}

const RegisteredCommand kRegistered{
    "crossing", "Find where segments meet the surface of a grid cell", &declare};

}  // namespace
}  // namespace vqmath63::host
