// Lines of a log file that other processes append to as well.
#pragma once

#include <filesystem>
#include <string>

namespace vqmath63 {

/// Appends `text`, which ends with a line feed, to a file in one piece: other processes that do so
/// at the same time have theirs before or after it. Where the file ends within a line, as a disk
/// that was full leaves it, a new line is begun first. False when the file cannot be opened or does
/// not take the whole text.
using AppendToFile = bool (*)(const std::filesystem::path& path, const std::string& text);

/// Puts in place how the system at hand does that, for the process. Without it, or with null, files
/// are opened and written as the language has it, which is one piece where appending is a mode of
/// the file itself.
void set_append_to_file(AppendToFile append) noexcept;

bool append_to_file(const std::filesystem::path& path, const std::string& text);

}  // namespace vqmath63
