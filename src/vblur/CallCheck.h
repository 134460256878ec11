// Checks the arguments of the library's calls.
#pragma once

#include <cstdint>
#include <string>

#include "vblur/Blur.h"

namespace vblur {

inline constexpr std::int32_t kMostPixels = 1 << 24;
inline constexpr std::int32_t kMostThreads = 1024;

// Bytes of a row, without a gap.
std::int64_t rowBytesOf(const vblur_picture& picture);
// Bytes from a row to the next, never 0.
std::int64_t strideOf(const vblur_picture& picture);

// Copies the caller's fields; the rest have their defaults. This and the checks return what is wrong, where, and what
// was expected; empty when nothing is.
std::string readSettings(const vblur_settings* given, vblur_settings& settings);
std::string checkPictures(const vblur_picture* source, const vblur_picture* result, bool mayBeInPlace);
std::string checkSettings(const vblur_settings& settings, const vblur_picture& result);

}  // namespace vblur
