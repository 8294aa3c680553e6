// What the tests of the frame share: faults as numbers, and a fixture that records error lines.
#pragma once

#include <gtest/gtest.h>

#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "frame/companions.hpp"
#include "frame/fault.hpp"

namespace vqmath63 {

/// Number of the fault that `work` ends with; 0 when it ends well.
inline std::int32_t fault_of(const std::function<void()>& work) {
  try {
    work();
    return 0;
  } catch (const Fault& fault) {
    return fault.number();
  }
}

/// Equal, or both NaN.
inline bool same(double a, double b) {
  return a == b || (a != a && b != b);
}

template <class T>
std::vector<T> contents(const Array1<T>& array) {
  return {array.elements().begin(), array.elements().end()};
}

/// Starts each case without companions; the error sink puts its lines into `lines`.
class CompanionTest : public ::testing::Test {
 protected:
  struct Sink final : ztErrorHandler {
    explicit Sink(CompanionTest& owner) : test(owner) { ++test.sinks_made; }
    void ReportError(std::string& message, bool& flag) override {
      if (test.sink_failure) test.sink_failure();
      test.lines.push_back(flag ? message : "unflagged " + message);
    }
    void SetLogToFile(bool&) override {}
    void SetLogFile(std::string&) override {}
    void SetVersionText(std::string&) override {}
    CompanionTest& test;
  };

  CompanionTest() {
    common_globals() = {};
    companion_makers() = built_in_makers();
    companion_makers().ErrorHandler = [this] { return std::make_shared<Sink>(*this); };
  }
  ~CompanionTest() override {
    common_globals() = {};
    companion_makers() = built_in_makers();
  }

  /// The lines since the last time.
  std::vector<std::string> taken() { return std::exchange(lines, {}); }

  std::vector<std::string> lines;
  std::function<void()> sink_failure;
  int sinks_made = 0;
};

/// The local time as the seconds that a clock of 1970 without time zones would count.
inline std::time_t local_seconds() {
  const std::time_t seconds = std::time(nullptr);
  return ::timegm(std::localtime(&seconds));
}

}  // namespace vqmath63
