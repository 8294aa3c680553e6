#include "automation/failure.hpp"

#include <cstdio>
#include <new>

#include "automation/text.hpp"
#include "frame/fault.hpp"

namespace vqmath63::automation {
namespace {

thread_local bool has_set_failure = false;

}  // namespace

HRESULT result_of_number(std::int32_t number) noexcept {
  constexpr std::uint32_t kControlFacility = 0x800A0000U;
  if (number < 0) return static_cast<HRESULT>(number);
  return static_cast<HRESULT>(kControlFacility | (static_cast<std::uint32_t>(number) & 0xFFFFU));
}

void raise_for_argument(std::int32_t number, const char* member, const char* argument,
                        const std::string& detail) {
  std::string text = error_text(number);
  text.append(": argument '").append(argument).append("' of ").append(member).append(" ");
  throw BoundaryError(result_of_number(number), text.append(detail));
}

HRESULT set_failure(const ClassInfo* info, HRESULT result, const char* text) noexcept {
  ICreateErrorInfo* creator = nullptr;
  if (FAILED(CreateErrorInfo(&creator))) return result;
  try {
    if (info != nullptr) {
      creator->SetGUID(info->iid);
      std::string source(kLibraryName);
      creator->SetSource(utf16(source.append(".").append(info->name)).data());
    }
    creator->SetDescription(utf16(text).data());
    IErrorInfo* error = nullptr;
    if (SUCCEEDED(creator->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&error)))) {
      SetErrorInfo(0, error);
      error->Release();
      has_set_failure = true;
    }
  } catch (const std::bad_alloc&) {  // the result code alone has to do
  }
  creator->Release();
  return result;
}

HRESULT refuse_null_result(const ClassInfo& info, const char* member) noexcept {
  char text[128];
  std::snprintf(text, sizeof text, "Invalid pointer: no place for the result of %s", member);
  return set_failure(&info, E_POINTER, text);
}

HRESULT failure_in_flight(const ClassInfo& info) noexcept {
  try {
    throw;
  } catch (const BoundaryError& error) {
    return set_failure(&info, error.result(), error.what());
  } catch (...) {
    const Fault fault = fault_in_flight();
    return set_failure(&info, result_of_number(fault.number()), fault.what());
  }
}

bool take_failure(IErrorInfo** error) noexcept {
  has_set_failure = false;
  return GetErrorInfo(0, error) == S_OK && *error != nullptr;
}

void forget_failure() noexcept {
  if (!has_set_failure) [[likely]]
    return;
  has_set_failure = false;
  SetErrorInfo(0, nullptr);
}

}  // namespace vqmath63::automation
