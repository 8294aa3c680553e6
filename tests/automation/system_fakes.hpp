// An object that counts its references, and short ways to make and compare variants.
#pragma once

#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "automation/types.hpp"
#include "frame/test_table.hpp"

namespace vqmath63::automation::system::test {

/// An object that lives on the stack and knows how many references are held on it. By name it has
/// a default value only.
struct CountingObject final : IDispatch {
  int references = 0;
  int released = 0;
  VARIANT default_value{};
  HRESULT default_result = S_OK;
  VARIANT* let_go = nullptr;  // a variable that gets no value meanwhile
  int held = 0;               // references that were left then
  void (*on_release)(CountingObject&) = nullptr;
  void* context = nullptr;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
    const bool known = riid == IID_IUnknown || riid == IID_IDispatch;
    *out = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    let_variable_go();
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
  ULONG STDMETHODCALLTYPE Release() override {
    ++released;
    --references;
    if (on_release != nullptr) on_release(*this);
    return static_cast<ULONG>(references);
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments,
                                   VARIANT* result, EXCEPINFO*, UINT*) override {
    const bool right = id == DISPID_VALUE && (flags & DISPATCH_PROPERTYGET) != 0 &&
                       arguments != nullptr && arguments->cArgs == 0 && result != nullptr;
    if (!right) return DISP_E_MEMBERNOTFOUND;
    let_variable_go();
    return SUCCEEDED(default_result) ? VariantCopy(result, &default_value) : default_result;
  }
  void let_variable_go() {
    if (let_go != nullptr) VariantClear(let_go);
    held = references;
  }
};

inline std::u16string characters(BSTR text) {
  return text == nullptr ? std::u16string() : std::u16string(text, SysStringLen(text));
}

/// A variant that clears itself.
struct Value {
  VARIANT v{};

