#include "host/statistics_table.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ostream>

#include "host/text.hpp"
#include "host/values.hpp"

namespace vqmath63::host {
namespace {

using Rows = std::vector<std::vector<std::string>>;

// Without an exponent for all but very large and very small numbers.
std::string plain_text(float value) {
  constexpr float kLeast = 1e-4F;
  constexpr float kMost = 1e9F;
  const float size = std::fabs(value);
  if (!(size >= kLeast && size < kMost)) return number_text(value);
  char text[64];
  return {text, std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr};
}

std::string text_or_dash(const std::optional<float>& value) {
  return value ? plain_text(*value) : "-";
}

std::string bar(float count, float largest) {
  constexpr float kLongest = 50.0F;
  const float length = largest > kLongest ? count / largest * kLongest : count;
  const auto characters = static_cast<std::size_t>(std::lround(length));
  return std::string(count > 0.0F ? std::max<std::size_t>(characters, 1) : 0, '#');
}

// Numbers at the right, names and bars at the left; no blanks at the end of a line.
void print_rows(std::ostream& out, const Rows& rows, bool names_first, bool bars_last) {
  const std::size_t columns = rows.front().size();
  std::vector<std::size_t> widths(columns);
  for (const auto& row : rows) {
    for (std::size_t c = 0; c < columns; ++c) widths[c] = std::max(widths[c], width_of(row[c]));
  }
  for (const auto& row : rows) {
    std::string line;
    for (std::size_t c = 0; c < columns; ++c) {
      const bool left = (c == 0 && names_first) || (c + 1 == columns && bars_last);
      if (c > 0) line += "  ";
      line += left ? left_aligned(row[c], widths[c]) : right_aligned(row[c], widths[c]);
    }
    out << line.substr(0, line.find_last_not_of(' ') + 1) << '\n';
  }
}

}  // namespace

void print_summaries(std::ostream& out, const std::vector<Summary>& summaries) {
  Rows rows{{"column", "n", "nulls", "mean", "sd_n", "sd_n1", "min", "q1", "median", "q3", "max"}};
  for (const Summary& s : summaries) {
    std::vector<std::string> row{s.name, std::to_string(s.n), std::to_string(s.nulls)};
    for (const auto& value : {s.mean, s.sigma_n, s.sigma_n1, s.minimum, s.first_quartile, s.median,
                              s.third_quartile, s.maximum}) {
      row.push_back(text_or_dash(value));
    }
    rows.push_back(std::move(row));
  }
  print_rows(out, rows, true, false);
}

void print_bins(std::ostream& out, std::span<const float> centres, std::span<const float> counts) {
  const float largest = *std::max_element(counts.begin(), counts.end());
  Rows rows{{"  centre", "count", ""}};
  for (std::size_t k = 0; k < centres.size(); ++k) {
    rows.push_back({plain_text(centres[k]), plain_text(counts[k]), bar(counts[k], largest)});
  }
  print_rows(out, rows, false, true);
}

}  // namespace vqmath63::host
