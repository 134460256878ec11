#include "host/hosted/FrameBands.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "host/hosted/CoordMan.h"
#include "host/hosted/EffectHost.h"
#include "host/hosted/ExecuteContext.h"
#include "host/jobs/JobFile.h"
#include "properties/PropertyTable.h"
#include "tests/differential/Comparison.h"
#include "tests/differential/EffectRun.h"
#include "tests/support/TestServer.h"

namespace vblur::differential {
namespace {

struct Rendered {
  DrawnPicture output;
  int bands = 0;
};

// An effect with all that a job sets. The job is borrowed.
struct EffectOfJob {
  explicit EffectOfJob(const host::Job& job) : effectHost(job.project), coordMan(job.proxy) {
    effect.SetUp(job, coordMan, context);
  }

  host::EffectHost effectHost;
  host::CoordMan coordMan;
  host::ExecuteContext context;
  host::HostedEffect effect{MakeEffect()};
};

// Nothing for bands that do not serve. No rows: the whole at once.
std::optional<Rendered> Render(const DrawnFrame& frame, std::int32_t rows) {
  const host::Job& job = frame.job;
  HostedPictures held(frame);
  const host::FramePictures pictures = held.Borrowed();
  if (!host::BandsServe(job, pictures)) return std::nullopt;
  EffectOfJob used(job);
  int bands = 0;
  host::RenderInBands(used.effect, job, pictures, used.effectHost, job.time, static_cast<std::int32_t>(job.field),
                      job.roi, rows == 0 ? held.output.Height() : rows, [&] {
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

// A frame of a job with an input and perhaps a mask, tall enough for bands.
std::optional<DrawnFrame> DrawFollowing(std::uint64_t index) {
  const DrawnKinds kinds = index % 2 == 0 ? DrawnKinds::Filters : DrawnKinds::All;
  DrawnFrame frame = DrawFrame(7002, index, kinds, DrawnDepths::All);
  if (!frame.input) return std::nullopt;
  host::Job& job = frame.job;
  frame.input2.reset();
  job.input2.reset();
  job.roi.reset();
  job.output.initial.reset();
  job.field = host::FieldChoice::Frame;
  MakeTall(index % 8 == 0 ? 8 : 40, frame);
  return frame;
}

// From the highest band down, with an input whose rows come just before the band that needs them.
std::optional<Rendered> RenderDownward(const DrawnFrame& frame) {
  const host::Job& job = frame.job;
  if (!host::BandsFollowInput(job)) return std::nullopt;
  HostedPictures held(frame);
  HostedPictures whole(frame);
  host::HostImage& input = *held.input;
  std::memset(input.Row(0), 0x5a, input.ByteCount());
  std::int32_t there = input.Height();
  std::int32_t done = held.output.Height();
  EffectOfJob used(job);
  int bands = 0;
  const std::size_t rowBytes = held.output.RowBytes();
  std::vector<std::byte> finished;
  const auto finishedBytes = [&] { return rowBytes * static_cast<std::size_t>(held.output.Height() - done); };
  const host::BandSteps steps{[&](std::int32_t bottom) {
                                for (; there > bottom; --there)
                                  std::memcpy(input.Row(there - 1), whole.input->Row(there - 1), input.RowBytes());
                                // Complete rows are used meanwhile: not even the same may be written there.
                                finished.assign(held.output.Row(done), held.output.Row(done) + finishedBytes());
                                std::memset(held.output.Row(done), 0x33, finishedBytes());
                              },
                              [&](std::int32_t bottom) {
                                EXPECT_TRUE(std::all_of(held.output.Row(done), held.output.Row(done) + finishedBytes(),
                                                        [](std::byte byte) { return byte == std::byte{0x33}; }));
                                std::ranges::copy(finished, held.output.Row(done));
                                // Of a picture rendered when all of the input is there.
                                if (bottom == held.output.Height()) return true;
                                EXPECT_LT(bottom, done);
                                done = bottom;
                                finished.clear();
                                ++bands;
                                return true;
                              }};
  const HRESULT result = host::RenderDownward(used.effect, job, held.Borrowed(), used.effectHost, job.time, steps);
  if (result != kOk) {
    EXPECT_EQ(bands, 0) << "a frame that is refused is begun";
    return std::nullopt;
  }
  EXPECT_EQ(done, 0);
  return Rendered{FromHostImage(held.output), bands};
}

TEST(FrameBands, NeedOnlyTheRowsThatTheyWaitFor) {
  SetRenderThreads(2);
  std::map<std::string, int> bandsOf;
  int whole = 0;
  int masked = 0;
  for (std::uint64_t i = 0; i < 24000 && !HasFailure(); ++i) {
    const auto frame = DrawFollowing(i);
    const auto rendered = frame ? RenderDownward(*frame) : std::nullopt;
    if (!rendered) continue;
    const auto expected = Render(*frame, 0);
    if (!expected) continue;
    EXPECT_EQ(Difference(rendered->output, expected->output, *frame->job.depth), "")
        << "frame " << i << " in " << rendered->bands << " bands\n"
        << host::FormatJob(frame->job);
    ++(rendered->bands > 1 ? bandsOf[std::string(host::ChannelsOf(frame->job))] : whole);
    masked += rendered->bands > 1 && frame->mask ? 1 : 0;
  }
  EXPECT_EQ(bandsOf.size(), 11U);
  for (const auto& [channels, count] : bandsOf)
    EXPECT_GT(count, 20) << channels;
  EXPECT_GT(masked, 50);
  EXPECT_GT(whole, 100);
}

// As wide as several groups of columns.
TEST(FrameBands, LeaveTheRowsOfOthersInWidePictures) {
  SetRenderThreads(2);
  for (const std::int32_t depth : {8, 16, 32}) {
    for (const double blur : {2.0, 15.0, 47.0}) {
      host::Job job;
      job.input.emplace().file = "in.png";
      job.output.file = "out.png";
      job.properties.Set(PropertyOf(PropertyId::Blur).guid, blur);
      host::HostImage input;
      host::HostImage output;
      input.Reset(depth, 4, 500, 900);
      output.Reset(depth, 4, 500, 900);
      input.Clear();
      EffectOfJob used(job);
      std::int32_t bands = 0;
      std::int32_t done = 900;
      const auto fill = [&] { std::memset(output.Row(0), 0x33, output.ByteCount()); };
      const host::BandSteps steps{[&](std::int32_t) { fill(); },
                                  [&](std::int32_t bottom) {
                                    const auto isFilled = [](std::byte byte) { return byte == std::byte{0x33}; };
                                    std::byte* const end = output.Row(0) + output.ByteCount();
                                    EXPECT_TRUE(std::all_of(output.Row(0), output.Row(bottom), isFilled))
                                        << depth << " " << blur << " " << bottom;
                                    EXPECT_TRUE(std::all_of(output.Row(done), end, isFilled))
                                        << depth << " " << blur << " " << bottom;
                                    done = bottom;
                                    ++bands;
                                    return true;
                                  }};
      host::RenderDownward(used.effect, job, {&output, &input}, used.effectHost, 0.0, steps);
      EXPECT_GT(bands, 5);
    }
  }
}

TEST(FrameBands, EndWhenTheyAreToldTo) {
  for (std::uint64_t i = 0;; ++i) {
    const auto frame = DrawFollowing(i);
    if (!frame || !host::BandsFollowInput(frame->job) || RenderDownward(*frame)->bands < 3) continue;
    HostedPictures held(*frame);
    EffectOfJob used(frame->job);
    int bands = 0;
    host::RenderDownward(used.effect, frame->job, held.Borrowed(), used.effectHost, frame->job.time,
                         {[](std::int32_t) {}, [&](std::int32_t) { return ++bands < 2; }});
    EXPECT_EQ(bands, 2);
    break;
  }
}

TEST(FrameBands, FollowTheInputWhereEachRowComesFromRowsNearIt) {
  host::Job job;
  job.input.emplace().file = "in.png";
  job.output.file = "out.png";
  EXPECT_TRUE(host::BandsFollowInput(job));
  const auto without = [&](auto change) {
    host::Job changed = job;
    change(changed);
    return host::BandsFollowInput(changed);
  };
  const auto set = [](host::Job& changed, PropertyId id, double value) {
    changed.properties.Set(PropertyOf(id).guid, value);
  };
  const auto entry = [](PropertyId id, std::string_view name) {
    const auto& names = PropertyOf(id).entries;
    return static_cast<double>(std::ranges::find(names, name) - names.begin());
  };
  EXPECT_FALSE(without([](host::Job& changed) { changed.input.reset(); }));
  EXPECT_FALSE(without([](host::Job& changed) { changed.input2.emplace(); }));
  EXPECT_TRUE(without([](host::Job& changed) { changed.mask.emplace(); }));
  EXPECT_FALSE(without([](host::Job& changed) { changed.output.initial = "first.png"; }));
  EXPECT_TRUE(without([](host::Job& changed) { changed.linear = true; }));
  EXPECT_TRUE(without([](host::Job& changed) { changed.premultipliesAround = true; }));
  EXPECT_FALSE(without([](host::Job& changed) { changed.roi = host::Region{0, 0, 4, 4}; }));
  EXPECT_FALSE(without([](host::Job& changed) { changed.field = host::FieldChoice::First; }));
  EXPECT_FALSE(without([](host::Job& changed) { changed.field = host::FieldChoice::Both; }));
  EXPECT_FALSE(without([](host::Job& changed) { changed.kind = host::EffectKind::Transition; }));
  EXPECT_TRUE(without([&](host::Job& changed) { set(changed, PropertyId::BlankCropped, 1.0); }));
  const auto choose = [&](PropertyId id, std::string_view name) {
    return without([&](host::Job& changed) { set(changed, id, entry(id, name)); });
  };
  EXPECT_FALSE(without([&](host::Job& changed) { set(changed, PropertyId::CropBottom, 1.0); }));
  EXPECT_FALSE(without([&](host::Job& changed) { set(changed, PropertyId::CropTop, 99.0); }));
  EXPECT_TRUE(without([&](host::Job& changed) { set(changed, PropertyId::CropLeft, 1.0); }));
  EXPECT_FALSE(choose(PropertyId::YEdgeMethod, "Wrap"));
  EXPECT_TRUE(choose(PropertyId::XEdgeMethod, "Wrap"));
  EXPECT_TRUE(choose(PropertyId::Channels, "Luminance"));
  EXPECT_TRUE(choose(PropertyId::Channels, "RGB"));
  EXPECT_TRUE(choose(PropertyId::Channels, "Red"));
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
