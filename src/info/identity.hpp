// What the component calls itself, and the file that it is.
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

/// The component's own file, as only its system can tell.
struct ComponentFile {
  std::string path;  ///< in UTF-8
  /// When it was last modified: local date and time in the system's default format. Empty when
  /// there is no such file.
  std::string date;
};

/// Who tells of the component's file: the component itself, before it makes its first object. In a
/// native program nobody does, unless the program has something to say: the path is the base name
/// then, without a date.
void set_component_file(ComponentFile (*tell)()) noexcept;

/// Product, version and a blank, then the date of the component's file, or "(" its path
/// ":Unknown Date)" when it has none.
std::string version_text();

}  // namespace vqmath63
