#include "host/hosted/FrameBands.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>

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

struct Rendered {
  DrawnPicture output;
  int bands = 0;
};

// Nothing for bands that do not serve. No rows: the whole at once.
std::optional<Rendered> Render(const DrawnFrame& frame, std::int32_t rows) {
  const host::Job& job = frame.job;
  HostedPictures held(frame);
  const host::FramePictures pictures = held.Borrowed();
  if (!host::BandsServe(job, pictures)) return std::nullopt;
  host::EffectHost effectHost(job.project);
  host::CoordMan coordMan(job.proxy);
  host::ExecuteContext context;
  host::HostedEffect effect(MakeEffect());
  effect.SetUp(job, coordMan, context);
  int bands = 0;
  host::RenderInBands(effect, job, pictures, effectHost, job.time, static_cast<std::int32_t>(job.field), job.roi,
                      rows == 0 ? held.output.Height() : rows, [&] {
                        ++bands;
                        return true;
                      });
  return Rendered{FromHostImage(held.output), bands};
}

// As many times as tall, and different in every row: bands of their own are then parts of it.
void MakeTall(std::int32_t times, DrawnPicture& picture) {
  const auto once = picture.values;
  for (std::int32_t copy = 1; copy < times; ++copy) {
    for (std::size_t i = 0; i < once.size(); ++i)
      picture.values.push_back(once[(i * 7 + static_cast<std::size_t>(copy)) % once.size()]);
  }
  picture.height *= times;
}

void MakeTall(std::int32_t times, DrawnFrame& frame) {
  for (DrawnPicture* picture :
       {&frame.initial, frame.input ? &*frame.input : nullptr, frame.mask ? &*frame.mask : nullptr}) {
    if (picture != nullptr) MakeTall(times, *picture);
  }
  frame.job.output.height = frame.initial.height;
}

// What a job that keeps its input shows of the frame.
void ClearOutside(const host::Region& region, DrawnPicture& picture) {
  for (std::int32_t y = 0; y < picture.height; ++y) {
    for (std::int32_t x = 0; x < picture.width; ++x) {
      const bool isWithin =
          x >= region.x && x < region.x + region.width && y >= region.y && y < region.y + region.height;
      if (isWithin) continue;
      const auto at = picture.values.begin() + (std::ptrdiff_t{y} * picture.width + x) * picture.components;
      std::fill_n(at, picture.components, 0);
    }
  }
}

// The frames in several bands by their channels; compares each frame with the whole.
std::map<std::string, int> CompareBands(std::uint64_t seed, std::uint64_t frames, bool withRegions) {
  std::map<std::string, int> bandsOf;
  for (std::uint64_t i = 0; i < frames; ++i) {
    DrawnFrame frame = DrawFrame(seed, i, i % 2 == 0 ? DrawnKinds::Filters : DrawnKinds::All, DrawnDepths::All);
    if (frame.job.roi.has_value() != withRegions) continue;
    if (i / 2 % 2 == 0) MakeTall(8, frame);
    // A job that keeps its input has no initial picture.
    const bool keepsInput = withRegions && frame.job.input && i / 4 % 2 == 0;
    if (keepsInput) frame.job.output.initial.reset();
    auto whole = Render(frame, 0);
    if (!whole) continue;
    auto inBands = Render(frame, 2 + 2 * static_cast<std::int32_t>(i % 7));
    if (keepsInput) {
      ClearOutside(*frame.job.roi, whole->output);
      ClearOutside(*frame.job.roi, inBands->output);
    }
    EXPECT_EQ(Difference(inBands->output, whole->output, *frame.job.depth), "")
        << "frame " << i << " in " << inBands->bands << " bands\n"
        << host::FormatJob(frame.job);
    if (testing::Test::HasFailure()) break;
    if (inBands->bands > 1) ++bandsOf[std::string(host::ChannelsOf(frame.job))];
  }
  return bandsOf;
}

// Whatever a job says, as long as bands are said to serve it.
TEST(FrameBands, GiveThePixelsOfTheWhole) {
  SetRenderThreads(2);
  const auto bandsOf = CompareBands(7000, 45000, false);
  EXPECT_EQ(bandsOf.size(), 11U);
  for (const auto& [channels, count] : bandsOf)
    EXPECT_GT(count, 80) << channels;
}

TEST(FrameBands, GiveThePixelsOfARegion) {
  SetRenderThreads(2);
  const auto bandsOf = CompareBands(7001, 120000, true);
  EXPECT_EQ(bandsOf.size(), 11U);
  for (const auto& [channels, count] : bandsOf)
    EXPECT_GT(count, 10) << channels;
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
