// What must hold after every call, whatever was sent.
#include <charconv>
#include <cmath>

#include "component/class_list.hpp"
#include "frame/fault.hpp"
#include "world.hpp"

namespace vqmath63::fuzz {
namespace {

/// Results that have bounds; outside its domain every function gives 1e308, after a failure 0.
struct Range {
  std::string_view member;
  double low, high;
};
constexpr double kPi = 3.1415927;
constexpr Range kRanges[] = {{"Quadrant", 0, 4}, {"sine", -1, 1},         {"cosine", -1, 1},
                             {"acos", 0, kPi},   {"asin", -kPi, kPi},     {"atan", -kPi, kPi},
                             {"Erf", -1, 1},     {"angle", -kPi, 2 * kPi}};

constexpr int kNumbers[] = {5, 6, 7, 9, 10, 11, 13, 91, 429};

bool is_known(std::int32_t number) {
  if (number < 0) return true;  // a companion's own result
  for (const int known : kNumbers) {
    if (known == number) return true;
  }
  return false;
}

std::string narrow(const std::u16string_view text) {
  std::string plain;
  for (const char16_t c : text) plain += c < 128 ? static_cast<char>(c) : '?';
  return plain;
}

bool takes(std::string_view& text, std::string_view front) {
  if (!text.starts_with(front)) return false;
  text.remove_prefix(front.size());
  return true;
}

/// "Error:" description " (No." number ") In [" module " (Code) (" routine ")] ".
bool is_error_line(std::string_view text) {
  if (!takes(text, "Error:")) return false;
  const std::size_t open = text.find(" (No.");
  if (open == text.npos) return false;
  const std::string_view words = text.substr(0, open);
  text.remove_prefix(open + 5);
  std::int32_t number = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), number).ptr;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  if (!is_known(number) || words != error_text(number)) return false;
  return takes(text, ") In [") && text.find(" (Code) ") != text.npos && text.ends_with("] ") &&
         text.find("] ") == text.size() - 2;
}

}  // namespace

void check_line(const std::u16string& text, bool is_close_down) {
  const std::string line = narrow(text);
  const bool good = is_close_down ? line.starts_with("vqmath63 v") && line.ends_with(" Close Down")
                                  : is_error_line(line) ||
                                        (line.starts_with("vqmath63 v") && line.ends_with(": OK"));
  if (!good) fail("a line has another shape:", line);
}

void check_failure(const automation::ClassInfo& info, HRESULT code, BSTR source, BSTR words) {
  const auto low = static_cast<std::uint32_t>(code);
  const bool classic = (low & 0xFFFF0000U) == 0x800A0000U;
  if (!FAILED(code) || (classic && !is_known(static_cast<std::int32_t>(low & 0xFFFFU)))) {
    fail("a failure has an unknown code", std::to_string(low));
  }
  const auto text = [](BSTR b) { return narrow({b == nullptr ? u"" : b, SysStringLen(b)}); };
  if (code == E_OUTOFMEMORY || code == static_cast<HRESULT>(0x800A0007)) return;
  if (world->is_short_of_memory()) return;  // also for the words
  if (text(source) != component::programmatic_id(info)) fail("a failure's source:", text(source));
  require(SysStringLen(words) > 0, "a failure has no words");
}

void check_value(const VARIANT& value, bool idle) {
  if ((value.vt & VT_BYREF) != 0) return;
  // A place that is gone, or is no place, is told by the sanitizer.
  if (value.vt == VT_BSTR && value.bstrVal != nullptr) {
    const volatile OLECHAR* text = value.bstrVal;
    require(text[SysStringLen(value.bstrVal)] == 0, "a text has no end");
  }
  if ((value.vt & VT_ARRAY) == 0 || value.parray == nullptr) return;
  const SAFEARRAY& array = *value.parray;
  std::size_t bytes = array.cbElements;
  for (USHORT d = 0; d < array.cDims; ++d) bytes *= array.rgsabound[d].cElements;
  if (bytes != 0 && array.pvData != nullptr) {
    const auto* data = static_cast<const volatile unsigned char*>(array.pvData);
    static_cast<void>(data[0]);
    static_cast<void>(data[bytes - 1]);
  }
  require(!idle || array.cLocks == own_locks(value.parray), "an array's locks were not kept");
}

void check_result(const automation::MemberInfo& member, const VARIANT& result) {
  if (result.vt != member.result.vt) fail("a result has another type:", member.name);
  if (result.vt == VT_BOOL) {
    require(result.boolVal == VARIANT_TRUE || result.boolVal == VARIANT_FALSE, "an odd Boolean");
  }
  check_value(result, true);
  if (result.vt != VT_R8 && result.vt != VT_R4 && result.vt != VT_I4) return;
  const double x = result.vt == VT_R8   ? result.dblVal
                   : result.vt == VT_R4 ? static_cast<double>(result.fltVal)
                                        : result.lVal;
  for (const Range& range : kRanges) {
    const bool inside = std::isnan(x) || x == 1e308 || (x >= range.low && x <= range.high);
    if (member.name == range.member && !inside) fail("out of its range:", member.name);
  }
}

}  // namespace vqmath63::fuzz
