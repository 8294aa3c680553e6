// What the beginning of a CSV file tells: its header, how its numbers are written, units.
#include "host/data/csv.hpp"
#include "host/data/csv_scanner.hpp"
#include "host/data/date_format.hpp"
#include "host/data/moment.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

// Whether a cell can be the unit of the numbers below it: in brackets, of several parts, or a word
// that is one.
bool looks_like_unit(std::string_view text) {
  if (text.find_first_of("/()[]%*^") != std::string_view::npos) return true;
  text.remove_prefix(text.rfind(' ') + 1);  // "1000 sm3"
  for (const char* word :
       {"m3",   "sm3", "rm3", "bbl",  "stb", "rb",   "scf",  "mscf", "mmscf", "kg",
        "t",    "d",   "day", "days", "h",   "hr",   "hrs",  "s",    "bar",   "bara",
        "barg", "pa",  "kpa", "mpa",  "psi", "psia", "psig", "degc", "degf",  "c",
        "f",    "k",   "m",   "ft",   "mm",  "in",   "cp",   "md",   "date",  "yyyy-mm-dd"}) {
    if (same_letters(text, word)) return true;
  }
  return false;
}

// Whether a cell has the form of a date in some writing, and is no number too.
bool may_be_date(std::string_view text) {
  return looks_like_moment(text) || (!parse_number(text) && !date_formats_of(text).empty());
}

}  // namespace

void CsvFile::read_header(std::size_t header_line) {
  if (text_.starts_with("\xEF\xBB\xBF")) rows_at_ = 3;
  if (text_.size() == rows_at_) throw WorkError(path_ + ": the file is empty");
  if (text_.find('\0') != std::string::npos) throw WorkError(path_ + ": this is no text file");
  if (text_.find('\n') == std::string::npos && text_.find('\r') < text_.size() - 1) {
    throw WorkError(path_ +
                    ": its lines end with a carriage return alone, tr '\\r' '\\n' mends it");
  }
  const std::string_view text = std::string_view(text_).substr(rows_at_);
  FieldScanner scanner(text, 1, ',');
  while (!scanner.at_end() && (scanner.line() < header_line || scanner.skip_no_row())) {
    if (scanner.line() < header_line) scanner.skip_line();
  }
  if (scanner.at_end()) throw WorkError(path_ + ": there is nothing but comments");
  // A spreadsheet may say first which delimiter it has written: sep=;
  if (text.substr(scanner.offset()).starts_with("sep=")) scanner.skip_line();
  form_.delimiter = delimiter_of(text.substr(scanner.offset()));
  const std::size_t line = scanner.line();
  rows_at_ += scanner.offset();
  scanner = FieldScanner(text.substr(scanner.offset()), line, form_.delimiter);
  try {
    do {
      std::string name(scanner.take(headers_.size()));
      if (name.empty()) name = "column " + std::to_string(headers_.size() + 1);
      headers_.push_back(std::move(name));
    } while (scanner.next_field());
  } catch (const CellFault& fault) {
    throw WorkError(place(fault.line, fault.column) + fault.problem);
  }
  rows_at_ += scanner.offset();
  rows_on_line_ = scanner.line();

  const std::string at = path_ + ":" + std::to_string(line) + ": ";
  if (parse_number(headers_[0]) || parse_moment(headers_[0])) {
    throw WorkError(at + "the first line must name the columns, but it begins with " +
                    in_quotes(headers_[0]));
  }
  for (std::size_t i = 1; i < headers_.size(); ++i) {
    for (std::size_t k = 0; k < i; ++k) {
      if (headers_[i] != headers_[k]) continue;
      throw WorkError(at + "columns " + std::to_string(k + 1) + " and " + std::to_string(i + 1) +
                      " have the same name " + in_quotes(headers_[i]));
    }
  }
  find_decimal_mark(std::string_view(text_).substr(rows_at_), form_);
  pass_units();
}

// A row of units has no number, and units over the numbers of the row below it; or any words, where
// it has no date over the row's.
void CsvFile::pass_units() {
  FieldScanner scanner(std::string_view(text_).substr(rows_at_), rows_on_line_, form_.delimiter);
  const auto cells = [&] {
    std::vector<std::string> row;
    while (!scanner.at_end() && scanner.skip_no_row()) continue;
    if (scanner.at_end()) return row;
    do row.emplace_back(scanner.take(row.size()));
    while (scanner.next_field());
    return row;
  };
  try {
    const std::vector<std::string> units = cells();
    const std::size_t line = scanner.line();
    const std::size_t at = scanner.offset();
    const std::vector<std::string> row = cells();
    if (units.size() != headers_.size() || row.size() != units.size()) return;
    std::size_t likely = 0;
    std::size_t unlikely = 0;
    bool no_date = false;
    for (std::size_t c = 0; c < row.size(); ++c) {
      if (cell_number(units[c], form_) || may_be_date(units[c])) return;
      no_date = no_date || may_be_date(row[c]);
      if (is_missing(row[c], form_) || !cell_number(row[c], form_)) continue;
      if (is_missing(units[c], form_)) continue;
      ++(looks_like_unit(units[c]) ? likely : unlikely);
    }
    if (likely + unlikely == 0 || (unlikely > 0 && !no_date)) return;
    units_line_ = line - 1;
    rows_at_ += at;
    rows_on_line_ = line;
  } catch (const CellFault&) {
    // It is told when the rows are read.
  }
}

std::vector<std::string> CsvFile::notes() const {
  std::vector<std::string> notes;
  if (units_line_ > 0) {
    notes.push_back("line " + std::to_string(units_line_) + " is taken for a row of units");
  }
  if (std::string doubt = doubtful_mark(form_); !doubt.empty()) notes.push_back(std::move(doubt));
  return notes;
}

}  // namespace vqmath63::host
