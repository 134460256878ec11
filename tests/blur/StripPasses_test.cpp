// Pictures large enough for non-temporal stores: vector code against plain code.
#include "blur/StripPasses.h"

#include <cstddef>
#include <cstdlib>
#include <memory>

#include <gtest/gtest.h>

#include "tests/blur/FilterRuns.h"
#include "tests/blur/RandomPictures.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/Random.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

template <class Pixel>
inline constexpr auto kPixelBytes = static_cast<std::int64_t>(sizeof(Pixel));

template <class Pixel>
using AccumOf = std::conditional_t<std::is_same_v<Pixel, int> || std::is_same_v<ComponentOf<Pixel>, float>, Pixel, Ri>;

// A picture whose rows begin some pixels after a cache line, and lie `stride` bytes apart.
template <class Pixel>
class PlacedPicture {
 public:
  static constexpr std::align_val_t kLine{64};  // of the cache
  using Texture = HvTexture<Pixel, AccumOf<Pixel>>;

  PlacedPicture(std::int32_t width, std::int32_t height, std::int32_t pixelsAfterLine, std::int64_t stride)
      : bytes_(static_cast<std::size_t>(stride * height) + 512),
        memory_(static_cast<std::byte*>(::operator new(bytes_, kLine)),
                [](std::byte* memory) { ::operator delete(memory, kLine); }) {
    std::memset(memory_.get(), 0x5A, bytes_);
    texture.wrap(width, height, memory_.get() + pixelsAfterLine * kPixelBytes<Pixel>);
    texture.stride = stride;
  }
  void fill(Random& random) {
    auto noise = static_cast<std::uint32_t>(random.within(0, 1 << 30));
    for (std::size_t i = 0; i < bytes_; ++i) {
      noise = noise * 1664525u + 1013904223u;
      memory_[i] = static_cast<std::byte>(noise >> 24);
    }
  }
  bool equals(const PlacedPicture& other) const { return std::memcmp(memory_.get(), other.memory_.get(), bytes_) == 0; }

  Texture texture;

 private:
  std::size_t bytes_;
  std::unique_ptr<std::byte[], void (*)(std::byte*)> memory_;
};

template <class Pixel, class Mask>
void compareWithPlainCode(Random& random, const std::string& cpu, float leastSize = 0.0f) {
  using Texture = typename PlacedPicture<Pixel>::Texture;
  const auto height = static_cast<std::int32_t>(kStreamedBytes / (512 * kPixelBytes<Pixel>)) + random.within(0, 20);
  const std::int32_t width = 512 + random.within(0, 40);
  const std::int32_t offset = random.within(0, 20);
  const auto rowBytes = width * kPixelBytes<Pixel>;
  const std::int64_t stride = random.oneIn(2) ? (rowBytes + 63) / 64 * 64 : rowBytes;
  PlacedPicture<Pixel> source(width, height, random.within(0, 5), stride);
  source.fill(random);
  if constexpr (std::is_same_v<ComponentOf<Pixel>, float>) {
    if (!random.oneIn(3)) fillSmall(random, source.texture);
  }
  source.texture.setEdgeMethods(random.within(0, 3), random.within(0, 3));
  const bool keepsOthers = random.oneIn(2);
  const float sizeX = random.between(leastSize, 150.0f);
  const float sizeY = random.between(leastSize, 150.0f);
  SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height) + " sizes " + std::to_string(sizeX) + " " +
               std::to_string(sizeY) + " stride " + std::to_string(stride));
  PlacedPicture<Pixel> results[] = {{width, height, offset, stride}, {width, height, offset, stride}};
  for (int i = 0; i < 2; ++i) {
    const ThreadCount threads(i == 0 ? 2 : random.within(1, 3));
    const CpuLevel level(i == 0 ? "twin" : cpu);
    runFilter<Mask>(Sampler<Texture, Texture>(),
                    {.sizeX = sizeX, .sizeY = sizeY, .keepsOthers = keepsOthers, .keepsIntermediate = false},
                    &source.texture, &results[i].texture);
  }
  EXPECT_TRUE(results[0].equals(results[1])) << (keepsOthers ? "with" : "without") << " others";
}

class StripPasses : public AtEachLevel {};

TEST_P(StripPasses, LargePicturesEqualThoseOfThePlainCode) {
  // From this size on, pictures of this width always take two passes.
  constexpr float kLarge = 100.0f;
  forRandomCases(2, [](Random& random) {
    compareWithPlainCode<R8, ChannelMask<1, 1, 1, 1>>(random, GetParam());
    compareWithPlainCode<R8, ChannelMask<0, 1, 1, 0>>(random, GetParam(), kLarge);
    compareWithPlainCode<R16, ChannelMask<1, 1, 1, 1>>(random, GetParam());
    compareWithPlainCode<R16, ChannelMask<1, 1, 1, 1>>(random, GetParam(), kLarge);
    compareWithPlainCode<Ri, ChannelMask<0, 1, 1, 0>>(random, GetParam());
    compareWithPlainCode<int, ChannelMask<1, 0, 0, 0>>(random, GetParam());
    compareWithPlainCode<Rf, ChannelMask<1, 1, 1, 1>>(random, GetParam());
    compareWithPlainCode<Rf, ChannelMask<0, 1, 1, 0>>(random, GetParam(), kLarge);
    compareWithPlainCode<Cf, ChannelMask<1, 0, 0, 0>>(random, GetParam());
  });
  EXPECT_TRUE(kernelsRanAmongOthers(
      {"boxSweep 8", "boxSweep 16", "boxSweep 32", "boxSweep float", "carryRow", "streamRows", "transposePixels"}));
}

// A sum that has lost the bits of small components beside large ones shows when the large ones have left it.
TEST_P(StripPasses, KeepWhatIsSmallBesideWhatIsLarge) {
  for (const float large : {std::nextafter(kMostInDoubles, kMostCarried), -kMostCarried}) {
    for (const bool above : {true, false}) {
      Random random(5);
      PlacedPicture<Rf> source(300, 300, 0, 300 * kPixelBytes<Rf>);
      for (std::int32_t y = 0; y < 300; ++y) {
        for (std::int32_t x = 0; x < 300; ++x) {
          const float v = random.between(0.0f, 1e-9f);
          *source.texture.at(x, y) = Rf{{v, v, v, v}};
        }
      }
      for (std::int32_t i = 0; i < 60 * 60; ++i)
        source.texture.at(120 + i % 60, (above ? 240 : 0) + i / 60)->green = large;
      PlacedPicture<Rf> results[] = {{300, 300, 0, 300 * kPixelBytes<Rf>}, {300, 300, 0, 300 * kPixelBytes<Rf>}};
      for (int i = 0; i < 2; ++i) {
        const CpuLevel level(i == 0 ? "twin" : GetParam());
        runFilter<ChannelMask<1, 1, 1, 1>>(Sampler<PlacedPicture<Rf>::Texture, PlacedPicture<Rf>::Texture>(),
                                           {.sizeX = 20.0f, .sizeY = 20.5f, .keepsIntermediate = false},
                                           &source.texture, &results[i].texture);
      }
      EXPECT_TRUE(results[0].equals(results[1])) << large << (above ? " above" : " below");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Levels, StripPasses, testing::ValuesIn(vectorLevels()), levelName);

}  // namespace
}  // namespace vblur::test
