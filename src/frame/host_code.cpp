#include "frame/host_code.hpp"

namespace vqmath63 {

Surroundings*& surroundings() noexcept {
  thread_local constinit Surroundings* here = nullptr;
  return here;
}

}  // namespace vqmath63
