// ztAnalyseInfo: version text, the order of the sink's calls, close-down.
#include "info/analyse_info.hpp"

#include <stdexcept>

#include "frame/array_tools.hpp"
#include "frame/common_maths.hpp"
#include "frame/companion_fixture.hpp"
#include "frame/date_tools.hpp"
#include "info/common_globals.hpp"
#include "info/identity.hpp"
#include "statistics/statistics.hpp"

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
  const std::string version = "vqmath63 v6.3.2436 (vqmath63:Unknown Date)";  // no component here
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

TEST_F(AnalyseInfoTest, the_version_text_tells_the_date_of_the_component_or_where_none_is) {
  set_component_file([] { return ComponentFile{"/opt/x.so", "Sun Sep  9 13:00:00 2001"}; });
  EXPECT_EQ(version_text(), "vqmath63 v6.3.2436 Sun Sep  9 13:00:00 2001");
  set_component_file([] { return ComponentFile{"/opt/x.so", ""}; });
  EXPECT_EQ(version_text(), "vqmath63 v6.3.2436 (/opt/x.so:Unknown Date)");
  set_component_file(nullptr);
  EXPECT_EQ(version_text(), version);
}

TEST_F(AnalyseInfoTest, close_down_releases_everything_in_order_and_the_sink_last) {
  error_handler();
  CommonGlobals& globals = common_globals();
  globals.Statistics = ending<ztStatistics>("statistics");
  globals.DateTools = ending<BuiltInDateTools>("dates");
  globals.ArrayTools = ending<BuiltInArrayTools>("arrays");
  globals.CommonMaths = ending<BuiltInCommonMaths>("maths");
  info.CloseDown();
  EXPECT_EQ(events, (Events{"maths ends", "arrays ends", "dates ends", "statistics ends",
                            "1 " + closing, "1 ends"}));

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
}

}  // namespace
}  // namespace vqmath63
