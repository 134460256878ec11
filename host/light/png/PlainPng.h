// Which PNG files are plain: those whose every chunk is read here as the full picture library reads it.
#pragma once

#include <filesystem>

namespace vblur::host {

// Of a file to open. By its header and the names, lengths and checksums of its chunks, nothing being decoded: it is
// whole, is not interlaced, has samples of up to 1 GiB, and no chunks but the usual ones, each as often as it may.
bool IsPlainPngFile(const std::filesystem::path& file);

}  // namespace vblur::host
