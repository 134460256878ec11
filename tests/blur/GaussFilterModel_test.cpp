// The filter by itself against the independent model: every width of pixel, and one, two or three boxes.
#include <gtest/gtest.h>

#include "blur/GaussFilter.h"
#include "tests/blur/RandomPictures.h"
#include "tests/model/filter.h"
#include "tests/support/ModelBridge.h"

namespace vblur::test {
namespace {

template <class FilterUnderTest, class Pixel_, int R, int G, int B, int A>
struct Instance {
  using Filter = FilterUnderTest;
  using Pixel = Pixel_;
  static constexpr std::array<bool, 4> channels{R != 0, G != 0, B != 0, A != 0};
};

template <class Pixel, std::int32_t Max, int R, int G, int B, int A>
using Colours = Instance<BlurRGBAGauss<Pixel, Ri, Max, R, G, B, A>, Pixel, R, G, B, A>;
template <class Pixel, class Accum, std::int32_t Max>
using OneChannel = Instance<BlurGeneralGauss<Pixel, Accum, Max, 1, 0, 0, 0>, Pixel, 1, 0, 0, 0>;

// Each width of pixel, and each number of channels; the rest of the masks run within the chains.
using Instances =
    ::testing::Types<Colours<R8, 255, 1, 1, 1, 0>, Colours<R8, 255, 1, 1, 1, 1>, Colours<R8, 255, 0, 0, 0, 1>,
                     Colours<R16, 32767, 1, 1, 1, 1>, Colours<R16, 32767, 0, 1, 0, 0>, Colours<R8, 255, 0, 1, 1, 0>,
                     Colours<Ri, 255, 1, 0, 0, 0>, Colours<Ri, 32767, 0, 1, 1, 0>, OneChannel<int, int, 255>,
                     OneChannel<C8, Ci, 255>, OneChannel<C16, Ci, 32767>>;

template <class T>
class GaussFilterAgainstModel : public ::testing::Test {
 protected:
  using Filter = typename T::Filter;
  using Pixel = typename T::Pixel;
  using Texture = typename Filter::Texture;
  using Picture = RandomPicture<Pixel, typename Texture::Accum>;

  // Values that every instance meets between stages; anything at all in one case of eight.
  static ComponentRange<Pixel> rangeOf(Random& random) {
    if constexpr (sizeof(ComponentOf<Pixel>) == 4) {
      if (!random.oneIn(8)) return {-4000, 40000};
    }
    return storageRange<Pixel>();
  }

  // A plain copy within one picture must not read what it has written.
  static void readWhereWritten(Texture& texture) {
    texture.wholeBounds();
    texture.setOrigin(texture.horizontal.writeOrigin, texture.vertical.writeOrigin);
  }

  static void compare(Random& random, float sizeX, float sizeY, bool sameTexture) {
    const ComponentRange<Pixel> range = rangeOf(random);
    Picture output(random, random.within(1, 14), random.within(1, 14), range);
    Picture other(random, randomSize(random, 14), randomSize(random, 14), range);
    Picture& input = sameTexture ? output : other;
    if (sameTexture && sizeX == 0.0f && sizeY == 0.0f) readWhereWritten(output.texture);
    Filter filter;
    HvInterruptRecord record;
    filter.interrupt = &record;
    filter.sizeX = sizeX;
    filter.sizeY = sizeY;
    filter.boxes = random.oneIn(4) ? random.within(1, 2) : 3;
    filter.keepsIntermediate = random.oneIn(4);
    filter.setAspect(randomAspect(random));
    model::FilterSettings settings;
    settings.depth = modelDepth<Pixel>();
    settings.sizeX = sizeX;
    settings.sizeY = sizeY;
    settings.aspect = filter.aspect;
    settings.boxes = filter.boxes;
    settings.channels = T::channels;
    settings.window = randomWindow(random, output.texture);
    setWindow(filter, settings.window);
    SCOPED_TRACE("size " + std::to_string(sizeX) + " x " + std::to_string(sizeY) + " boxes " +
                 std::to_string(filter.boxes) + " " + nameOf(settings.window));
    const model::Picture modelInput = modelPicture(input.texture);
    model::Picture expected = modelPicture(output.texture);
    const bool hasMemory = model::Filter(modelInput, expected, settings);

    const Settings before(output.texture);
    const ThreadCount scope(randomThreadCount(random));
    const CpuLevel level(randomCpuLevel(random));
    filter.process(&input.texture, &output.texture);
    EXPECT_TRUE(equalsModel(output.texture, expected));
    EXPECT_EQ(record.interrupted, hasMemory ? 0 : 1);
    EXPECT_EQ(record.state, hasMemory ? 0 : 1000);
    EXPECT_TRUE(output.canvas.guardsAreIntact());
    EXPECT_TRUE(!hasMemory || before.areThoseOf(output.texture));
  }
};

TYPED_TEST_SUITE(GaussFilterAgainstModel, Instances);

TYPED_TEST(GaussFilterAgainstModel, FromOnePictureToAnother) {
  forRandomCases(200, [this](Random& random) {
    const float sizeX = randomRadius(random, Radii::Everyday);
    this->compare(random, sizeX, randomRadius(random, Radii::Everyday), false);
  });
}

TYPED_TEST(GaussFilterAgainstModel, WithinOnePicture) {
  forRandomCases(100, [this](Random& random) {
    const float sizeX = randomRadius(random, Radii::Everyday);
    this->compare(random, sizeX, randomRadius(random, Radii::Everyday), true);
  });
}

TYPED_TEST(GaussFilterAgainstModel, AtRadiiBelowZero) {
  forRandomCases(100, [this](Random& random) {
    const float sizeX = randomRadius(random, Radii::BelowZero);
    this->compare(random, sizeX, randomRadius(random, Radii::BelowZero), random.oneIn(4));
  });
}

}  // namespace
}  // namespace vblur::test
