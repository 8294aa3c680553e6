// The commands of the host. A new one is a file with an add_... function, declared here and named
// in the list of main.cpp.
#pragma once

#include <string>

#include "host/command_line.hpp"

namespace vqmath63::host {

/// Adds a command to the program.
using AddCommand = void (*)(CommandLine& program);

void add_classes(CommandLine& program);
void add_members(CommandLine& program);
void add_call(CommandLine& program);
void add_accumulate(CommandLine& program);
void add_statistics(CommandLine& program);
void add_fit(CommandLine& program);
void add_derivative(CommandLine& program);
void add_volume_factor(CommandLine& program);
void add_table(CommandLine& program);
void add_inside(CommandLine& program);
void add_crossing(CommandLine& program);

/// The component's version text.
std::string version_text();

}  // namespace vqmath63::host
