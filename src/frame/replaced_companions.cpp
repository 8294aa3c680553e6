#include "frame/replaced_companions.hpp"

#include <utility>

#include "frame/host_code.hpp"
#include "frame/passed_on.hpp"

namespace vqmath63 {
namespace {

/// The host's companion, and its end, run code of the host.
struct InHostCode {
  template <class... Arguments>
  explicit InHostCode(const Arguments&...) {}
  HostCode code;
};

}  // namespace

std::shared_ptr<ztErrorHandler> as_host_code(std::shared_ptr<ztErrorHandler> theirs) {
  return std::make_shared<passed_on::ErrorHandler<InHostCode>>(std::move(theirs));
}
std::shared_ptr<ztCommonMaths> as_host_code(std::shared_ptr<ztCommonMaths> theirs) {
  return std::make_shared<passed_on::CommonMaths<InHostCode>>(std::move(theirs));
}
std::shared_ptr<ztArrayTools> as_host_code(std::shared_ptr<ztArrayTools> theirs) {
  return std::make_shared<passed_on::ArrayTools<InHostCode>>(std::move(theirs));
}
std::shared_ptr<ztSortTools> as_host_code(std::shared_ptr<ztSortTools> theirs) {
  return std::make_shared<passed_on::SortTools<InHostCode>>(std::move(theirs));
}
std::shared_ptr<ztDateTools> as_host_code(std::shared_ptr<ztDateTools> theirs) {
  return std::make_shared<passed_on::DateTools<InHostCode>>(std::move(theirs));
}

}  // namespace vqmath63
