// Fuzz target of the command-line host: a transcript of files and command lines, as
// tests/data/vqhost has them, run in this process over a folder of its own. What a transcript
// expects is passed over; what holds for every file and every line is required instead. A line "="
// begins another transcript: corpus/host.txt is many, as `csplit -z FILE '/^=$/' '{*}'` parts them.
//
//   fuzz_host FOLDER tests/data/vqhost -dict=fuzz/host.dict -max_len=3000
//   fuzz_host -merge=1 -use_counters=0 SMALLER_FOLDER FOLDER
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <new>
#include <set>
#include <sstream>

#include "host/client/dispatch_client.hpp"
#include "host/data/csv.hpp"
#include "host/data/moment.hpp"
#include "host/data/values.hpp"
#include "host/program.hpp"
#include "host/text.hpp"

extern "C" HRESULT VQ_API DllCanUnloadNow();

// What no machine has is refused here as a machine refuses it; a sanitizer would end the program.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  constexpr std::size_t kMost = std::size_t{256} << 20;
  return size > kMost ? nullptr : std::malloc(size == 0 ? 1 : size);
}
void* operator new(std::size_t size) {
  if (void* const block = operator new(size, std::nothrow)) return block;
  throw std::bad_alloc();
}
// clang-format off
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return operator new(size, std::nothrow); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
// clang-format on

namespace vqmath63::host {
namespace {

namespace fs = std::filesystem;

fs::path folder;

void require(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "\nbroken: %s\n", what.c_str());
  std::abort();
}

/// A stream's end, which takes no more than a megabyte: a full disk.
class Capture : public std::streambuf {
 public:
  std::string text;

 protected:
  std::streamsize xsputn(const char* from, std::streamsize count) override {
    if (text.size() > kMost) return 0;
    text.append(from, static_cast<std::size_t>(count));
    return count;
  }
  int_type overflow(int_type c) override {
    const char one = traits_type::to_char_type(c);
    return xsputn(&one, 1) == 1 ? c : traits_type::eof();
  }

 private:
  static constexpr std::size_t kMost = 1'000'000;
};

/// Puts a stream's end in place of its own, with the stream in its first state.
class Redirected {
 public:
  explicit Redirected(std::ostream& stream) : stream_(stream), own_(stream.rdbuf(&capture)) {}
  ~Redirected() { stream_.rdbuf(own_); }  // clears its state too
  Redirected(const Redirected&) = delete;
  Redirected& operator=(const Redirected&) = delete;

  Capture capture;

