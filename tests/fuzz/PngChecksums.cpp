#include "tests/fuzz/PngChecksums.h"

#include <algorithm>
#include <array>

namespace vblur::test {

namespace {

constexpr std::array<std::uint8_t, 8> kSignature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

// CRC-32 of ISO 3309, as the format asks for.
std::uint32_t Checksum(std::span<const std::uint8_t> bytes) {
  constexpr std::uint32_t kPolynomial = 0xedb88320u;
  std::uint32_t sum = ~0u;
  for (const std::uint8_t byte : bytes) {
    sum ^= byte;
    for (int bit = 0; bit < 8; ++bit)
      sum = (sum & 1) != 0 ? sum >> 1 ^ kPolynomial : sum >> 1;
  }
  return ~sum;
}

std::uint32_t Big32(std::span<const std::uint8_t> bytes) {
  return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
}

}  // namespace

void MendPngChecksums(std::span<std::uint8_t> bytes) {
  if (bytes.size() < kSignature.size() || !std::ranges::equal(bytes.first(kSignature.size()), kSignature)) return;
  // A part is the length of its content, its name, the content, and the checksum of these two.
  constexpr std::size_t kAround = 12;
  bytes = bytes.subspan(kSignature.size());
  while (bytes.size() >= kAround) {
    const std::size_t content = Big32(bytes);
    if (content > bytes.size() - kAround) return;
    const std::uint32_t sum = Checksum(bytes.subspan(4, 4 + content));
    for (std::size_t i = 0; i < 4; ++i)
      bytes[8 + content + i] = static_cast<std::uint8_t>(sum >> (24 - 8 * i));
    bytes = bytes.subspan(kAround + content);
  }
}

}  // namespace vblur::test
