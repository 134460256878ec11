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

// For GIF, JPEG 2000, HEIF and WebP; nothing for other formats, and where the header does not hold it.
std::optional<HeaderSize> SizeFromHeader(const std::filesystem::path& path);

struct ChunkFacts {
  // The pictures of an animated WebP or PNG file, the one that readers without animation show among them; 1 for other
  // files.
  std::int32_t frames = 1;
  // Kinds of data of a WebP, JPEG or PNG file that its reader does not give, each once.
  std::vector<std::string> unread;
  // Of a PNG file: its chunks about colours that are no profile (sRGB, gAMA, cHRM), whole, one after the other.
  std::string colourChunks;
  // Of a PNG file: it has a chunk of a colour profile, whole or not.
  bool hasProfile = false;
  // Of a PNG file: the place of its picture on a page (oFFs), in micrometres.
  bool isPlacedInMicrometres = false;
  // Of a PNG file: its chunks of texts behind the pixels, whole, one after the other.
  std::string lateTexts;
  // Of a PNG or JPEG file: its Exif data as it is stored; empty: none.
  std::string exif;
};
ChunkFacts FactsOfChunks(const std::filesystem::path& path);

}  // namespace vblur::host
