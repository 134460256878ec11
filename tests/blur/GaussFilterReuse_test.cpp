// A filter that is processed again equals a new one, with any fields changed in between.
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "blur/GaussFilter.h"
#include "tests/blur/RandomPictures.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/StopAfter.h"
#include "tests/support/TypeNames.h"

namespace vblur::test {
namespace {

template <class Filter>
using PixelOf = typename Filter::Texture::Pixel;

// Pictures of one run. The same seed makes the same ones.
template <class Filter>
struct Pictures {
  using Picture = RandomPicture<PixelOf<Filter>, typename Filter::Texture::Accum>;

  explicit Pictures(std::uint64_t seed) : random(seed) {}

  void run(Filter& filter) {
    // A plain copy within one picture must not read what it has written.
    if (inPlace && filter.sizeX == 0.0f && filter.sizeY == 0.0f) {
      output.texture.wholeBounds();
      output.texture.setOrigin(output.texture.horizontal.writeOrigin, output.texture.vertical.writeOrigin);
    }
    filter.process(inPlace ? &output.texture : &input.texture, &output.texture);
  }

  Random random;
  int most = random.oneIn(4) ? 70 : 14;
  Picture output{random, random.within(1, most), random.within(1, most)};
  Picture input{random, randomSize(random, most), randomSize(random, most)};
  bool inPlace = random.oneIn(4);
};

float anyRadius(Random& random) {
  return randomRadius(random, random.oneIn(6) ? Radii::Large : random.oneIn(6) ? Radii::BelowZero : Radii::Everyday);
}

template <class Filter>
void changeSomeFields(Filter& filter, const HvTexIndexer& target, Random& random) {
  if (!random.oneIn(4)) filter.sizeX = anyRadius(random);
  if (!random.oneIn(4)) filter.sizeY = anyRadius(random);
  if (random.oneIn(4)) filter.boxes = random.within(1, 3);
  if (random.oneIn(2)) filter.boxes = 3;
  if (random.oneIn(2)) filter.setAspect(randomAspect(random));
  // An intermediate is made by plain code.
  filter.keepsIntermediate = random.oneIn(4);
  if (random.oneIn(2)) setWindow(filter, randomWindow(random, target));
}

// The fields that a caller sets.
template <class Filter>
void copyFields(Filter& to, const Filter& from) {
  to.sizeX = from.sizeX;
  to.sizeY = from.sizeY;
  to.boxes = from.boxes;
  to.keepsOthers = from.keepsOthers;
  to.keepsIntermediate = from.keepsIntermediate;
  to.aspect = from.aspect;
  to.inverseAspect = from.inverseAspect;
  to.flags = from.flags;
  to.x1 = from.x1;
  to.y1 = from.y1;
  to.x2 = from.x2;
  to.y2 = from.y2;
}

void expectEqual(const HvInterruptRecord& a, const HvInterruptRecord& b) {
  EXPECT_EQ(a.interrupted, b.interrupted);
  EXPECT_EQ(a.state, b.state);
  EXPECT_EQ(a.memoryRefused, b.memoryRefused);
}

template <class Filter>
class GaussFilterReuse : public ::testing::Test {
 protected:
  static void firstRun(Filter& filter, Random& random) {
    Pictures<Filter> pictures(static_cast<std::uint64_t>(random.within(0, 1 << 30)));
    changeSomeFields(filter, pictures.output.texture, random);
    StopAfter stop(random.oneIn(3) ? random.within(0, 60) : StopAfter::kNever);
    filter.interrupt = random.oneIn(3) ? nullptr : &stop.record;
    const CpuLevel level(randomCpuLevel(random));
    const ThreadCount threads(randomThreadCount(random));
    pictures.run(filter);
  }

