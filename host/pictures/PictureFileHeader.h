// Facts from the first bytes of a file, for formats whose readers decode the picture as they open the file, or count no
// pictures, or pass over metadata.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vblur::host {

struct HeaderSize {
  std::int64_t width = 0;
  std::int64_t height = 0;
};

// For GIF, JPEG 2000 and HEIF; nothing for other formats, and where the header does not hold it.
std::optional<HeaderSize> SizeFromHeader(const std::filesystem::path& path);

struct ChunkFacts {
  // The pictures of an animated WebP or PNG file, the one that readers without animation show among them; 1 for other
  // files.
  std::int32_t frames = 1;
  // Kinds of metadata of a WebP file, whose reader gives none; each once, in the order of the file.
  std::vector<std::string> unread;
};
ChunkFacts FactsOfChunks(const std::filesystem::path& path);

}  // namespace vblur::host
