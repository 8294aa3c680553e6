// Rates of a report in bins, with their measures.
#include <algorithm>
#include <limits>

#include "host/client/dispatch_client.hpp"
#include "host/commands/report_production.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr std::size_t kMostPanels = 12;

// What the component tells of a series.
struct Measures {
  std::vector<std::string> names;
  std::vector<float> mean, deviation, least, first_quartile, median, third_quartile, most;
};

class Measurer {
 public:
  // Takes the values of a series over, in memory of their own.
  Measurer(const std::string& name, std::span<const float> values)
      : name_(name), values_(new_array(VT_R4, values.size())) {
    std::copy(values.begin(), values.end(), static_cast<float*>(values_.get()->pvData));
  }

  void measure(DispatchObject& statistics, Measures& out) {
    std::vector<Argument> arguments;
    arguments.push_back(lent());
    const bool done = statistics.succeeds("BasicStatistics", std::move(arguments));
    const float unknown = std::numeric_limits<float>::quiet_NaN();
    out.names.push_back(name_);
    out.mean.push_back(done ? statistics.get("xBar").get().fltVal : unknown);
    out.deviation.push_back(done ? statistics.get("xSigmaN1").get().fltVal : unknown);
    out.least.push_back(ask(statistics, "Minimum"));
    out.most.push_back(ask(statistics, "Maximum"));
    out.first_quartile.push_back(ask(statistics, "Quartile", 1));
    out.median.push_back(ask(statistics, "Quartile", 2));
    out.third_quartile.push_back(ask(statistics, "Quartile", 3));
  }

  // How many values each of so many bins between the least and the largest one holds; none where
  // the component does not succeed, which its error lines tell of.
  std::vector<double> counts(DispatchObject& sample, std::int32_t bins) {
    ArrayOwner centres;
    ArrayOwner numbers;
    std::vector<Argument> arguments;
    arguments.push_back(lent());
    arguments.push_back({Value::whole_number(bins)});
    arguments.push_back({Value::array_reference(VT_R4, centres.place())});
    arguments.push_back({Value::array_reference(VT_R4, numbers.place())});
    if (!sample.succeeds("BinVector", std::move(arguments))) return {};
    const float* const number = static_cast<const float*>(numbers.get()->pvData);
    return {number, number + bins};
  }

 private:
  Argument lent() { return {Value::array_reference(VT_R4, values_.place())}; }

  float ask(DispatchObject& statistics, const char* member, std::int32_t quartile = 0) {
    std::vector<Argument> arguments;
    arguments.push_back(lent());
    if (quartile > 0) arguments.push_back({Value::whole_number(quartile)});
    return statistics.call(member, std::move(arguments)).get().fltVal;
  }

  std::string name_;
  ArrayOwner values_;
};

Figure histogram(const ReportData& data, const ReportSeries& series, float least, float most,
                 std::vector<double> counts) {
  std::vector<double> edges;
  const double width = (double{most} - least) / static_cast<double>(counts.size());
  for (std::size_t k = 0; k < counts.size(); ++k) {
    edges.push_back(least + width * static_cast<double>(k));
  }
  edges.push_back(most);
  Chart chart({series.rate ? "Rate" : "Value", series.unit, ScaleKind::kNumbers},
              {data.row_word == "row" ? "Rows of the file" : "Days", "", ScaleKind::kFromZero});
  DataTable table;
  table.numbers("from", series.unit, std::span(edges).first(counts.size()), 5);
  table.numbers("to", series.unit, std::span(edges).subspan(1), 5);
  table.numbers(data.row_word + "s", "", counts, 8);
  chart.rows_between(edges);
  chart.add({Layer::Kind::kBars, "", "s" + std::to_string(series.colour), std::move(edges),
             std::move(counts)});
  return {series.name, counted(series.values.size() - data.first_value, data.row_word) + ".",
          std::move(chart), std::move(table)};
}

}  // namespace

void add_histograms(Page& page, const ReportData& data, std::int32_t bins) {
  page.section(data.place("histogram"), data.titled("How rates are distributed"));
  DispatchObject statistics = DispatchObject::create("ztStatistics");
  DispatchObject sample = DispatchObject::create("ztSample");
  Measures measures;
  page.begin_panels();
  std::size_t panels = 0;
  for (const ReportSeries& series : data.series) {
    if (!series.rate) continue;
    if (data.first_value >= series.values.size()) continue;
    Measurer measurer(series.name, series.values.subspan(data.first_value));
    measurer.measure(statistics, measures);
    if (panels++ >= kMostPanels) continue;
    const float least = measures.least.back();
    const float most = measures.most.back();
    if (!(least < most)) continue;  // bins would have no width
    std::vector<double> counts = measurer.counts(sample, bins);
    if (!counts.empty()) page.figure(histogram(data, series, least, most, std::move(counts)));
  }
  page.end_panels();
  if (panels == 0) return;
  DataTable table;
  table.texts("series", std::move(measures.names));
  constexpr int kDigits = 5;
  table.numbers("mean", "", measures.mean, kDigits);
  table.numbers("standard deviation (n - 1)", "", measures.deviation, kDigits);
  table.numbers("least", "", measures.least, kDigits);
  table.numbers("first quartile", "", measures.first_quartile, kDigits);
  table.numbers("median", "", measures.median, kDigits);
  table.numbers("third quartile", "", measures.third_quartile, kDigits);
  table.numbers("largest", "", measures.most, kDigits);
  page.table(table);
}

}  // namespace vqmath63::host
