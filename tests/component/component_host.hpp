// A host of the shared library: its exported functions, the dual interfaces as hosts declare them,
// calls by name, and the cases that all hosts share.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "automation/automation_host.hpp"
#include "component/exports.hpp"

extern "C" {
HRESULT VQ_API DllGetClassObject(REFCLSID clsid, REFIID iid, void** out);
HRESULT VQ_API DllCanUnloadNow();
HRESULT VQ_API DllRegisterServer();
HRESULT VQ_API DllUnregisterServer();
HRESULT VQ_API DllInstall(BOOL install, LPCOLESTR words);
HRESULT CLSIDFromProgID(LPCOLESTR programmatic_id, CLSID* clsid);
}

namespace vqmath63::component::test {

using automation::system::test::i4;
using automation::system::test::text;
using automation::system::test::Value;
using automation::test::Answer;
using automation::test::array;
using automation::test::call;

struct IIntegrate : IDispatch {
  static constexpr IID kIid{
      0xAEDEC313, 0x167A, 0x4ACD, {0x95, 0x1E, 0xDA, 0xA8, 0xC5, 0xCD, 0x92, 0xC0}};
  virtual HRESULT VQ_API get_IntegerationRule(LONG*) = 0;
  virtual HRESULT VQ_API put_IntegrationRule(LONG*) = 0;
  virtual HRESULT VQ_API Integral(SAFEARRAY** x, SAFEARRAY** y, float*) = 0;
};

struct IAccumulate : IDispatch {
  static constexpr IID kIid{
      0xC2BA8F3A, 0x3768, 0x4033, {0x88, 0x22, 0xF2, 0xF9, 0x7E, 0xC3, 0x3B, 0xFF}};
  virtual HRESULT VQ_API put_StartDate(DATE) = 0;
  virtual HRESULT VQ_API put_Silent(VARIANT_BOOL) = 0;
  virtual HRESULT VQ_API put_Frequency(LONG) = 0;
  virtual HRESULT VQ_API put_Rates(VARIANT_BOOL) = 0;
  virtual HRESULT VQ_API put_RateArray(SAFEARRAY**) = 0;
  virtual HRESULT VQ_API put_AccumulateIndex(LONG) = 0;
  virtual HRESULT VQ_API put_DataPeriod(BSTR) = 0;
  virtual HRESULT VQ_API put_Period(BSTR) = 0;
  virtual HRESULT VQ_API put_StartData(DATE) = 0;
  virtual HRESULT VQ_API put_ProductionProfile(VARIANT_BOOL) = 0;
  virtual HRESULT VQ_API get_StartData(DATE*) = 0;
  virtual HRESULT VQ_API get_StartDate(DATE*) = 0;
  virtual HRESULT VQ_API get_Frequency(LONG*) = 0;
  virtual HRESULT VQ_API get_Rates(VARIANT_BOOL*) = 0;
  virtual HRESULT VQ_API get_Period(BSTR*) = 0;
  virtual HRESULT VQ_API Accumulate(SAFEARRAY** data, SAFEARRAY** result, VARIANT_BOOL* ok) = 0;
};

struct IAnalyseInfo : IDispatch {
  static constexpr IID kIid{
      0xD96409C5, 0xF82A, 0x4FCD, {0x8D, 0x82, 0x99, 0x9A, 0x07, 0xEC, 0x0F, 0x8A}};
  virtual HRESULT VQ_API get_DLLVersion(BSTR* file, BSTR* message, VARIANT_BOOL* log, BSTR*) = 0;
  virtual HRESULT VQ_API CloseDown() = 0;
};

/// An instance by programmatic id; `Interface` is the dual interface, or IDispatch.
template <class Interface>
struct Instance {
  Interface* object = nullptr;

