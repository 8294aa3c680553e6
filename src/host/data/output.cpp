#include "host/data/output.hpp"

#include <cerrno>
#include <cstring>
#include <fstream>
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
    stream_.close();  // or some systems keep the file
    std::error_code ignored;
    fs::remove(written_, ignored);
  }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Writes the table and puts the file in its place; returns the number of rows.
  std::size_t write(std::vector<TableColumn> columns, const FillTable& fill) {
    std::size_t rows = 0;
    try {
      rows = write_table(stream_, TableForm::kCsv, std::move(columns), fill);
    } catch (const OutputLost&) {
      fail();
    }
    finish();
    return rows;
  }

 private:
  void finish() {
    stream_.close();
    if (!stream_) fail();
    if (written_ == target_) return;
    std::error_code error;
    fs::rename(written_, target_, error);
    if (error) fail(error.message());
    written_ = target_;
  }

  // Begins a new file beside the target, with the target's permissions. Where the folder takes none
  // the target itself is written.
  void make_room_beside(const fs::file_status& status) {
    if (fs::exists(status) && !may_write(target_)) return;
    fs::path beside = target_;
    beside += ".part" + std::to_string(process_id());
    if (!create_new(beside)) return;
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

void check_output(const std::string& output, const std::string& input) {
  std::error_code ignored;
  if (fs::equivalent(path_of(output), path_of(input), ignored)) {
    throw UsageError("-o names the input file itself");
  }
}

void put_table(const std::string& output, std::vector<TableColumn> columns, const FillTable& fill,
               const std::string& content) {
  if (for_reading(output)) {
    write_table(std::cout, TableForm::kAligned, std::move(columns), fill);
  } else if (output == "-") {
    write_table(std::cout, TableForm::kCsv, std::move(columns), fill);
  } else {
    OutputFile file(output);
    const std::size_t rows = file.write(std::move(columns), fill);
    std::cout << output << ": " << (content.empty() ? counted(rows, "row") : content) << '\n';
  }
}

void put_table(const std::string& output, std::vector<TableColumn> columns,
               const std::vector<Texts>& rows) {
  put_table(output, std::move(columns), [&](TableWriter& table) {
    for (const Texts& row : rows) table.row(row);
  });
}

void print_list(const std::vector<Texts>& rows) {
  put_table("", std::vector<TableColumn>(rows.front().size(), {"", Align::kLeft}), rows);
}

}  // namespace vqmath63::host
