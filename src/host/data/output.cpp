#include "host/data/output.hpp"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <future>
#include <iostream>

#include "host/data/files.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

namespace fs = std::filesystem;

std::size_t write_table(std::ostream& out, TableForm form, std::vector<TableColumn> columns,
                        const FillTable& fill) {
  TableWriter table(out, form, std::move(columns));
  while (table.wants_rows()) fill(table);
  return table.rows();
}

void write_lines(std::ostream& out, const std::function<void(std::string& lines)>& next) {
  std::string lines;
  std::string written;
  std::future<void> writing;
  do {
    next(lines);
    if (writing.valid()) writing.get();
    if (!out) throw OutputLost();
    std::swap(lines, written);
    lines.clear();
    writing = std::async(std::launch::async, [&] {
      out.write(written.data(), static_cast<std::streamsize>(written.size()));
    });
  } while (!written.empty());
  writing.get();
}

// The file that a path leads to, behind links; what is no file, a terminal for instance, is written
// as it stands.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path) : path_(path) {
    std::error_code error;
    const fs::path given = path_of(path);
    const fs::path target = fs::weakly_canonical(given, error);
    const fs::file_status status = fs::status(given, error);
    written_ = target_ = error || target.empty() ? given : target;
    if (!fs::exists(status) || fs::is_regular_file(status)) make_room_beside(status);
    stream_.open(written_, std::ios::binary);
  }
  ~OutputFile() {
    if (written_ == target_) return;
    remove_when_stopped({});
    stream_.close();  // or some systems keep the file
    std::error_code ignored;
    fs::remove(written_, ignored);
  }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Writes the table and puts the file in its place; returns the number of rows.
  std::size_t write(TableForm form, std::vector<TableColumn> columns, const FillTable& fill) {
    std::size_t rows = 0;
    try {
      rows = write_table(stream_, form, std::move(columns), fill);
    } catch (const OutputLost&) {
      fail();
    }
    finish();
    return rows;
  }

  /// Writes lines as they are made, and puts the file in its place.
  void write(const std::function<void(std::string& lines)>& next) {
    try {
      write_lines(stream_, next);
    } catch (const OutputLost&) {
      fail();
    }
    finish();
  }

  /// Writes a whole text and puts the file in its place.
  void write(const std::string& text) {
    stream_ << text;
    finish();
  }

 private:
  void finish() {
    stream_.close();
    if (!stream_) fail();
    if (written_ == target_) return;
    std::error_code error;
    fs::rename(written_, target_, error);
    if (error) fail(error.message());
    remove_when_stopped({});
    written_ = target_;
  }

  // Begins a new file beside the target, with the target's permissions. Where the folder takes none
  // the target itself is written.
  void make_room_beside(const fs::file_status& status) {
    if (fs::exists(status) && !may_write(target_)) return;
    fs::path beside = target_;
    beside += ".part" + std::to_string(process_id());
    remove_when_stopped(beside);
    if (!create_new(beside)) return remove_when_stopped({});
    written_ = beside;
    std::error_code ignored;
    if (fs::exists(status)) fs::permissions(beside, status.permissions(), ignored);
  }

  // Says what the last call to the system that failed says.
  [[noreturn]] void fail(const std::string& why = std::strerror(errno)) const {
    throw WorkError(path_ + ": cannot be written: " + why);
  }

  std::string path_;
  fs::path target_;
  fs::path written_;
  std::ofstream stream_;
};

}  // namespace

TableForm Output::table_form() const {
  if (form) return *form;
  if (path.empty()) return TableForm::kAligned;
  const std::string ending = path_of(path).extension().string();
  if (same_letters(ending, ".json")) return TableForm::kJson;
  if (same_letters(ending, ".md")) return TableForm::kMarkdown;
  return TableForm::kCsv;
}

bool Output::for_reading() const {
  const TableForm chosen = table_form();
  return chosen == TableForm::kAligned || chosen == TableForm::kMarkdown;
}

void check_output(const Output& output, const std::string& input) {
  std::error_code ignored;
  if (fs::equivalent(path_of(output.path), path_of(input), ignored)) {
    throw UsageError("-o names the input file itself");
  }
}

void say_beside(const Output& output, const std::string& words) {
  if (output.among_words() || !(output.path.empty() || output.path == "-")) {
    std::cout << words << '\n';
  } else {
    std::cerr << "vqhost: " << words << '\n';
  }
}

void put_table(const Output& output, std::vector<TableColumn> columns, const FillTable& fill,
               const std::string& content) {
  if (output.path.empty() || output.path == "-") {
    write_table(std::cout, output.table_form(), std::move(columns), fill);
  } else {
    OutputFile file(output.path);
    const std::size_t rows = file.write(output.table_form(), std::move(columns), fill);
    std::cout << output.path << ": " << (content.empty() ? counted(rows, "row") : content) << '\n';
  }
}

void put_lines(const Output& output, const std::function<void(std::string& lines)>& next,
               const std::string& content) {
  if (output.path.empty() || output.path == "-") return write_lines(std::cout, next);
  OutputFile file(output.path);
  file.write(next);
  std::cout << output.path << ": " << content << '\n';
}

void put_table(const Output& output, std::vector<TableColumn> columns,
               const std::vector<Texts>& rows) {
  put_table(output, std::move(columns), [&](TableWriter& table) {
    for (const Texts& row : rows) table.row(row);
  });
}

void put_text(const std::string& path, const std::string& text, const std::string& content) {
  if (path == "-") {
    std::cout << text;
  } else {
    OutputFile(path).write(text);
    std::cout << path << ": " << content << '\n';
  }
}

void put_list(const Output& output, const Texts& names, const std::vector<Texts>& rows) {
  std::vector<TableColumn> columns;
  for (const std::string& name : names) {
    columns.push_back({output.among_words() ? "" : name, Align::kLeft});
  }
  put_table(output, std::move(columns), rows);
}

void put_facts(const Output& output, const Facts& facts) {
  std::vector<Texts> rows;
  if (output.among_words()) {
    for (const auto& [word, text] : facts) rows.push_back({word, text});
    return put_list(output, {"", ""}, rows);
  }
  std::vector<TableColumn> columns;
  Texts& row = rows.emplace_back();
  for (const auto& [word, text] : facts) {
    std::size_t c = 0;
    while (c < columns.size() && columns[c].name != word) ++c;
    if (c == columns.size()) {
      columns.push_back({word, Align::kByContent});
      row.push_back(text);
    } else {
      row[c] += "; " + text;
    }
  }
  put_table(output, std::move(columns), rows);
}

}  // namespace vqmath63::host