  Value() = default;
  Value(const Value& other) { VariantCopy(&v, &other.v); }
  Value& operator=(const Value&) = delete;
  ~Value() { VariantClear(&v); }
};

#define VQ_TEST_VALUE(function, type, field, tag) \
  inline Value function(type x) {                 \
    Value made;                                   \
    made.v.vt = tag;                              \
    made.v.field = x;                             \
    return made;                                  \
  }
VQ_TEST_VALUE(i2, SHORT, iVal, VT_I2)
VQ_TEST_VALUE(i4, LONG, lVal, VT_I4)
VQ_TEST_VALUE(r4, float, fltVal, VT_R4)
VQ_TEST_VALUE(r8, double, dblVal, VT_R8)
VQ_TEST_VALUE(date, double, date, VT_DATE)
VQ_TEST_VALUE(error, SCODE, scode, VT_ERROR)
#undef VQ_TEST_VALUE

inline Value boolean(bool x) {
  Value made;
  made.v.vt = VT_BOOL;
  made.v.boolVal = x ? VARIANT_TRUE : VARIANT_FALSE;
  return made;
}

inline Value text(std::u16string_view x) {
  Value made;
  made.v.vt = VT_BSTR;
  made.v.bstrVal = SysAllocStringLen(x.data(), static_cast<UINT>(x.size()));
  return made;
}

/// A value of this type with nothing in it.
inline Value bare(int vt) {
  Value made;
  made.v.vt = static_cast<VARTYPE>(vt);
  return made;
}

inline Value empty() {
  return {};
}

inline Value null() {
  return bare(VT_NULL);
}

/// Adds a reference to the object, which the value gives back.
inline Value object(CountingObject& x) {
  Value made;
  made.v.vt = VT_DISPATCH;
  made.v.pdispVal = &x;
  x.AddRef();
  return made;
}

/// A VARIANT that refers to another's value of type `vt`.
inline VARIANT reference(int vt, void* to) {
  VARIANT made{};
  made.vt = static_cast<VARTYPE>(VT_BYREF | vt);
  made.byref = to;
  return made;
}

/// The bytes that the type uses, readable, so that two values can be told apart in a message.
inline std::string shown(const VARIANT& v) {
  constexpr std::string_view kSizes = "002448888842888811248844";  // of the types from VT_EMPTY on
  std::string made = "vt " + std::to_string(v.vt) + ":";
  if (v.vt == VT_BSTR) {
    for (const char16_t c : characters(v.bstrVal)) made += static_cast<char>(c < 128 ? c : '?');
    return made + '|' + std::to_string(SysStringLen(v.bstrVal));
  }
  unsigned char bytes[8];
  std::memcpy(bytes, &v.llVal, 8);
  for (int i = v.vt < kSizes.size() ? kSizes[v.vt] - '0' : 8; i-- > 0;) {
    made += "0123456789abcdef"[bytes[i] >> 4];
    made += "0123456789abcdef"[bytes[i] & 15];
  }
  if (v.vt == VT_R8 || v.vt == VT_DATE) made += " = " + std::to_string(v.dblVal);
  if (v.vt == VT_R4) made += " = " + std::to_string(v.fltVal);
  return made;
}

/// The type of a word such as "r8" or "array+i4", or of its number.
inline VARTYPE type_named(const std::string& word) {
  static const std::map<std::string, VARTYPE> kTypes = {
      {"empty", VT_EMPTY},     {"null", VT_NULL},       {"i1", VT_I1},
      {"i2", VT_I2},           {"i4", VT_I4},           {"i8", VT_I8},
      {"int", VT_INT},         {"ui1", VT_UI1},         {"ui2", VT_UI2},
      {"ui4", VT_UI4},         {"ui8", VT_UI8},         {"uint", VT_UINT},
      {"r4", VT_R4},           {"r8", VT_R8},           {"cy", VT_CY},
      {"date", VT_DATE},       {"bool", VT_BOOL},       {"text", VT_BSTR},
      {"error", VT_ERROR},     {"variant", VT_VARIANT}, {"dispatch", VT_DISPATCH},
      {"unknown", VT_UNKNOWN}, {"array", VT_ARRAY},     {"byref", VT_BYREF}};
  int type = 0;
  for (const std::string& part : split(word, '+')) {
    const auto known = kTypes.find(part);
    type |= known == kTypes.end() ? number<int>(part) : known->second;
  }
  return static_cast<VARTYPE>(type);
}

/// A value as tests/data/automation.tsv writes it, such as "i4 5", "text "x"" or "empty".
inline Value value_of(const std::string& words) {
  const std::size_t blank = words.find(' ');
  Value made = bare(type_named(words.substr(0, blank)));
  if (blank == std::string::npos) return made;
  const std::string rest = words.substr(blank + 1);
  if (made.v.vt == VT_BOOL) return boolean(rest == "True");
  if (made.v.vt == VT_R4) {
    made.v.fltVal = number<float>(rest);
  } else if (made.v.vt == VT_R8 || made.v.vt == VT_DATE) {
    made.v.dblVal = number(rest);
  } else if (made.v.vt == VT_UI8) {
    made.v.ullVal = number<ULONGLONG>(rest);
  } else if (made.v.vt != VT_BSTR) {
    made.v.llVal = number<LONGLONG>(rest);
  }
  if (made.v.vt != VT_BSTR) return made;
  std::u16string plain;
  for (std::size_t i = 1; i + 1 < rest.size(); ++i) {
    if (rest[i] == '\\') {  // \u and four digits
      plain += static_cast<char16_t>(std::stoi(rest.substr(i + 2, 4), nullptr, 16));
      i += 5;
    } else if (rest[i] == '{') {  // {9*400}
      plain.append(std::stoul(rest.substr(i + 3)), static_cast<char16_t>(rest[i + 1]));
      i = rest.find('}', i);
    } else {
      plain += static_cast<char16_t>(rest[i]);
    }
  }
  return text(plain);
}

/// The result code of a name, or of a classic error number.
inline HRESULT code_of(const std::string& word) {
#define VQ_CODE(name) \
  { #name, name }
  static const std::map<std::string, HRESULT> kCodes = {VQ_CODE(S_OK),
                                                        VQ_CODE(E_FAIL),
                                                        VQ_CODE(E_ACCESSDENIED),
                                                        VQ_CODE(DISP_E_OVERFLOW),
                                                        VQ_CODE(DISP_E_TYPEMISMATCH),
                                                        VQ_CODE(DISP_E_BADVARTYPE),
                                                        VQ_CODE(DISP_E_BADPARAMCOUNT),
                                                        VQ_CODE(DISP_E_PARAMNOTOPTIONAL),
                                                        VQ_CODE(DISP_E_PARAMNOTFOUND),
                                                        VQ_CODE(DISP_E_MEMBERNOTFOUND)};
#undef VQ_CODE
  const auto known = kCodes.find(word);
  return known == kCodes.end() ? static_cast<HRESULT>(0x800A0000U) + number<int>(word)
                               : known->second;
}

}  // namespace vqmath63::automation::system::test
