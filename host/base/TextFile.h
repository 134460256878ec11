// Reads and writes small text files whole: job files and property files.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "host/base/OutputFileCommit.h"

namespace vblur::host {

// "-" is the standard input. `kind` names the kind of file in messages. Throws Failure (cannot read) that begins with
// the file's name for a file that is missing, unreadable or larger than 16 MiB. The text is UTF-8 without a byte order
// mark, also of a file with one, in UTF-8 or UTF-16.
std::string ReadTextFile(const std::filesystem::path& path, const std::string& kind);

// The whole text in a temporary file, which replaces the target when committed. Throws Failure (cannot write).
std::unique_ptr<OutputFileCommit> WriteTextBeside(const std::string& text, const std::filesystem::path& path,
                                                  const std::string& kind);

}  // namespace vblur::host
