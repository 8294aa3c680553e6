#include "host/data/csv.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "host/data/csv_scanner.hpp"
#include "host/data/moment.hpp"
#include "host/data/text_source.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

std::string read_whole(const std::string& path) {
  TextSource source(path);
  std::string text;
  constexpr std::size_t kMostAtOnce = std::size_t{1} << 22;
  std::size_t chunk = std::size_t{1} << 16;
  do {
    if (text.capacity() < text.size() + chunk) text.reserve(2 * text.size() + chunk);
    chunk = std::min(2 * chunk, kMostAtOnce);
  } while (source.read(text, chunk));
  return text;
}

// Takes cells into the columns of a table.
class CellTaker {
 public:
  CellTaker(const CsvFile& file, const CsvReading& reading, std::size_t columns)
      : file_(file), reading_(reading), wants_(reading.wants), met_(columns) {
    wants_.resize(columns, Want::kNumbersIfAny);
    table_.columns.resize(columns);
    plain_ = file.form().may_be_plain();
    mark_ = file.form().mark();
  }

  void take(FieldScanner& scanner, std::size_t c) {
    CsvColumn& column = table_.columns[c];
    double number = 0.0;
    if (column.kind == CellKind::kNumber && plain_ && scanner.take_plain_number(number, mark_)) {
      column.values.push_back(number);
      return;
    }
    const std::size_t line = scanner.line();
    const std::string_view text = scanner.take(c);
    if (wants_[c] != Want::kNothing) fill(column, c, line, text);
  }

  CsvTable& table() { return table_; }

  /// Judges the columns, when all of their cells are known.
  void finish() {
    for (std::size_t c = 0; c < wants_.size(); ++c) {
      CsvColumn& column = table_.columns[c];
      const Met& met = met_[c];
      if (wants_[c] == Want::kNumbersIfAny && leave_out(column, met)) continue;
      if (met.texts > 0) refuse(c, met.text_line, column.kind, met.text);
      if (met.gap_line == 0) continue;
      if (!may_fill(c)) refuse_gap(c, met.gap_line);
      if (column.kind == CellKind::kUnknown) column.kind = CellKind::kNumber;
    }
  }

 private:
  // What a column has besides numbers.
  struct Met {
    std::size_t gaps = 0;
    std::size_t gap_line = 0;  // of the first one
    std::size_t texts = 0;
    std::size_t text_line = 0;
    std::string text{};
  };

  void fill(CsvColumn& column, std::size_t c, std::size_t line, std::string_view text) {
    Met& met = met_[c];
    if (is_missing(text, file_.form())) {
      if (met.gaps++ == 0) met.gap_line = line;
      column.values.push_back(reading_.empty_as.value_or(0.0));
      return;
    }
    const Want want = wants_[c];
    const bool dates_welcome = want == Want::kNumbersOrDates || want == Want::kTimes;
    const bool date = column.kind == CellKind::kDate || (dates_welcome && reading_.date_format);
    const std::optional<double> number = date ? std::nullopt : cell_number(text, file_.form());
    if (column.kind == CellKind::kUnknown) {
      column.kind = dates_welcome && !number ? CellKind::kDate : CellKind::kNumber;
    }
    const std::optional<double> value = column.kind == CellKind::kDate ? date_of(text) : number;
    if (!value && want == Want::kNumbersIfAny) {
      if (met.texts++ == 0) {
        met.text_line = line;
        met.text = text;
      }
      column.values.push_back(0.0);
      return;
    }
    if (!value) refuse(c, line, column.kind, text);
    if (!std::isfinite(*value)) {
      throw WorkError(file_.place(line, c) + in_quotes(text) + " is not a finite number");
    }
    column.values.push_back(*value);
  }

  std::optional<double> date_of(std::string_view text) const {
    return reading_.date_format ? reading_.date_format->read(text) : parse_moment(text);
  }

  // Leaves a column out that nobody has asked for, and holds nothing or mostly no numbers.
  static bool leave_out(CsvColumn& column, const Met& met) {
    const std::size_t numbers = column.values.size() - met.gaps - met.texts;
    if (numbers > 0 && numbers >= met.texts) return false;
    if (met.texts == 0) {
      column.why_left_out = "holds no numbers (all cells are empty)";
    } else {
      const std::string first = in_quotes(met.text) + " on line " + std::to_string(met.text_line);
      column.why_left_out = numbers == 0 ? "holds no numbers (" + first + ")"
                                         : "holds " + counted(met.texts, "text") + " (" + first +
                                               ") and only " + counted(numbers, "number");
    }
    column.kind = CellKind::kText;
    column.values = {};
    return true;
  }

  bool may_fill(std::size_t c) const {
    return reading_.empty_as.has_value() && wants_[c] != Want::kTimes;
  }

  [[noreturn]] void refuse_gap(std::size_t c, std::size_t line) const {
    if (reading_.before_refusing_gap) reading_.before_refusing_gap(table_);
    throw WorkError(file_.place(line, c) +
                    (wants_[c] == Want::kTimes
                         ? "the time is missing"
                         : "the value is missing (--empty-as VALUE fills such cells)"));
  }

  [[noreturn]] void refuse(std::size_t c, std::size_t line, CellKind kind,
                           std::string_view text) const {
    const bool date = kind == CellKind::kDate;
    std::string problem = in_quotes(text) + (date ? " is not a date" : " is not a number");
    if (date && reading_.date_format) {
      problem += " as --date-format " + reading_.date_format->pattern() + " has it";
    } else if (date) {
      const bool none_yet = table_.columns[c].values.empty();
      problem = why_no_moment(text, none_yet ? "is neither a number nor a date" : "is not a date");
      const std::string formats = reading_.takes_date_format ? date_formats_of(text) : "";
      if (!formats.empty()) problem += "; --date-format " + formats + " reads it";
    }
    throw WorkError(file_.place(line, c) + problem);
  }

