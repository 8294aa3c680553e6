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
void align_points(std::vector<Texts>& rows, std::size_t column) {
  std::size_t before = 0;
  std::size_t after = 0;
  for (const Texts& row : rows) {
    before = std::max(before, whole_part(row[column]));
    after = std::max(after, row[column].size() - whole_part(row[column]));
  }
  for (Texts& row : rows) {
    std::string& cell = row[column];
    cell.insert(0, before - whole_part(cell), ' ');
    cell.resize(before + after, ' ');
  }
}

bool any_text(const Texts& texts) {
  return std::any_of(texts.begin(), texts.end(), [](const auto& text) { return !text.empty(); });
}

}  // namespace

void AlignedLines::widen(const Texts& cells) {
  for (std::size_t c = 0; c < cells.size(); ++c) {
    widths_[c] = std::max(widths_[c], width_of(cells[c]));
  }
}

std::string AlignedLines::line(const Texts& cells) const {
  std::string line;
  for (std::size_t c = 0; c < cells.size(); ++c) {
    if (c > 0) line += "  ";
    line += aligned_[c] == Align::kLeft ? left_aligned(cells[c], widths_[c])
                                        : right_aligned(cells[c], widths_[c]);
  }
  line.resize(line.find_last_not_of(' ') + 1);
  return line;
}

std::size_t AlignedLines::width() const {
  std::size_t width = 2 * widths_.size() - 2;
  for (const std::size_t each : widths_) width += each;
  return width;
}

TableWriter::TableWriter(std::ostream& out, TableForm form, std::vector<TableColumn> columns)
    : out_(out), form_(form), columns_(std::move(columns)) {
  if (form_ != TableForm::kCsv) return;
  const Texts names = texts_of(&TableColumn::name);
  if (any_text(names)) print_csv(names);
}

void TableWriter::row(const Texts& cells) {
  ++count_;
  if (form_ == TableForm::kCsv) {
    print_csv(cells);
  } else {
    kept_.push_back(cells);
  }
}

void TableWriter::end() {
  if (form_ == TableForm::kCsv) return;
  std::vector<Align> aligned;
  for (std::size_t c = 0; c < columns_.size(); ++c) {
    Align align = columns_[c].align;
    if (align == Align::kByContent) {
      const bool numbers = std::all_of(kept_.begin(), kept_.end(),
                                       [&](const Texts& row) { return parse_number(row[c]); });
      align = numbers ? Align::kPoint : Align::kLeft;
    }
    if (align == Align::kPoint) align_points(kept_, c);
    aligned.push_back(align);
  }
  const Texts names = texts_of(&TableColumn::name);
  const Texts notes = texts_of(&TableColumn::note);
  const Texts foot = texts_of(&TableColumn::foot);
  AlignedLines lines(std::move(aligned));
  for (const Texts* texts : {&names, &notes, &foot}) lines.widen(*texts);
  for (const Texts& row : kept_) lines.widen(row);
  const std::string rule(lines.width(), '-');
  if (any_text(names)) out_ << lines.line(names) << '\n';
  if (any_text(notes)) out_ << lines.line(notes) << '\n' << rule << '\n';
  for (const Texts& row : kept_) out_ << lines.line(row) << '\n';
  if (any_text(foot)) out_ << rule << '\n' << lines.line(foot) << '\n';
}

void TableWriter::print_csv(const Texts& cells) {
  line_.clear();
  for (const std::string& cell : cells) {
    add_csv_field(line_, cell);
    line_ += ',';
  }
  line_.back() = '\n';
  out_.write(line_.data(), static_cast<std::streamsize>(line_.size()));
}

template <class Part>
Texts TableWriter::texts_of(Part part) const {
  Texts texts;
  for (const TableColumn& column : columns_) texts.push_back(column.*part);
  return texts;
}

}  // namespace vqmath63::host
