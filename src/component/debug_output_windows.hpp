// Lines for whoever watches the process.
#pragma once

#include <string>

namespace vqmath63::component {

/// Shows a line to an attached debugger, or to a program that watches the system's debug output.
void debug_output(const std::string& line) noexcept;

}  // namespace vqmath63::component
