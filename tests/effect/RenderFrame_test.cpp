// RenderFrame: refusals, fields, region, interruption and memory.
#include <cstring>

#include <gtest/gtest.h>

#include "platform/IVBlurFacts.h"
#include "tests/effect/FrameTest.h"
#include "tests/effect/OpenBlur.h"
#include "tests/support/ThreadCount.h"

namespace vblur {
namespace {

class RenderFrame : public FrameTest {};

// The intermediate picture has the size of the output: rows beyond its edges are rows of it again. Line buffers and
// tables are small.
TEST_F(RenderFrame, TakesOnePictureBesideThoseThatAreGiven) {
  constexpr std::int64_t kWidth = 2048;
  constexpr std::int64_t kHeight = 1024;
  constexpr std::int64_t kTables = std::int64_t{4} << 20;
  bench.project = host::ProjectSizes{{kWidth, kHeight}, {kWidth, kHeight}};
  Paint<Pixel8>(bench.input, kWidth, kHeight, Checks);
  Paint<Pixel8>(bench.output, kWidth, kHeight, Marker);
  bench.Set(PropertyId::Blur, 300.0);
  EXPECT_EQ(bench.effect->DescribeFrameMemory().own, 0);
  ASSERT_EQ(bench.Render(), kOk);
  const FrameMemoryFacts memory = bench.effect->DescribeFrameMemory();
  EXPECT_EQ(memory.pictures, 2 * 4 * kWidth * kHeight);
  const std::int64_t between = 4 * kWidth * kHeight;
  EXPECT_GE(memory.own, between);
  EXPECT_LE(memory.own, between + kTables);

  // Both passes in one keep a tile for each thread.
  const test::ThreadCount threads(1);
  bench.Set(PropertyId::Blur, 30.0);
  ASSERT_EQ(bench.Render(), kOk);
  EXPECT_GT(bench.effect->DescribeFrameMemory().own, 0);
  EXPECT_LT(bench.effect->DescribeFrameMemory().own, between);

  bench.Set(PropertyId::Blur, 0.0);
  ASSERT_EQ(bench.Render(), kOk);
  EXPECT_EQ(bench.effect->DescribeFrameMemory().own, 0) << "a copy needs no picture between";
}

TEST_F(RenderFrame, WithoutAnOutputIsRefused) {
  bench.hasOutput = false;
  EXPECT_EQ(bench.Render(), kNullPointer);
}

TEST_F(RenderFrame, AnUnusableOutputGivesItsOwnResult) {
  ASSERT_EQ(bench.Render(), kOk);
  Paint<Pixel8>(bench.output, kSide, kSide, Marker);
  for (const HRESULT why : {kFailed, HRESULT{7}}) {
    UnusableImage unusable(bench.output, why);
    bench.effect->SetOutput(&unusable);
    EXPECT_EQ(bench.effect->RenderFrame(0.0), why);
  }
  ExpectOutput(Marker);
}

// PrepareData returns a given result.
struct UnpreparedBlur : Blur {
  HRESULT PrepareData() override { return answer; }

