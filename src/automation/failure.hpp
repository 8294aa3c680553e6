// How a failure leaves the component: one result code and one text, by name and by the vtable.
#pragma once

#include <atomic>
#include <exception>
#include <string>

#include "automation/class_info.hpp"
#include "automation/owners.hpp"

namespace vqmath63::automation {

/// A failure of the boundary itself: an argument that does not fit its parameter, a null pointer.
class BoundaryError : public std::exception {
 public:
  BoundaryError(HRESULT result, std::string text) : result_(result), text_(std::move(text)) {}
  HRESULT result() const noexcept { return result_; }
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  HRESULT result_;
  std::string text_;
};

/// Result code of a classic error number; a negative number (a companion's own result) stays.
HRESULT result_of_number(std::int32_t number) noexcept;

/// Classic error number of a result code of the system's conversions and arrays (6, 7, 10 or 13);
/// the code itself for any other.
std::int32_t number_of_result(HRESULT result) noexcept;

/// Throws error `number` for an argument, its standard text followed by argument, member and
/// `detail`: "Type mismatch: argument 'xVals' of Integral " detail.
[[noreturn]] void raise_for_argument(std::int32_t number, const char* member, const char* argument,
                                     const std::string& detail);

/// Fails a call because the result of `argument` does not go into the host's variable, for the
/// reason `why`, and returns the result code.
HRESULT fail_to_hand_back(const ClassInfo& info, const char* member, const char* argument,
                          HRESULT why) noexcept;

/// Turns the exception in flight into a result code and sets this thread's error info to its
/// text and the class as its source. To be called from inside a catch block.
HRESULT failure_in_flight(const ClassInfo& info) noexcept;

/// Sets this thread's error info and returns `result`.
HRESULT set_failure(const ClassInfo* info, HRESULT result, const char* text) noexcept;

/// E_POINTER with error info: the host has given no place for the result of `member`.
HRESULT refuse_null_result(const ClassInfo& info, const char* member) noexcept;

/// Takes this thread's error info away; empty when there is none.
Reference<IErrorInfo> take_failure() noexcept;

/// Makes that one this thread's error info again; null changes nothing.
void give_failure(const Reference<IErrorInfo>& error) noexcept;

/// How many threads have set an error info that no host has taken. Good calls look here first: a
/// thread's own storage costs more.
inline std::atomic<int> failing_threads{0};

void forget_failure_of_thread() noexcept;

/// Forgets this thread's error info when this component has set it: no stale text is left to a
/// host that looks after a call that did well.
inline void forget_failure() noexcept {
  if (failing_threads.load(std::memory_order_relaxed) != 0) [[unlikely]]
    forget_failure_of_thread();
}

}  // namespace vqmath63::automation
