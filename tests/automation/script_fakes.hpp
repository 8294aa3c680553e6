// Short ways to make objects of a script language, and to read them.
#pragma once

#include "boundary_fixture.hpp"
#include "script_object.hpp"

namespace vqmath63::automation::test {

using ScriptObject = ScriptObjectOf<Value>;

/// "[9 -1 hole [1]]"
inline std::string text_of(const ScriptObject& object) {
  std::string all = "[";
  for (const auto& element : object.elements) {
    if (all.size() > 1) all += ' ';
    if (!element) {
      all += "hole";
    } else if (element->v.vt == VT_DISPATCH) {
      all += text_of(*static_cast<const ScriptObject*>(element->v.pdispVal));
    } else if (element->v.vt == VT_EMPTY) {
      all += '-';
    } else {
      Value number;
      VariantChangeType(&number.v, &element->v, 0, VT_BSTR);
      all += ascii(characters(number.v.bstrVal));
    }
  }
  return all + ']';
}

inline Value as_value(ScriptObject* object) {
  Value made;
  made.v.vt = VT_DISPATCH;
  made.v.pdispVal = object;
  return made;
}

inline ScriptObject& object_of(const Value& value) {
  return *static_cast<ScriptObject*>(value.v.pdispVal);
}

/// A script's array of numbers and values; "hole" leaves one out.
inline Value script_array(const std::vector<Value>& values) {
  auto* made = new ScriptObject;
  for (const Value& v : values) {
    if (v.v.vt == VT_ERROR) {
      made->elements.emplace_back();
    } else {
      made->add(v.v);
    }
  }
  return as_value(made);
}

/// An array that has few elements for its length.
inline Value boasting_array(double length, const std::vector<Value>& values = {}) {
  Value made = script_array(values);
  object_of(made).boast = length;
  return made;
}

inline Value script_box(const Value& value) {
  auto* made = new ScriptObject;
  made->is_array = false;
  VariantCopy(&made->value.v, &value.v);
  return as_value(made);
}

/// A range of a sheet, or another object that is no array and stands for a value.
inline Value script_object(const Value& whole, std::map<std::u16string, Value> answers = {}) {
  auto* made = new ScriptObject;
  made->is_array = false;
  VariantCopy(&made->whole.v, &whole.v);
  made->answers = std::move(answers);
  return as_value(made);
}

}  // namespace vqmath63::automation::test
