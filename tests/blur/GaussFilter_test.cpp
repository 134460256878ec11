// The filter alone: copies, the settings after a run, sizes, and the copy back.
#include "blur/GaussFilter.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/blur/RandomPictures.h"
#include "tests/blur/SmallBlur.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/StopAfter.h"

namespace vblur::test {
namespace {

using Frame = HvTexture<R8, Ri>;
using Names = std::vector<std::string>;
using ColourFilter = BlurRGBAGauss<R8, Ri, 255, 1, 1, 1, 0>;

TEST(GaussFilter, WithoutASizeCopiesAllChannelsEvenThoseThatItDoesNotFilter) {
  Random random(2);
  RandomPicture<R8, Ri> source(random, 6, 6);
  RandomPicture<R8, Ri> output(random, 6, 6);
  BlurRGBAGauss<R8, Ri, 255, 0, 0, 0, 1> filter;
  source.texture.setOrigin(output.texture.horizontal.writeOrigin, output.texture.vertical.writeOrigin);
  source.texture.wholeBounds();
  filter.process(&source.texture, &output.texture);
  EXPECT_EQ(output.canvas.pixels(), source.canvas.pixels());
  EXPECT_EQ(filter.passes, 0);
}

TEST(GaussFilter, HasThreeBoxesAndNoCopyBackByDefault) {
  const ColourFilter filter;
  EXPECT_EQ(filter.boxes, 3);
  EXPECT_EQ(filter.copyBack, 0);
  EXPECT_EQ(filter.intermediate, nullptr);
}

TEST(GaussFilter, MakesAnIntermediateThatReachesTwoPixelsABoxBeyondTheSize) {
  for (const std::string& name : HvCpuLevels()) {
    const CpuLevel level(name);
    forgetKernelRuns();
    Frame source(6, 9);
    Frame output(4, 5);
    output.setWriteOrigin(30, -40);
    ColourFilter filter;
    filter.sizeX = 3.0f;
    filter.sizeY = 1.75f;
    filter.process(&source, &output);
    ASSERT_NE(filter.intermediate, nullptr) << name;
    EXPECT_EQ(filter.lineLengthX, 6);
    EXPECT_EQ(filter.lineLengthY, 9);
    // (1.75 + 2) * 3 = 11.25 rows above and below the longer of the two pictures.
    EXPECT_EQ(filter.intermediate->width(), 4);
    EXPECT_EQ(filter.intermediate->height(), 9 + 2 * 11);
    EXPECT_EQ(filter.intermediate->horizontal.writeOrigin, 30);
    EXPECT_EQ(filter.intermediate->vertical.writeOrigin, -51);
    EXPECT_TRUE(kernelsRan({})) << name;
  }
}

TEST(GaussFilter, UsesAnIntermediateThatIsThere) {
  for (const std::string& name : HvCpuLevels()) {
    const CpuLevel level(name);
    forgetKernelRuns();
    Frame source(6, 9);
    std::fill_n(source.at(0, 0), 54, R8{{10, 20, 30, 40}});
    source.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
    Frame output(6, 9);
    ColourFilter filter;
    filter.sizeX = filter.sizeY = 1.0f;
    filter.intermediate = std::make_unique<Frame>(6, 9 + 2 * 9);
    const std::byte* const memory = filter.intermediate->data;
    filter.process(&source, &output);
    ASSERT_NE(filter.intermediate, nullptr) << name;
    EXPECT_EQ(filter.intermediate->data, memory) << name;
    EXPECT_EQ(pixelsOf(*filter.intermediate), std::vector<R8>(6 * 27, R8{{10, 20, 30, 0}})) << name;
    EXPECT_TRUE(kernelsRan({})) << name;
  }
}

TEST(GaussFilter, ReplacesAnIntermediateOfAnotherSize) {
  for (const std::string& name : HvCpuLevels()) {
    const CpuLevel level(name);
    forgetKernelRuns();
    Frame source(6, 9);
    Frame output(6, 9);
    ColourFilter filter;
    filter.sizeX = filter.sizeY = 1.0f;
    filter.intermediate = std::make_unique<Frame>(5, 27);
    filter.process(&source, &output);
    ASSERT_NE(filter.intermediate, nullptr) << name;
    EXPECT_EQ(filter.intermediate->width(), 6) << name;
    EXPECT_TRUE(kernelsRan({})) << name;
  }
}

// All components, so that only the window and the sizes decide what the x pass writes.
using WholeFilter = BlurRGBAGauss<R8, Ri, 255, 1, 1, 1, 1>;

// The run of a filter whose intermediate lies in memory that is full of something else.
struct InUsedMemory {
  int sourceHeight = 7;
  float sizeX = 1.0f;
  std::array<std::int32_t, 4> window{0, 0, 8, 6};
  // The intermediate is there; else it is made of scratch memory.
  bool isThere = false;

