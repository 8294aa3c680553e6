// ztAnalyseInfo: version text, the order of the sink's calls, close-down.
#include "info/analyse_info.hpp"

#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "frame/array_tools.hpp"
#include "frame/common_maths.hpp"
#include "frame/companion_fixture.hpp"
#include "frame/date_tools.hpp"
#include "info/common_globals.hpp"
#include "info/identity.hpp"

namespace vqmath63 {
namespace {

using Events = std::vector<std::string>;

// Records every call of every sink, and the ends of what the shared references hold.
class AnalyseInfoTest : public CompanionTest {
 protected:
  struct Recorder final : ztErrorHandler {
    explicit Recorder(AnalyseInfoTest& owner) : test(owner), number(++test.sinks_made) {}
    ~Recorder() override { note("ends"); }
    void note(const std::string& what) const {
      test.events.push_back(std::to_string(number) + " " + what);
    }
    void take(const std::string& what) const {
      if (test.refuse) test.refuse(what);
      note(what);
    }
    void ReportError(std::string& message, bool& flag) override {
      take((flag ? "line " : "closing line ") + message);
    }
    void SetLogToFile(bool& on) override { take(on ? "log on" : "log off"); }
    void SetLogFile(std::string& file) override { take("file " + file); }
    void SetVersionText(std::string& text) override { take("version " + text); }
    AnalyseInfoTest& test;
    int number;
  };

  AnalyseInfoTest() {
    companion_makers().ErrorHandler = [this] { return std::make_shared<Recorder>(*this); };
  }
  ~AnalyseInfoTest() override { common_globals() = {}; }

  // An object whose end is an event.
  template <class T>
  std::shared_ptr<T> ending(const char* name) {
    return {new T, [this, name](T* object) {
              events.push_back(std::string(name) + " ends");
              delete object;
            }};
  }

  Events events;
  std::function<void(const std::string&)> refuse;
  ztAnalyseInfo info;
  std::string log_file, startup;
  bool log_to_file = true;
  // The program of these tests stands where no component file does.
  const std::string version = "vqmath63 v6.3.2436 (" + component_file() + ":Unknown Date)";
  const std::string closing = "closing line vqmath63 v6.3.2436 Close Down";
};

TEST_F(AnalyseInfoTest, the_version_text_and_the_log_settings_are_handed_over_in_order) {
  EXPECT_EQ(info.DLLVersion(log_file, startup, log_to_file), version);
  EXPECT_EQ(log_file, "vqmath63.txt");
  EXPECT_EQ(events, (Events{"1 log on", "1 file vqmath63.txt", "1 version " + version}));

  events.clear();
  log_file = "/some/where.log";
  startup = "Client";
  log_to_file = false;
  EXPECT_EQ(info.DLLVersion(log_file, startup, log_to_file), version);
  EXPECT_EQ(log_file, "/some/where.log");
  EXPECT_EQ(startup, "Client");
  EXPECT_EQ(events, (Events{"1 log off", "1 file /some/where.log", "1 version " + version,
                            "1 line " + version + " Client: OK"}));
}

TEST_F(AnalyseInfoTest, the_date_is_that_of_the_file) {
  const std::filesystem::path file = std::filesystem::temp_directory_path() /
                                     ("vq_dated_\xC3\xA9_" + std::to_string(::time(nullptr)));
  EXPECT_EQ(file_date_text(file.string()), "(" + file.string() + ":Unknown Date)");
  std::ofstream(file) << "dated";
  std::tm moment{};
  moment.tm_year = 101;
  moment.tm_mon = 8;
  moment.tm_mday = 9;
  moment.tm_hour = 13;
  moment.tm_isdst = -1;
  const auto written = std::chrono::system_clock::from_time_t(std::mktime(&moment));
  std::filesystem::last_write_time(file, std::chrono::file_clock::from_sys(written));
  EXPECT_EQ(file_date_text(file.string()), "Sun Sep  9 13:00:00 2001");
  std::filesystem::remove(file);
}

TEST_F(AnalyseInfoTest, close_down_releases_everything_in_order_and_the_sink_last) {
  error_handler();
  CommonGlobals& globals = common_globals();
  globals.LastFurther = ending<int>("last further");
  globals.DateTools = ending<BuiltInDateTools>("dates");
  globals.ArrayTools = ending<BuiltInArrayTools>("arrays");
  for (std::size_t i = 4; i-- > 0;) {
    static constexpr const char* kNames[] = {"first", "second", "third", "fourth"};
    globals.Further[i] = ending<int>(kNames[i]);
  }
  globals.CommonMaths = ending<BuiltInCommonMaths>("maths");
  info.CloseDown();
  EXPECT_EQ(events,
            (Events{"maths ends", "first ends", "second ends", "third ends", "fourth ends",
                    "arrays ends", "dates ends", "last further ends", "1 " + closing, "1 ends"}));

  // Not final: another sink is made for the next line.
  events.clear();
  info.CloseDown();
  info.DLLVersion(log_file, startup, log_to_file);
  EXPECT_EQ(events, (Events{"2 " + closing, "2 ends", "3 log on", "3 file vqmath63.txt",
                            "3 version " + version}));
}

TEST_F(AnalyseInfoTest, what_the_sink_refuses_is_the_callers_business) {
  refuse = [](const std::string&) { throw Fault(70); };
  EXPECT_EQ(fault_of([&] { info.DLLVersion(log_file, startup, log_to_file); }), 70);
  EXPECT_EQ(log_file, "vqmath63.txt");  // written before
  EXPECT_EQ(fault_of([&] { info.CloseDown(); }), 70);
  EXPECT_TRUE(events.empty());
  EXPECT_NE(common_globals().ErrorHandler, nullptr);  // the close-down did not come that far

  // A sink that refuses the closing line only is told so.
  refuse = [](const std::string& what) {
    if (what.starts_with("closing")) throw std::runtime_error("disk full");
  };
  info.CloseDown();
  EXPECT_EQ(events, Events{"1 line Error:Unspecified error (No.-2147467259) "
                           "In [ztCommonClassVars (Code)   (CLOSEALLCOMMONGLOBALS)] "});

  common_globals() = {};
  companion_makers().ErrorHandler = [] { return std::shared_ptr<ztErrorHandler>(); };
  EXPECT_EQ(fault_of([&] { info.DLLVersion(log_file, startup, log_to_file); }), 429);
  EXPECT_EQ(fault_of([&] { info.CloseDown(); }), 429);
}

}  // namespace
}  // namespace vqmath63
