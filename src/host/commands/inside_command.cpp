// The command that tells which points of a file lie in a grid cell or a polygon.
#include <algorithm>
#include <cmath>
#include <iostream>
#include <memory>

#include "host/client/message_sink.hpp"
#include "host/command_line.hpp"
#include "host/commands/cell.hpp"
#include "host/data/columns.hpp"
#include "host/data/output.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr const char* kNotes =
    "A cell is a CSV file with a header and eight rows: the corners of its top, then those of its\n"
    "bottom, in order around the face, each corner of the bottom below that of the top. A column\n"
    "'face' may say top or bottom; z may count upwards or downwards.\n"
    "  face,x,y,z\n"
    "  top,0,0,10\n"
    "  top,100,0,10\n"
    "  top,100,100,14\n"
    "  top,0,100,14\n"
    "  bottom,0,0,0\n"
    "  bottom,100,0,0\n"
    "  bottom,100,100,0\n"
    "  bottom,0,100,0\n"
    "A polygon is a CSV file of its vertices x,y in order, closed or open.\n"
    "Columns x,y,z (x,y) are taken, else the first ones of the file; --columns and --cell-columns\n"
    "name others. The rows inside are printed as they stand in the file.\n"
    "Limits: coordinates are Singles, equal when they agree to a millionth (6 m of a northing of\n"
    "6 000 000), and rounding may lose inner points of a cell with faces parallel to an axis, or "
    "let\n"
    "others in; you are told of both. --oblique turns, slants and moves cell and points alike "
    "before\n"
    "they become Singles, which avoids it. A face is two triangles, split from its first corner "
    "to\n"
    "its third. A point straight below or above that diagonal, such as the centre of a box, or\n"
    "another edge where slanted triangles meet may be answered wrongly; you are told how many "
    "there\n"
    "are. --oblique looks at them along another line; else shift such a point by more than a\n"
    "millionth of its coordinates.\n"
    "Examples: vqhost inside samples/points.csv samples/cell.csv\n"
    "          vqhost inside samples/points.csv samples/cell.csv --oblique --all -o answered.csv\n"
    "          vqhost inside samples/points.csv --polygon samples/polygon.csv";

struct Options {
  std::string points;
  std::string cell;
  std::string polygon;
  std::string columns;
  std::string region_columns;
  bool all = false;
  bool oblique = false;
  Output output;
};

// Reads the points, seen as the cell or polygon is.
Columns read_points(const Options& options, const std::vector<std::string>& names,
                    const View& view) {
  Columns points = numbers_of(options.points, "--columns", options.columns, names);
  view.apply(points);
  return points;
}

// A flag for each point, in an array of Boolean.
ArrayOwner in_cell(Cell& cell, const Columns& points) {
  ArrayOwner x = points.singles(0);
  ArrayOwner y = points.singles(1);
  ArrayOwner z = points.singles(2);
  ArrayOwner indices;
  ArrayOwner flags;
  Value count;
  std::vector<Argument> arguments;
  for (ArrayOwner* coordinates : {&x, &y, &z}) {
    arguments.push_back({Value::array_reference(VT_R4, coordinates->place())});
  }
  arguments.push_back(cell.top());
  arguments.push_back(cell.bottom());
  arguments.push_back({Value::reference(count)});
  arguments.push_back({Value::array_reference(VT_I4, indices.place())});
  arguments.push_back({Value::array_reference(VT_BOOL, flags.place())});
  DispatchObject functions = DispatchObject::create("ztMathLib");
  if (!functions.succeeds("Points_In_CubeIndex", std::move(arguments))) {
    throw WorkError("Points_In_CubeIndex did not succeed: qOK is False");
  }
  return flags;
}

void tell_of_doubt(const Cell& cell, const Columns& points) {
  std::size_t doubtful = 0;
  for (std::size_t i = 0; i < points.rows(); ++i) {
    doubtful += cell.in_doubt({points[0][i], points[1][i], points[2][i]}) ? 1U : 0U;
  }
  if (doubtful == 0) return;
  std::cerr << "vqhost: " << counted(doubtful, "point") << (doubtful == 1 ? " lies" : " lie")
            << " in line with a diagonal or edge of the cell and may be answered wrongly: see "
               "'vqhost inside --help'\n";
}

Columns read_polygon(const Options& options) {
  Columns polygon =
      numbers_of(options.polygon, "--cell-columns", options.region_columns, {"x", "y"});
  if (polygon.rows() < 3) {
    throw WorkError(polygon.path() + ": a polygon has 3 vertices or more; there are " +
                    std::to_string(polygon.rows()));
  }
  return polygon;
}

View view_of(const Columns& polygon, bool oblique) {
  Spot least{};
  Spot most{};
  for (std::size_t c = 0; c < 2; ++c) {
    const auto [low, high] = std::minmax_element(polygon[c].begin(), polygon[c].end());
    least[c] = *low;
    most[c] = *high;
  }
  if (oblique) return View::oblique(least, most);
  for (std::size_t c = 0; c < 2; ++c) {
    const double largest = std::max(std::fabs(least[c]), std::fabs(most[c]));
    if (tell_of_blur(most[c] - least[c], largest)) break;
  }
  return {};
}

