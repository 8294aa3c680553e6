// The file that this module was loaded from.
#pragma once

#include <filesystem>

namespace vqmath63::component {

std::filesystem::path module_path();

}  // namespace vqmath63::component
