#include "host/client/entry_points.hpp"

namespace vqmath63::host {

const EntryPoints& entry_points() {
  static constexpr EntryPoints kLinked{&VqDescribe, &VqSetMessageCallback, &VqCallMany,
                                       &CLSIDFromProgID, &DllGetClassObject};
  return kLinked;
}

}  // namespace vqmath63::host
