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

// Pads a cell so that its point has `before` places to the left and `after` ones from it on.
void align_point(std::string& cell, std::size_t before, std::size_t after) {
  cell.insert(0, before - whole_part(cell), ' ');
  cell.resize(before + after, ' ');
}

bool any_text(const Texts& texts) {
  return std::any_of(texts.begin(), texts.end(), [](const auto& text) { return !text.empty(); });
}

}  // namespace

void AlignedLines::widen(const Texts& cells) {
  for (std::size_t c = 0; c < cells.size(); ++c) widen(c, width_of(cells[c]));
}

void AlignedLines::widen(std::size_t column, std::size_t width) {
  widths_[column] = std::max(widths_[column], width);
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
    : out_(out), form_(form), columns_(std::move(columns)), measures_(columns_.size()) {}

bool TableWriter::wants_rows() {
  if (pass_ == Pass::kNone && form_ == TableForm::kAligned) {
    pass_ = Pass::kMeasuring;
  } else if (pass_ == Pass::kPrinting) {
    print_foot();
    pass_ = Pass::kDone;
  } else {
    print_head();
    pass_ = Pass::kPrinting;
  }
  if (pass_ != Pass::kDone) count_ = 0;
  return pass_ != Pass::kDone;
}

void TableWriter::row(const Texts& cells) {
  if (!out_) throw OutputLost();
  ++count_;
  if (form_ == TableForm::kCsv) {
    print_csv(cells);
  } else if (pass_ == Pass::kMeasuring) {
    measure(cells);
  } else {
    print(cells);
  }
}

void TableWriter::measure(const Texts& cells) {
  for (std::size_t c = 0; c < cells.size(); ++c) {
    const std::string& cell = cells[c];
    Measure& measure = measures_[c];
    measure.numbers =
        measure.numbers && columns_[c].align == Align::kByContent && parse_number(cell).has_value();
    measure.width = std::max(measure.width, width_of(cell));
    const std::size_t before = whole_part(cell);
    measure.before_point = std::max(measure.before_point, before);
    measure.after_point = std::max(measure.after_point, cell.size() - before);
  }
}

void TableWriter::print(Texts cells) {
  for (std::size_t c = 0; c < cells.size(); ++c) {
    if (columns_[c].align != Align::kPoint) continue;
    align_point(cells[c], measures_[c].before_point, measures_[c].after_point);
  }
  out_ << lines_.line(cells) << '\n';
}

void TableWriter::print_head() {
  const Texts names = texts_of(&TableColumn::name);
  if (form_ == TableForm::kCsv) {
    if (any_text(names)) print_csv(names);
    return;
  }
  std::vector<Align> aligned;
  for (std::size_t c = 0; c < columns_.size(); ++c) {
    Align& align = columns_[c].align;
    if (align == Align::kByContent) align = measures_[c].numbers ? Align::kPoint : Align::kLeft;
    aligned.push_back(align);
  }
  const Texts notes = texts_of(&TableColumn::note);
  const Texts foot = texts_of(&TableColumn::foot);
  lines_ = AlignedLines(std::move(aligned));
  for (const Texts* texts : {&names, &notes, &foot}) lines_.widen(*texts);
  for (std::size_t c = 0; c < columns_.size(); ++c) {
    const Measure& measure = measures_[c];
    lines_.widen(c, columns_[c].align == Align::kPoint ? measure.before_point + measure.after_point
                                                       : measure.width);
  }
  if (any_text(names)) out_ << lines_.line(names) << '\n';
  if (any_text(notes)) {
    out_ << lines_.line(notes) << '\n' << std::string(lines_.width(), '-') << '\n';
  }
}

void TableWriter::print_foot() {
  const Texts foot = texts_of(&TableColumn::foot);
  if (form_ == TableForm::kCsv || !any_text(foot)) return;
  out_ << std::string(lines_.width(), '-') << '\n' << lines_.line(foot) << '\n';
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
