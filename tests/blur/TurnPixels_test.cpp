// Turned tiles, at every instruction set that this machine has.
#include "blur/TurnPixels.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/support/CpuLevel.h"

namespace vblur {
namespace {

template <class Word>
void turnThereAndBack(std::int32_t lines, std::int32_t count, bool upwards) {
  constexpr std::int32_t kStripLines = 32;
  constexpr std::int32_t kPitch = 41;
  std::vector<Word> picture(static_cast<std::size_t>(lines) * kPitch);
  for (std::size_t i = 0; i < picture.size(); ++i)
    picture[i] = static_cast<Word>(i * 0x9E3779B97F4A7C15u);
  const std::int64_t pitch = upwards ? -kPitch : kPitch;
  const std::size_t first = upwards ? static_cast<std::size_t>(lines - 1) * kPitch : 0;
  const auto at = [&](std::int32_t j, std::int32_t i) {
    return static_cast<std::size_t>(static_cast<std::int64_t>(first) + j * pitch + i);
  };
  const auto bytes = pitch * static_cast<std::int64_t>(sizeof(Word));
  std::vector<Word> strip(static_cast<std::size_t>(count) * kStripLines, Word{7});
  turnIntoStrip(picture.data() + first, bytes, lines, count, strip.data(), kStripLines);
  for (std::int32_t i = 0; i < count; ++i) {
    for (std::int32_t j = 0; j < kStripLines; ++j) {
      ASSERT_EQ(strip[static_cast<std::size_t>(i * kStripLines + j)], j < lines ? picture[at(j, i)] : Word{7})
          << HvCpuLevel() << " " << i << " " << j;
    }
  }
  std::vector<Word> back(picture.size(), Word{9});
  turnOutOfStrip(strip.data(), kStripLines, lines, count, back.data() + first, bytes);
  for (std::int32_t j = 0; j < lines; ++j) {
    for (std::int32_t i = 0; i < kPitch; ++i)
      ASSERT_EQ(back[at(j, i)], i < count ? picture[at(j, i)] : Word{9}) << HvCpuLevel() << " " << i << " " << j;
  }
}

TEST(TurnPixels, MovesEveryPixelToItsPlaceAndBack) {
  for (const std::string& name : HvCpuLevels()) {
    const test::CpuLevel level(name);
    for (const std::int32_t lines : {4, 8, 16, 32}) {
      for (const std::int32_t count : {4, 12, 16, 40}) {
        for (const bool upwards : {false, true}) {
          turnThereAndBack<std::uint32_t>(lines, count, upwards);
          turnThereAndBack<std::uint64_t>(lines, count, upwards);
        }
      }
    }
  }
}

}  // namespace
}  // namespace vblur
