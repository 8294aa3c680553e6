#include "host/data/csv.hpp"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "host/data/csv_scanner.hpp"
#include "host/data/files.hpp"
#include "host/data/moment.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

std::string read_whole(const std::string& path) {
  const auto fail = [&] {
    if (path != "-") throw WorkError(path + ": " + std::strerror(errno));
    const bool is_closed = errno == EBADF || errno == EINVAL;  // the latter on Windows
    throw WorkError(std::string("standard input: ") +
                    (is_closed ? "it is closed" : std::strerror(errno)));
  };
  struct Close {
    void operator()(std::FILE* file) const {
      if (file != stdin) std::fclose(file);
    }
  };
  const std::unique_ptr<std::FILE, Close> file(path == "-" ? stdin : open_to_read(path_of(path)));
  if (file == nullptr) fail();
  std::string text;
  constexpr std::size_t kMostAtOnce = std::size_t{1} << 22;
  std::size_t chunk = std::size_t{1} << 16;
  for (std::size_t got = 1; got > 0; chunk = std::min(2 * chunk, kMostAtOnce)) {
    const std::size_t had = text.size();
    if (text.capacity() < had + chunk) text.reserve(2 * had + chunk);
    text.resize(had + chunk);
    got = std::fread(text.data() + had, 1, chunk, file.get());
    text.resize(had + got);
    if (std::ferror(file.get()) != 0) fail();
  }
  return text;
}

// The number that a text with a decimal comma means, written with a point.
std::optional<std::string> with_decimal_point(std::string_view text) {
  std::string number(text);
  const auto comma = number.find(',');
  if (comma == std::string::npos) return std::nullopt;
  number[comma] = '.';
  if (!parse_number(number)) return std::nullopt;
  return number;
}

// Takes cells into the columns of a table.
class CellTaker {
 public:
  CellTaker(const CsvFile& file, const CsvReading& reading, std::size_t columns)
      : file_(file), reading_(reading), wants_(reading.wants), first_gap_(columns, 0) {
    wants_.resize(columns, Want::kNumbersIfAny);
    table_.columns.resize(columns);
  }

  void take(FieldScanner& scanner, std::size_t c) {
    CsvColumn& column = table_.columns[c];
    double number = 0.0;
    if (column.kind == CellKind::kNumber && scanner.take_plain_number(number)) {
      column.values.push_back(number);
      return;
    }
    const std::size_t line = scanner.line();
    const std::string_view text = scanner.take(c);
    if (wants_[c] != Want::kNothing && column.kind != CellKind::kText) fill(column, c, line, text);
  }

  CsvTable& table() { return table_; }

  /// Judges the columns that have no filled cell at all.
  void finish() {
    for (std::size_t c = 0; c < wants_.size(); ++c) {
      CsvColumn& column = table_.columns[c];
      if (column.kind != CellKind::kUnknown || first_gap_[c] == 0) continue;
      if (may_fill(c)) {
        column.kind = CellKind::kNumber;
      } else if (wants_[c] == Want::kNumbersIfAny) {
        column.values = {};
      } else {
        refuse_gap(c, first_gap_[c]);
      }
    }
  }

 private:
  void fill(CsvColumn& column, std::size_t c, std::size_t line, std::string_view text) {
    const std::optional<double> number = parse_number(text);
    if (text.empty() || (number && std::isnan(*number))) {
      if (!may_fill(c) && column.kind != CellKind::kUnknown) refuse_gap(c, line);
      if (first_gap_[c] == 0) first_gap_[c] = line;
      column.values.push_back(reading_.empty_as.value_or(0.0));
      return;
    }
    if (column.kind == CellKind::kUnknown) decide(column, c, number.has_value(), text);
    if (column.kind == CellKind::kText) {
      column.values = {};
      return;
    }
    const std::optional<double> value =
        column.kind == CellKind::kDate ? parse_moment(text) : number;
    if (!value) refuse(c, line, column.kind, text);
    if (!std::isfinite(*value)) {
      throw WorkError(file_.place(line, c) + in_quotes(text) + " is not a finite number");
    }
    column.values.push_back(*value);
  }

  // The first filled cell says what the column holds.
  void decide(CsvColumn& column, std::size_t c, bool is_number, std::string_view text) {
    const Want want = wants_[c];
    const bool dates_welcome = want == Want::kNumbersOrDates || want == Want::kTimes;
    if (is_number || want == Want::kNumbers || with_decimal_point(text)) {
      column.kind = CellKind::kNumber;
    } else {
      column.kind = dates_welcome ? CellKind::kDate : CellKind::kText;
    }
    if (column.kind != CellKind::kText && first_gap_[c] != 0 && !may_fill(c)) {
      refuse_gap(c, first_gap_[c]);
    }
  }

  bool may_fill(std::size_t c) const {
    return reading_.empty_as.has_value() && wants_[c] != Want::kTimes;
  }

  [[noreturn]] void refuse_gap(std::size_t c, std::size_t line) const {
    throw WorkError(file_.place(line, c) +
                    (wants_[c] == Want::kTimes
                         ? "the time is missing"
                         : "the value is missing (--empty-as VALUE fills such cells)"));
  }

