#include "tests/hashes/HashedFrames.h"

#include <bit>
#include <fstream>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tests/hashes/PictureHash.h"
#include "tests/support/TestServer.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::hashes {
namespace {

using differential::DrawnPicture;

// The components of all pictures of a frame, one after the other, as one row.
void Append(const DrawnPicture& picture, DrawnPicture& all) {
  all.values.insert(all.values.end(), picture.values.begin(), picture.values.end());
  all.width = static_cast<std::int32_t>(all.values.size());
}

// Compilers order the arguments of a call in different ways, and so what is drawn among them.
TEST(HashedFrames, AreDrawnAlikeByEveryCompiler) {
  DrawnPicture all{0, 1, 1, {}};
  for (std::uint64_t i = 0; i < 200; ++i) {
    const differential::DrawnFrame frame = RandomFrame(i).frame;
    Append(frame.initial, all);
    if (frame.input) Append(*frame.input, all);
    if (frame.input2) Append(*frame.input2, all);
    if (frame.mask) Append(*frame.mask, all);
  }
  EXPECT_EQ(HashPicture(all, 16), 0x380d9207f81e6597u);
}

// A share of the table of hashes: the bits of every platform, with one number for all of them.
void ExpectBits(NamedFrame (*drawn)(std::uint64_t), std::int32_t depth, std::uint64_t expected) {
  for (const std::string level : {"twin", "native"}) {
    SetCpuLevel(level);
    DrawnPicture all{0, 1, 1, {}};
    for (std::uint64_t i = 0; i < 300; ++i) {
      const NamedFrame each = drawn(i);
      if (IsRendered(each.frame)) Append(RenderJobFrame(each.frame), all);
    }
    EXPECT_GT(all.width, 200000) << "too few frames render";
    EXPECT_EQ(HashPicture(all, depth), expected) << level;
  }
}

TEST(HashedFrames, HaveTheBitsOfEveryPlatform) {
  ExpectBits(RandomFrame, 16, 0xe8693fcf54f93b75u);
}

TEST(HashedFrames, OfFloatsHaveTheBitsOfEveryPlatform) {
  ExpectBits(FloatFrame, 32, 0xaae79f746879fc31u);
}

// Light is rendered in floats, whatever the depth of the job.
TEST(HashedFrames, OfGoldenJobsHaveTheDepthThatTheyRenderWith) {
  const host::ScratchFolder folder;
  std::ofstream(folder.path() / "light.json")
      << R"({"depth": 8, "linear": true, "input": {"file": "in.png"}, "output": {"file": "out.png"}})";
  const auto half = std::bit_cast<std::int32_t>(0.5f);
  const auto frames = GoldenFrames(folder.path(), [&](const std::string&, std::int32_t depth, std::int32_t components) {
    EXPECT_EQ(depth, 32);
    EXPECT_EQ(components, 4);
    return DrawnPicture{2, 1, 4, {half, half, half, half, half, half, half, half}};
  });
  ASSERT_EQ(frames.size(), 1U);
  EXPECT_EQ(frames[0].frame.job.depth, 32);
  EXPECT_EQ(RenderJobFrame(frames[0].frame).values, frames[0].frame.input->values);
}

TEST(HashedFrames, HaveNamesThatSortByNumber) {
  EXPECT_EQ(RandomFrame(7).name, "random/0007");
  EXPECT_EQ(RandomFrame(1999).name, "random/1999");
  EXPECT_EQ(FloatFrame(42).name, "floats/0042");
}

TEST(HashedFrames, InFilesAreAsManyAsAreAskedForAndRender) {
  const auto frames = FramesInFiles({}, 12);
  ASSERT_EQ(frames.size(), 12U);
  std::set<std::string> names;
  for (const NamedFrame& each : frames) {
    names.insert(each.name);
    EXPECT_TRUE(each.name.starts_with("files/random/")) << each.name;
    EXPECT_TRUE(each.frame.job.output.file.ends_with(".png"));
    EXPECT_EQ(RenderJobFrame(each.frame).width, each.frame.initial.width);
  }
  EXPECT_EQ(names.size(), frames.size());
}

}  // namespace
}  // namespace vblur::hashes