  // (1 + 2) * 3 rows above and below.
  static constexpr int kMargin = 9;
  int height() const { return std::max(sourceHeight, 7) + 2 * kMargin; }

  template <class Filter>
  std::vector<R8> intermediateOf() const {
    Frame source(9, sourceHeight);
    std::fill_n(source.at(0, 0), 9 * sourceHeight, R8{{10, 20, 30, 40}});
    source.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
    Frame output(9, 7);
    auto used = std::make_unique<Frame>();
    used->horizontal.setSize(9);
    used->vertical.setSize(height());
    used->allocateScratch(false);
    for (int y = 0; y < height(); ++y)
      std::fill_n(used->at(0, y), 9, R8{{201, 202, 203, 204}});
    Filter filter;
    if (isThere) filter.intermediate = std::move(used);
    used.reset();
    filter.sizeX = sizeX;
    filter.sizeY = 1.0f;
    filter.setWindow(window[0], window[1], window[2], window[3]);
    filter.process(&source, &output);
    std::vector<R8> pixels;
    for (int y = 0; y < filter.intermediate->height(); ++y)
      pixels.insert(pixels.end(), filter.intermediate->at(0, y), filter.intermediate->at(0, y) + 9);
    return pixels;
  }

  // The flat colour where the x pass has run, and 0 everywhere else.
  std::vector<R8> expected(const R8& filtered) const {
    std::vector<R8> pixels;
    for (int y = 0; y < height(); ++y) {
      for (int x = 0; x < 9; ++x) {
        const bool written = x >= window[0] && x <= window[2] && y >= window[1] && y <= window[3] + 2 * kMargin;
        pixels.push_back(written ? filtered : R8{});
      }
    }
    return pixels;
  }
};

TEST(GaussFilter, ShowsNothingInItsIntermediateOfWhatItsMemoryHeldBefore) {
  for (const std::string& name : HvCpuLevels()) {
    const CpuLevel level(name);
    forgetKernelRuns();
    for (const bool isThere : {false, true}) {
      SCOPED_TRACE(name + (isThere ? " there" : " made"));
      InUsedMemory run{.isThere = isThere};
      EXPECT_EQ(run.intermediateOf<ColourFilter>(), run.expected(R8{{10, 20, 30, 0}}));
      for (const std::array<std::int32_t, 4>& window :
           {std::array{0, 0, 8, 6}, {1, 0, 8, 6}, {0, 1, 8, 6}, {0, 0, 7, 6}, {0, 0, 8, 5}}) {
        run.window = window;
        EXPECT_EQ(run.intermediateOf<WholeFilter>(), run.expected(R8{{10, 20, 30, 40}}))
            << ::testing::PrintToString(window);
      }
      // The target ends before the picture does.
      InUsedMemory taller{.sourceHeight = 9, .isThere = isThere};
      EXPECT_EQ(taller.intermediateOf<WholeFilter>(), taller.expected(R8{{10, 20, 30, 40}}));
      // The margins of a radius of -2 are of -3 pixels, which the x pass leaves out at both ends of a row.
      InUsedMemory below{.sizeX = -2.0f, .isThere = isThere};
      const std::vector<R8> pixels = below.intermediateOf<WholeFilter>();
      EXPECT_TRUE(kernelsRan({})) << name;
      for (const std::size_t x : {0u, 1u, 2u, 6u, 7u, 8u})
        EXPECT_EQ(pixels[x], R8{}) << x;
    }
  }
}

TEST(GaussFilter, HasNoIntermediateWhereVectorCodeNeedsNone) {
  for (const std::string& name : HvCpuLevels()) {
    const CpuLevel level(name);
    forgetKernelRuns();
    Frame source(6, 9);
    Frame output(6, 9);
    ColourFilter filter;
    filter.keepsIntermediate = false;
    filter.sizeX = filter.sizeY = 1.0f;
    filter.process(&source, &output);
    EXPECT_EQ(filter.intermediate == nullptr, name != "twin") << name;
    EXPECT_TRUE(kernelsRanAmongOthers({"boxSweep 8", "transposePixels"})) << name;
  }
}

TEST(GaussFilter, StoppedHalfWayLeavesTheSettingsAsItsPreparationMadeThem) {
  const ThreadCount scope(1);
  Frame source(40, 40);
  Frame result(40, 40);
  source.setEdgeMethods(kEdgeWrap, kEdgeReflect);
  source.setOutsideColour(R8{{1, 1, 1, 1}});
  result.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
  StopAfter stop(5);
  ColourFilter filter;
  filter.interrupt = &stop.record;
  filter.sizeX = filter.sizeY = 1.0f;
  filter.process(&source, &result);
  EXPECT_EQ(stop.record.interrupted, 1);
  EXPECT_EQ(result.horizontal.edgeMethod, kEdgeWrap);
  EXPECT_EQ(result.vertical.edgeMethod, kEdgeReflect);
  EXPECT_EQ(result.outsideColour, (R8{{1, 1, 1, 1}}));
}

// The preparation clears the field, so a derived class has to set it.
class CopyingBack : public ColourFilter {
 public:
  void preProcess(Frame* in, Frame* out) override {
    ColourFilter::preProcess(in, out);
    EXPECT_EQ(copyBack, 0);
    copyBack = 1;
  }
};

// The result of a copy back on random pictures, and the intermediate that it was copied from.
struct CopiedBack {
  CopiedBack(std::uint64_t seed, const std::string& cpu) : random(seed) {
    CopyingBack filter;
    filter.sizeX = 1.5f;
    filter.sizeY = 0.75f;
    const ThreadCount scope(randomThreadCount(random));
    const CpuLevel level(cpu);
    forgetKernelRuns();
    filter.process(&source.texture, &output.texture);
    copiedByVectors = kernelsRan({"copyBits 32"});
    between = std::move(filter.intermediate);
  }

