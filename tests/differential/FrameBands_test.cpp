#include "host/hosted/FrameBands.h"

#include <optional>

#include <gtest/gtest.h>

#include "host/hosted/CoordMan.h"
#include "host/hosted/EffectHost.h"
#include "host/hosted/ExecuteContext.h"
#include "host/jobs/JobFile.h"
#include "tests/differential/Comparison.h"
#include "tests/differential/EffectRun.h"
#include "tests/support/TestServer.h"

namespace vblur::differential {
namespace {

// The output; nothing for bands that do not serve. No rows: the whole at once.
std::optional<DrawnPicture> Render(const DrawnFrame& frame, std::int32_t rows) {
  const host::Job& job = frame.job;
  HostedPictures held(frame);
  const host::FramePictures pictures = held.Borrowed();
  if (!host::BandsServe(job, pictures)) return std::nullopt;
  host::EffectHost effectHost(job.project);
  host::CoordMan coordMan(job.proxy);
  host::ExecuteContext context;
  host::HostedEffect effect(MakeEffect());
  effect.SetUp(job, coordMan, context);
  const auto field = static_cast<std::int32_t>(job.field);
  if (rows == 0) {
    effect.RenderFrame(pictures, effectHost, job.time, field);
  } else {
    host::RenderInBands(effect, pictures, effectHost, job.time, field, rows, [] { return true; });
  }
  return FromHostImage(held.output);
}

// Whatever a job says, as long as bands are said to serve it.
TEST(FrameBands, GiveThePixelsOfTheWhole) {
  SetRenderThreads(2);
  constexpr std::uint64_t kFrames = 3000;
  constexpr std::uint64_t kSeed = 7000;
  std::uint64_t served = 0;
  for (std::uint64_t i = 0; i < kFrames; ++i) {
    DrawnFrame frame = DrawFrame(kSeed, i, i % 2 == 0 ? DrawnKinds::Filters : DrawnKinds::All);
    frame.job.roi.reset();
    const auto whole = Render(frame, 0);
    if (!whole) continue;
    ++served;
    const std::int32_t rows = 2 + 2 * static_cast<std::int32_t>(i % 7);
    ASSERT_EQ(Difference(*Render(frame, rows), *whole), "") << "frame " << i << " in bands of " << rows << "\n"
                                                            << host::FormatJob(frame.job);
  }
  EXPECT_GT(served, kFrames / 8);
}

TEST(FrameBands, AreOfLargePicturesAlone) {
  EXPECT_EQ(host::BandRows(1 << 20, 1000), 1000);
  EXPECT_EQ(host::BandRows((std::int64_t{256} << 20) - 1, 1000), 1000);
  EXPECT_EQ(host::BandRows(std::int64_t{256} << 20, 1000), 16);
  EXPECT_EQ(host::BandRows(std::int64_t{1600} << 20, 20000), 314);
  EXPECT_EQ(host::BandRows(std::int64_t{256} << 20, 5), 4);
}

}  // namespace
}  // namespace vblur::differential
