#include "host/light/dpx/DpxPacking.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "host/files/Sample.h"

namespace vblur::host {

namespace {

static_assert(std::endian::native == std::endian::little);

constexpr int kWordBits = 32;
constexpr std::size_t kInFilledWord = 3;

std::uint32_t Turned(std::uint32_t word) {
  return __builtin_bswap32(word);
}
std::uint16_t Turned(std::uint16_t word) {
  return __builtin_bswap16(word);
}

template <typename Word>
Word WordAt(const std::byte* bytes, std::size_t index, bool isTurned) {
  Word word;
  std::memcpy(&word, bytes + index * sizeof word, sizeof word);
  return isTurned ? Turned(word) : word;
}

template <typename Word>
void PutWord(Word word, std::byte* bytes, std::size_t index) {
  std::memcpy(bytes + index * sizeof word, &word, sizeof word);
}

template <bool isTurned, bool isReversed>
void UnpackThrees(const std::byte* row, std::byte* samples, std::size_t count) {
  constexpr int kShifts[] = {isReversed ? 2 : 22, 12, isReversed ? 22 : 2};
  const auto spread = [](std::uint32_t word, int shift) { return sample::Spread<10>(word >> shift & 0x3ffu); };
  const std::size_t words = count / kInFilledWord;
  for (std::size_t i = 0; i < words; ++i) {
    const auto word = WordAt<std::uint32_t>(row, i, isTurned);
    for (std::size_t place = 0; place < kInFilledWord; ++place)
      PutWord(spread(word, kShifts[place]), samples, kInFilledWord * i + place);
  }
  for (std::size_t place = 0; place < count - kInFilledWord * words; ++place)
    PutWord(spread(WordAt<std::uint32_t>(row, words, isTurned), kShifts[place]), samples,
            kInFilledWord * words + place);
}

void PackThrees(const std::byte* samples, std::byte* row, std::size_t count) {
  const auto part = [&](std::size_t i, int shift) {
    return std::uint32_t{WordAt<std::uint16_t>(samples, i, false)} >> 6 << shift;
  };
  const std::size_t words = count / kInFilledWord;
  for (std::size_t i = 0; i < words; ++i)
    PutWord(part(kInFilledWord * i, 22) | part(kInFilledWord * i + 1, 12) | part(kInFilledWord * i + 2, 2), row, i);
  if (kInFilledWord * words == count) return;
  std::uint32_t last = 0;
  for (std::size_t i = kInFilledWord * words; i < count; ++i)
    last |= part(i, 22 - 10 * static_cast<int>(i - kInFilledWord * words));
  PutWord(last, row, words);
}

// Bits of words, the lowest first.
template <int bits>
void UnpackBits(const std::byte* row, std::byte* samples, std::size_t count, bool isTurned) {
  std::uint64_t held = 0;
  int heldBits = 0;
  std::size_t word = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (heldBits < bits) {
      held |= std::uint64_t{WordAt<std::uint32_t>(row, word++, isTurned)} << heldBits;
      heldBits += kWordBits;
    }
    PutWord(sample::Spread<bits>(static_cast<std::uint32_t>(held) & ((1u << bits) - 1)), samples, i);
    held >>= bits;
    heldBits -= bits;
  }
}

template <int bits>
void PackBits(const std::byte* samples, std::byte* row, std::size_t count) {
  std::uint64_t held = 0;
  int heldBits = 0;
  std::size_t word = 0;
  for (std::size_t i = 0; i < count; ++i) {
    held |= std::uint64_t{static_cast<std::uint32_t>(WordAt<std::uint16_t>(samples, i, false)) >> (16 - bits)}
            << heldBits;
    heldBits += bits;
    if (heldBits < kWordBits) continue;
    PutWord(static_cast<std::uint32_t>(held), row, word++);
    held >>= kWordBits;
    heldBits -= kWordBits;
  }
  if (heldBits > 0) PutWord(static_cast<std::uint32_t>(held), row, word);
}

}  // namespace

std::size_t DpxPacking::RowBytes(std::size_t samples) const {
  constexpr std::size_t kWordBytes = 4;
  if (bits == 8 || bits == 16) return samples * static_cast<std::size_t>(bits / 8);
  if (!isFilled) return (samples * static_cast<std::size_t>(bits) + kWordBits - 1) / kWordBits * kWordBytes;
  return bits == 10 ? (samples + kInFilledWord - 1) / kInFilledWord * kWordBytes : samples * 2;
}

void DpxPacking::Unpack(const std::byte* row, std::byte* samples, std::size_t count) const {
  if (bits == 8) {
    std::copy_n(row, count, samples);
  } else if (bits == 10 && isFilled) {
    const auto unpack = isBigEndian  ? isReversed ? UnpackThrees<true, true> : UnpackThrees<true, false>
                         : isReversed ? UnpackThrees<false, true>
                                     : UnpackThrees<false, false>;
    unpack(row, samples, count);
  } else if (bits == 10) {
    UnpackBits<10>(row, samples, count, isBigEndian);
  } else if (bits == 12 && !isFilled) {
    UnpackBits<12>(row, samples, count, isBigEndian);
  } else {
    for (std::size_t i = 0; i < count; ++i) {
      const auto word = WordAt<std::uint16_t>(row, i, isBigEndian);
      PutWord(bits == 12 ? sample::Spread<12>(std::uint32_t{word} >> 4) : word, samples, i);
    }
  }
}

void DpxPacking::Pack(const std::byte* samples, std::byte* row, std::size_t count) const {
  if (bits == 8) {
    std::copy_n(samples, count, row);
  } else if (bits == 10 && isFilled) {
    PackThrees(samples, row, count);
  } else if (bits == 10) {
    PackBits<10>(samples, row, count);
  } else if (bits == 12 && !isFilled) {
    PackBits<12>(samples, row, count);
  } else {
    for (std::size_t i = 0; i < count; ++i) {
      const auto word = WordAt<std::uint16_t>(samples, i, false);
      PutWord(static_cast<std::uint16_t>(bits == 12 ? word & 0xfff0u : word), row, i);
    }
  }
}

}  // namespace vblur::host
