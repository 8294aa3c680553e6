#include "host/data/table.hpp"

#include <algorithm>
#include <ostream>

#include "host/data/csv.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

// The length of a number's part before its point, or before the exponent where it has none.
std::size_t whole_part(const std::string& number) {
  return std::min(number.find_first_of(".e"), number.size());
}

// Pads the cells of a column until their points stand below each other.
void align_points(TextRows& rows, std::size_t column) {
  std::size_t before = 0;
  std::size_t after = 0;
  for (std::size_t i = 1; i < rows.size(); ++i) {
    const std::string& cell = rows[i][column];
    before = std::max(before, whole_part(cell));
    after = std::max(after, cell.size() - whole_part(cell));
  }
  for (std::size_t i = 1; i < rows.size(); ++i) {
    std::string& cell = rows[i][column];
    cell.insert(0, before - whole_part(cell), ' ');
    cell.resize(before + after, ' ');
  }
}

}  // namespace

void print_rows(std::ostream& out, TextRows rows, const std::vector<Align>& aligned) {
  const auto align_of = [&](std::size_t c) {
    return c < aligned.size() ? aligned[c] : Align::kRight;
  };
  const std::size_t columns = rows.front().size();
  std::vector<std::size_t> widths(columns);
  for (std::size_t c = 0; c < columns; ++c) {
    if (align_of(c) == Align::kPoint) align_points(rows, c);
    for (const auto& row : rows) widths[c] = std::max(widths[c], width_of(row[c]));
  }
  for (const auto& row : rows) {
    std::string line;
    for (std::size_t c = 0; c < columns; ++c) {
      if (c > 0) line += "  ";
      line += align_of(c) == Align::kLeft ? left_aligned(row[c], widths[c])
                                          : right_aligned(row[c], widths[c]);
    }
    out << line.substr(0, line.find_last_not_of(' ') + 1) << '\n';
  }
}

void print_csv_rows(std::ostream& out, const TextRows& rows) {
  for (const auto& row : rows) {
    for (std::size_t c = 0; c < row.size(); ++c) out << (c > 0 ? "," : "") << csv_field(row[c]);
    out << '\n';
  }
}

}  // namespace vqmath63::host
