#include "world.hpp"

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "component/class_list.hpp"
#include "component/exports.hpp"
#include "frame/companions.hpp"
#include "frame/fault.hpp"
#include "frame/log_file.hpp"
#include "frame/message_receivers.hpp"
#include "frame/passed_on.hpp"
#include "frame/replaced_companions.hpp"
#include "script_object.hpp"

namespace vqmath63::fuzz {

World* world = nullptr;

namespace {

void take_line(const OLECHAR* line, BOOL is_close_down, void* context) {
  static_cast<World*>(context)->line(line, is_close_down != FALSE);
}

/// An error sink of the host's own.
struct Sink final : ztErrorHandler {
  explicit Sink(std::uint8_t fault) : fault_(fault) {}
  void ReportError(std::string& message, bool& flag) override {
    world->line({message.begin(), message.end()}, !flag);
    if (fault_ != 0) raise_companion_failure(fault_ == 1 ? E_FAIL : DISP_E_OVERFLOW);
  }
  void SetLogToFile(bool&) override {}
  void SetLogFile(std::string&) override {}
  void SetVersionText(std::string&) override {}

 private:
  std::uint8_t fault_;
};

/// Around each operation of an odd companion: other arguments for the built-in one, or for what has
/// called it.
class Odd {
 public:
  enum : std::uint8_t {
    kFlags = 1,
    kCounts = 2,
    kArrays = 4,
    kErased = 8,
    kBefore = 16,
    kAfter = 32
  };
  static inline std::uint8_t what = 0;
  static inline double other = 0;

  Odd() = default;
  template <class First, class... Others>
  explicit Odd(First& first, Others&... others)
      : spoil_all_([&first, &others...] { spoil(first), (spoil(others), ...); }) {
    host_moment();
    if ((what & kBefore) != 0) spoil_all_();
  }
  ~Odd() {
    try {
      if (spoil_all_ && (what & kAfter) != 0) spoil_all_();
    } catch (const Fault&) {  // an array that stays as it is
    }
  }
  Odd(const Odd&) = delete;
  Odd& operator=(const Odd&) = delete;

 private:
  static void spoil(bool& flag) { flag = flag != ((what & kFlags) != 0); }
  template <class T>
  static void spoil(T& value) {
    if constexpr (std::is_arithmetic_v<T>) {
      if ((what & kCounts) != 0) value = static_cast<T>(other);
    }
  }
  template <class T>
  static void spoil(Array1<T>& array) {
    if ((what & kArrays) != 0)
      array.redim((what & kFlags) != 0 ? 1 : 0, (what & kCounts) != 0 ? 1 : 3);
    if ((what & kErased) != 0) array.erase();
  }

