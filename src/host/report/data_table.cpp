#include "host/report/data_table.hpp"

#include <algorithm>
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
constexpr std::size_t kFewRows = 24;    // of one for which there is little room

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

std::size_t DataTable::rows_shown(const PageRoom& room) const {
  constexpr std::size_t kOfCell = 18;  // bytes, its tags among them
  const std::size_t most = std::min(rows(), kMostRows);
  return most * columns_.size() * kOfCell <= room.tables ? most : std::min(rows(), kFewRows);
}

std::string DataTable::table(PageRoom& room) const {
  // The first columns of texts are aligned by the table's class, others each cell by itself.
  std::size_t leading = 0;
  while (leading < columns_.size() && !columns_[leading].number) ++leading;
  const auto cell = [&](std::size_t c, const char* tag, const std::string& content) {
    const bool text_by_itself = c >= leading && !columns_[c].number;
    return "<" + std::string(tag) + (text_by_itself ? " class=\"t\">" : ">") + escaped(content) +
           "</" + tag + ">";
  };
  std::string text =
      "<div class=\"wide\"><table class=\"t" + std::to_string(leading) + "\"><thead><tr>";
  for (std::size_t c = 0; c < columns_.size(); ++c) text += cell(c, "th", columns_[c].name);
  text += "</tr></thead><tbody>\n";
  const std::size_t all = rows();
  const std::size_t shown = rows_shown(room);
  for (std::size_t row = 0; row < all; ++row) {
    if (shown < all && row == shown / 2) {
      text += "<tr class=\"more\"><td colspan=\"" + std::to_string(columns_.size()) + "\">" +
              std::to_string(all - shown) + " more rows</td></tr>\n";
      row = all - shown / 2;
    }
    text += "<tr>";
    for (std::size_t c = 0; c < columns_.size(); ++c) text += cell(c, "td", columns_[c].shown[row]);
    text += "</tr>\n";
  }
  PageRoom::use(room.tables, text.size());
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

std::string DataTable::markup(PageRoom& room) const {
  if (rows() == 0) return {};
  std::string text = "<details class=\"numbers\"><summary>Table, " + counted(rows(), "row") +
                     "</summary>\n" + table(room) + "</details>\n";
  return text + csv_markup(room);
}

std::string DataTable::open_markup(PageRoom& room) const {
  std::string text = table(room);
  return text + csv_markup(room);
}

std::string DataTable::csv_markup(PageRoom& room) const {
  const std::string lines = escaped(csv());
  if (lines.size() > room.csv) {
    return "<p class=\"note\">As CSV these rows are too many for a page" +
           (hint_.empty() ? "" : ": " + escaped(hint_)) + ".</p>\n";
  }
  PageRoom::use(room.csv, lines.size());
  return "<details class=\"csv\"><summary>CSV</summary>\n<pre>" + lines + "</pre></details>\n";
}

}  // namespace vqmath63::host