ArrayOwner in_polygon(const Columns& polygon, const Columns& points) {
  ArrayOwner x = polygon.singles(0);
  ArrayOwner y = polygon.singles(1);
  ArrayOwner flags(new_array(VT_BOOL, points.rows()));
  DispatchObject functions = DispatchObject::create("ztMathLib");
  for (std::size_t c = 0; c < 2; ++c) {
    for (std::size_t i = 0; i < points.rows(); ++i) points.single(i, c);  // does it fit?
  }
  for (std::size_t i = 0; i < points.rows(); ++i) {
    std::vector<Argument> arguments;
    arguments.push_back({Value::number(points[0][i])});
    arguments.push_back({Value::number(points[1][i])});
    arguments.push_back({Value::array_reference(VT_R4, x.place())});
    arguments.push_back({Value::array_reference(VT_R4, y.place())});
    const Value inside = functions.call("Point_In_Polygon", std::move(arguments));
    static_cast<VARIANT_BOOL*>(flags.get()->pvData)[i] = inside.get().boolVal;
  }
  return flags;
}

// The rows of the points' file that are wanted.
class Rows {
 public:
  Rows(const Columns& points, const ArrayOwner& flags, bool all)
      : points_(points), flags_(static_cast<const VARIANT_BOOL*>(flags.get()->pvData)), all_(all) {}

  std::size_t inside() const {
    return points_.rows() -
           static_cast<std::size_t>(std::count(flags_, flags_ + points_.rows(), VARIANT_FALSE));
  }
  std::size_t count() const { return all_ ? points_.rows() : inside(); }

  std::vector<TableColumn> columns() const {
    const Texts& headers = points_.file().headers();
    std::vector<TableColumn> columns;
    for (const std::string& name : headers) columns.push_back({name, Align::kByContent});
    if (all_) {
      std::string name = "inside";
      while (std::find(headers.begin(), headers.end(), name) != headers.end()) name += '_';
      columns.push_back({name, Align::kLeft});
    }
    return columns;
  }

  void put(TableWriter& table) const {
    const VARIANT_BOOL* flag = flags_;
    Texts texts;
    points_.file().each_row([&](const Texts& cells) {
      const bool is_inside = *flag++ != VARIANT_FALSE;
      if (!all_ && !is_inside) return;
      texts.assign(cells.begin(), cells.end());
      if (all_) texts.push_back(is_inside ? "True" : "False");
      table.row(texts);
    });
  }

 private:
  const Columns& points_;
  const VARIANT_BOOL* flags_;
  bool all_;
};

void report(const Columns& points, const ArrayOwner& flags, const Options& options) {
  const Rows rows(points, flags, options.all);
  const std::string summary = std::to_string(rows.inside()) + " of " +
                              counted(points.rows(), "point") +
                              (rows.inside() == 1 ? " is" : " are") + " inside the " +
                              (options.polygon.empty() ? "cell" : "polygon");
  say_beside(options.output, summary);
  if (options.output.among_words() && rows.count() == 0) return;
  put_table(options.output, rows.columns(), [&](TableWriter& table) { rows.put(table); });
}

int run(const Options& options) {
  const bool cell_wanted = options.polygon.empty();
  if (cell_wanted == options.cell.empty()) {
    throw UsageError("one of CELL and --polygon must be given");
  }
  check_output(options.output, options.points);
  check_output(options.output, cell_wanted ? options.cell : options.polygon);
  const MessageSink sink;
  if (cell_wanted) {
    Cell cell(options.cell, options.region_columns, options.oblique);
    const Columns points = read_points(options, {"x", "y", "z"}, cell.view());
    const ArrayOwner flags = in_cell(cell, points);
    tell_of_doubt(cell, points);
    report(points, flags, options);
  } else {
    Columns polygon = read_polygon(options);
    const View view = view_of(polygon, options.oblique);
    view.apply(polygon);
    const Columns points = read_points(options, {"x", "y"}, view);
    report(points, in_polygon(polygon, points), options);
  }
  if (sink.errors() == 0) return kSuccess;
  throw WorkError("the component reported an error: a point that it struck counts as outside");
}

void declare(Command& command) {
  const auto options = std::make_shared<Options>();
  Options& o = *options;
  command
      .argument("POINTS", o.points, "CSV file of points with a header; - reads the standard input")
      .optional_argument("CELL", o.cell, "CSV file of the cell's eight corners")
      .option("--polygon", "FILE.csv", o.polygon, "A polygon in plan instead of a cell")
      .option("--columns", "COL,...", o.columns, "The points' columns by header or number")
      .option("--cell-columns", "COL,...", o.region_columns,
              "The cell's or the polygon's columns by header or number")
      .flag("--all", o.all, "Print all rows, with a column 'inside' of True and False")
      .flag("--oblique", o.oblique, "Turn and slant all coordinates alike, against rounding")
      .output(o.output)
      .notes(kNotes)
      .does([options] { return run(*options); });
}

const RegisteredCommand kRegistered{
    "inside", "Tell which points of a file lie in a grid cell or a polygon", &declare};

}  // namespace
}  // namespace vqmath63::host
