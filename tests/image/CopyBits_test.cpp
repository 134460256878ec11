// Vector copies of chosen components against plain ones, at every instruction set of this machine.
#include "image/CopyBits.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <gtest/gtest.h>

#include "image/ChannelMask.h"
#include "tests/support/Rows.h"

namespace vblur::test {
namespace {

class CopyBits : public AtEachLevel {};

template <class Mask, class Pixel>
void compareMask(Random& random) {
  const auto copy = [](const HvPixelRun<Pixel>& run, std::int32_t n, Pixel* out) {
    copyChannels<Mask>(out, run, n);
    return true;
  };
  const auto plain = [](const HvPixelRun<Pixel>& run, std::int32_t n, Pixel* out) {
    copyChannelsPlain<Mask>(out, run, n);
    return true;
  };
  for (const std::int32_t step : {1, 0, -1}) {
    compareRows<Pixel, Pixel>(random, step, copy, plain);
    for (const std::ptrdiff_t apart : {0, -1, 1, random.within(-8, 8)})
      compareRowsInPlace<Pixel>(random, apart, copy, plain, step);
  }
}

template <class Pixel>
void compareAllMasks(Random& random) {
  [&]<int... Choice>(std::integer_sequence<int, Choice...>) {
    (compareMask<ChannelMask<Choice & 1, (Choice >> 1) & 1, (Choice >> 2) & 1, (Choice >> 3) & 1>, Pixel>(random), ...);
  }
  (std::make_integer_sequence<int, 16>{});
}

TEST_P(CopyBits, EqualPlainCopiesOfEachChoiceOfComponents) {
  forRandomCases(60, [](Random& random) {
    compareAllMasks<R8>(random);
    compareAllMasks<R16>(random);
  });
}

// Any bit masks, at any alignment.
TEST_P(CopyBits, TakeTheChosenBitsAndNoOthers) {
  unsigned char from[320];
  unsigned char before[320];
  for (int i = 0; i < 320; ++i) {
    from[i] = static_cast<unsigned char>(i * 91 + 5);
    before[i] = static_cast<unsigned char>(i * 57);
  }
  constexpr std::int32_t kWords = 70;
  constexpr unsigned char kChosen[] = {0x0F, 0xFF, 0x00, 0x81};
  // copies(out) writes byte source(i) to byte i of the words.
  const auto expectBytes = [&](int offset, const auto& copies, const auto& source) {
    unsigned char to[320];
    std::copy_n(before, 320, to);
    copies(to + offset);
    for (int i = 0; i < 320; ++i) {
      const bool inRow = i >= offset && i < offset + 4 * kWords;
      const unsigned char chosen = inRow ? kChosen[(i - offset) % 4] : 0;
      const unsigned char taken = inRow ? from[source(i - offset)] : 0;
      ASSERT_EQ(to[i], static_cast<unsigned char>((taken & chosen) | (before[i] & ~chosen)))
          << HvCpuLevel() << " " << i;
    }
  };
  constexpr std::uint32_t kBits = 0x8100FF0F;
  std::uint32_t word;
  for (int offset = 0; offset < 9; ++offset) {
    std::memcpy(&word, from + offset, 4);
    const int last = offset + 4 * (kWords - 1);
    expectBytes(
        offset, [&](void* to) { copyBits(from + offset, kWords, kBits, to); }, [&](int i) { return offset + i; });
    expectBytes(
        offset, [&](void* to) { mirrorBits(from + last, kWords, kBits, to); },
        [&](int i) { return last - i / 4 * 4 + i % 4; });
    expectBytes(
        offset, [&](void* to) { fillBits(word, kWords, kBits, to); }, [&](int i) { return offset + i % 4; });
  }
}

INSTANTIATE_TEST_SUITE_P(Levels, CopyBits, testing::ValuesIn(vectorLevels()), levelName);

}  // namespace
}  // namespace vblur::test
