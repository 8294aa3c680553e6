// Appending to a log file that other processes may append to as well.
#pragma once

#include <filesystem>
#include <string>

namespace vqmath63::component {

/// frame/log_file.hpp's AppendToFile for Windows, whose C library moves to a file's end before it
/// writes, and not with it. Lines end as text files have it there. False after a second in which
/// others kept the file.
bool append_to_log(const std::filesystem::path& path, const std::string& text);

}  // namespace vqmath63::component
