// Transposed tiles, at every instruction set of this machine.
#include "blur/TransposePixels.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/support/KernelRuns.h"

namespace vblur {
namespace {

template <class Word>
void transpose(std::int32_t lines, std::int32_t count, bool upwards, bool backwards) {
  constexpr std::int32_t kStripLines = 64;
  constexpr std::int32_t kPitch = 71;
  std::vector<Word> picture(static_cast<std::size_t>(lines) * kPitch);
  for (std::size_t i = 0; i < picture.size(); ++i)
    picture[i] = static_cast<Word>((i + 1) * 0x9E3779B97F4A7C15u >> 13);
  const std::int64_t pitch = upwards ? -kPitch : kPitch;
  const std::size_t first = upwards ? static_cast<std::size_t>(lines - 1) * kPitch : 0;
  std::vector<Word> strip(static_cast<std::size_t>(count) * kStripLines, Word{7});
  const std::int64_t stripBytes = kStripLines * static_cast<std::int64_t>(sizeof(Word));
  transposeIntoStrip(sizeof(Word), picture.data() + first, pitch * static_cast<std::int64_t>(sizeof(Word)), lines,
                     count, strip.data() + (backwards ? (count - 1) * kStripLines : 0),
                     backwards ? -stripBytes : stripBytes);
  for (std::int32_t i = 0; i < count; ++i) {
    for (std::int32_t j = 0; j < kStripLines; ++j) {
      const auto at = static_cast<std::size_t>(static_cast<std::int64_t>(first) + j * pitch + i);
      const std::int32_t row = backwards ? count - 1 - i : i;
      ASSERT_EQ(strip[static_cast<std::size_t>(row * kStripLines + j)], j < lines ? picture[at] : Word{7})
          << HvCpuLevel() << " " << sizeof(Word) << " bytes, position " << i << " line " << j;
    }
  }
}

template <class Word>
void transposeInEveryWay() {
  constexpr std::int32_t kSide = transposedSide(sizeof(Word));
  for (std::int32_t lines = kSide; lines <= 64; lines += kSide) {
    for (std::int32_t count = kSide; count <= 64; count += kSide) {
      transpose<Word>(lines, count, false, false);
      transpose<Word>(lines, count, true, false);
      transpose<Word>(lines, count, false, true);
    }
  }
}

class TransposePixels : public test::AtEachLevel {};

TEST_P(TransposePixels, MovesEveryPixelToItsPlace) {
  transposeInEveryWay<std::uint8_t>();
  transposeInEveryWay<std::uint16_t>();
  transposeInEveryWay<std::uint32_t>();
  transposeInEveryWay<std::uint64_t>();
  EXPECT_TRUE(test::kernelsRan({"transposePixels"}));
}

INSTANTIATE_TEST_SUITE_P(Levels, TransposePixels, testing::ValuesIn(test::vectorLevels()), test::levelName);

}  // namespace
}  // namespace vblur
