// Reads and writes small text files whole: job files and property files.
#pragma once

#include <filesystem>
#include <string>

namespace vblur::host {

// `kind` names the kind of file in messages. Throws Failure (cannot read) that begins with the file's name for a file
// that is missing, unreadable or larger than 16 MiB.
std::string ReadTextFile(const std::filesystem::path& path, const std::string& kind);

// Replaces an existing file; the file appears when complete. Throws Failure (cannot write).
void WriteTextFile(const std::string& text, const std::filesystem::path& path, const std::string& kind);

}  // namespace vblur::host
