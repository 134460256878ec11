// PNG files of every kind, put together byte by byte.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include <zlib.h>

#include "host/formats/PngHead.h"

namespace vblur::host {

struct PngKind {
  int colourType = 2;
  int bits = 8;
  bool hasKey = false;  // of transparency; of a palette, alphas
};

inline std::string Big32Of(std::uint32_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes += static_cast<char>(value >> shift & 0xff);
  return bytes;
}

// With these chunks behind the header.
inline std::string WithChunksOf(const std::string& png, const std::string& chunks) {
  constexpr std::size_t kHead = 33;
  return png.substr(0, kHead) + chunks + png.substr(kHead);
}

inline std::string PackedBytes(const std::string& bytes) {
  uLongf length = compressBound(static_cast<uLong>(bytes.size()));
  std::string packed(length, '\0');
  compress(reinterpret_cast<Bytef*>(packed.data()), &length, reinterpret_cast<const Bytef*>(bytes.data()),
           static_cast<uLong>(bytes.size()));
  packed.resize(length);
  return packed;
}

// The palette, and the key, of a kind.
inline std::string ChunksOfKind(const PngKind& kind, std::mt19937& random) {
  const auto bytes = [&](std::size_t count) {
    std::string text(count, '\0');
    for (char& each : text)
      each = static_cast<char>(random());
    return text;
  };
  std::string chunks;
  const std::size_t colours = kind.colourType == 3 ? std::size_t{1} << kind.bits : 0;
  if (colours > 0) chunks += PngChunk("PLTE", bytes(3 * colours));
  if (!kind.hasKey) return chunks;
  if (colours > 0) return chunks + PngChunk("tRNS", bytes(colours - 1));
  std::string key(kind.colourType == 0 ? 2 : 6, '\0');
  for (std::size_t i = 1; i < key.size(); i += 2)
    key[i] = static_cast<char>(random() & ((1u << kind.bits) - 1) & 0xff);
  return chunks + PngChunk("tRNS", key);
}

// Random samples in rows of every filter; `before` and `behind` are chunks around the pixels, `first` one before the
// palette.
inline std::string PngBytes(const PngKind& kind, std::uint32_t width, std::uint32_t height,
                            const std::string& first = {}, const std::string& before = {},
                            const std::string& behind = {}, bool isInterlaced = false) {
  constexpr unsigned kChannels[] = {1, 0, 3, 1, 2, 0, 4};
  std::mt19937 random(width + static_cast<unsigned>(kind.bits));
  const std::size_t row = (width * kChannels[kind.colourType] * static_cast<unsigned>(kind.bits) + 7) / 8;
  std::string rows;
  for (std::uint32_t y = 0; y < height; ++y) {
    // A palette's numbers are those of its colours unfiltered alone.
    rows += static_cast<char>(isInterlaced || kind.colourType == 3 ? 0 : y % 5);
    for (std::size_t i = 0; i < row; ++i)
      rows += static_cast<char>(random());
  }
  const std::string head = Big32Of(width) + Big32Of(height) + static_cast<char>(kind.bits) +
                           static_cast<char>(kind.colourType) + std::string(2, '\0') + static_cast<char>(isInterlaced);
  return "\x89PNG\r\n\x1a\n" + PngChunk("IHDR", head) + first + ChunksOfKind(kind, random) + before +
         PngChunk("IDAT", PackedBytes(rows)) + behind + PngChunk("IEND", {});
}

}  // namespace vblur::host