  Instance(const OLECHAR* id, const IID& iid) {
    CLSID clsid{};
    void* factory = nullptr;
    void* made = nullptr;
    EXPECT_EQ(CLSIDFromProgID(id, &clsid), S_OK);
    EXPECT_EQ(DllGetClassObject(clsid, IID_IClassFactory, &factory), S_OK);
    auto* maker = static_cast<IClassFactory*>(factory);
    EXPECT_EQ(maker->CreateInstance(nullptr, iid, &made), S_OK);
    EXPECT_EQ(maker->Release(), 0U);
    object = static_cast<Interface*>(made);
  }
  ~Instance() { EXPECT_EQ(object->Release(), 0U); }
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;
  Interface* operator->() const { return object; }
};

/// The shared cases: words by name, as tests/data/expected.tsv tells them.
class Cases {
 public:
  Cases() {
    std::ifstream file(VQ_TEST_DATA "/expected.tsv");
    for (std::string line; std::getline(file, line);) {
      const std::size_t tab = line.find('\t');
      if (!line.empty() && line[0] != '#' && tab != line.npos) {
        rows_[line.substr(0, tab)] = line.substr(tab + 1);
      }
    }
  }
  bool has(const std::string& name) const { return rows_.count(name) != 0; }
  std::vector<std::string> words(const std::string& name) const {
    EXPECT_TRUE(has(name)) << name;
    std::istringstream text(has(name) ? rows_.at(name) : "");
    std::vector<std::string> all;
    for (std::string word; text >> word;) all.push_back(word);
    return all;
  }
  std::vector<double> numbers(const std::string& name) const {
    std::vector<double> all;
    for (const std::string& word : words(name)) all.push_back(std::stod(word));
    return all;
  }
  Value word(const std::string& name) const {
    const std::string one = words(name).at(0);
    return text(std::u16string(one.begin(), one.end()));
  }
  Value date(const std::string& name) const {
    Value made = word(name);
    EXPECT_EQ(VariantChangeType(&made.v, &made.v, 0, VT_DATE), S_OK) << name;
    return made;
  }
  Value number(const std::string& name) const { return i4(static_cast<LONG>(numbers(name).at(0))); }

 private:
  std::map<std::string, std::string> rows_;
};

/// A table with indices from 1 of numbers that stand row by row.
inline Value table(VARTYPE element, const std::vector<double>& rows, std::size_t columns) {
  std::vector<double> by_column;
  for (std::size_t c = 0; c < columns; ++c) {
    for (std::size_t i = c; i < rows.size(); i += columns) by_column.push_back(rows[i]);
  }
  return array(element, 1, by_column, static_cast<ULONG>(columns));
}

/// Collects the lines of this thread's error sink, with the flag of the close-down line.
struct Lines {
  std::vector<std::string> text;
  std::vector<bool> close_down;

  Lines() { EXPECT_EQ(VqSetMessageCallback(&take, this), S_OK); }
  ~Lines() { EXPECT_EQ(VqSetMessageCallback(nullptr, nullptr), S_OK); }
  Lines(const Lines&) = delete;
  Lines& operator=(const Lines&) = delete;

 private:
  static void take(const OLECHAR* line, BOOL is_close_down, void* self) {
    const std::u16string wide = line;
    static_cast<Lines*>(self)->text.emplace_back(wide.begin(), wide.end());
    static_cast<Lines*>(self)->close_down.push_back(is_close_down != FALSE);
  }
};

inline const Cases& cases() {
  static const Cases all;
  return all;
}

inline HRESULT put(IDispatch* object, const char16_t* name, const Value& value) {
  return call(object, name, {value.v}, {}, DISPATCH_PROPERTYPUT).hr;
}

inline Answer get(IDispatch* object, const char16_t* name, std::vector<VARIANT> sent = {}) {
  return call(object, name, std::move(sent), {}, DISPATCH_PROPERTYGET);
}

// Equal to what the cases promise.
inline void expect_numbers(const std::vector<double>& got, const std::vector<double>& want,
                           const std::string& name) {
  ASSERT_EQ(got.size(), want.size()) << name;
  for (std::size_t i = 0; i < want.size(); ++i) {
    EXPECT_LE(std::fabs(got[i] - want[i]), 1e-6 * std::fabs(want[i])) << name << " " << i + 1;
  }
}

}  // namespace vqmath63::component::test
