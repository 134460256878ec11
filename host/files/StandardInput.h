// The standard input as a picture file. Readers go back and forth in a file and open it several times, so its bytes are
// put into a temporary file first.
#pragma once

#include <cstdint>
#include <filesystem>

#include "host/files/PictureFile.h"

namespace vblur::host {

// Reads the standard input to its end, once in a process. Throws Failure: cannot read when it is a terminal, empty or
// unreadable, when it has more bytes than these (FailureKind::NeedsMemory) and when no temporary file can be made;
// interrupted when `stop` holds.
void TakeStandardInput(std::int64_t mostBytes, const StopTest& stop = {});

// The file to open for a picture: that of the standard input, which is taken now if it was not, or the file itself.
std::filesystem::path FileToOpen(const std::filesystem::path& picture);

}  // namespace vblur::host
