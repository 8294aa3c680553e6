// Where the component's file is, which only its system can tell.
#pragma once

#include "info/identity.hpp"

namespace vqmath63::component {

/// The folder that the component was loaded from, the system's separator and the file name made
/// from the base name (".dll" on Windows, "lib" and ".so" elsewhere), and when the file was last
/// modified.
ComponentFile component_file();

}  // namespace vqmath63::component
