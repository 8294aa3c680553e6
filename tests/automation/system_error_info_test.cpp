// Error information: one place in each thread, handed over once.
#include <gtest/gtest.h>

#include <thread>

#include "system_fakes.hpp"

namespace vqmath63::automation::system::test {
namespace {

struct Error {
  ICreateErrorInfo* writer = nullptr;
  IErrorInfo* reader = nullptr;
  Error() {
    EXPECT_EQ(CreateErrorInfo(&writer), S_OK);
    EXPECT_EQ(writer->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&reader)), S_OK);
    EXPECT_EQ(writer->Release(), 1u);
  }
  ~Error() { EXPECT_EQ(reader->Release(), 0u); }
  // References beside its own.
  ULONG references() const {
    reader->AddRef();
    return reader->Release() - 1;
  }
};

TEST(SystemErrorInfo, WhatIsWrittenThroughOneInterfaceIsReadThroughTheOther) {
  const Error error;
  std::u16string words = u"Overflow", source = u"ztStatistics";
  EXPECT_EQ(error.writer->SetDescription(words.data()), S_OK);
  EXPECT_EQ(error.writer->SetSource(source.data()), S_OK);
  EXPECT_EQ(error.writer->SetHelpContext(17), S_OK);
  EXPECT_EQ(error.writer->SetGUID(IID_IDispatch), S_OK);
  words[0] = source[0] = u'!';  // both were copied
  void *one = nullptr, *other = nullptr, *none = &none;
  EXPECT_EQ(error.writer->QueryInterface(IID_IUnknown, &one), S_OK);
  EXPECT_EQ(error.reader->QueryInterface(IID_IUnknown, &other), S_OK);
  EXPECT_EQ(one, other) << "an object has one identity";
  error.reader->Release();
  error.reader->Release();
  EXPECT_EQ(error.reader->QueryInterface(IID_IDispatch, &none), E_NOINTERFACE);
  EXPECT_EQ(none, nullptr);

  Value read[2] = {bare(VT_BSTR), bare(VT_BSTR)};
  BSTR help_file = words.data();
  DWORD context = 0;
  GUID guid{};
  EXPECT_EQ(error.reader->GetDescription(&read[0].v.bstrVal), S_OK);
  EXPECT_EQ(error.reader->GetSource(&read[1].v.bstrVal), S_OK);
  EXPECT_EQ(error.reader->GetHelpFile(&help_file), S_OK);
  EXPECT_EQ(error.reader->GetHelpContext(&context), S_OK);
  EXPECT_EQ(error.reader->GetGUID(&guid), S_OK);
  EXPECT_EQ(characters(read[0].v.bstrVal), u"Overflow");
  EXPECT_EQ(characters(read[1].v.bstrVal), u"ztStatistics");
  EXPECT_TRUE(help_file == nullptr && context == 17 && guid == IID_IDispatch);
  EXPECT_EQ(error.reader->GetSource(nullptr), E_INVALIDARG);
}

TEST(SystemErrorInfo, EachThreadHandsItsOwnOverAndLetsGoOfItAtItsEnd) {
  const Error first, second, there;
  EXPECT_EQ(SetErrorInfo(0, first.reader), S_OK);
  EXPECT_EQ(SetErrorInfo(0, second.reader), S_OK);
  EXPECT_EQ(first.references(), 0u);
  HRESULT first_look = E_FAIL;
  std::thread([&] {
    IErrorInfo* got = nullptr;
    first_look = GetErrorInfo(0, &got);
    SetErrorInfo(0, there.reader);
  }).join();
  EXPECT_EQ(first_look, S_FALSE);
  EXPECT_EQ(there.references(), 0u);
  IErrorInfo* got = nullptr;
  EXPECT_EQ(GetErrorInfo(0, &got), S_OK);
  EXPECT_EQ(got, second.reader);
  EXPECT_EQ(second.references(), 1u) << "the reference is the caller's now";
  EXPECT_EQ(GetErrorInfo(0, &got), S_FALSE);
  EXPECT_EQ(got, nullptr);
  EXPECT_EQ(SetErrorInfo(0, second.reader), S_OK);
  EXPECT_EQ(SetErrorInfo(0, nullptr), S_OK);
  EXPECT_EQ(second.reader->Release(), 1u);
  EXPECT_EQ(SetErrorInfo(1, second.reader), E_INVALIDARG);
  EXPECT_EQ(GetErrorInfo(0, nullptr), E_INVALIDARG);
  EXPECT_EQ(CreateErrorInfo(nullptr), E_INVALIDARG);
}

}  // namespace
}  // namespace vqmath63::automation::system::test
