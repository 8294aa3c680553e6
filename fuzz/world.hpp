// The host of one program: its objects, variables, floating-point state, and what it does when it
// is called back.
#pragma once

#include <xmmintrin.h>

#include <cstdio>
#include <deque>
#include <map>
#include <utility>

#include "values.hpp"

namespace vqmath63::fuzz {

/// What the host hands over for one argument of a call.
struct Argument {
  HostVariable own, copy;
  HostVariable* variable = &own;
  VARIANT inner{}, outer{};  // references on the way to the variable
  bool typed = false;        // the variable is referred to by type
};

/// A call that is being made.
struct Frame {
  IDispatch* self = nullptr;
  std::deque<Argument> arguments;
  std::size_t type = 0;  // which class
};

/// The control bits of the processor's state.
inline constexpr std::uint32_t kControlBits = 0xFFC0;
inline constexpr std::uint32_t kUsualControl = 0x1F80;

class World {
 public:
  World();
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  void run(const Program& program);

  /// Called whenever the library calls the host.
  void moment();
  /// Takes a line of the error sink.
  void line(const std::u16string& text, bool is_close_down);

  /// Whether a request for memory is to be refused: of the library, by plan or for its size.
  bool refuses_memory(std::size_t size) noexcept;
  bool is_short_of_memory() const { return short_of_memory_; }

  /// An object of a class; null where the host's own companions keep it from being made.
  IDispatch* object(std::size_t type);

  HostVariables variables;

 private:
  void run(const Operation& operation);
  void call(Bytes head, const Operation& operation);
  void assign(Bytes head, const Operation& operation);
  void set_host_state(Bytes head);
  void set_callback(bool on);
  void replace_companions(Bytes head);
  void prepare_file(Bytes head, const Operation& operation);
  void use_object(Bytes head);
  void system_call(Bytes head, const Operation& operation);
  void call_system(Bytes& head);
  void ask(Bytes head, const Operation& operation);

  void decode_arguments(const Operation& operation, const automation::MemberInfo& member,
                        Frame& frame);
  void prepare(Bytes& bytes, const ValueType& wanted, Argument& argument);
  void place_arguments(const automation::MemberInfo& member, Frame& frame, void** places);
  HRESULT call_by_vtable(const automation::MemberInfo& member, std::size_t slot, Frame& frame,
                         bool no_result);
  void call_many(const automation::MemberInfo& member, Frame& frame, Bytes& head);
  HRESULT call_by_name(const automation::ClassInfo& info, const automation::MemberInfo& member,
                       Frame& frame, const Operation& operation, Bytes& head);
  /// Runs work of the library, whose memory may be refused, in the host's floating-point state.
  template <class Work>
  HRESULT as_host(Work work);
  template <class Work>
  void with_refusals(Work work);
  void look_at_variables();

  struct Event {
    unsigned countdown;
    Operation operation;
  };

  std::map<std::size_t, IDispatch*> objects_;
  std::deque<Frame> frames_;
  std::deque<Event> events_;
  std::uint32_t control_ = kUsualControl;
  bool in_library_ = false;
  bool in_system_ = false;  // in a call of the system itself
  std::FILE* const standard_error_ = stderr;
  bool wrote_log_ = false;
  bool own_companions_ = false;
  bool keeps_control_ = false;  // companions work in the host's state
  std::uint8_t refusal_ = 0;    // which request of a call, from 1 on; from 128 on all after it too
  int requests_left_ = 0;
  bool short_of_memory_ = false;  // a call that is not over may meet refused requests
  unsigned moments_ = 0;
  int depth_ = 0;
};

template <class Work>
void World::with_refusals(Work work) {
  const bool before = std::exchange(in_library_, true);
  requests_left_ = refusal_ % 128;
  work();
  in_library_ = before;
}

template <class Work>
HRESULT World::as_host(Work work) {
  HRESULT result = S_OK;
  _mm_setcsr(control_);
  with_refusals([&] { result = work(); });
  const std::uint32_t after = _mm_getcsr() & kControlBits;
  _mm_setcsr(kUsualControl);
  require(after == control_, "the floating-point control word was not kept");
  return result;
}

/// The host of the program that runs.
extern World* world;

/// An elementary function, by each way that the processor can go.
void call_elementary(Bytes head);

/// Looks at a result of a member, and at what a variable holds.
void check_result(const automation::MemberInfo& member, const VARIANT& result);
void check_value(const VARIANT& value, bool idle);
/// Looks at a line of the error sink.
void check_line(const std::u16string& text, bool is_close_down);
/// Looks at the code and text of a failure.
void check_failure(const automation::ClassInfo& info, HRESULT code, BSTR source, BSTR words);

}  // namespace vqmath63::fuzz
