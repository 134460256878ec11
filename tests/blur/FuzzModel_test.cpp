// The whole blur and sharpen against the independent model, on random pictures, bit for bit.
#include <gtest/gtest.h>

#include "blur/FuzzSampler.h"
#include "tests/blur/RandomPictures.h"
#include "tests/model/fuzz.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/ModelBridge.h"

namespace vblur::test {
namespace {

struct Sizes {
  int sourceWidth, sourceHeight, targetWidth, targetHeight;
};

Sizes smallSizes(Random& random, int most) {
  return {randomSize(random, most), randomSize(random, most), random.within(1, most), random.within(1, most)};
}

struct Case {
  Sizes sizes;
  float sizeX;
  float sizeY;
};

template <class Sampler>
void expectNoMemory(const HvInterruptRecord& record, bool wanting, const Sampler& sampler) {
  EXPECT_EQ(record.interrupted, wanting ? HvInterruptRecord::kOutOfMemoryCode : 0) << sampler.mode;
  EXPECT_EQ(record.state, wanting ? HvInterruptRecord::kOutOfMemoryReason : 0);
}

// The whole range of a component, or 0 to One, which narrow planes hold.
template <class Pixel>
ComponentRange<Pixel> sourceRange(Random& random) {
  return random.oneIn(2) ? storageRange<Pixel>() : ComponentRange<Pixel>{0, Pixel::kOne};
}

template <class Pixel, class Accum, std::int32_t Max>
void compareWithModel(Random& random, const Case& what) {
  const Sizes& sizes = what.sizes;
  RandomPicture<Pixel, Accum> source(random, sizes.sourceWidth, sizes.sourceHeight, sourceRange<Pixel>(random));
  RandomPicture<Pixel, Accum> target(random, sizes.targetWidth, sizes.targetHeight);
  model::FuzzJob job;
  job.depth = modelDepth<Pixel>();
  job.source = modelPicture(source.texture);
  job.target = modelPicture(target.texture);
  job.window = randomWindow(random, target.texture);
  job.mode = random.oneIn(20) ? random.oneOf({-1, 11}) : random.within(kFuzzRGBA, kFuzzChroma);
  job.method = random.within(kFuzzBlur, kFuzzSharpen);
  job.sizeX = what.sizeX;
  job.sizeY = what.sizeY;
  // Sharpening reads the result where it writes it, which needs the whole box.
  if (job.method == kFuzzSharpen) target.texture.wholeBounds();
  const float aspect = randomAspect(random);
  const Settings targetSettings(target.texture);
  const Pixel targetOutside = target.texture.outsideColour;
  const std::vector<Pixel> sourcePixels = source.canvas.pixels();

  FuzzSampler<Pixel, Accum, Max> sampler;
  HvInterruptRecord record;
  sampler.interrupt = &record;
  sampler.mode = job.mode;
  sampler.method = job.method;
  sampler.sizeX = job.sizeX;
  sampler.sizeY = job.sizeY;
  sampler.setAspect(aspect);
  job.aspect = sampler.aspect;
  setWindow(sampler, job.window);
  const std::int32_t threads = randomThreadCount(random);
  const std::string& cpu = randomCpuLevel(random);
  SCOPED_TRACE("mode " + std::to_string(job.mode) + " method " + std::to_string(job.method) + " size " +
               std::to_string(job.sizeX) + " x " + std::to_string(job.sizeY) + " aspect " + std::to_string(aspect) +
               " " + nameOf(job.window) + " depth " + std::to_string(sizeof(ComponentOf<Pixel>) * 8) + " threads " +
               std::to_string(threads) + " cpu " + cpu);
  const ThreadCount scope(threads);
  const CpuLevel level(cpu);
  forgetKernelRuns();
  sampler.process(&source.texture, &target.texture);
  EXPECT_TRUE(ranAtThisLevel(takeKernelRuns()));

  bool outOfMemory = false;
  EXPECT_TRUE(equalsModel(target.texture, model::Fuzz(job, &outOfMemory)));
  expectNoMemory(record, outOfMemory, sampler);
  EXPECT_TRUE(target.canvas.guardsAreIntact());
  EXPECT_TRUE(source.canvas.guardsAreIntact());
  EXPECT_EQ(source.canvas.pixels(), sourcePixels);
  if (!outOfMemory) {
    EXPECT_TRUE(targetSettings.areThoseOf(target.texture));
    EXPECT_EQ(target.texture.outsideColour, targetOutside);
  }
}

void compareAnyDepth(Random& random, const Case& what) {
  switch (random.within(0, 2)) {
    case 0: return compareWithModel<R8, Ri, 255>(random, what);
    case 1: return compareWithModel<R16, Ri, 32767>(random, what);
    default: return compareWithModel<Rf, Rf, 1>(random, what);
  }
}

class FuzzModelLevels : public AtEachLevel {};

TEST_P(FuzzModelLevels, RunTheirVectorCode) {
  const ThreadCount threads(1);
  HvTexture<R8, Ri> source(128, 64);
  HvTexture<R8, Ri> target(128, 64);
  source.setEdgeMethods(kEdgeWrap, kEdgeWrap);
  FuzzSampler<R8, Ri, 255> sampler;
  sampler.sizeX = sampler.sizeY = 2.5f;
  sampler.process(&source, &target);
  EXPECT_TRUE(kernelsRan({"fuseBand 8"}));
  sampler.process(&source, &source);
  EXPECT_TRUE(kernelsRan({"boxSweep 8", "transposePixels"}));
}

INSTANTIATE_TEST_SUITE_P(Levels, FuzzModelLevels, testing::ValuesIn(vectorLevels()), levelName);

TEST(FuzzModel, AtEverydayRadii) {
  forRandomCases(3000, [](Random& random) {
    const Sizes sizes = smallSizes(random, random.oneIn(10) ? 50 : 14);
    compareAnyDepth(random, {sizes, randomRadius(random, Radii::Everyday), randomRadius(random, Radii::Everyday)});
  });
}

// Pictures of several strips along both axes, the last of them incomplete.
TEST(FuzzModel, OnPicturesOfSeveralStrips) {
  forRandomCases(120, [](Random& random) {
    const Sizes sizes{random.within(1, 110), random.within(1, 110), random.within(1, 110), random.within(1, 110)};
    compareAnyDepth(random, {sizes, random.between(0.0f, 5.0f), random.between(0.0f, 5.0f)});
  });
}

TEST(FuzzModel, AtLargeRadii) {
  forRandomCases(100, [](Random& random) {
    const bool wide = random.oneIn(2);
    const Sizes sizes = wide ? Sizes{random.within(1, 300), random.within(1, 4), random.within(30, 350), 2}
                             : Sizes{random.within(1, 4), random.within(1, 300), 2, random.within(30, 350)};
    const float large = randomRadius(random, Radii::Large);
    const float other = randomRadius(random, random.oneIn(4) ? Radii::Large : Radii::Everyday);
    compareAnyDepth(random, {sizes, wide ? large : other, wide ? other : large});
  });
}

TEST(FuzzModel, AtRadiiThatLeaveNothing) {
  forRandomCases(2, [](Random& random) {
    const bool wide = random.oneIn(2);
    const Sizes sizes = wide ? Sizes{2800, 1, 2800, 1} : Sizes{1, 2800, 1, 2800};
    const float radius = random.oneOf({8191.0f, 8191.5f, 8192.0f, 8400.25f});
    compareAnyDepth(random, {sizes, wide ? radius : 0.5f, wide ? 0.5f : radius});
  });
}

TEST(FuzzModel, AtRadiiBelowZero) {
  forRandomCases(1000, [](Random& random) {
    const Sizes sizes = smallSizes(random, 14);
    const bool both = random.oneIn(3);
    const float a = randomRadius(random, Radii::BelowZero);
    const float b = randomRadius(random, both ? Radii::BelowZero : Radii::Everyday);
    const bool swap = random.oneIn(2);
    compareAnyDepth(random, {sizes, swap ? b : a, swap ? a : b});
  });
}

}  // namespace
}  // namespace vblur::test
