// The largest picture that is read.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace vblur::host {

// "640 x 480 pixels".
std::string PixelsOf(std::int64_t width, std::int64_t height);

// Throws Failure (cannot read) for a picture of more pixels than it may have, or of more than 2^31 components. The
// sides are larger than 0 and have up to 32 bits; `of` goes on after the size in the message.
void RequirePixels(const std::filesystem::path& path, std::int64_t width, std::int64_t height, int channels,
                   const std::string& of, std::int64_t mostPixels);

}  // namespace vblur::host
