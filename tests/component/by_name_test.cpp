// The header for C: the worked calls of tests/data/calls.tsv through it, and what it refuses
// itself.
#include "component/by_name.h"

#include <gtest/gtest.h>

#include <iostream>

#include "native_hosts.hpp"

namespace vqmath63::component::test {
namespace {

using namespace calls;

VqType type_of(VARTYPE element) {
  return element == VT_R4   ? VQ_SINGLES
         : element == VT_R8 ? VQ_DOUBLES
         : element == VT_I4 ? VQ_LONGS
                            : VQ_FLAGS;
}

/// Makes the calls with values of C in place of the table's VARIANTs.
class HeaderHost : public Host {
 public:
  HeaderHost() { EXPECT_TRUE(vq_open(&library, nullptr)) << library.error; }
  ~HeaderHost() override {
    vq_release(&object);
    vq_close(&library);
  }
  void create(const std::string& class_name, bool to_log) override {
    vq_release(&object);
    const auto take = [](const char* line, void* self) {
      static_cast<HeaderHost*>(self)->lines.emplace_back(line);
    };
    vq_on_line(&library, to_log ? nullptr : +take, this);
    ASSERT_TRUE(vq_create(&library, class_name.c_str(), &object)) << library.error;
  }
  HRESULT call(const std::string& kind, const std::string& name, const Member& member,
               std::vector<Variable>& sent, VARIANT& result) override {
    std::vector<std::string> texts(sent.size());
    std::vector<VqValue> values;
    for (std::size_t i = 0; i < sent.size(); ++i) values.push_back(value_of(sent[i].v, texts[i]));
    const std::vector<VqValue> before = values;
    VqValue answer = vq_nothing();
    const int done = kind == "let" ? vq_set(&object, name.c_str(), values.at(0))
                     : kind == "get" && values.empty()
                         ? vq_get(&object, name.c_str(), &answer)
                         : vq_call(&object, name.c_str(), values.data(),
                                   static_cast<unsigned>(values.size()), &answer);
    for (std::size_t i = 0; i < sent.size(); ++i) {
      if (values[i].owner == nullptr && values[i].number == before[i].number) continue;
      give(values[i], member.arguments[i].vt, member.arguments[i].rank, sent[i].v);
    }
    if (answer.type != VQ_NOTHING) give(answer, member.result.vt, 0, result);
    return done != 0 ? S_OK : E_FAIL;
  }
  void failed(int line, const std::string& what) override {
    ADD_FAILURE_AT(VQ_TEST_DATA "/calls.tsv", line) << what << "\n" << library.error;
  }

  VqLibrary library;
  VqObject object{};

 private:
  static VqValue value_of(const VARIANT& v, std::string& text) {
    if (v.vt == VT_BSTR) {
      text = shown(v);
      text = text.substr(1, text.size() - 2);
      return vq_text(text.c_str());
    }
    if ((v.vt & VT_ARRAY) == 0) {
      return vq_number(v.vt == VT_R4     ? static_cast<double>(v.fltVal)
                       : v.vt == VT_I4   ? static_cast<double>(v.lVal)
                       : v.vt == VT_BOOL ? v.boolVal != 0 ? 1.0 : 0.0
                                         : v.dblVal);
    }
    if (v.parray == nullptr) return vq_nothing();
    const bool table = v.parray->cDims == 2;
    return vq_elements(type_of(v.vt & VT_TYPEMASK), v.parray->pvData,
                       v.parray->rgsabound[table ? 1 : 0].cElements,
                       table ? v.parray->rgsabound[0].cElements : 1);
  }

  // Puts what came back into the table's VARIANT, and frees it.
  void give(VqValue& value, VARTYPE type, UINT rank, VARIANT& to) {
    VariantClear(&to);
    to.vt = type;
    if (rank > 0) {
      const std::size_t rows = value.rows;
      SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(rows), 1},
                                  {static_cast<ULONG>(value.columns), 1}};
      EXPECT_EQ(value.type, type_of(type));
      to.vt = static_cast<VARTYPE>(VT_ARRAY | type);
      to.parray = SafeArrayCreate(type, rank, bounds);
      for (std::size_t k = 0; k < rows * value.columns; ++k) {
        store(type, vq_at(&value, k % rows, k / rows), static_cast<char*>(to.parray->pvData), k);
      }
    } else if (type == VT_BSTR) {
      const std::string text(value.text);
      to.bstrVal = SysAllocString(std::u16string(text.begin(), text.end()).c_str());
    } else {
      store(type, value.number, reinterpret_cast<char*>(&to.llVal), 0);
    }
    vq_free(&library, &value);
  }

  static void store(VARTYPE type, double number, char* to, std::size_t k) {
    if (type == VT_R4) reinterpret_cast<float*>(to)[k] = static_cast<float>(number);
    if (type == VT_R8 || type == VT_DATE) reinterpret_cast<double*>(to)[k] = number;
    if (type == VT_I4) reinterpret_cast<LONG*>(to)[k] = static_cast<LONG>(number);
    if (type == VT_BOOL) {
      reinterpret_cast<VARIANT_BOOL*>(to)[k] = number != 0 ? VARIANT_TRUE : VARIANT_FALSE;
    }
  }
};

TEST(ByNameHeaderTest, makes_the_calls_as_the_table_has_them) {
  const Interfaces interfaces(VQ_TEST_DATA "/interface.tsv");
  HeaderHost host;
  const LogFolder folder;
  const int made = calls::Run(interfaces, host).all(VQ_TEST_DATA "/calls.tsv");
  std::cout << made << " calls by the header for C\n";
  EXPECT_GE(made, 200);
}

