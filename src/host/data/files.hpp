// Files as the system at hand knows them. Texts are UTF-8.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

namespace vqmath63::host {

/// The path that a text names.
inline std::filesystem::path path_of(const std::string& utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

/// Opens a file to read its bytes; null, and errno, where that is not possible.
std::FILE* open_to_read(const std::filesystem::path& path);

/// Makes an empty file; false where that is not possible, or one is there.
bool create_new(const std::filesystem::path& path);

/// Whether the user may write an existing file.
bool may_write(const std::filesystem::path& path);

/// Has a file removed when the user stops the program (Ctrl-C) or the system asks it to end; with
/// an empty path none any more.
void remove_when_stopped(const std::filesystem::path& file);

/// A number that no other program has while this one runs.
int process_id();

/// Whether the standard error stream is a terminal, which understands control sequences.
bool errors_reach_a_terminal();

}  // namespace vqmath63::host