  [[noreturn]] void refuse(std::size_t c, std::size_t line, CellKind kind,
                           std::string_view text) const {
    const bool date = kind == CellKind::kDate;
    std::string problem = in_quotes(text) + (date ? " is not a date" : " is not a number");
    if (const auto with_point = with_decimal_point(text)) {
      problem += " (a decimal comma is not supported: write " + *with_point + ")";
    } else if (date) {
      const bool none_yet = table_.columns[c].values.empty();
      problem = why_no_moment(text, none_yet ? "is neither a number nor a date" : "is not a date");
    }
    throw WorkError(file_.place(line, c) + problem);
  }

  const CsvFile& file_;
  const CsvReading& reading_;
  std::vector<Want> wants_;
  std::vector<std::size_t> first_gap_;  // line of a column's first missing cell, 0 for none
  CsvTable table_;
};

char detect_delimiter(std::string_view header) {
  constexpr std::string_view kDelimiters = "\t;,";
  std::size_t counts[3] = {};
  bool inside = false;
  for (const char c : header) {
    if (c == '"') inside = !inside;
    if (c == '\n' && !inside) break;
    const auto which = kDelimiters.find(c);
    if (!inside && which != std::string_view::npos) ++counts[which];
  }
  std::size_t best = 2;
  for (std::size_t i = 0; i < 2; ++i) {
    if (counts[i] > counts[best]) best = i;
  }
  return kDelimiters[best];
}

}  // namespace

CsvFile::CsvFile(const std::string& path)
    : CsvFile(path == "-" ? "standard input" : path, read_whole(path)) {}

CsvFile::CsvFile(std::string path, std::string text)
    : path_(std::move(path)), text_(std::move(text)) {
  // Empty lines at the end are no rows.
  const auto last = text_.find_last_not_of(" \t\r\n");
  text_.resize(last == std::string::npos ? 0 : std::min(text_.size(), text_.find('\n', last)));
  read_header();
}

void CsvFile::read_header() {
  if (text_.starts_with("\xEF\xBB\xBF")) rows_at_ = 3;
  if (text_.starts_with("\xFF\xFE") || text_.starts_with("\xFE\xFF")) {
    throw WorkError(path_ + ": the file is UTF-16 text; save it as UTF-8");
  }
  if (text_.size() == rows_at_) throw WorkError(path_ + ": the file is empty");
  if (text_.find('\0') != std::string::npos) throw WorkError(path_ + ": this is no text file");
  delimiter_ = detect_delimiter(std::string_view(text_).substr(rows_at_));
  FieldScanner scanner(*this, text_, rows_at_, 1, delimiter_);
  do {
    std::string name(scanner.take(headers_.size()));
    if (name.empty()) name = "column " + std::to_string(headers_.size() + 1);
    headers_.push_back(std::move(name));
  } while (scanner.next_field());
  rows_at_ = scanner.offset();
  rows_on_line_ = scanner.line();

  if (parse_number(headers_[0]) || parse_moment(headers_[0])) {
    throw WorkError(path_ + ":1: the first line must name the columns, but it begins with " +
                    in_quotes(headers_[0]));
  }
  for (std::size_t i = 1; i < headers_.size(); ++i) {
    for (std::size_t k = 0; k < i; ++k) {
      if (headers_[i] != headers_[k]) continue;
      throw WorkError(path_ + ":1: columns " + std::to_string(k + 1) + " and " +
                      std::to_string(i + 1) + " have the same name " + in_quotes(headers_[i]));
    }
  }
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

std::string CsvFile::place(std::size_t line, std::size_t column) const {
  std::string text = path_ + ":" + std::to_string(line) + ": column " + std::to_string(column + 1);
  if (column < headers_.size()) text += " (" + headers_[column] + ")";
  return text + ": ";
}

template <class TakeCell, class EndRow>
void CsvFile::walk(const TakeCell& take, const EndRow& end_row) const {
  const std::size_t columns = headers_.size();
  FieldScanner scanner(*this, text_, rows_at_, rows_on_line_, delimiter_);
  if (scanner.at_end()) throw WorkError(path_ + ": the file has a header and no rows");
  while (!scanner.at_end()) {
    if (columns > 1 && scanner.skip_empty_line()) continue;
    const std::size_t line = scanner.line();
    std::size_t count = 0;
    do {
      if (count < columns) {
        take(scanner, count);
      } else {
        scanner.take(count);
      }
      ++count;
    } while (scanner.next_field());
    if (count != columns) {
      throw WorkError(path_ + ":" + std::to_string(line) + ": the row has " +
                      counted(count, "cell") + ", the header has " + std::to_string(columns));
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

void add_csv_field(std::string& line, std::string_view text) {
  const auto wants_quotes = [](char c) {
    return c == ',' || c == ';' || c == '"' || c == '\t' || c == '\r' || c == '\n';
  };
  if (std::none_of(text.begin(), text.end(), wants_quotes)) {
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
