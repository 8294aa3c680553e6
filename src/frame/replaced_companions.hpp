// Companions that a host has put in place of the built-in ones, called as code of the host's own.
#pragma once

#include <memory>

#include "frame/companions.hpp"

namespace vqmath63 {

/// A companion that passes every call on to `theirs`, which meanwhile has the host's surroundings.
std::shared_ptr<ztErrorHandler> as_host_code(std::shared_ptr<ztErrorHandler> theirs);
std::shared_ptr<ztCommonMaths> as_host_code(std::shared_ptr<ztCommonMaths> theirs);
std::shared_ptr<ztArrayTools> as_host_code(std::shared_ptr<ztArrayTools> theirs);
std::shared_ptr<ztSortTools> as_host_code(std::shared_ptr<ztSortTools> theirs);
std::shared_ptr<ztDateTools> as_host_code(std::shared_ptr<ztDateTools> theirs);

}  // namespace vqmath63
