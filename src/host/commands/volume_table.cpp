#include "host/commands/volume_table.hpp"

#include <algorithm>
#include <cmath>

#include "host/data/columns.hpp"
#include "host/data/values.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

// Enough for any fluid, and too few for a file that is no table of one.
constexpr std::size_t kMostRows = 100'000;

Columns read_table(const std::string& path, const std::string& given,
                   const std::vector<std::string>& names) {
  CsvFile file(path);
  const std::vector<std::string> chosen = columns_or(file, "--columns", given, names);
  Columns table(std::move(file), chosen, false);
  table.refuse_gaps();
  if (table.rows() > kMostRows) {
    throw WorkError(table.path() + ": " + counted(table.rows(), "row") + " are more than the " +
                    std::to_string(kMostRows) + " of a table");
  }
  const auto factor =
      static_cast<std::size_t>(std::find(names.begin(), names.end(), "factor") - names.begin());
  for (std::size_t row = 0; row < table.rows(); ++row) {
    for (std::size_t c = 0; c < table.count(); ++c) table.single(row, c);  // does it fit?
    if (!(table.single(row, factor) > 0.0F)) {
      table.refuse(row, factor, "a factor of " + table.text(row, factor) + " is not above 0");
    }
  }
  return table;
}

std::vector<float> singles_of(const Columns& table, std::size_t c) {
  std::vector<float> values;
  for (std::size_t row = 0; row < table.rows(); ++row) values.push_back(table.single(row, c));
  return values;
}

void refuse_pressure(const Columns& table, std::size_t row, std::size_t c, const char* where) {
  table.refuse(row, c,
               "a pressure of " + table.text(row, c) + " is not above the " +
                   table.text(row - 1, c) + " of the row before" + where);
}

// A list that is lent to calls.
template <class T>
struct List {
  std::vector<T> values;
  ArrayOwner array{nullptr};
  std::int32_t length;

  List(VARTYPE type, std::vector<T> from)
      : values(std::move(from)),
        array(new_array(type, values.size())),
        length(static_cast<std::int32_t>(values.size())) {
    std::copy(values.begin(), values.end(), static_cast<T*>(array.get()->pvData));
  }
  VqColumn lent() { return {array.place(), 0}; }
  VqColumn count() { return {&length, 0}; }
};

constexpr std::int64_t kPointStride = sizeof(Point);

// The pressures of points, of which there is one at least.
VqColumn pressures(std::vector<Point>& points) {
  return {&points[0].pressure, kPointStride};
}

// Calls a method of ztPetroleum for each of the points; its last arguments are the factor and qOK.
std::vector<std::optional<float>> ask(DispatchObject& petroleum, const char* method,
                                      std::size_t points, std::vector<VqColumn> arguments) {
  std::vector<float> found(points);
  std::vector<VARIANT_BOOL> ok(points, VARIANT_FALSE);
  arguments.push_back({found.data(), sizeof found[0]});
  arguments.push_back({ok.data(), sizeof ok[0]});
  petroleum.call_many(method, points, arguments);
  std::vector<std::optional<float>> factors(points);
  for (std::size_t i = 0; i < points; ++i) {
    if (ok[i] != VARIANT_FALSE) factors[i] = found[i];
  }
  return factors;
}

std::string range_text(float first, float last) {
  return plain_text(first) + " to " + plain_text(last);
}

// The entries of a live-oil table laid end to end, and where each curve begins, from 1.
struct Curves {
  std::vector<float> primary;
  std::vector<std::int32_t> starts;
};

Curves curves_of(const Columns& table) {
  Curves curves;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const float primary = table.single(row, 0);
    if (row == 0 || primary > curves.primary.back()) {
      curves.primary.push_back(primary);
      curves.starts.push_back(static_cast<std::int32_t>(row + 1));
    } else if (primary < curves.primary.back()) {
      table.refuse(row, 0,
                   "a primary value of " + table.text(row, 0) + " stands after one of " +
                       table.text(row - 1, 0) + ": curves must ascend, with their rows together");
    } else if (!(table.single(row, 1) > table.single(row - 1, 1))) {
      refuse_pressure(table, row, 1, ", in the same curve");
    }
  }
  if (curves.starts.back() == static_cast<std::int32_t>(table.rows())) {
    table.refuse(table.rows() - 1, 0,
                 "the last curve has one row and needs two: the last row of a table is never read "
                 "as a point of its curve");
  }
  return curves;
}

