#include "host/data/output.hpp"

#include <filesystem>
#include <fstream>
#include <iostream>

#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {

void check_output(const std::string& output, const std::string& input) {
  std::error_code ignored;
  if (std::filesystem::equivalent(output, input, ignored)) {
    throw UsageError("-o names the input file itself");
  }
}

void write_file(const std::string& path, const std::string& told,
                const std::function<void(std::ostream&)>& print) {
  std::ofstream file(path, std::ios::binary);
  print(file);
  file.close();
  if (!file) throw WorkError(path + ": cannot be written");
  std::cout << path << ": " << told << '\n';
}

void put_rows(const std::string& output, TextRows rows, const std::vector<Align>& aligned) {
  if (output.empty()) {
    print_rows(std::cout, std::move(rows), aligned);
  } else if (output == "-") {
    print_csv_rows(std::cout, rows);
  } else {
    write_file(output, counted(rows.size() - 1, "row"),
               [&](std::ostream& out) { print_csv_rows(out, rows); });
  }
}

}  // namespace vqmath63::host
