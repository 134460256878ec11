// What output files need of the system beyond the standard library.
#pragma once

#include <filesystem>
#include <string>

namespace vblur::host {

// What is wrong with the name of a file to write, whatever lies there: a device, or characters that the system gives a
// meaning. Empty for nothing, as everywhere but on Windows.
std::string FlawOfName(const std::filesystem::path& file);

// Puts what was written into a file, or the names in a folder, on the disk. The error in words; empty for success, and
// where the file system keeps them by other means.
std::string SyncFile(const std::filesystem::path& file);
std::string SyncFolder(const std::filesystem::path& folder);

// Gives a file the permissions of another one, as far as that is allowed.
void CopyPermissions(const std::filesystem::path& from, const std::filesystem::path& to);

// Renames a file; one of the new name is replaced in the same moment. The error in words; empty for success.
std::string MoveOver(const std::filesystem::path& from, const std::filesystem::path& to);

// Removes a file, without a word. Safe in signal handlers.
void RemoveAtOnce(const std::filesystem::path::value_type* file) noexcept;

}  // namespace vblur::host