class LiveOil : public VolumeTable {
 public:
  explicit LiveOil(const Columns& table) : LiveOil(table, curves_of(table)) {}

  std::vector<std::optional<float>> factors(const std::vector<Point>& points) override {
    std::vector<Point> at = points;
    float null = 0.0F;  // has no effect
    return ask(petroleum_, "GetVolumeCorrectionLive", at.size(),
               {primary_.lent(),
                starts_.lent(),
                primary_.count(),
                pressure_.lent(),
                factor_.lent(),
                pressure_.count(),
                {&at[0].primary, kPointStride},
                pressures(at),
                {&null, 0}});
  }

  Facts story(const Point& point) const override {
    const LivePlace at = live_place(curves(), point);
    const std::string saturation = plain_text(static_cast<float>(at.saturation));
    Facts story;
    if (at.saturated) {
      story.emplace_back("state", "saturated: the saturation pressure is " + saturation);
    } else {
      story.emplace_back("state", "undersaturated, " + plain_text(static_cast<float>(at.above)) +
                                      " above the saturation pressure " + saturation);
    }
    const std::string lower = plain_text(primary_.values[at.lower]);
    const std::string upper = plain_text(primary_.values[at.upper]);
    story.emplace_back("curves", at.lower == at.upper ? lower : lower + " and " + upper);
    if (outside_primary(point)) {
      story.emplace_back("note", "the curves go from " +
                                     range_text(primary_.values.front(), primary_.values.back()) +
                                     (at.lower == at.upper ? ": the only one is taken"
                                                           : ": the nearest two are extended"));
    }
    if (at.beyond_lower) story.emplace_back("note", beyond(at.lower));
    if (at.beyond_upper && at.upper != at.lower) story.emplace_back("note", beyond(at.upper));
    return story;
  }

  bool outside(const Point& point) const override {
    return outside(point, live_place(curves(), point));
  }

  std::optional<std::string> state(const Point& point) const override {
    const LivePlace at = live_place(curves(), point);
    const std::string state = at.saturated ? "saturated" : "undersaturated";
    return outside(point, at) ? state + ", extended" : state;
  }

  std::vector<PressureRows> rows() const override {
    std::vector<PressureRows> rows;
    for (std::size_t i = 0; i < starts_.values.size(); ++i) {
      const auto begin = pressure_.values.begin() + static_cast<std::ptrdiff_t>(curves().first(i));
      const auto end = pressure_.values.begin() + static_cast<std::ptrdiff_t>(curves().last(i) + 1);
      rows.push_back({primary_.values[i], {begin, end}});
    }
    return rows;
  }

 private:
  LiveOil(const Columns& table, Curves curves)
      : primary_(VT_R4, std::move(curves.primary)),
        starts_(VT_I4, std::move(curves.starts)),
        pressure_(VT_R4, singles_of(table, 1)),
        factor_(VT_R4, singles_of(table, 2)) {}

  bool outside(const Point& point, const LivePlace& at) const {
    return outside_primary(point) || at.beyond_lower || at.beyond_upper;
  }

  LiveCurves curves() const { return {primary_.values, starts_.values, pressure_.values}; }

  bool outside_primary(const Point& point) const {
    return point.primary < primary_.values.front() || point.primary > primary_.values.back();
  }

  std::string beyond(std::size_t curve) const {
    const float begin = pressure_.values[curves().first(curve)];
    const float end = pressure_.values[curves().last(curve)];
    std::string text = "the curve of " + plain_text(primary_.values[curve]) + " is read from " +
                       range_text(begin, end) + ": ";
    text += begin == end ? "its factor stays" : "its chord is extended";
    if (curve + 1 == starts_.values.size()) text += " (the table's last row is no point of it)";
    return text;
  }

