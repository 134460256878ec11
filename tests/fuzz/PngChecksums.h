// PNG files that a fuzzer has changed: readers refuse every part whose checksum is not that of its bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vblur::test {

// Sets the checksum of every whole part of a PNG file, and leaves other files as they are.
void MendPngChecksums(std::span<std::uint8_t> bytes);

}  // namespace vblur::test
