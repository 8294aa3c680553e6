// The frame of every trapped routine: one function that runs its work and reports its failure.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace vqmath63 {

/// Location of a routine as its error messages name it. Both words are fixed by the routine and
/// need not be its real module or name.
struct Location {
  std::string_view module;
  std::string_view routine;
  std::string_view gap = " ";    ///< blanks before the routine part; one routine has three
  std::string_view close = ")";  ///< after the routine; one routine lacks it

  /// "In [" module " (Code)" gap "(" routine close "] ", with one blank at the very end.
  std::string text() const;
};

/// "Error:" description " (No." number ") " location: the line that a failure becomes.
std::string error_message(std::int32_t number, const Location& where);

/// Sends the error line of the exception in flight to this thread's error sink, which is created
/// if there is none, or to this thread's MessageTally. To be called from inside a catch block; a
/// failure in here goes on to the caller.
void report_failure(const Location& where);

/// Runs `work(result)` and returns `result`, which starts as zero (false, empty). A run-time
/// error inside ends the work, becomes one line to the error sink, and `result` is returned with
/// what the work had built. Costs nothing while the work does well.
template <class R, class Work>
R trap(const Location& where, Work&& work) {
  R result{};
  try {
    std::forward<Work>(work)(result);
  } catch (...) {
    report_failure(where);
  }
  return result;
}

/// The same for a routine without a result; what it writes by reference stays as written.
template <class Work>
void trap(const Location& where, Work&& work) {
  try {
    std::forward<Work>(work)();
  } catch (...) {
    report_failure(where);
  }
}

/// The same for work done while an object goes away: there is no caller left to tell when even
/// the sink fails, so that failure ends here.
template <class Work>
void trap_at_end(const Location& where, Work&& work) noexcept {
  try {
    trap(where, std::forward<Work>(work));
  } catch (...) {  // the line could not be delivered
  }
}

}  // namespace vqmath63