 private:
  std::ostream& stream_;
  std::streambuf* own_;
};

/// Files that the process writes end at a megabyte.
class FullDisk {
 public:
  FullDisk() {
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit small = before_;
    small.rlim_cur = 1'000'000;
    setrlimit(RLIMIT_FSIZE, &small);
  }
  ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before_{};
};

void require_one_reading(const CsvTable& table, bool filled) {
  for (const CsvColumn& column : table.columns) {
    require(column.values.empty() || column.values.size() == table.lines.size(), "a ragged table");
    for (const double value : column.values) {
      require(std::isfinite(value) || filled, "a number that is none");
    }
  }
}

/// Numbers and moments are written so that they read back the same.
void check_value(std::string_view text) {
  const std::string quoted(text);
  if (const auto number = parse_number(text); number && !std::isnan(*number)) {
    require(parse_number(number_text(*number)) == number, "number_text of " + quoted);
    require(parse_number(plain_text(*number)) == number, "plain_text of " + quoted);
  }
  const auto moment = parse_moment(text);
  require(!moment || looks_like_moment(text), "a moment that does not look like one: " + quoted);
  if (!moment) {
    require(!why_no_moment(text).empty(), quoted);
    return;
  }
  constexpr double kSecond = 1.0 / 86400.0;
  const auto again = parse_moment(exact_moment_text(*moment));
  require(!again ? *moment > 2958465.9 : std::fabs(*again - *moment) < kSecond,
          "exact_moment_text of " + quoted);
  require(std::fabs(day_count(automation_date(*moment)) - *moment) < 1e-6, "date of " + quoted);
}

void check_csv(const std::string& text) {
  try {
    const CsvFile file("f.csv", text);
    for (const std::string& name : file.headers()) {
      require(file.headers()[file.column(name)] == name, "a column is not found: " + name);
    }
    std::size_t rows = 0;
    for (const Want want : {Want::kNumbersIfAny, Want::kTimes, Want::kNumbersOrDates}) {
      CsvReading reading;
      reading.wants.assign(1, want);
      if (want != Want::kTimes) reading.empty_as = std::nan("");
      const CsvTable table = file.read(reading);
      require_one_reading(table, want != Want::kTimes);
      rows = table.lines.size();
    }
    std::string copy = "a";
    for (std::size_t c = 1; c < file.headers().size(); ++c) copy += ",a" + std::to_string(c);
    std::vector<std::vector<std::string>> cells;
    file.each_row([&](const std::vector<std::string>& row) {
      for (std::size_t c = 0; c < row.size(); ++c) {
        add_csv_field(copy += c == 0 ? '\n' : ',', row[c]);
        check_value(row[c]);
      }
      cells.push_back(row);
    });
    require(cells.size() == rows, "rows by the one way and the other");
    const CsvFile written("copy.csv", copy + "\n");
    std::size_t at = 0;
    const auto same = [&](const std::vector<std::string>& row) {
      require(at < cells.size() && row == cells[at++], "a row that was written and read");
    };
    const bool gaps = file.headers().size() == 1;  // where an empty line is a row
    if (!gaps) written.each_row(same);
  } catch (const WorkError& error) {
    const std::string told = error.what();
    require(told.starts_with("f.csv:"), "a message without its file: " + told);
  }
}

/// The words of a line as a shell takes them apart; `input` is the file behind a "<".
std::vector<std::string> words_of(std::string_view line, std::string& input) {
  std::vector<std::string> words;
  char quote = 0;
  bool open = false;
  for (const char c : line) {
    if (quote != 0 ? c == quote : c == '\'' || c == '"') {
      quote = quote != 0 ? '\0' : c;
      if (!open) words.emplace_back();
      open = true;
    } else if (quote == 0 && c == ' ') {
      open = false;
    } else if (c != '\0') {
      if (!open) words.emplace_back();
      open = true;
      words.back() += c == '/' ? '_' : c;  // nothing beyond the folder
    }
  }
  for (auto word = words.begin(); word != words.end();) {
    if (!word->starts_with('<')) {
      ++word;
      continue;
    }
    input = word->substr(1);
    word = words.erase(word);
  }
  return words;
}

/// Runs a command line and looks at what is the same for all of them.
void run_line(std::string_view line) {
  std::string input;
  std::vector<std::string> words = words_of(line, input);
  for (const std::string& word : words) check_value(word);
  if (input.empty() || std::freopen(input.c_str(), "rb", stdin) == nullptr) {
    require(std::freopen("/dev/null", "rb", stdin) != nullptr, "no /dev/null");
  }
  std::string program = "vqhost";
  std::vector<char*> argv{program.data()};
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  int status = 0;
  std::string out;
  std::string err;
  {
    Redirected to_out(std::cout);
    Redirected to_err(std::cerr);
    const FullDisk full_disk;
    status = run_program(static_cast<int>(argv.size()) - 1, argv.data());
    out = to_out.capture.text;
    err = to_err.capture.text;
  }
  const std::string told = " (" + std::string(line) + ")\n" + err;
  require(status >= 0 && status <= 2, "status " + std::to_string(status) + told);
  require(err.empty() || err.ends_with('\n'), "half a line of messages" + told);
  const bool usage = status == 2 && (err.find("Usage: vqhost") != err.npos ||
                                     err.starts_with("vqhost works on"));  // no command at all
  require(err.empty() || usage || err.starts_with("vqhost: "), "whose message?" + told);
  require(status == 0 || !err.empty(), "a failure without a message" + told);
  require(status != 2 || out.empty(), "output of a wrong command line" + told + out);
  require(DllCanUnloadNow() == S_OK, "an object is left" + told);
  std::string part = ".part" + std::to_string(getpid());
  for (const auto& entry : fs::directory_iterator(".")) {
    require(!entry.path().string().ends_with(part), "half a file is left" + told);
  }
}

std::string unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text.substr(i, 2) == "\\n";
    plain += escape ? '\n' : text[i];
    i += escape ? 1U : 0U;
  }
  return plain;
}

void clear_folder() {
  for (const auto& entry : fs::directory_iterator(".")) fs::remove_all(entry.path());
}

void run_transcript(std::string_view input) {
  std::istringstream lines{std::string(input)};
  std::string name;
  std::string text;
  const auto write_file = [&] {
    if (name.empty()) return;
    check_csv(text);
    std::ofstream(name, std::ios::binary) << text;
    name.clear();
    text.clear();
  };
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("| ")) {
      text += unescaped(std::string_view(line).substr(2)) + "\n";
      continue;
    }
    write_file();
    if (line.starts_with("file ")) {
      name = line.substr(5);
      for (char& c : name) c = c == '/' || c == '\0' ? '_' : c;
    } else if (line == "=") {  // a new transcript
      clear_folder();
    } else if (line.starts_with('$') && line.find(' ') != line.npos) {
      run_line(std::string_view(line).substr(line.find(' ')));
    }
  }
  write_file();
}

}  // namespace
}  // namespace vqmath63::host

extern "C" {

__attribute__((used, visibility("default"))) const char* __asan_default_options() {
  return "allocator_may_return_null=1:max_allocation_size_mb=256";
}

int LLVMFuzzerInitialize(int*, char***) {
  using namespace vqmath63::host;
  std::ios::sync_with_stdio(false);  // once, before the streams are turned elsewhere
  std::signal(SIGXFSZ, SIG_IGN);
  const bool shared = fs::is_directory("/dev/shm");
  std::string name = fs::path(shared ? "/dev/shm" : fs::temp_directory_path()) / "vq_fuzz_XXXXXX";
  require(mkdtemp(name.data()) != nullptr, "no folder");
  folder = name;
  std::atexit([] {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  });
  return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vqmath63::host;
  const fs::path before = fs::current_path();
  fs::current_path(folder);
  run_transcript({reinterpret_cast<const char*>(data), size});
  run_line("call ztAnalyseInfo CloseDown");  // nothing is kept for the next one
  clear_folder();
  fs::current_path(before);
  return 0;
}

}  // extern "C"
