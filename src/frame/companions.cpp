#include "frame/companions.hpp"

#include <typeinfo>

#include "frame/array_tools.hpp"
#include "frame/common_maths.hpp"
#include "frame/date_tools.hpp"
#include "frame/error_handler.hpp"
#include "frame/fault.hpp"
#include "frame/host_code.hpp"
#include "frame/replaced_companions.hpp"
#include "frame/sort_tools.hpp"

namespace vqmath63 {
namespace {

template <class BuiltIn, class Companion>
std::shared_ptr<Companion> create(const std::function<std::shared_ptr<Companion>()>& maker) {
  std::shared_ptr<Companion> made;
  try {
    const HostCode code;
    const auto copy = maker;  // the call may replace the original
    if (copy) made = copy();
  } catch (...) {
    // Whatever else the maker met, to the library the companion cannot be created.
    const bool memory_ended = fault_in_flight().number() == number_of(ErrorNumber::kOutOfMemory);
    raise_fault(memory_ended ? ErrorNumber::kOutOfMemory : ErrorNumber::kCannotCreateObject);
  }
  if (!made) raise_fault(ErrorNumber::kCannotCreateObject);
  const Companion& companion = *made;
  return typeid(companion) == typeid(BuiltIn) ? made : as_host_code(made);
}

template <class BuiltIn, class Companion>
std::shared_ptr<Companion> shared(std::shared_ptr<Companion>& reference,
                                  const std::function<std::shared_ptr<Companion>()>& maker) {
  if (!reference) reference = create<BuiltIn>(maker);
  return reference;
}

}  // namespace

CompanionMakers built_in_makers() {
  return {
      [] { return std::make_shared<BuiltInErrorHandler>(); },
      [] { return std::make_shared<BuiltInCommonMaths>(); },
      [] { return std::make_shared<BuiltInArrayTools>(); },
      [] { return std::make_shared<BuiltInSortTools>(); },
      [] { return std::make_shared<BuiltInDateTools>(); },
  };
}

CommonGlobals& common_globals() {
  thread_local CommonGlobals globals;
  return globals;
}

CompanionMakers& companion_makers() {
  thread_local CompanionMakers makers = built_in_makers();
  return makers;
}

std::shared_ptr<ztErrorHandler> error_handler() {
  return shared<BuiltInErrorHandler>(common_globals().ErrorHandler,
                                     companion_makers().ErrorHandler);
}
std::shared_ptr<ztCommonMaths> common_maths() {
  return shared<BuiltInCommonMaths>(common_globals().CommonMaths, companion_makers().CommonMaths);
}
std::shared_ptr<ztArrayTools> array_tools() {
  return shared<BuiltInArrayTools>(common_globals().ArrayTools, companion_makers().ArrayTools);
}
std::shared_ptr<ztDateTools> date_tools() {
  return shared<BuiltInDateTools>(common_globals().DateTools, companion_makers().DateTools);
}

std::shared_ptr<ztArrayTools> create_array_tools() {
  return create<BuiltInArrayTools>(companion_makers().ArrayTools);
}
std::shared_ptr<ztSortTools> create_sort_tools() {
  return create<BuiltInSortTools>(companion_makers().SortTools);
}

}  // namespace vqmath63
