#include "host/data/table.hpp"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "host/data/csv.hpp"
#include "host/data/table_text.hpp"
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

// What JSON has for a cell of a column of numbers or of true and false.
const char* json_word(const std::string& cell) {
  return cell == "True" ? "true" : cell == "False" ? "false" : "null";
}

// The names with a number behind those that came before.
Texts unique(Texts names) {
  for (auto name = names.begin(); name != names.end(); ++name) {
    const std::string plain = *name;
    for (int k = 2; std::find(names.begin(), name, *name) != name; ++k) {
      *name = plain + "_" + std::to_string(k);
    }
  }
  return names;
}

}  // namespace

std::optional<TableForm> table_form(std::string_view word) {
  constexpr std::pair<const char*, TableForm> kWords[] = {{"table", TableForm::kAligned},
                                                          {"csv", TableForm::kCsv},
                                                          {"json", TableForm::kJson},
                                                          {"markdown", TableForm::kMarkdown}};
  for (const auto& [known, form] : kWords) {
    if (same_letters(word, known)) return form;
  }
  return std::nullopt;
}

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
  if (pass_ == Pass::kNone && form_ != TableForm::kCsv) {
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
  if (pass_ == Pass::kMeasuring) return measure(cells);
  switch (form_) {
    case TableForm::kAligned:
      return print_aligned(cells);
    case TableForm::kCsv:
      return print_csv(cells);
    case TableForm::kJson:
      return print_json(cells);
    case TableForm::kMarkdown:
      return print_markdown(cells);
  }
}

void TableWriter::measure(const Texts& cells) {
  for (std::size_t c = 0; c < cells.size(); ++c) {
    const std::string& cell = cells[c];
    Measure& measure = measures_[c];
    if (form_ == TableForm::kJson) {
      if (cell.empty()) continue;
      const auto number = parse_number(cell);
      measure.json_numbers =
          measure.json_numbers && (is_json_number(cell) || (number && !std::isfinite(*number)));
      measure.booleans = measure.booleans && (cell == "True" || cell == "False");
      continue;
    }
    measure.numbers =
        measure.numbers && columns_[c].align == Align::kByContent && parse_number(cell).has_value();
    measure.width = std::max(measure.width,
                             width_of(form_ == TableForm::kMarkdown ? markdown_cell(cell) : cell));
    const std::size_t before = whole_part(cell);
    measure.before_point = std::max(measure.before_point, before);
    measure.after_point = std::max(measure.after_point, cell.size() - before);
  }
}

void TableWriter::print_aligned(Texts cells) {
  for (std::size_t c = 0; c < cells.size(); ++c) {
    if (columns_[c].align != Align::kPoint) continue;
    align_point(cells[c], measures_[c].before_point, measures_[c].after_point);
  }
  out_ << lines_.line(cells) << '\n';
}

void TableWriter::print_head() {
  const Texts names = texts_of(&TableColumn::name);
  switch (form_) {
    case TableForm::kAligned:
      return print_aligned_head();
    case TableForm::kCsv:
      if (any_text(names)) print_csv(names);
      return;
    case TableForm::kJson:
      for (const std::string& name : unique(names)) keys_.push_back(json_quoted(name) + ": ");
      return;
    case TableForm::kMarkdown:
      return print_markdown_head();
  }
}

void TableWriter::print_aligned_head() {
  const Texts names = texts_of(&TableColumn::name);
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

// Names with their notes, and under each the dashes that say where its texts stand.
void TableWriter::print_markdown_head() {
  Texts names;
  for (const TableColumn& column : columns_) {
    names.push_back(column.name + (column.note.empty() ? "" : "\n" + column.note));
  }
  Texts dashes;
  for (std::size_t c = 0; c < columns_.size(); ++c) {
    Align& align = columns_[c].align;
    if (align == Align::kByContent && !measures_[c].numbers) align = Align::kLeft;
    constexpr std::size_t kDashes = 3;
    std::size_t& width = measures_[c].width;
    for (const std::string& text : {names[c], columns_[c].foot}) {
      width = std::max({width, width_of(markdown_cell(text)), kDashes});
    }
    dashes.push_back(std::string(width - 1, '-') + (align == Align::kLeft ? '-' : ':'));
  }
  print_markdown(names);
  print_markdown(dashes);
}

void TableWriter::print_foot() {
  const Texts foot = texts_of(&TableColumn::foot);
  if (form_ == TableForm::kJson) out_ << (count_ > 0 ? "\n]\n" : "[]\n");
  if (form_ == TableForm::kMarkdown && any_text(foot)) print_markdown(foot);
  if (form_ != TableForm::kAligned || !any_text(foot)) return;
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

void TableWriter::print_json(const Texts& cells) {
  line_ = count_ > 1 ? ",\n" : "[\n";
  for (std::size_t c = 0; c < cells.size(); ++c) {
    const Measure& measure = measures_[c];
    line_ += c > 0 ? ", " : "  {";
    line_ += keys_[c];
    if (is_json_number(cells[c]) && measure.json_numbers) {
      line_ += cells[c];
    } else if (cells[c].empty() || measure.json_numbers || measure.booleans) {
      line_ += json_word(cells[c]);
    } else {
      line_ += json_quoted(cells[c]);
    }
  }
  out_ << line_ << '}';
}

void TableWriter::print_markdown(const Texts& cells) {
  line_ = "|";
  for (std::size_t c = 0; c < cells.size(); ++c) {
    const std::string cell = markdown_cell(cells[c]);
    const std::size_t width = measures_[c].width;
    const bool left = columns_[c].align == Align::kLeft;
    line_ += ' ' + (left ? left_aligned(cell, width) : right_aligned(cell, width)) + " |";
  }
  out_ << line_ << '\n';
}

template <class Part>
Texts TableWriter::texts_of(Part part) const {
  Texts texts;
  for (const TableColumn& column : columns_) texts.push_back(column.*part);
  return texts;
}

}  // namespace vqmath63::host
