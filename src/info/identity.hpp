// What the component calls itself, and where it was loaded from.
#pragma once

#include <string>

#include "info/version.hpp"

namespace vqmath63 {

inline constexpr const char* kProductName = "vqmath63";
/// Base name of the component's file and of its default log.
inline constexpr const char* kFileBaseName = "vqmath63";
inline constexpr const char* kDefaultLogBaseName = "vqmath63";

/// "vqmath63 v6.3.2436".
std::string product_and_version();

/// Path (UTF-8) of the component's own file: the folder it was loaded from, the system's separator
/// and the file name made from the base name (".dll" on Windows, "lib" and ".so" elsewhere).
std::string component_file();

/// Last-modified local date and time of `file` in the system's default format, or
/// "(" file ":Unknown Date)" when there is no such file.
std::string file_date_text(const std::string& file);

}  // namespace vqmath63