TEST(ByNameHeaderTest, refuses_what_does_not_fit_and_says_why) {
  HeaderHost host;
  host.create("ztintegrate", false);
  const float time[] = {0, 1, 2};
  const double rate[] = {0, 1, 4}, huge[] = {0, 1e39, 4};
  const VqValue x = vq_singles(time, 3), y = vq_doubles(rate, 3);
  const struct {
    const char* member;
    std::vector<VqValue> sent;
    const char* error;  // "": the area 3
  } kCases[] = {
      {"integral", {x, y}, ""},
      {"Integral", {x, vq_doubles(huge, 3)}, "yVals has an element that does not fit"},
      {"Integral", {x, vq_number(1)}, "yVals has to be an array"},
      {"Integral", {x, vq_table(time, 1, 2)}, "yVals has to be a list"},
      {"Integral", {x, vq_doubles(nullptr, 3)}, "yVals is an array without memory"},
      {"Integral", {x, y, y}, "there are too many arguments"},
      {"Integrals", {x, y}, "there is no member Integrals"},
  };
  for (const auto& [member, sent, error] : kCases) {
    SCOPED_TRACE(error);
    std::vector<VqValue> values = sent;
    VqValue area = vq_nothing();
    const auto count = static_cast<unsigned>(values.size());
    const int done = vq_call(&host.object, member, values.data(), count, &area);
    EXPECT_EQ(done, *error == '\0' ? 1 : 0);
    EXPECT_STREQ(done != 0 ? "" : host.library.error, error);
    EXPECT_EQ(area.number, done != 0 ? 3 : 0);
  }
  EXPECT_FALSE(vq_set(&host.object, "IntegrationRule", vq_number(2.5)));
  EXPECT_STREQ(host.library.error, "value does not fit its type");
  EXPECT_FALSE(vq_set(&host.object, "IntegrationRule", vq_nothing()));
  EXPECT_STREQ(host.library.error, "value is missing");
  EXPECT_FALSE(vq_set(&host.object, "IntegrationRule", vq_text("2")));
  EXPECT_STREQ(host.library.error, "value has to be a number");
  EXPECT_FALSE(vq_set(&host.object, "Integral", x));
  EXPECT_STREQ(host.library.error, "there is no property Integral to set");
  host.create("ztAccumulate", false);
  EXPECT_FALSE(vq_set(&host.object, "Period", vq_text(nullptr)));
  EXPECT_STREQ(host.library.error, "value has to be a text");
  EXPECT_FALSE(vq_call_many(&host.object, "Accumulate", 1, nullptr, 0, {}, nullptr));
  EXPECT_STREQ(host.library.error, "Accumulate has 3 arguments, and so many columns; there are 0");
  // What a host asks of a library that it could not open, tells why; another one is let go of.
  for (const auto& [path, words] : {std::pair{"/nowhere/libvqmath63.so", "/nowhere/libvqmath63.so"},
                                    std::pair{"libm.so.6", "it has no VqDescribe"}}) {
    VqLibrary other;
    VqObject none;
    EXPECT_FALSE(vq_open(&other, path));
    EXPECT_FALSE(vq_create(&other, "ztIntegrate", &none));
    EXPECT_FALSE(vq_on_line(
        &other, [](const char*, void*) {}, nullptr));
    EXPECT_EQ(vq_last_line(&other), nullptr);
    EXPECT_NE(std::string(other.error).find(words), std::string::npos) << other.error;
    EXPECT_EQ(other.handle, nullptr);
    vq_close(&other);
  }
}

// Texts of one to four bytes a character, and bytes that are no UTF-8.
TEST(ByNameHeaderTest, carries_texts_to_the_component_and_back) {
  HeaderHost host;
  host.create("ztAnalyseInfo", true);
  for (const char* text : {"", "plain", "\xC3\xA9\xE2\x82\xAC", "\xF0\x9D\x84\x9E", "\xFF"}) {
    VqValue sent[] = {vq_text(text), vq_text(""), vq_number(0)};
    VqValue version = vq_nothing();
    ASSERT_TRUE(vq_call(&host.object, "DLLVersion", sent, 3, &version)) << host.library.error;
    EXPECT_STREQ(sent[0].text, *text == '\0'     ? "vqmath63.txt"
                               : *text == '\xFF' ? "\xC3\xBF"
                                                 : text);
    EXPECT_EQ(std::string(version.text).substr(0, 9), "vqmath63 ");
    vq_free(&host.library, &version);
    for (VqValue& each : sent) vq_free(&host.library, &each);
  }
}

TEST(ByNameHeaderTest, counts_the_days_of_every_year) {
  using namespace std::chrono;
  const sys_days zero{year{1899} / December / 30};
  int count = 0;
  for (sys_days day{year{-400} / January / 1}; day < year{2801} / 1 / 1; day += days{1}, ++count) {
    const year_month_day date{day};
    const double got = vq_date(int{date.year()}, static_cast<int>(unsigned{date.month()}),
                               static_cast<int>(unsigned{date.day()}))
                           .number;
    ASSERT_EQ(got, static_cast<double>((day - zero).count())) << int{date.year()};
  }
  EXPECT_EQ(count, 3201 * 365 + 8 * 97 + 1);
}

}  // namespace
}  // namespace vqmath63::component::test
