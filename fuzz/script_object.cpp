#include "script_object.hpp"

#include "automation/script_object.hpp"

namespace vqmath63::fuzz {
namespace {

using ScriptObject = automation::test::ScriptObjectOf<HostVariable>;

/// What a script's object may be.
enum Kind : std::uint8_t {
  kPlainArray,
  kArray,
  kBox,
  kDefault,
  kItself,
  kFailing,
  kStrangeLength,
  kNothing,
  kRange,
  kMoment
};
constexpr std::uint8_t kOthers = 0xF0;  // from here on the kinds behind kNothing

int depth = 0;               // of objects within objects
HostVariables no_variables;  // for values to refer to

/// Objects within objects: rows, or a value that is an object again.
void make_inner(Bytes& bytes, VARIANT& out) {
  ++depth;
  make(bytes, {depth < 4 ? VARTYPE{VT_DISPATCH} : VARTYPE{VT_R8}}, no_variables, out);
  --depth;
}

}  // namespace

int live_script_objects() {
  return ScriptObject::alive;
}

IDispatch* new_script_object(Bytes& bytes) {
  const std::uint8_t head = bytes.byte();
  const auto kind = static_cast<Kind>(head < kOthers ? head % (kNothing + 1) : kRange + head % 2);
  auto* made = new ScriptObject;
  made->work = made->asked = &host_moment;
  made->is_array = kind == kPlainArray || kind == kArray || kind == kStrangeLength;
  made->elements.resize(made->is_array ? bytes.below(12) : 0);
  for (auto& element : made->elements) {
    element = std::make_unique<HostVariable>();
    if (kind == kPlainArray) {
      element->v.vt = VT_R8;
      element->v.dblVal = number(bytes);
    } else {
      make_inner(bytes, element->v);
      if (element->v.vt == VT_ERROR) element.reset();  // a hole
    }
  }
  if (kind == kBox) make_inner(bytes, made->value.v);
  if (kind == kDefault) make_inner(bytes, made->whole.v);
  if (kind == kRange) make(bytes, {VT_VARIANT, 2}, no_variables, made->whole.v);
  made->itself = kind == kItself;
  if (kind == kFailing) made->failure = (bytes.byte() & 1) != 0 ? E_OUTOFMEMORY : E_FAIL;
  if (kind == kStrangeLength) made->boast = number(bytes);
  if (kind == kMoment) {
    made->whole.v.vt = VT_BSTR;
    const std::uint8_t methods = bytes.byte();
    if ((methods & 1) != 0) make(bytes, {VT_DATE}, no_variables, made->answers[u"getVarDate"].v);
    if ((methods & 2) != 0) make(bytes, {VT_R8}, no_variables, made->answers[u"getTime"].v);
    if ((methods & 4) != 0)
      make(bytes, {VT_I4}, no_variables, made->answers[u"getTimezoneOffset"].v);
  }
  return made;
}

}  // namespace vqmath63::fuzz
