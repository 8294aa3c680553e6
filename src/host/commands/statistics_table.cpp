#include "host/commands/statistics_table.hpp"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "host/data/table.hpp"
#include "host/data/values.hpp"

namespace vqmath63::host {
namespace {

std::string text_or_dash(const std::optional<float>& value) {
  return value ? plain_text(*value) : "-";
}

std::string bar(float count, float largest) {
  constexpr float kLongest = 50.0F;
  const float length = largest > kLongest ? count / largest * kLongest : count;
  const auto characters = static_cast<std::size_t>(std::lround(length));
  return std::string(count > 0.0F ? std::max<std::size_t>(characters, 1) : 0, '#');
}

}  // namespace

void print_summaries(std::ostream& out, const std::vector<Summary>& summaries) {
  TextRows rows{
      {"column", "n", "nulls", "mean", "sd_n", "sd_n1", "min", "q1", "median", "q3", "max"}};
  for (const Summary& s : summaries) {
    std::vector<std::string> row{s.name, std::to_string(s.n), std::to_string(s.nulls)};
    for (const auto& value : {s.mean, s.sigma_n, s.sigma_n1, s.minimum, s.first_quartile, s.median,
                              s.third_quartile, s.maximum}) {
      row.push_back(text_or_dash(value));
    }
    rows.push_back(std::move(row));
  }
  print_rows(out, std::move(rows), {Align::kLeft});
}

void print_bins(std::ostream& out, std::span<const float> centres, std::span<const float> counts) {
  const float largest = *std::max_element(counts.begin(), counts.end());
  TextRows rows{{"  centre", "count", ""}};
  for (std::size_t k = 0; k < centres.size(); ++k) {
    rows.push_back({plain_text(centres[k]), plain_text(counts[k]), bar(counts[k], largest)});
  }
  print_rows(out, std::move(rows), {Align::kRight, Align::kRight, Align::kLeft});
}

}  // namespace vqmath63::host
