#include "automation/many_calls.hpp"

namespace vqmath63::automation {
namespace {

[[noreturn]] void refuse(HRESULT why, const char* words, const ArgumentPlace& place,
                         const char* detail) {
  std::string text(words);
  text.append(": argument '").append(place.info.name).append("' of ").append(place.member);
  throw BoundaryError(why, text.append(detail));
}

}  // namespace

void require_memory(const Column& column, const ArgumentPlace& place) {
  if (column.first != nullptr || place.info.optional) return;
  refuse(E_POINTER, "Invalid pointer", place, " is a null reference");
}

void require_one_value(const Column& column, const ArgumentPlace& place) {
  if (column.stride == 0) return;
  refuse(E_INVALIDARG, "Invalid argument", place, " has to be one for all calls");
}

}  // namespace vqmath63::automation
