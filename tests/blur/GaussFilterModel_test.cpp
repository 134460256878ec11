// The filter alone against the independent model: every width of pixel, and one, two or three boxes.
#include <gtest/gtest.h>

#include "tests/blur/FilterRuns.h"
#include "tests/blur/RandomPictures.h"
#include "tests/model/filter.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/ModelBridge.h"
#include "tests/support/TypeNames.h"

namespace vblur::test {
namespace {

template <class Pixel_, class Accum_, int R, int G, int B, int A>
struct Filter {
  using Pixel = Pixel_;
  using Accum = Accum_;
  using Mask = ChannelMask<R, G, B, A>;
  static constexpr std::array<bool, 4> channels{R != 0, G != 0, B != 0, A != 0};
};

// Each width of pixel, and each number of channels; FuzzModel_test covers the other masks.
using Filters = ::testing::Types<Filter<R8, Ri, 1, 1, 1, 0>, Filter<R8, Ri, 1, 1, 1, 1>, Filter<R8, Ri, 0, 0, 0, 1>,
                                 Filter<R16, Ri, 1, 1, 1, 1>, Filter<R16, Ri, 0, 1, 0, 0>, Filter<R8, Ri, 0, 1, 1, 0>,
                                 Filter<Ri, Ri, 1, 0, 0, 0>, Filter<Ri, Ri, 0, 1, 1, 0>, Filter<int, int, 1, 0, 0, 0>,
                                 Filter<C8, Ci, 1, 0, 0, 0>, Filter<C16, Ci, 1, 0, 0, 0>, Filter<Rf, Rf, 1, 1, 1, 1>,
                                 Filter<Rf, Rf, 1, 1, 1, 0>, Filter<Rf, Rf, 0, 1, 1, 0>, Filter<Cf, Cf, 1, 0, 0, 0>>;

template <class T>
class GaussFilterModel : public ::testing::Test {
 protected:
  using Pixel = typename T::Pixel;
  using Texture = HvTexture<Pixel, typename T::Accum>;
  using Picture = RandomPicture<Pixel, typename T::Accum>;

  // The values of stored YUV; any value in one case of eight.
  static ComponentRange<Pixel> rangeOf(Random& random) {
    if constexpr (sizeof(ComponentOf<Pixel>) == 4) {
      if (!random.oneIn(8)) return {-4000, 40000};
    }
    return storageRange<Pixel>();
  }

  // On floats a radius below 0 counts as 0.
  static bool copiesOnly(float size) {
    return size == 0.0f || (modelDepth<Pixel>() == model::Depth::Float && size < 0.0f);
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
    if (sameTexture && copiesOnly(sizeX) && copiesOnly(sizeY)) readWhereWritten(output.texture);
    HvInterruptRecord record;
    Sampler<Texture, Texture> as;
    as.interrupt = &record;
    as.setAspect(randomAspect(random));
    FilterFields fields{.sizeX = sizeX, .sizeY = sizeY};
    fields.boxes = random.oneIn(4) ? random.within(1, 2) : 3;
    fields.keepsIntermediate = random.oneIn(4);
    model::FilterSettings settings;
    settings.depth = modelDepth<Pixel>();
    settings.sizeX = sizeX;
    settings.sizeY = sizeY;
    settings.aspect = as.aspect;
    settings.boxes = fields.boxes;
    settings.channels = T::channels;
    settings.window = randomWindow(random, output.texture);
    setWindow(as, settings.window);
    SCOPED_TRACE("size " + std::to_string(sizeX) + " x " + std::to_string(sizeY) + " boxes " +
                 std::to_string(fields.boxes) + " " + nameOf(settings.window));
    const model::Picture modelInput = modelPicture(input.texture);
    model::Picture expected = modelPicture(output.texture);
    const bool hasMemory = model::Filter(modelInput, expected, settings);

    const Settings before(output.texture);
    const ThreadCount scope(randomThreadCount(random));
    const CpuLevel level(randomCpuLevel(random));
    forgetKernelRuns();
    runFilter<typename T::Mask>(as, fields, &input.texture, &output.texture);
    EXPECT_TRUE(ranAtThisLevel(takeKernelRuns()));
    EXPECT_TRUE(equalsModel(output.texture, expected));
    EXPECT_EQ(record.interrupted, hasMemory ? 0 : 1);
    EXPECT_EQ(record.state, hasMemory ? 0 : 1000);
    EXPECT_TRUE(output.canvas.guardsAreIntact());
    EXPECT_TRUE(!hasMemory || before.areThoseOf(output.texture));
  }
};

TYPED_TEST_SUITE(GaussFilterModel, Filters, TypeNames);

TYPED_TEST(GaussFilterModel, FromOnePictureToAnother) {
  forRandomCases(200, [this](Random& random) {
    const float sizeX = randomRadius(random, Radii::Everyday);
    this->compare(random, sizeX, randomRadius(random, Radii::Everyday), false);
  });
}

TYPED_TEST(GaussFilterModel, WithinOnePicture) {
  forRandomCases(100, [this](Random& random) {
    const float sizeX = randomRadius(random, Radii::Everyday);
    this->compare(random, sizeX, randomRadius(random, Radii::Everyday), true);
  });
}

TYPED_TEST(GaussFilterModel, AtRadiiBelowZero) {
  forRandomCases(100, [this](Random& random) {
    const float sizeX = randomRadius(random, Radii::BelowZero);
    this->compare(random, sizeX, randomRadius(random, Radii::BelowZero), random.oneIn(4));
  });
}

}  // namespace
}  // namespace vblur::test
