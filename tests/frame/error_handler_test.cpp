// Where message lines end up.
#include "frame/error_handler.hpp"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "companion_fixture.hpp"

namespace vqmath63 {
namespace {

using Lines = std::vector<std::string>;

class ErrorHandlerTest : public ::testing::Test {
 protected:
  ErrorHandlerTest() {
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::path(::testing::TempDir()) /
              ("vqmath63_" + std::to_string(getpid()) + "_" + test->name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    bool on = true;
    sink.SetLogToFile(on);
  }
  ~ErrorHandlerTest() override {
    set_message_callback({});
    std::filesystem::remove_all(folder_);
  }

  // What standard error receives of one line.
  std::string report(std::string line, bool flag = true) {
    ::testing::internal::CaptureStderr();
    sink.ReportError(line, flag);
    return ::testing::internal::GetCapturedStderr();
  }
  std::filesystem::path log_to(const std::u8string& name) {
    const std::filesystem::path path = folder_ / name;
    const std::u8string text = path.u8string();
    std::string utf8(text.begin(), text.end());
    sink.SetLogFile(utf8);
    return path;
  }
  void set_version(std::string text) { sink.SetVersionText(text); }

  // The lines of a log behind their time stamps, which tell when the test ran.
  Lines logged(const std::filesystem::path& path) const {
    std::ifstream file(path);
    Lines lines;
    for (std::string line; std::getline(file, line);) {
      std::tm moment{};
      const char* const end = ::strptime(line.c_str(), "%Y-%m-%d %T ", &moment);
      if (!line.starts_with(std::string(20, ' '))) {  // no further line of a message
        EXPECT_EQ(end, line.c_str() + 20) << line;
        EXPECT_GE(::timegm(&moment), begun_) << line;
        EXPECT_LE(::timegm(&moment), local_seconds()) << line;
      }
      lines.push_back(line.substr(20));
    }
    return lines;
  }

  const std::time_t begun_ = local_seconds();
  BuiltInErrorHandler sink;
  std::filesystem::path folder_;
};

TEST_F(ErrorHandlerTest, log_sessions_begin_with_the_version) {
  const std::filesystem::path path = log_to(u8"größe.log");
  set_version("version 1");
  EXPECT_EQ(report("one"), "");
  EXPECT_EQ(report("two"), "");
  set_version("version 1");  // no news, no new session
  EXPECT_EQ(report("three"), "");
  set_version("version 2");
  EXPECT_EQ(report("four"), "");
  EXPECT_EQ(logged(path), (Lines{"version 1", "one", "two", "three", "version 2", "four"}));
  const std::filesystem::path other = log_to(u8"other.log");
  EXPECT_EQ(report("five"), "");
  EXPECT_EQ(logged(other), (Lines{"version 2", "five"}));
}

TEST_F(ErrorHandlerTest, a_log_that_is_off_or_cannot_be_written_loses_no_line) {
  set_version("version 1");
  EXPECT_EQ(report("no path"), "no path\n");
  mkfifo(log_to(u8"nobody reads this").c_str(), 0600);
  EXPECT_EQ(report(std::string("a\0b", 3)), std::string("a\0b\n", 4));
  log_to(u8"");  // the folder itself
  EXPECT_EQ(report("one"), "one\n");
  const std::filesystem::path path = log_to(u8"good.log");
  EXPECT_EQ(report("two"), "");
  bool off = false;
  sink.SetLogToFile(off);
  EXPECT_EQ(report("three"), "three\n");
  EXPECT_EQ(logged(path), (Lines{"version 1", "two"}));
}

TEST_F(ErrorHandlerTest, what_a_full_disk_cuts_short_is_told_and_ends_its_line) {
  const std::filesystem::path path = log_to(u8"full.log");
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit full{60, before.rlim_max};
  const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
  EXPECT_EQ(report("one"), "");
  setrlimit(RLIMIT_FSIZE, &full);
  EXPECT_EQ(report("a line that is long"), "a line that is long\n");
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, ignored);
  EXPECT_EQ(report("three\r\nfour\nfive"), "");
  EXPECT_EQ(logged(path), (Lines{"one", "a line that is l", "three", "four", "five"}));
}

TEST_F(ErrorHandlerTest, processes_share_a_log_line_by_line) {
  const std::filesystem::path path = log_to(u8"shared.log");
  constexpr int kProcesses = 3;
  constexpr int kLines = 400;
  for (int p = 0; p < kProcesses; ++p) {
    if (fork() > 0) continue;
    for (int i = 0; i < kLines; ++i) {
      std::string line = std::string(1, static_cast<char>('a' + p)) + std::to_string(i) + ' ';
      line.append(i % 50 == 0 ? 20'000 : 30, '.');
      bool flag = true;
      sink.ReportError(line, flag);
    }
    _exit(0);
  }
  while (wait(nullptr) > 0) {
  }
  int next[kProcesses] = {};
  for (const std::string& line : logged(path)) {
    int& i = next[std::clamp(line[0] - 'a', 0, kProcesses - 1)];
    EXPECT_EQ(line.substr(1, line.find('.') - 1), std::to_string(i) + ' ');
    EXPECT_EQ(line.size() - line.find('.'), i % 50 == 0 ? 20'000U : 30U);
    ++i;
  }
  for (const int count : next) EXPECT_EQ(count, kLines);
}

TEST_F(ErrorHandlerTest, the_hosts_callback_comes_first_and_survives_close_down) {
  const std::filesystem::path path = log_to(u8"other_thread.log");
  Lines taken;
  set_message_callback([&](const std::string& line, bool flag) {
    taken.push_back(line + (flag ? " true" : " false"));
  });
  EXPECT_EQ(report("one", false), "");
  common_globals() = {};
  std::string two = "two";
  bool flag = true;
  error_handler()->ReportError(two, flag);
  common_globals() = {};
  std::thread([&] { EXPECT_EQ(report("three"), ""); }).join();  // not that thread's callback
  EXPECT_EQ(taken, (Lines{"one false", "two true"}));
  EXPECT_EQ(logged(path), Lines{"three"});
}

TEST_F(ErrorHandlerTest, a_callback_that_throws_or_goes_away_loses_no_line) {
  set_message_callback([](const std::string&, bool) { throw std::runtime_error("host"); });
  EXPECT_EQ(report("one"), "one\n");
  std::string last;
  set_message_callback([&](const std::string& line, bool) {
    set_message_callback({});
    last = line;
  });
  EXPECT_EQ(report("two"), "");
  EXPECT_EQ(last, "two");
  EXPECT_EQ(report("three"), "three\n");
}

// A process without such a stream, as those with windows only have none.
TEST_F(ErrorHandlerTest, the_system_takes_what_standard_error_does_not) {
  static std::string taken;
  set_system_output([](const std::string& line) noexcept { taken += line + ";"; });
  std::string line = "one";
  bool flag = true;
  const int full = open("/dev/full", O_WRONLY), kept = dup(2);
  dup2(full, 2);
  sink.ReportError(line, flag);
  dup2(kept, 2);
  close(kept);
  close(full);
  EXPECT_EQ(report("two"), "two\n");
  EXPECT_EQ(taken, "one;");
  set_system_output(nullptr);
}

}  // namespace
}  // namespace vqmath63