  const CsvFile& file_;
  const CsvReading& reading_;
  std::vector<Want> wants_;
  std::vector<Met> met_;
  bool plain_;  // numbers may be read the quick way, with this decimal mark
  char mark_;
  CsvTable table_;
};

}  // namespace

CsvFile::CsvFile(const std::string& path)
    : CsvFile(path == "-" ? "standard input" : path, read_whole(path)) {}

CsvFile::CsvFile(std::string path, std::string text, std::size_t header_line)
    : path_(std::move(path)), text_(std::move(text)) {
  // Empty lines at the end are no rows.
  const auto last = text_.find_last_not_of(" \t\r\n");
  text_.resize(last == std::string::npos ? 0 : std::min(text_.size(), text_.find('\n', last)));
  read_header(header_line);
}

std::size_t CsvFile::column(std::string_view name_or_number) const {
  std::size_t found = headers_.size();
  for (std::size_t i = 0; i < headers_.size(); ++i) {
    if (headers_[i] == name_or_number) return i;
    if (found == headers_.size() && same_letters(headers_[i], name_or_number)) found = i;
  }
  if (found < headers_.size()) return found;
  std::size_t number = 0;
  const char* end = name_or_number.data() + name_or_number.size();
  const auto [stop, error] = std::from_chars(name_or_number.data(), end, number);
  if (error == std::errc{} && stop == end && number >= 1 && number <= headers_.size()) {
    return number - 1;
  }
  std::string names;
  for (const std::string& header : headers_) names += (names.empty() ? "" : ", ") + header;
  throw WorkError(path_ + ": there is no column " + in_quotes(name_or_number) +
                  " (columns: " + names + ")");
}

std::string CsvFile::by_remedy() const {
  std::string column = "COL";
  for (const char* word : {"api", "uwi", "bore", "well"}) {  // the last is the surest
    for (const std::string& name : headers_) {
      std::string lower = name;
      for (char& c : lower) c = lower_case(c);
      if (lower.find(word) == std::string::npos) continue;
      column = name.find_first_of(" ,") == std::string::npos ? name : "'" + name + "'";
      break;
    }
  }
  return "--by " + column + " takes wells apart that share a file";
}

std::string CsvFile::place(std::size_t line, std::size_t column) const {
  std::string text = path_ + ":" + std::to_string(line) + ": column " + std::to_string(column + 1);
  if (column < headers_.size()) text += " (" + headers_[column] + ")";
  return text + ": ";
}

template <class TakeCell, class EndRow>
void CsvFile::walk(const TakeCell& take, const EndRow& end_row) const {
  const std::size_t columns = headers_.size();
  FieldScanner scanner(std::string_view(text_).substr(rows_at_), rows_on_line_, form_.delimiter);
  if (scanner.at_end()) throw WorkError(path_ + ": the file has a header and no rows");
  const auto take_row = [&](std::size_t line) {
    std::size_t count = 0;
    bool beyond = false;  // a cell without a header that is not empty
    do {
      if (count < columns) {
        take(scanner, count);
      } else if (!scanner.take(count).empty()) {
        beyond = true;
      }
      ++count;
    } while (scanner.next_field());
    if (count >= columns && !beyond) return;
    throw WorkError(path_ + ":" + std::to_string(line) + ": the row has " + counted(count, "cell") +
                    ", the header has " + std::to_string(columns));
  };
  while (!scanner.at_end()) {
    if (columns > 1 && scanner.skip_no_row()) continue;
    const std::size_t line = scanner.line();
    try {
      take_row(line);
    } catch (const CellFault& fault) {
      throw WorkError(place(fault.line, fault.column) + fault.problem);
    }
    end_row(line, scanner);
  }
}

CsvTable CsvFile::read(const CsvReading& reading) const {
  CellTaker cells(*this, reading, headers_.size());
  std::vector<std::size_t>& lines = cells.table().lines;
  walk([&](FieldScanner& scanner, std::size_t c) { cells.take(scanner, c); },
       [&](std::size_t line, const FieldScanner& scanner) {
         lines.push_back(line);
         constexpr std::size_t kReportEvery = std::size_t{1} << 16;
         if (reading.progress && lines.size() % kReportEvery == 0) {
           reading.progress(lines.size(), scanner.offset(), text_.size());
         }
       });
  cells.finish();
  return std::move(cells.table());
}

void CsvFile::each_row(const std::function<void(const std::vector<std::string>&)>& take) const {
  std::vector<std::string> texts(headers_.size());
  walk([&](FieldScanner& scanner, std::size_t c) { texts[c].assign(scanner.take(c)); },
       [&](std::size_t, const FieldScanner&) { take(texts); });
}

std::optional<double> parse_number(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  double number = 0.0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (stop != end || text.empty()) return std::nullopt;
  if (error == std::errc::result_out_of_range) {
    return std::strtod(std::string(text).c_str(), nullptr);  // tells 0 from infinite
  }
  if (error != std::errc{}) return std::nullopt;
  return number;
}

bool wants_quotes(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](char c) {
    return c == ',' || c == ';' || c == '"' || c == '\t' || c == '\r' || c == '\n';
  });
}

void add_csv_field(std::string& line, std::string_view text) {
  if (!wants_quotes(text)) {
    line += text;
    return;
  }
  line += '"';
  for (const char c : text) {
    if (c == '"') line += '"';
    line += c;
  }
  line += '"';
}

}  // namespace vqmath63::host