  // At the level in use.
  static void compareSecondRun(Filter& filter, Random& random) {
    const auto seed = static_cast<std::uint64_t>(random.within(0, 1 << 30));
    Pictures<Filter> again(seed);
    Pictures<Filter> fresh(seed);
    changeSomeFields(filter, again.output.texture, random);
    // keepsOthers is not allowed in place.
    if (!again.inPlace && random.oneIn(3)) filter.keepsOthers = !filter.keepsOthers;
    if (again.inPlace) filter.keepsOthers = false;
    Filter other;
    copyFields(other, filter);
    SCOPED_TRACE("size " + std::to_string(filter.sizeX) + " x " + std::to_string(filter.sizeY) + " boxes " +
                 std::to_string(filter.boxes) + (filter.keepsIntermediate ? " with" : " without") + " intermediate");
    HvInterruptRecord records[2];
    filter.interrupt = &records[0];
    other.interrupt = &records[1];
    const ThreadCount threads(randomThreadCount(random));
    again.run(filter);
    fresh.run(other);
    EXPECT_EQ(again.output.canvas.pixels(), fresh.output.canvas.pixels());
    EXPECT_TRUE(again.output.canvas.guardsAreIntact());
    EXPECT_TRUE(Settings(fresh.output.texture).areThoseOf(again.output.texture));
    expectEqual(records[0], records[1]);
    EXPECT_EQ(filter.passes, other.passes);
    for (const auto end : {&Filter::x1, &Filter::y1, &Filter::x2, &Filter::y2})
      EXPECT_EQ(filter.*end, other.*end);
  }
};

using Filters = ::testing::Types<BlurRGBAGauss<R8, Ri, 255, 1, 1, 1, 1>, BlurRGBAGauss<R8, Ri, 255, 0, 1, 0, 0>,
                                 BlurRGBAGauss<R16, Ri, 32767, 1, 1, 1, 0>, BlurRGBAGauss<Ri, Ri, 255, 0, 1, 1, 0>,
                                 BlurGeneralGauss<C8, Ci, 255, 1, 0, 0, 0>>;
TYPED_TEST_SUITE(GaussFilterReuse, Filters, TypeNames);

TYPED_TEST(GaussFilterReuse, EqualsANewFilterWhateverHasChanged) {
  using Component = ComponentOf<PixelOf<TypeParam>>;
  const std::string sweep = "boxSweep " + std::to_string(8 * sizeof(Component));
  for (const std::string& name : HvCpuLevels()) {
    const CpuLevel level(name);
    KernelRunsOfCases runs;
    forRandomCases(80, [&](Random& random) {
      TypeParam filter;
      for (int i = random.within(1, 3); i > 0; --i)
        this->firstRun(filter, random);
      forgetKernelRuns();
      this->compareSecondRun(filter, random);
      runs.note();
    });
    EXPECT_TRUE(name == "twin" || runs.had({sweep})) << name;
  }
}

TYPED_TEST(GaussFilterReuse, LeavesTheWindowOfAStoppedRunAsItWas) {
  for (const std::string& name : HvCpuLevels()) {
    for (const bool keepsIntermediate : {false, true}) {
      const CpuLevel level(name);
      const ThreadCount threads(1);
      HvTexture<PixelOf<TypeParam>, typename TypeParam::Texture::Accum> source(400, 300);
      HvTexture<PixelOf<TypeParam>, typename TypeParam::Texture::Accum> result(400, 300);
      StopAfter stop(100);
      TypeParam filter;
      filter.interrupt = &stop.record;
      filter.keepsIntermediate = keepsIntermediate;
      filter.sizeX = filter.sizeY = 2.0f;
      filter.setWindow(10, 12, 380, 281);
      forgetKernelRuns();
      filter.process(&source, &result);
      const auto runs = takeKernelRuns();
      EXPECT_TRUE(ranAtThisLevel(runs));
      EXPECT_EQ(runs.empty(), keepsIntermediate || !HvUsesVectors()) << name;
      EXPECT_NE(stop.record.interrupted, 0);
      std::int32_t left = 0, top = 0, right = 0, bottom = 0;
      filter.getWindow(left, top, right, bottom);
      EXPECT_EQ((std::array{left, top, right, bottom}), (std::array{10, 12, 380, 281})) << name;
    }
  }
}

}  // namespace
}  // namespace vblur::test
