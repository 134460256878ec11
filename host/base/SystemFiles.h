// What output files need of the system beyond the standard library.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vblur::host {

// What is wrong with the name of a file to write, whatever lies there: a device, characters that the system gives a
// meaning, an end that it leaves out, or a drive without a folder. Empty for nothing, as everywhere but on Windows.
std::string FlawOfName(const std::filesystem::path& file);
// The same of one to read: a device, which would be waited for, or a drive without a folder.
std::string FlawOfInputName(const std::filesystem::path& file);

// What names of files consist of where they are counted, and the most of it that a part between separators and a whole
// path have.
struct NameLimits {
  std::string_view unit;
  std::size_t mostOfPart;
  std::size_t mostOfPath;
};
extern const NameLimits kNameLimits;

// Of a name in UTF-8, in that unit.
std::size_t LengthOfName(std::string_view name);

// The names of what lies in a folder, in no order; none where it cannot be read.
std::vector<std::filesystem::path> EntriesOf(const std::filesystem::path& folder);

// Whether a file can be read: the error in words; empty for yes. On Windows it waits up to half a second for others
// that have the file for themselves.
std::string TryToRead(const std::filesystem::path& file);

// Makes a file of these bytes, in place of an old one. Others may remove it meanwhile. The error in words; empty for
// success.
std::string WriteWhole(const std::filesystem::path& file, std::string_view bytes);

// Puts what was written into a file, or the names in a folder, on the disk. The error in words; empty for success, and
// where the file system keeps them by other means.
std::string SyncFile(const std::filesystem::path& file);
std::string SyncFolder(const std::filesystem::path& folder);

// Gives a file the permissions of another one, as far as that is allowed.
void CopyPermissions(const std::filesystem::path& from, const std::filesystem::path& to);

// Renames a file; one of the new name is replaced in the same moment. On Windows it waits up to half a second for
// others to close that one. The error in words; empty for success.
std::string MoveOver(const std::filesystem::path& from, const std::filesystem::path& to);

// Removes a file, without a word. Safe in signal handlers.
void RemoveAtOnce(const std::filesystem::path::value_type* file) noexcept;

}  // namespace vblur::host