  DispatchObject petroleum_ = DispatchObject::create("ztPetroleum");
  List<float> primary_;
  List<std::int32_t> starts_;
  List<float> pressure_;
  List<float> factor_;
};

class DeadOil : public VolumeTable {
 public:
  explicit DeadOil(const Columns& table)
      : pressure_(VT_R4, singles_of(table, 0)), factor_(VT_R4, singles_of(table, 1)) {
    if (table.rows() < 2) {
      table.refuse(0, 0, "the table has one row and needs two to interpolate between");
    }
    for (std::size_t row = 1; row < table.rows(); ++row) {
      if (!(pressure_.values[row] > pressure_.values[row - 1])) {
        refuse_pressure(table, row, 0, "");
      }
    }
  }

  std::vector<std::optional<float>> factors(const std::vector<Point>& points) override {
    std::vector<Point> at = points;
    return ask(petroleum_, "GetVolumeCorrectionDead", at.size(),
               {pressure_.lent(), factor_.lent(), pressure_.count(), pressures(at)});
  }

  Facts story(const Point& point) const override {
    const std::vector<float>& x = pressure_.values;
    const std::size_t row = dead_row(x, point.pressure);
    Facts story{{"rows", "at " + plain_text(x[row]) + " and " + plain_text(x[row + 1])}};
    if (outside(point)) {
      story.emplace_back("note", "the table goes from " + range_text(x.front(), x.back()) +
                                     ": its nearest two rows are extended");
    }
    return story;
  }

  bool outside(const Point& point) const override {
    return point.pressure < pressure_.values.front() || point.pressure > pressure_.values.back();
  }

  std::vector<PressureRows> rows() const override { return {{0.0F, pressure_.values}}; }

 private:
  DispatchObject petroleum_ = DispatchObject::create("ztPetroleum");
  List<float> pressure_;
  List<float> factor_;
};

class Water : public VolumeTable {
 public:
  explicit Water(const Columns& table)
      : pressure_(VT_R4, singles_of(table, 0)),
        factor_(VT_R4, singles_of(table, 1)),
        compressibility_(VT_R4, singles_of(table, 2)) {
    if (table.rows() > 1) {
      table.refuse(1, 0, "a water table has one row, the reference; this is another one");
    }
  }

  std::vector<std::optional<float>> factors(const std::vector<Point>& points) override {
    std::vector<Point> at = points;
    return ask(petroleum_, "GetWaterVolumeCorrection", at.size(),
               {pressure_.lent(), factor_.lent(), compressibility_.lent(), pressure_.count(),
                pressures(at)});
  }

  Facts story(const Point&) const override {
    return {{"reference", plain_text(factor_.values[0]) + " at " + plain_text(pressure_.values[0])},
            {"compressibility", number_text(compressibility_.values[0])}};
  }

  bool outside(const Point&) const override { return false; }
  std::optional<std::string> state(const Point&) const override { return std::nullopt; }

  std::vector<PressureRows> rows() const override { return {{0.0F, pressure_.values}}; }

 private:
  DispatchObject petroleum_ = DispatchObject::create("ztPetroleum");
  List<float> pressure_;
  List<float> factor_;
  List<float> compressibility_;
};

}  // namespace

std::unique_ptr<VolumeTable> read_live_oil(const std::string& path, const std::string& columns) {
  return std::make_unique<LiveOil>(read_table(path, columns, {"primary", "pressure", "factor"}));
}

std::unique_ptr<VolumeTable> read_dead_oil(const std::string& path, const std::string& columns) {
  return std::make_unique<DeadOil>(read_table(path, columns, {"pressure", "factor"}));
}

std::unique_ptr<VolumeTable> read_water(const std::string& path, const std::string& columns) {
  return std::make_unique<Water>(
      read_table(path, columns, {"pressure", "factor", "compressibility"}));
}

}  // namespace vqmath63::host
