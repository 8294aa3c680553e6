#include "automation/failure.hpp"

#include <cstdio>
#include <new>

#include "automation/text.hpp"
#include "frame/fault.hpp"

namespace vqmath63::automation {
namespace {

thread_local bool has_set_failure = false;

void note_failure(bool set) noexcept {
  if (has_set_failure == set) return;
  has_set_failure = set;
  failing_threads.fetch_add(set ? 1 : -1, std::memory_order_relaxed);
}

}  // namespace

HRESULT result_of_number(std::int32_t number) noexcept {
  constexpr std::uint32_t kControlFacility = 0x800A0000U;
  if (number < 0) return static_cast<HRESULT>(number);
  return static_cast<HRESULT>(kControlFacility | (static_cast<std::uint32_t>(number) & 0xFFFFU));
}

std::int32_t number_of_result(HRESULT result) noexcept {
  switch (result) {
    case DISP_E_OVERFLOW:
      return number_of(ErrorNumber::kOverflow);
    case E_OUTOFMEMORY:
      return number_of(ErrorNumber::kOutOfMemory);
    case DISP_E_ARRAYISLOCKED:
      return number_of(ErrorNumber::kArrayLocked);
    case DISP_E_BADVARTYPE:
    case DISP_E_TYPEMISMATCH:
      return number_of(ErrorNumber::kTypeMismatch);
    default:
      return result;
  }
}

void raise_for_argument(std::int32_t number, const char* member, const char* argument,
                        const std::string& detail) {
  std::string text = error_text(number);
  text.append(": argument '").append(argument).append("' of ").append(member).append(" ");
  throw BoundaryError(result_of_number(number), text.append(detail));
}

HRESULT set_failure(const ClassInfo* info, HRESULT result, const char* text) noexcept {
  Reference<ICreateErrorInfo> creator;
  if (FAILED(CreateErrorInfo(creator.place()))) return result;
  try {
    if (info != nullptr) {
      creator->SetGUID(info->iid);
      std::string source(kLibraryName);
      creator->SetSource(utf16(source.append(".").append(info->name)).data());
    }
    creator->SetDescription(utf16(text).data());
    Reference<IErrorInfo> error;
    if (SUCCEEDED(creator->QueryInterface(IID_IErrorInfo, error.untyped_place()))) {
      SetErrorInfo(0, error.get());
      note_failure(true);
    }
  } catch (const std::bad_alloc&) {  // the result code alone has to do
  }
  return result;
}

HRESULT refuse_null_result(const ClassInfo& info, const char* member) noexcept {
  char text[128];
  std::snprintf(text, sizeof text, "Invalid pointer: no place for the result of %s", member);
  return set_failure(&info, E_POINTER, text);
}

HRESULT fail_to_hand_back(const ClassInfo& info, const char* member, const char* argument,
                          HRESULT why) noexcept {
  try {
    raise_for_argument(number_of_result(why), member, argument, "cannot take its result");
  } catch (...) {
    return failure_in_flight(info);
  }
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

Reference<IErrorInfo> take_failure() noexcept {
  note_failure(false);
  Reference<IErrorInfo> error;
  GetErrorInfo(0, error.place());
  return error;
}

void give_failure(const Reference<IErrorInfo>& error) noexcept {
  if (!error) return;
  SetErrorInfo(0, error.get());
  note_failure(true);
}

void forget_failure_of_thread() noexcept {
  if (!has_set_failure) return;
  note_failure(false);
  SetErrorInfo(0, nullptr);
}

}  // namespace vqmath63::automation
