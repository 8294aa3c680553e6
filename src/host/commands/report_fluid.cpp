#include "host/commands/report_fluid.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/commands/report_data.hpp"
#include "host/commands/volume_table.hpp"
#include "host/data/columns.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr int kFactorDigits = 6;

std::unique_ptr<VolumeTable> read_table(const FluidChoice& choice) {
  if (!choice.live.empty()) return read_live_oil(choice.live, choice.columns);
  if (!choice.dead.empty()) return read_dead_oil(choice.dead, choice.columns);
  return read_water(choice.water, choice.columns);
}

// The points asked for, with the factors of those that have one.
struct Points {
  std::vector<Point> at;
  std::vector<double> factor;
  std::vector<std::string> note;
};

double number_or_nan(const std::optional<float>& number) {
  return number ? static_cast<double>(*number) : std::numeric_limits<double>::quiet_NaN();
}

Points read_points(VolumeTable& table, const FluidChoice& choice) {
  Points points;
  if (choice.points.empty()) return points;
  CsvFile file(choice.points);
  const auto names =
      columns_or(file, "--point-columns", choice.point_columns,
                 choice.live.empty() ? std::vector<std::string>{"pressure"}
                                     : std::vector<std::string>{"primary", "pressure"});
  const Columns rows(std::move(file), names, false);
  rows.refuse_gaps();
  const std::size_t last = rows.count() - 1;
  for (std::size_t i = 0; i < rows.rows(); ++i) {
    const Point point{last > 0 ? rows.single(i, 0) : 0.0F, rows.single(i, last)};
    points.at.push_back(point);
  }
  for (const std::optional<float>& factor : table.factors(points.at)) {
    const Point& point = points.at[points.factor.size()];
    points.factor.push_back(number_or_nan(factor));
    points.note.emplace_back(!factor                ? "there is no factor"
                             : table.outside(point) ? "the table is extended"
                                                    : "");
  }
  return points;
}

// Factors at the rows of a curve and between them, as the component gives them.
struct Curve {
  std::vector<double> pressure;
  std::vector<double> factor;
};

Curve curve_of(VolumeTable& table, float primary, const std::vector<float>& pressures) {
  Curve curve;
  std::vector<Point> points;
  const auto ask = [&](double pressure) {
    points.push_back({primary, static_cast<float>(pressure)});
    curve.pressure.push_back(pressure);
  };
  constexpr int kBetween = 8;
  for (std::size_t i = 0; i < pressures.size(); ++i) {
    const double step = i == 0 ? 0.0 : (double{pressures[i]} - pressures[i - 1]) / kBetween;
    for (int k = kBetween - 1; k > 0 && i > 0; --k) ask(pressures[i] - k * step);
    ask(pressures[i]);
  }
  for (const auto& factor : table.factors(points)) curve.factor.push_back(number_or_nan(factor));
  return curve;
}

// A curve of water or dead oil reaches as far as the points that are asked for.
std::vector<float> reaching(std::vector<float> pressures, const Points& points, bool one_row) {
  float least = pressures.front();
  float most = pressures.back();
  if (one_row) {  // the reference of water
    least = 0.0F;
    most *= 2.0F;
  }
  for (const Point& point : points.at) {
    least = std::min(least, point.pressure);
    most = std::max(most, point.pressure);
  }
  if (least < pressures.front()) pressures.insert(pressures.begin(), least);
  if (most > pressures.back()) pressures.push_back(most);
  return pressures;
}

// The curves of a table, above all of live oil also the line of their saturation points; and the
// same numbers in a table.
void draw(VolumeTable& table, const FluidChoice& choice, const Points& points, Chart& chart,
          DataTable& numbers) {
  constexpr std::size_t kColours = 7;
  const bool live = !choice.live.empty();
  const std::vector<PressureRows> rows = table.rows();
  Curve saturated;
  std::vector<double> primaries;
  Curve all;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const float primary = rows[i].primary;
    const Curve curve = curve_of(
        table, primary,
        live ? rows[i].pressures : reaching(rows[i].pressures, points, !choice.water.empty()));
    saturated.pressure.push_back(curve.pressure.front());
    saturated.factor.push_back(curve.factor.front());
    primaries.insert(primaries.end(), curve.pressure.size(), primary);
    all.pressure.insert(all.pressure.end(), curve.pressure.begin(), curve.pressure.end());
    all.factor.insert(all.factor.end(), curve.factor.begin(), curve.factor.end());
    std::string name = live ? "primary " + number_words(primary) : "factor";
    if (rows.size() > kColours) {
      name = i > 0 ? "" : "curves of " + counted(rows.size(), "primary value");
    }
    chart.add({Layer::Kind::kLine, name, "s" + std::to_string(rows.size() > kColours ? 1 : i + 1),
               curve.pressure, curve.factor});
  }
  if (live) {
    chart.add(
        {Layer::Kind::kLine, "saturated", "rule dashed", saturated.pressure, saturated.factor});
    numbers.numbers("primary", "", primaries, kFactorDigits);
  }
  numbers.numbers("pressure", choice.pressure_unit, all.pressure, kFactorDigits);
  numbers.numbers("factor", "", all.factor, kFactorDigits);
}

}  // namespace

std::string FluidChoice::table() const {
  std::string found;
  for (const std::string& each : {live, dead, water}) {
    if (each.empty()) continue;
    if (!found.empty()) throw UsageError("one fluid table is wanted: --live, --dead or --water");
    found = each;
  }
  if (found.empty() && !points.empty()) {
    throw UsageError("--points goes with a fluid table: --live, --dead or --water");
  }
  return found;
}

void add_fluid(Page& page, const FluidChoice& choice) {
  const std::unique_ptr<VolumeTable> table = read_table(choice);
  Points points = read_points(*table, choice);
  const bool live = !choice.live.empty();
  Chart chart({"Pressure", choice.pressure_unit, ScaleKind::kNumbers},
              {"Volume factor", "", ScaleKind::kNumbers});
  DataTable numbers;
  draw(*table, choice, points, chart, numbers);
  std::vector<double> pressures;
  std::vector<double> primaries;
  for (const Point& point : points.at) {
    pressures.push_back(point.pressure);
    primaries.push_back(point.primary);
  }
  if (!points.at.empty()) {
    chart.add({Layer::Kind::kDots, "asked for", "rule", pressures, points.factor});
  }
  page.section("fluid", "Volume factors");
  const std::string kind = live ? "live oil" : choice.dead.empty() ? "water" : "dead oil";
  page.figure({"Factor of " + kind + " over pressure",
               choice.table() + (choice.pressure_unit.empty()
                                     ? ", pressures in the table's own unit (--pressure-unit)."
                                     : "."),
               std::move(chart), std::move(numbers)});
  if (points.at.empty()) return;
  DataTable asked;
  if (live) asked.numbers("primary", "", primaries, kFactorDigits);
  asked.numbers("pressure", choice.pressure_unit, pressures, kFactorDigits);
  asked.numbers("factor", "", points.factor, kFactorDigits);
  asked.texts("note", std::move(points.note));
  page.paragraph("The points asked for:");
  page.table(asked);
}

}  // namespace vqmath63::host
