// A host of automation objects: arguments in every form, calls by name, arrays as text.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "system_fakes.hpp"

namespace vqmath63::automation::test {

using system::test::characters;
using system::test::shown;
using system::test::Value;

/// Result code of a classic error number.
constexpr HRESULT error_code(int number) {
  return static_cast<HRESULT>(0x800A0000U) + number;
}

/// How a host hands over a variable: its value, a reference to it, or a reference to a VARIANT
/// that holds the value or such a reference.
enum Form { kByValue, kByRef, kVariant, kVariantOfRef };
inline constexpr Form kForms[] = {kByValue, kByRef, kVariant, kVariantOfRef};

/// A host's variable and the VARIANT sent for it.
struct Sent {
  Value variable;
  VARIANT inner{};
  VARIANT variant{};

  Sent(const Value& value, Form form) : variable(value) {
    inner.vt = static_cast<VARTYPE>(variable.v.vt | VT_BYREF);
    inner.byref = &variable.v.llVal;
    variant.vt = VT_BYREF | VT_VARIANT;
    variant.pvarVal = form == kVariant ? &variable.v : &inner;
    if (form == kByValue) variant = variable.v;
    if (form == kByRef) variant = inner;
  }
};

/// What came back from a call by name.
struct Answer {
  HRESULT hr = S_OK;
  HRESULT scode = S_OK;
  Value result;
  std::u16string words;
  std::u16string source;
  UINT bad = 0xCCCC;
};

inline Answer invoke_id(IDispatch* object, DISPID id, std::vector<VARIANT> sent, WORD flags,
                        std::vector<DISPID> named = {}) {
  std::reverse(sent.begin(), sent.end());
  std::reverse(named.begin(), named.end());
  DISPPARAMS params{sent.data(), named.data(), static_cast<UINT>(sent.size()),
                    static_cast<UINT>(named.size())};
  Answer answer;
  EXCEPINFO exception;
  std::memset(static_cast<void*>(&exception), 0xCC, sizeof exception);
  std::memset(static_cast<void*>(&answer.result.v), 0xCC, sizeof(VARIANT));
  answer.hr =
      object->Invoke(id, IID_NULL, 0, flags, &params, &answer.result.v, &exception, &answer.bad);
  if (FAILED(answer.hr)) {
    EXPECT_EQ(answer.result.v.vt, VT_EMPTY);
  }
  if (answer.hr == DISP_E_EXCEPTION) {
    answer.scode = exception.scode;
    answer.words = characters(exception.bstrDescription);
    answer.source = characters(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    EXPECT_EQ(exception.bstrHelpFile, nullptr);
  }
  return answer;
}

/// Calls by name; `sent` in the order of the arguments, those for `named` last.
inline Answer call(IDispatch* object, std::u16string name, std::vector<VARIANT> sent,
                   std::vector<std::u16string> named = {}, WORD flags = DISPATCH_METHOD) {
  std::vector<OLECHAR*> names{name.data()};
  for (std::u16string& argument : named) names.push_back(argument.data());
  std::vector<DISPID> ids(names.size(), 77);
  EXPECT_EQ(
      object->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()), 0, ids.data()),
      S_OK);
  return invoke_id(object, ids[0], std::move(sent), flags, {ids.begin() + 1, ids.end()});
}

/// This thread's error text, taken away.
inline std::u16string error_words() {
  IErrorInfo* info = nullptr;
  if (GetErrorInfo(0, &info) != S_OK) return u"";
  Value words;
  words.v.vt = VT_BSTR;
  info->GetDescription(&words.v.bstrVal);
  info->Release();
  return characters(words.v.bstrVal);
}

inline std::string ascii(const std::u16string& text) {
  return {text.begin(), text.end()};
}

/// Values between semicolons.
inline std::vector<Value> values_of(const std::string& words) {
  std::vector<Value> values;
  for (const std::string& part : split(words, ';')) {
    values.push_back(system::test::value_of(part.substr(part.find_first_not_of(' '))));
  }
  return values;
}

/// An array variable of any element type; in one of VT_VARIANT the subtypes change from element to
/// element. Two dimensions where `columns` is not 0, the elements then column after column.
inline Value array(VARTYPE element, LONG lower, const std::vector<double>& numbers,
                   ULONG columns = 0) {
  constexpr VARTYPE kMixed[] = {VT_R8, VT_I2, VT_BSTR, VT_CY, VT_R4, VT_DATE};
  const auto count = static_cast<ULONG>(numbers.size());
  SAFEARRAYBOUND bounds[2] = {{columns == 0 ? count : count / columns, lower}, {columns, lower}};
  Value made;
  made.v.vt = static_cast<VARTYPE>(VT_ARRAY | element);
  made.v.parray = SafeArrayCreate(element, columns == 0 ? 1 : 2, bounds);
  auto* to = static_cast<char*>(made.v.parray->pvData);
  for (ULONG i = 0; i < count; ++i, to += made.v.parray->cbElements) {
    VARIANT number = system::test::r8(numbers[i]).v;
    VariantChangeType(&number, &number, 0, element == VT_VARIANT ? kMixed[i % 6] : element);
    if (element == VT_VARIANT) {
      std::memcpy(to, &number, sizeof number);
    } else {
      std::memcpy(to, &number.llVal, made.v.parray->cbElements);
    }
  }
  return made;
}

/// Bounds and elements of an array in a variable, as the members of Sample write them.
inline std::string listed(const VARIANT& variable) {
  if ((variable.vt & VT_ARRAY) == 0 || variable.parray == nullptr) return "none";
  SAFEARRAY* held = variable.parray;
  std::string text;
  std::size_t elements = 1;
  for (UINT d = held->cDims; d-- > 0;) {
    const SAFEARRAYBOUND& b = held->rgsabound[d];
    elements *= b.cElements;
    text += std::to_string(b.lLbound) + ".." +
            std::to_string(b.lLbound + static_cast<LONG>(b.cElements) - 1) + (d > 0 ? "," : ":");
  }
  const auto element = static_cast<VARTYPE>(variable.vt & VT_TYPEMASK);
  const auto* from = static_cast<const char*>(held->pvData);
  for (std::size_t i = 0; i < elements; ++i, from += held->cbElements) {
    VARIANT reference{};
    reference.vt = static_cast<VARTYPE>(VT_BYREF | element);
    reference.byref = const_cast<char*>(from);
    Value number;
    const HRESULT hr = VariantChangeType(&number.v, &reference, 0, VT_R8);
    char digits[40];
    std::snprintf(digits, sizeof digits, " %g", SUCCEEDED(hr) ? number.v.dblVal : -999.0);
    text += digits;
  }
  return text;
}

}  // namespace vqmath63::automation::test
