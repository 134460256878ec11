// Small text files, whole: job files and property files.
#pragma once

#include <filesystem>
#include <string>

namespace vblur::host {

// `kind` is what people call such a file, for messages. Throws Failure (cannot read), whose line begins
// with the file's name, for a file that is missing, unreadable or larger than 16 MiB.
std::string ReadTextFile(const std::filesystem::path& path, const std::string& kind);

// The file appears when it is complete and replaces one of the same name. Throws Failure (cannot write).
void WriteTextFile(const std::string& text, const std::filesystem::path& path, const std::string& kind);

}  // namespace vblur::host
