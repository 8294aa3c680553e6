// Error information: one place in each thread, handed over once.
#include <gtest/gtest.h>

#include <thread>

#include "system_fakes.hpp"

namespace vqmath63::automation::system::test {
namespace {

/// An error object that only counts.
struct CountingError final : IErrorInfo {
  int references = 0;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** out) override {
    *out = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
  ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }
  HRESULT STDMETHODCALLTYPE GetGUID(GUID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetSource(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetDescription(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD*) override { return E_NOTIMPL; }
};

TEST(SystemErrorInfo, WhatIsWrittenThroughOneInterfaceIsReadThroughTheOther) {
  ICreateErrorInfo* writer = nullptr;
  ASSERT_EQ(CreateErrorInfo(&writer), S_OK);
  std::u16string words = u"Overflow", source = u"ztStatistics";
  EXPECT_EQ(writer->SetDescription(words.data()), S_OK);
  EXPECT_EQ(writer->SetSource(source.data()), S_OK);
  EXPECT_EQ(writer->SetHelpContext(17), S_OK);
  EXPECT_EQ(writer->SetGUID(IID_IDispatch), S_OK);
  words[0] = source[0] = u'!';  // both were copied

  IErrorInfo* reader = nullptr;
  ASSERT_EQ(writer->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&reader)), S_OK);
  void *one = nullptr, *other = nullptr, *none = &none;
  EXPECT_EQ(writer->QueryInterface(IID_IUnknown, &one), S_OK);
  EXPECT_EQ(reader->QueryInterface(IID_IUnknown, &other), S_OK);
  EXPECT_EQ(one, other) << "an object has one identity";
  reader->Release();
  reader->Release();
  EXPECT_EQ(reader->QueryInterface(IID_IDispatch, &none), E_NOINTERFACE);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(writer->Release(), 1u);

  Value read[3] = {bare(VT_BSTR), bare(VT_BSTR), bare(VT_BSTR)};
  EXPECT_EQ(reader->GetDescription(&read[0].v.bstrVal), S_OK);
  EXPECT_EQ(reader->GetSource(&read[1].v.bstrVal), S_OK);
  EXPECT_EQ(reader->GetHelpFile(&read[2].v.bstrVal), S_OK);
  EXPECT_EQ(characters(read[0].v.bstrVal), u"Overflow");
  EXPECT_EQ(characters(read[1].v.bstrVal), u"ztStatistics");
  EXPECT_EQ(read[2].v.bstrVal, nullptr);
  DWORD context = 0;
  GUID guid{};
  EXPECT_EQ(reader->GetHelpContext(&context), S_OK);
  EXPECT_EQ(reader->GetGUID(&guid), S_OK);
  EXPECT_TRUE(context == 17 && guid == IID_IDispatch);
  EXPECT_EQ(reader->GetSource(nullptr), E_INVALIDARG);
  EXPECT_EQ(reader->Release(), 0u);
}

TEST(SystemErrorInfo, GettingHandsOverAndClears) {
  CountingError first, second;
  EXPECT_EQ(SetErrorInfo(0, &first), S_OK);
  EXPECT_EQ(SetErrorInfo(0, &second), S_OK);
  EXPECT_EQ(first.references, 0);
  EXPECT_EQ(second.references, 1);
  IErrorInfo* got = nullptr;
  EXPECT_EQ(GetErrorInfo(0, &got), S_OK);
  EXPECT_EQ(got, &second);
  EXPECT_EQ(second.references, 1) << "the reference is the caller's now";
  EXPECT_EQ(GetErrorInfo(0, &got), S_FALSE);
  EXPECT_EQ(got, nullptr);
  second.Release();
  EXPECT_EQ(SetErrorInfo(0, &second), S_OK);
  EXPECT_EQ(SetErrorInfo(0, nullptr), S_OK);
  EXPECT_EQ(second.references, 0);
  EXPECT_EQ(SetErrorInfo(1, &second), E_INVALIDARG);
  EXPECT_EQ(GetErrorInfo(0, nullptr), E_INVALIDARG);
  EXPECT_EQ(CreateErrorInfo(nullptr), E_INVALIDARG);
}

TEST(SystemErrorInfo, EachThreadHasItsOwnAndLetsGoOfItAtItsEnd) {
  CountingError here, there;
  EXPECT_EQ(SetErrorInfo(0, &here), S_OK);
  HRESULT first_look = E_FAIL;
  std::thread([&] {
    IErrorInfo* got = nullptr;
    first_look = GetErrorInfo(0, &got);
    SetErrorInfo(0, &there);
  }).join();
  EXPECT_EQ(first_look, S_FALSE);
  EXPECT_EQ(there.references, 0);
  EXPECT_EQ(here.references, 1);
  EXPECT_EQ(SetErrorInfo(0, nullptr), S_OK);
  EXPECT_EQ(here.references, 0);
}

}  // namespace
}  // namespace vqmath63::automation::system::test
