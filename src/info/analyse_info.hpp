// ztAnalyseInfo: version text, log settings and close-down.
#pragma once

#include <string>

namespace vqmath63 {

/// What a host calls once at start and once at the end.
///
/// @failure No trap: what a companion fails with reaches the caller.
class ztAnalyseInfo {
 public:
  /// Returns the version text: product name, " v", version numbers, a blank and the date of the
  /// component's file. Hands the log settings to this thread's error sink: whether lines go to
  /// the log file, its path, the version text. An empty LOGFILE becomes "vqmath63.txt". With a
  /// StartupMsg, the sink also receives version text, blank, StartupMsg, ":" and " OK" as a line.
  /// @param LOGFILE path of the log file; an empty one receives the usual name
  /// @param StartupMsg name of the host for the start-up line; empty for none
  /// @param qLogToFile whether lines go to the log file
  /// @return the version text
  std::string DLLVersion(std::string& LOGFILE, const std::string& StartupMsg, bool& qLogToFile);

  /// Sends the close-down line and releases this thread's shared companions; not final, the next
  /// call creates what it needs.
  void CloseDown();
};

}  // namespace vqmath63
