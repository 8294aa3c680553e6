// The two ways in which a command of the host fails, by exit status.
#pragma once

#include <stdexcept>

namespace vqmath63::host {

/// Exit statuses of the program.
inline constexpr int kSuccess = 0;
inline constexpr int kWorkFailed = 1;
inline constexpr int kBadUsage = 2;

/// The command line itself cannot be followed.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The work was begun and failed: bad data, or a refusal of the component.
struct WorkError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace vqmath63::host