  Random random;
  RandomPicture<R8, Ri> source{random, 7, 8};
  RandomPicture<R8, Ri> output{random, 9, 6};
  std::vector<R8> before = output.canvas.pixels();
  std::unique_ptr<Frame> between;
  bool copiedByVectors = false;
};

TEST(GaussFilter, CopiesTheIntermediateBackByTheBoxAndOriginOfTheInput) {
  // Where the rows are not too short for it.
  std::set<std::string> copiedByVectors;
  forRandomCases(50, [&](Random& random) {
    const auto seed = static_cast<std::uint64_t>(random.within(0, 1 << 30));
    const CopiedBack twin(seed, "twin");
    for (const std::string& name : HvCpuLevels()) {
      const CopiedBack copied(seed, name);
      if (copied.copiedByVectors) copiedByVectors.insert(name);
      ASSERT_NE(copied.between, nullptr) << name;
      const Frame& between = *copied.between;
      EXPECT_EQ(between.vertical.lo, copied.source.texture.vertical.lo);
      EXPECT_EQ(between.horizontal.originI, copied.source.texture.horizontal.originI);
      EXPECT_EQ(pixelsOf(between), pixelsOf(*twin.between)) << name;
      EXPECT_EQ(copied.output.canvas.pixels(), twin.output.canvas.pixels()) << name;
      const Frame& output = copied.output.texture;
      for (int y = 0; y < 6; ++y) {
        for (int x = 0; x < 9; ++x) {
          R8 expected = *between.readRun(x + output.horizontal.writeOrigin, y + output.vertical.writeOrigin).first;
          expected.alpha = copied.before[static_cast<std::size_t>(y * 9 + x)].alpha;
          ASSERT_EQ(copied.output.canvas.at(x, y), expected) << name << ' ' << x << ", " << y;
        }
      }
    }
  });
  EXPECT_EQ(copiedByVectors, (std::set<std::string>{HvCpuLevels().begin() + 1, HvCpuLevels().end()}));
}

TEST(GaussFilter, CopiesBackASecondTimeWhatItDidTheFirstTime) {
  Random random(3);
  RandomPicture<R8, Ri> source(random, 7, 8);
  source.texture.setBounds(1, 4, 2, 5);
  source.texture.setOrigin(-3, 2);
  Frame first(9, 6);
  Frame second(9, 6);
  CopyingBack filter;
  filter.sizeX = filter.sizeY = 1.5f;
  for (Frame* output : {&first, &second})
    filter.process(&source.texture, output);
  EXPECT_EQ(pixelsOf(second), pixelsOf(first));
}

// Counts the calls of each pass.
class Counting : public ColourFilter {
 public:
  void processRows(Frame* in, Frame* out) override {
    ++calls[static_cast<std::size_t>(pass)];
    ColourFilter::processRows(in, out);
  }
  std::array<std::atomic<int>, 3> calls{};
};

TEST(GaussFilter, WakesOtherThreadsForTheFirstPassAloneWhereItIsBothInOne) {
  const ThreadCount threads(2);
  for (const bool alone : {false, true}) {
    forgetKernelRuns();
    Frame source(512, 64);
    Frame output(512, 64);
    Counting filter;
    filter.keepsOthers = true;
    filter.keepsIntermediate = false;
    filter.sizeX = filter.sizeY = 1.0f;
    if (alone) filter.flags |= Imager::kOneThread;
    const auto flags = filter.flags;
    filter.process(&source, &output);
    EXPECT_EQ(filter.passes, 3);
    EXPECT_EQ(filter.calls[0], alone ? 1 : 2);
    EXPECT_EQ(filter.calls[1], 1);
    EXPECT_EQ(filter.calls[2], 1);
    EXPECT_EQ(filter.flags & Imager::kOneThread, flags & Imager::kOneThread);
    EXPECT_TRUE(kernelsRanAmongOthers({"fuseBand 8"}));
  }
}

TEST(GaussFilter, RunsThreePassesWithASizeOnOneAxisAlone) {
  const ThreadCount threads(2);
  for (const std::string& name : HvCpuLevels()) {
    for (const bool alongY : {false, true}) {
      for (const bool keepsIntermediate : {false, true}) {
        const CpuLevel level(name);
        forgetKernelRuns();
        const int width = alongY ? 1 : 9;
        Frame source(width, alongY ? 9 : 1);
        source.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
        *source.at(alongY ? 0 : 4, alongY ? 4 : 0) = R8{{255, 100, 3, 77}};
        Frame output(width, alongY ? 9 : 1);
        Counting filter;
        filter.keepsIntermediate = keepsIntermediate;
        (alongY ? filter.sizeY : filter.sizeX) = 1.0f;
        filter.process(&source, &output);
        EXPECT_EQ(filter.passes, 3);
        EXPECT_TRUE(kernelsRanAmongOthers(keepsIntermediate ? Names{} : Names{"boxSweep 8"})) << name;
        for (const auto& calls : filter.calls)
          EXPECT_EQ(calls, 2) << name;
        // The box of three taps, three times: 1, 3, 6, 7, 6, 3 and 1 parts of 27, each box rounded.
        EXPECT_EQ(pixelsOf(output), (std::vector<R8>{{{0, 0, 0, 0}},
                                                     {{9, 4, 0, 0}},
                                                     {{28, 11, 0, 0}},
                                                     {{57, 22, 1, 0}},
                                                     {{66, 26, 1, 0}},
                                                     {{57, 22, 1, 0}},
                                                     {{28, 11, 0, 0}},
                                                     {{9, 4, 0, 0}},
                                                     {{0, 0, 0, 0}}}))
            << name;
      }
    }
  }
}

// The sizes after the preparation, of a picture of 7 by 4 pixels: three times its longer side is 21.
std::pair<float, float> limitedSizes(float sizeX, float sizeY, float aspect) {
  Frame source(7, 4);
  Frame output(7, 4);
  ColourFilter filter;
  filter.sizeX = sizeX;
  filter.sizeY = sizeY;
  filter.setAspect(aspect);
  filter.process(&source, &output);
  return {filter.sizeX, filter.sizeY};
}

TEST(GaussFilter, LimitsTheXSizeDividedByTheAspectAndTheYSizeAsItIs) {
  EXPECT_EQ(limitedSizes(12.0f, 15.0f, 0.5f), (std::pair{21.0f, 15.0f}));
  EXPECT_EQ(limitedSizes(10.0f, 21.0f, 0.5f), (std::pair{20.0f, 21.0f}));
  EXPECT_EQ(limitedSizes(42.0f, 21.5f, 2.0f), (std::pair{21.0f, 21.0f}));
  EXPECT_EQ(limitedSizes(43.0f, 30.0f, 2.0f), (std::pair{21.0f, 21.0f}));
  EXPECT_EQ(limitedSizes(1e30f, 1e30f, 1.0f), (std::pair{21.0f, 21.0f}));
  EXPECT_EQ(limitedSizes(-3.0f, -2.0f, 1.0f), (std::pair{-3.0f, -2.0f}));
}

TEST(GaussFilter, TakesAnAspectOfNothingOrLessForAThousandth) {
  const auto result = [](float sizeX, float aspect) {
    Random random(7);
    RandomPicture<R8, Ri> source(random, 20, 3);
    Frame output(20, 3);
    ColourFilter filter;
    filter.sizeX = sizeX;
    filter.sizeY = 0.5f;
    filter.setAspect(aspect);
    filter.process(&source.texture, &output);
    EXPECT_EQ(filter.sizeX, 2.0f);
    return pixelsOf(output);
  };
  for (const std::string& name : HvCpuLevels()) {
    const CpuLevel level(name);
    forgetKernelRuns();
    const std::vector<R8> expected = result(2.0f, 1.0f);
    for (const float aspect : {0.0f, -3.0f, 0.0005f})
      EXPECT_EQ(result(0.002f, aspect), expected) << name << ' ' << aspect;
    EXPECT_TRUE(kernelsRan({})) << name;
  }
}

TEST(GaussFilter, FiltersAllOnTheCallingThreadWithOneThread) {
  const ThreadCount threads(3);
  for (const std::string& name : HvCpuLevels()) {
    for (const bool keepsIntermediate : {false, true}) {
      const CpuLevel level(name);
      forgetKernelRuns();
      const auto run = [&](bool alone) {
        Random random(5);
        RandomPicture<R8, Ri> source(random, 200, 150);
        Frame output(200, 150);
        HvInterruptRecord record;
        struct Caller {
          std::thread::id id = std::this_thread::get_id();
          std::atomic<int> others{0};
        } caller;
        record.arm(&caller, [](void* context, HvStateWord*) -> std::int32_t {
          auto* const self = static_cast<Caller*>(context);
          self->others += std::this_thread::get_id() == self->id ? 0 : 1;
          return 0;
        });
        ColourFilter filter;
        filter.interrupt = &record;
        filter.keepsIntermediate = keepsIntermediate;
        filter.sizeX = filter.sizeY = 1.5f;
        if (alone) filter.flags |= Imager::kOneThread;
        filter.process(&source.texture, &output);
        EXPECT_EQ(caller.others > 0, !alone) << name;
        return pixelsOf(output);
      };
      EXPECT_EQ(run(true), run(false)) << name;
      EXPECT_TRUE(kernelsRanAmongOthers(keepsIntermediate ? Names{} : Names{"boxSweep 8", "transposePixels"})) << name;
    }
  }
}

}  // namespace
}  // namespace vblur::test