  std::function<void()> spoil_all_;
};

/// A maker that fails in one way or another, or gives a companion of the host's own.
template <template <class> class PassedOn, class Companion>
auto maker(std::uint8_t way, const std::function<std::shared_ptr<Companion>()>& built_in) {
  return [=]() -> std::shared_ptr<Companion> {
    host_moment();
    if (way == 1) return nullptr;
    if (way == 2) raise_fault(ErrorNumber::kSubscript);
    if (way == 3) throw std::bad_alloc();
    if (way == 6) return std::make_shared<PassedOn<Odd>>(built_in());
    return way == 4 ? as_host_code(built_in()) : built_in();
  };
}

}  // namespace

World::World() {
  world = this;
  set_callback(true);
}

World::~World() {
  control_ = kUsualControl;
  events_.clear();
  companion_makers() = built_in_makers();
  common_globals() = {};
  for (const auto& [type, object] : objects_) {
    if (object != nullptr) require(object->Release() == 0, "an object has references left");
  }
  SetErrorInfo(0, nullptr);
  for (HostVariable& variable : variables) clear(variable);
  end_arrays();
  VqSetMessageCallback(nullptr, nullptr);
  VqSetProcessMessageCallback(nullptr, nullptr);
  set_append_to_file(nullptr);
  set_system_output(nullptr);
  stderr = standard_error_;
  world = nullptr;
  require(live_script_objects() == 0, "references to objects of the host are left");
  if (wrote_log_) {
    for (const auto& entry : std::filesystem::directory_iterator(".")) {
      std::filesystem::remove_all(entry);
    }
  }
}

void World::run(const Program& program) {
  constexpr unsigned kEnough = 4'000'000;  // a few arrays of two million holes: seconds
  for (const Operation& operation : program) {
    if (moments_ < kEnough) run(operation);
  }
}

void World::run(const Operation& operation) {
  ++depth_;
  Bytes head(operation[0]);
  switch (head.byte() % 16) {
    case 1:
      assign(head, operation);
      break;
    case 2:
      set_host_state(head);
      break;
    case 3:
      replace_companions(head);
      break;
    case 4:
      use_object(head);
      break;
    case 5:  // which runs in the state that it is called in, and so here in the usual one
      if (control_ == kUsualControl) system_call(head, operation);
      break;
    case 6:
      ask(head, operation);
      break;
    case 7:  // later, when the host is called back
      if (events_.size() < 16 && operation.size() > 1) {
        events_.push_back({head.byte() % 32U, {operation.begin() + 1, operation.end()}});
      }
      break;
    case 8:
      prepare_file(head, operation);
      break;
    case 9:
      call_elementary(head);
      break;
    default:
      call(head, operation);
  }
  --depth_;
}

bool World::refuses_memory(std::size_t size) noexcept {
  constexpr std::size_t kMost = std::size_t{1} << 27;
  if (in_library_ && size > kMost) return true;
  if (!in_library_ || requests_left_ == 0) return false;
  if (requests_left_ > 1) {
    --requests_left_;
    return false;
  }
  if (refusal_ < 128) requests_left_ = 0;
  return true;
}

void World::moment() {
  constexpr unsigned kMost = 20'000'000;  // some arrays of two million holes each
  require(++moments_ < kMost, "the host is called without an end");
  const bool in_library = std::exchange(in_library_, false);
  if (in_library) {
    require((_mm_getcsr() & kControlBits) == control_, "the host's code runs in another state");
    _mm_setcsr(kUsualControl);
  }
  constexpr int kDeepest = 4;
  if (depth_ < kDeepest) {
    std::vector<Operation> due;
    for (std::size_t i = 0; i < events_.size();) {
      if (events_[i].countdown-- != 0) {
        ++i;
        continue;
      }
      due.push_back(std::move(events_[i].operation));
      events_.erase(events_.begin() + static_cast<std::ptrdiff_t>(i));
    }
    for (const Operation& operation : due) run(operation);
  }
  if (in_library) _mm_setcsr(control_);
  in_library_ = in_library;
}

void host_moment() {
  if (world != nullptr) world->moment();
}

void World::line(const std::u16string& text, bool is_close_down) {
  moment();
  const bool in_library = std::exchange(in_library_, false);
  check_line(text, is_close_down);
  in_library_ = in_library;
}

IDispatch* World::object(std::size_t type) {
  if (objects_[type] != nullptr) return objects_[type];
  const automation::ClassInfo& info = *component::classes()[type];
  void* made = nullptr;
  const HRESULT code = as_host([&] { return info.create(info.iid, &made); });
  require(SUCCEEDED(code) ? made != nullptr
                          : made == nullptr && (own_companions_ || is_short_of_memory()),
          "an object cannot be made");
  // The host was called back meanwhile: it may have made one too, or let go of its place.
  IDispatch* const old = std::exchange(objects_[type], static_cast<IDispatch*>(made));
  if (old != nullptr) old->Release();
  return objects_[type];
}

void World::set_callback(bool on) {
  VqSetMessageCallback(on ? &take_line : nullptr, this);
  wrote_log_ = wrote_log_ || !on;
}

/// Another value for a variable: of the program, or of a call that is being made.
void World::assign(Bytes head, const Operation& operation) {
  const std::uint8_t which = head.byte();
  HostVariable* variable = &variables[which % kVariables];
  if (which >= 64 && !frames_.empty()) {
    const Frame& frame = frames_[frames_.size() - 1 - which / 128 % frames_.size()];
    if (!frame.arguments.empty()) {
      variable = frame.arguments[which % 16 % frame.arguments.size()].variable;
    }
  }
  Bytes bytes(chunk(operation, 1));
  HostVariable made;
  ValueType type{variable->v.vt, 0, false};
  if (variable->is_array()) {
    type = {static_cast<VARTYPE>(variable->v.vt & VT_TYPEMASK), 1, false};
    if (variable->v.parray != nullptr) type.rank = variable->v.parray->cDims;
  }
  make(bytes, type, variables, made.v);
  if (variable->kept || (variable->fixed_type != 0 && made.v.vt != variable->v.vt)) return;
  if (clear(*variable)) std::swap(variable->v, made.v);
}

void World::set_host_state(Bytes head) {
  const std::uint8_t what = head.byte();
  if ((what & 1) != 0) set_callback((what & 2) == 0);
  if ((what & 8) != 0) VqSetProcessMessageCallback((what & 16) != 0 ? &take_line : nullptr, this);
  if ((what & 32) != 0) {
    HostVariable last;
    last.v.vt = VT_BSTR;
    VqLastMessage(what & 64, &last.v.bstrVal);
  }
  if ((what & 4) != 0 && !keeps_control_ && !in_system_)
    control_ = head.raw<std::uint16_t>() & kControlBits;
  if ((what & 128) == 0) return;
  refusal_ = head.byte();
  // Calls that wait for this one may have been refused memory already.
  short_of_memory_ = refusal_ != 0 || (short_of_memory_ && depth_ > 1);
}

/// Where a log is to go: a file that ends within a line or with it, a folder or a pipe; and who
/// else takes lines.
void World::prepare_file(Bytes head, const Operation& operation) {
  const std::uint8_t what = head.byte();
  HostVariable name;
  name.v.vt = VT_BSTR;
  Bytes bytes(chunk(operation, 1));
  name.v.bstrVal = text(bytes);
  std::string path;
  for (UINT i = 0; i < SysStringLen(name.v.bstrVal); ++i) {
    if (const char c = static_cast<char>(name.v.bstrVal[i] % 128); c != 0) path += c;
  }
  std::replace(path.begin(), path.end(), '/', '_');
  if (path.empty() || path[0] == '.' || std::filesystem::exists(path)) return;
  wrote_log_ = true;
  if (what % 4 == 0) std::ofstream(path) << bytes.rest();
  if (what % 4 == 1) mkdir(path.c_str(), 0700);
  if (what % 4 == 2) mkfifo(path.c_str(), 0600);
  static std::FILE* const full = std::fopen("/dev/full", "w");
  if ((what & 4) != 0 && full != nullptr) stderr = full;
  if ((what & 16) != 0) set_append_to_file([](const auto&, const auto&) { return false; });
  if ((what & 32) != 0)
    set_system_output([](const std::string&) noexcept {});  // none of the host's code
}

void World::replace_companions(Bytes head) {
  const std::uint8_t which = head.byte();
  const std::uint8_t way = head.byte() % 7;
  const bool asks_built_in = way == 4 || way == 6;
  if (asks_built_in && control_ != kUsualControl) return;  // they want the usual state
  own_companions_ = true;
  keeps_control_ = keeps_control_ || asks_built_in;
  const CompanionMakers built_in = built_in_makers();
  CompanionMakers& makers = companion_makers();
  if (way == 6) {
    Odd::what = head.byte();
    Odd::other = std::fmin(std::fmax(number(head), -2147483648.0), 70000.0);  // never NaN
  }
  if ((which & 1) != 0)
    makers.CommonMaths = maker<passed_on::CommonMaths>(way, built_in.CommonMaths);
  if ((which & 2) != 0) makers.ArrayTools = maker<passed_on::ArrayTools>(way, built_in.ArrayTools);
  if ((which & 4) != 0) makers.SortTools = maker<passed_on::SortTools>(way, built_in.SortTools);
  if ((which & 8) != 0) makers.DateTools = maker<passed_on::DateTools>(way, built_in.DateTools);
  if ((which & 16) != 0) {
    makers.ErrorHandler = maker<passed_on::ErrorHandler>(way % 6, built_in.ErrorHandler);
    if (way == 5) {
      const std::uint8_t fault = head.byte() % 3;
      makers.ErrorHandler = [=] { return std::make_shared<Sink>(fault); };
    }
  }
  common_globals() = {};
}

}  // namespace vqmath63::fuzz
