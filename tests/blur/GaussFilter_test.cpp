// The filter by itself: what it copies, what it leaves of its settings, and its copy back.
#include "blur/GaussFilter.h"

#include <gtest/gtest.h>

#include "tests/blur/RandomPictures.h"
#include "tests/support/CpuLevel.h"
#include "tests/support/StopAfter.h"

namespace vblur::test {
namespace {

using Frame = HvTexture<R8, Ri>;
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

TEST(GaussFilter, HasThreeBoxesAndNoCopyBackUnlessToldOtherwise) {
  const ColourFilter filter;
  EXPECT_EQ(filter.boxes, 3);
  EXPECT_EQ(filter.copyBack, 0);
  EXPECT_EQ(filter.intermediate, nullptr);
}

TEST(GaussFilter, MakesAnIntermediateThatReachesTwoPixelsABoxBeyondTheSize) {
  const CpuLevel level("twin");
  Frame source(6, 9);
  Frame output(4, 5);
  output.setWriteOrigin(30, -40);
  ColourFilter filter;
  filter.sizeX = 3.0f;
  filter.sizeY = 1.75f;
  filter.process(&source, &output);
  ASSERT_NE(filter.intermediate, nullptr);
  EXPECT_EQ(filter.lineLengthX, 6);
  EXPECT_EQ(filter.lineLengthY, 9);
  // (1.75 + 2) * 3 = 11.25 rows above and below the longer of the two pictures.
  EXPECT_EQ(filter.intermediate->width(), 4);
  EXPECT_EQ(filter.intermediate->height(), 9 + 2 * 11);
  EXPECT_EQ(filter.intermediate->horizontal.writeOrigin, 30);
  EXPECT_EQ(filter.intermediate->vertical.writeOrigin, -51);
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

// Nothing in the system asks for the copy back, so a test has to.
class CopyingBack : public ColourFilter {
 public:
  void preProcess(Frame* in, Frame* out) override {
    ColourFilter::preProcess(in, out);
    copyBack = 1;
  }
};

TEST(GaussFilter, CopiesTheIntermediateBackByTheBoxAndOriginOfTheInput) {
  const CpuLevel level("twin");
  forRandomCases(50, [](Random& random) {
    RandomPicture<R8, Ri> source(random, 7, 8);
    RandomPicture<R8, Ri> output(random, 9, 6);
    const std::vector<R8> before = output.canvas.pixels();
    CopyingBack filter;
    filter.sizeX = 1.5f;
    filter.sizeY = 0.75f;
    const ThreadCount scope(randomThreadCount(random));
    filter.process(&source.texture, &output.texture);
    const Frame& between = *filter.intermediate;
    EXPECT_EQ(between.vertical.lo, source.texture.vertical.lo);
    EXPECT_EQ(between.horizontal.originI, source.texture.horizontal.originI);
    for (int y = 0; y < 6; ++y) {
      for (int x = 0; x < 9; ++x) {
        R8 expected =
            *between.readRun(x + output.texture.horizontal.writeOrigin, y + output.texture.vertical.writeOrigin).first;
        expected.alpha = before[static_cast<std::size_t>(y * 9 + x)].alpha;
        ASSERT_EQ(output.canvas.at(x, y), expected) << x << ", " << y;
      }
    }
  });
}

}  // namespace
}  // namespace vblur::test
