// Copies of chosen components by vector code against the plain ones, at every instruction set that this machine
// has.
#include "image/CopyBits.h"

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
  for (const std::int32_t step : {1, 0, -1})
    compareRows<Pixel, Pixel>(random, step, copy, plain);
  for (const std::ptrdiff_t apart : {0, -1, 1, random.within(-8, 8)})
    compareRowsInPlace<Pixel>(random, apart, copy, plain);
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

// Bits that no component has the bounds of, at addresses of every kind.
TEST_P(CopyBits, TakeTheChosenBitsAndNoOthers) {
  alignas(64) unsigned char from[300];
  alignas(64) unsigned char to[300];
  for (int offset = 0; offset < 9; ++offset) {
    for (int i = 0; i < 300; ++i) {
      from[i] = static_cast<unsigned char>(i * 91 + 5);
      to[i] = static_cast<unsigned char>(i * 57);
    }
    constexpr unsigned char kChosen[] = {0x0F, 0xFF, 0x00, 0x81};
    copyBits(from + offset, 70, std::uint32_t{0x8100FF0F}, to + offset);
    for (int i = 0; i < 300; ++i) {
      const auto before = static_cast<unsigned char>(i * 57);
      const bool inRow = i >= offset && i < offset + 280;
      const unsigned char chosen = inRow ? kChosen[(i - offset) % 4] : 0;
      ASSERT_EQ(to[i], static_cast<unsigned char>((from[i] & chosen) | (before & ~chosen))) << HvCpuLevel() << " " << i;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Levels, CopyBits, testing::ValuesIn(vectorLevels()));

}  // namespace
}  // namespace vblur::test
