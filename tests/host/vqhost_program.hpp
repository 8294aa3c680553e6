// Runs the program vqhost over files of a test's own folder.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace vqmath63::host {

namespace fs = std::filesystem;

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

inline std::string contents(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

inline std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

inline std::vector<std::string> fields_of(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream in(line);
  for (std::string field; std::getline(in, field, ',');) fields.push_back(field);
  return fields;
}

inline double number_in(const std::string& text) {
  double number = std::nan("");
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

class Vqhost : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "vqhost_test_XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    folder_ = name;
  }
  void TearDown() override { fs::remove_all(folder_); }

  void write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ / name, std::ios::binary) << text;
  }

  // The program, or the one that stands in its place, such as that for Windows.
  static std::string program() {
    const char* const other = std::getenv("VQHOST");
    return other == nullptr ? VQHOST_PATH : other;
  }

  // Runs the program in the folder of the test's files, after other words of the shell.
  Outcome run(const std::string& arguments, const std::string& before = {}) const {
    const std::string command = "cd '" + folder_.string() + "' && " + before + " '" + program() +
                                "' </dev/null 2>err.txt " + arguments;
    Outcome outcome;
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return outcome;
    std::array<char, 4096> block{};
    for (std::size_t got = 0; (got = std::fread(block.data(), 1, block.size(), pipe)) > 0;) {
      outcome.out.append(block.data(), got);
    }
    const int ended = pclose(pipe);
    outcome.status = WIFEXITED(ended) ? WEXITSTATUS(ended) : -1;
    outcome.err = contents(folder_ / "err.txt");
    return outcome;
  }

  fs::path folder_;
};

/// Expects the texts one after the other.
inline void expect_in_order(const std::string& text, const std::vector<std::string>& wanted,
                            const char* where) {
  std::size_t at = 0;
  for (const std::string& each : wanted) {
    const std::size_t found = text.find(each, at);
    if (found == std::string::npos) {
      ADD_FAILURE() << where << " lacks \"" << each << "\":\n" << text;
      return;
    }
    at = found + each.size();
  }
}

}  // namespace vqmath63::host
