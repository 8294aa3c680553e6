#include "host/report/data_table.hpp"

#include <cmath>

#include "host/data/csv.hpp"
#include "host/data/number_style.hpp"
#include "host/data/values.hpp"
#include "host/report/markup.hpp"
#include "host/report/scale.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr std::size_t kMostRows = 400;  // of a table to read

constexpr int kMostDecimals = 6;

}  // namespace

void DataTable::texts(std::string name, std::vector<std::string> values) {
  columns_.push_back({std::move(name), false, std::move(values), {}});
}

void DataTable::numbers(std::string name, const std::string& unit, std::span<const float> values,
                        int digits) {
  add_numbers(std::move(name), unit, values, digits);
}

void DataTable::numbers(std::string name, const std::string& unit, std::span<const double> values,
                        int digits) {
  add_numbers(std::move(name), unit, values, digits);
}

template <class T>
void DataTable::add_numbers(std::string name, const std::string& unit, std::span<const T> values,
                            int digits) {
  if (!unit.empty()) name += ", " + unit;
  Column column{std::move(name), true, {}, {}};
  const NumberStyle style(values, digits, kMostDecimals);
  for (const T value : values) {
    const bool known = !std::isnan(value);
    column.shown.push_back(known ? grouped(style.text(value)) : "-");
    column.exact.push_back(known ? number_text(value) : "");
  }
  columns_.push_back(std::move(column));
}

std::string DataTable::table() const {
  std::string text = "<div class=\"wide\"><table><thead><tr>";
  for (const Column& column : columns_) {
    text += std::string("<th") + (column.number ? " class=\"n\">" : ">") + escaped(column.name) +
            "</th>";
  }
  text += "</tr></thead><tbody>\n";
  const std::size_t all = rows();
  for (std::size_t row = 0; row < all; ++row) {
    if (all > kMostRows && row == kMostRows / 2) {
      text += "<tr class=\"more\"><td colspan=\"" + std::to_string(columns_.size()) + "\">" +
              std::to_string(all - kMostRows) + " more rows</td></tr>\n";
      row = all - kMostRows / 2;
    }
    text += "<tr>";
    for (const Column& column : columns_) {
      text += (column.number ? "<td class=\"n\">" : "<td>") + escaped(column.shown[row]) + "</td>";
    }
    text += "</tr>\n";
  }
  return text + "</tbody></table></div>";
}

std::string DataTable::csv() const {
  std::string text;
  const auto end_line = [&] { text.back() = '\n'; };
  for (const Column& column : columns_) {
    add_csv_field(text, column.name);
    text += ',';
  }
  end_line();
  for (std::size_t row = 0; row < rows(); ++row) {
    for (const Column& column : columns_) {
      add_csv_field(text, (column.exact.empty() ? column.shown : column.exact)[row]);
      text += ',';
    }
    end_line();
  }
  return text;
}

std::string DataTable::markup(std::size_t& room) const {
  if (rows() == 0) return {};
  return "<details class=\"numbers\"><summary>Table, " + counted(rows(), "row") + "</summary>\n" +
         table() + "</details>\n" + csv_markup(room);
}

std::string DataTable::open_markup(std::size_t& room) const {
  return table() + csv_markup(room);
}

std::string DataTable::csv_markup(std::size_t& room) const {
  const std::string lines = escaped(csv());
  if (lines.size() > room) {
    return "<p class=\"note\">As CSV these rows are too many for a page" +
           (hint_.empty() ? "" : ": " + escaped(hint_)) + ".</p>\n";
  }
  room -= lines.size();
  return "<details class=\"csv\"><summary>CSV</summary>\n<pre>" + lines + "</pre></details>\n";
}

}  // namespace vqmath63::host
