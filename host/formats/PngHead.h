// The chunks of a PNG file before its pixels.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace vblur::host {

// More bytes than a codec writes before the pixels.
constexpr std::size_t kPngHeadBytes = std::size_t{1} << 20;

// A whole chunk.
std::string PngChunk(const std::string& name, const std::string& data);

// Whether a whole chunk has the checksum of its bytes.
bool IsIntactPngChunk(std::string_view chunk);
// The name of the first chunk of a PNG file that the pixels depend on and whose checksum is another; empty: none, as
// far as the file goes.
std::string DamagedPngChunk(const std::filesystem::path& path);

// A colour profile as the chunk of a PNG file (iCCP).
std::string PngProfileChunk(const std::string& profile);

// The first bytes of a PNG file without what its writer says by itself of colours (sRGB, gAMA, cHRM, iCCP), and of the
// resolution (pHYs) where these chunks do, and with these chunks behind the header. Bytes without the begin of the
// pixels stay as they are.
std::string WithPngChunks(const std::string& head, const std::string& chunks);

}  // namespace vblur::host
