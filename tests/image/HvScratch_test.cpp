#include "image/HvScratch.h"

#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "image/HvTexture.h"
#include "image/Pixels.h"
#include "tests/support/CpuLevel.h"

namespace vblur {
namespace {

TEST(HvScratch, GivesBackWhatWasGiven) {
  const HvScratchBlock block = takeScratch(1 << 20);
  ASSERT_NE(block.memory, nullptr);
  giveScratch(block);
  const HvScratchBlock again = takeScratch((1 << 20) - 4096);
  EXPECT_EQ(again.memory, block.memory);
  EXPECT_EQ(again.bytes, block.bytes);
  const HvScratchBlock other = takeScratch(1 << 20);
  EXPECT_NE(other.memory, block.memory) << "somebody has it";
  giveScratch(again);
  const HvScratchBlock small = takeScratch(1 << 18);
  EXPECT_NE(small.memory, block.memory) << "most of it would lie idle";
  giveScratch(small);
  giveScratch(other);
  giveScratch({});
}

TEST(HvScratch, UnusedBlocksMakeRoom) {
  constexpr std::size_t kLarge = std::size_t{40} << 20;
  std::vector<HvScratchBlock> blocks;
  for (std::size_t i = 0; i < 8; ++i)
    blocks.push_back(takeScratch(kLarge + (i << 21)));
  for (const HvScratchBlock& block : blocks)
    giveScratch(block);
  const HvScratchBlock newest = takeScratch(blocks.back().bytes);
  EXPECT_EQ(newest.memory, blocks.back().memory);
  giveScratch(newest);
}

TEST(HvScratch, APictureShowsNothingOfTheOneBefore) {
  for (const std::string& name : HvCpuLevels()) {
    const test::CpuLevel level(name);
    HvTexture<R8, Rf> picture;
    picture.horizontal.setSize(37);
    picture.vertical.setSize(29);
    picture.allocateScratch(true);
    ASSERT_NE(picture.data, nullptr);
    for (std::int32_t y = 0; y < 29; ++y) {
      for (std::int32_t x = 0; x < 37; ++x)
        ASSERT_EQ(*picture.at(x, y), R8{}) << name;
    }
    std::memset(picture.data, 77, 37 * 29 * sizeof(R8));
  }
  HvTexture<R8, Rf> none;
  none.allocateScratch(true);
  EXPECT_EQ(none.data, nullptr);
  EXPECT_EQ(none.allocationFailed, 0);
}

}  // namespace
}  // namespace vblur