  HRESULT answer = kOk;
};

TEST_F(RenderFrame, EndsWithWhatItsDataSays) {
  auto* const unprepared = new UnpreparedBlur();
  bench.effect = ComPtr<Blur>::Own(unprepared);
  ASSERT_EQ(bench.Render(), kOk);
  Paint<Pixel8>(bench.output, kSide, kSide, Marker);
  bench.input.Place(AtOrigin(5, 6));
  for (const HRESULT why : {kFailed, HRESULT{7}}) {
    unprepared->answer = why;
    bench.hasOutput = true;
    EXPECT_EQ(bench.Render(), why);
    EXPECT_EQ(bench.effect->InputPlace().originX, 0) << "nothing of the frame has begun";
    bench.hasOutput = false;
    EXPECT_EQ(bench.Render(), why) << "asked before the output";
  }
  ExpectOutput(Marker);
}

TEST_F(RenderFrame, AnUnknownFormatLeavesTheOutputAndSucceeds) {
  bench.output.Reset(8, 1, kSide, kSide);
  std::memset(bench.output.FirstPixel(), 77, bench.output.ByteCount());
  EXPECT_EQ(bench.Render(), kOk);
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(bench.output.Row(0));
  for (std::size_t i = 0; i < bench.output.ByteCount(); ++i)
    ASSERT_EQ(bytes[i], 77);
}

TEST_F(RenderFrame, TheSecondFieldStartsOneRowIn) {
  bench.Set(PropertyId::Blur, 0.0);
  bench.effect->SetField(2);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput([](std::int32_t x, std::int32_t y) { return y % 2 == 1 ? Checks(x, y) : Marker(x, y); });
  bench.effect->SetField(1);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput(Checks);
}

TEST_F(RenderFrame, AnyOtherFieldIsAWholeFrame) {
  for (const std::int32_t field : {0, 3, -1, 258}) {
    Paint<Pixel8>(bench.output, kSide, kSide, Marker);
    bench.Set(PropertyId::Blur, 0.0);
    bench.effect->SetField(field);
    EXPECT_EQ(bench.Render(), kOk);
    ExpectOutput(Checks);
    bench.Set(PropertyId::Blur, 6.0);
    EXPECT_EQ(bench.Render(), kOk);
    EXPECT_EQ(bench.Overscan(), (std::array{6.0, 6.0})) << field;
  }
}

TEST_F(RenderFrame, AFieldHalvesTheVerticalSizeAlone) {
  bench.Set(PropertyId::Blur, 6.0);
  for (const std::int32_t field : {1, 2}) {
    bench.effect->SetField(field);
    EXPECT_EQ(bench.Render(), kOk);
    EXPECT_EQ(bench.Overscan(), (std::array{6.0, 3.0})) << field;
  }
}

TEST_F(RenderFrame, AFieldOfAnOddPictureLeavesItsLastRow) {
  Paint<Pixel8>(bench.input, kSide, 5, Checks);
  Paint<Pixel8>(bench.output, kSide, 5, Marker);
  bench.Set(PropertyId::Blur, 0.0);
  bench.effect->SetField(1);
  EXPECT_EQ(bench.Render(), kOk);
  for (std::int32_t y = 0; y < 5; ++y)
    EXPECT_EQ(At<Pixel8>(bench.output, 3, y), y == 0 || y == 2 ? Checks(3, y) : Marker(3, y)) << y;
}

TEST_F(RenderFrame, ARegionIsAllThatIsWritten) {
  bench.Set(PropertyId::Blur, 0.0);
  bench.effect->SetROI(3, 4, 5, 6);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput(
      [](std::int32_t x, std::int32_t y) { return x >= 3 && x < 8 && y >= 4 && y < 10 ? Checks(x, y) : Marker(x, y); });
}

TEST_F(RenderFrame, AStopBeforeTheFirstRowWritesNothing) {
  bench.context.Stop();
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput(Marker);
}

TEST_F(RenderFrame, TheNextRenderIsArmedAgain) {
  bench.Set(PropertyId::Blur, 0.0);
  host::ExecuteContext stopped;
  stopped.Stop();
  bench.contextInUse = &stopped;
  bench.Render();
  ExpectOutput(Marker);
  bench.contextInUse = &bench.context;
  bench.Render();
  ExpectOutput(Checks);
}

TEST_F(RenderFrame, AStopByTheHostIsReason10000) {
  auto* const open = new OpenBlur();
  bench.effect = ComPtr<Blur>::Own(open);
  bench.context.Stop();
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(open->interrupt.interrupted, 1);
  EXPECT_EQ(open->interrupt.state, 10000);
  host::ExecuteContext willing;
  bench.contextInUse = &willing;
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(open->interrupt.interrupted, 0);
  EXPECT_EQ(open->interrupt.state, 0);
}

TEST_F(RenderFrame, WithoutAContextNothingStopsIt) {
  bench.contextInUse = nullptr;
  bench.Set(PropertyId::Blur, 0.0);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput(Checks);
}

TEST_F(RenderFrame, ReportsThatItRanOutOfMemory) {
  // A reach of 90000 rows above and below, each of 30000 pixels: more than can be addressed.
  const auto black = [](std::int32_t, std::int32_t) { return Pixel16{}; };
  Paint<Pixel16>(bench.input, 30000, 1, black);
  Paint<Pixel16>(bench.output, 30000, 1, [](std::int32_t, std::int32_t) { return Pixel16{1, 2, 3, 4}; });
  const auto facts = bench.effect.As<IVBlurFacts>();
  bench.Set(PropertyId::Blur, 3.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_FALSE(facts->RanOutOfMemory());
  EXPECT_EQ(At<Pixel16>(bench.output, 7, 0), (Pixel16{0, 0, 0, 0}));

  Paint<Pixel16>(bench.output, 30000, 1, [](std::int32_t, std::int32_t) { return Pixel16{1, 2, 3, 4}; });
  bench.Set(PropertyId::Blur, 270000.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_TRUE(facts->RanOutOfMemory());
  EXPECT_EQ(At<Pixel16>(bench.output, 7, 0), (Pixel16{1, 2, 3, 4}));
}

}  // namespace
}  // namespace vblur
