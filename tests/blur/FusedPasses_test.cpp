// Both passes in one against plain code: any tiles, edges, windows and threads give the same bits.
#include "blur/FusedPasses.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "blur/FilterChannels.h"
#include "tests/blur/FilterRuns.h"
#include "tests/blur/RandomPictures.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/Random.h"
#include "tests/support/StopAfter.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

template <class Pixel>
using AccumOf = std::conditional_t<Pixel::kIntegral, Ri, Rf>;

// A picture of noise whose rows lie a whole number of cache lines apart, or that and `more` bytes, one way or the
// other, in memory of noise.
template <class Pixel>
class LinedPicture {
 public:
  using Texture = HvTexture<Pixel, AccumOf<Pixel>>;

  LinedPicture(std::int32_t width, std::int32_t height, std::int32_t pixelsAfterLine, bool upward,
               std::int64_t more = 0)
      : stride_(((width + pixelsAfterLine) * static_cast<std::int64_t>(sizeof(Pixel)) / 64 + 1) * 64 + more),
        bytes_(static_cast<std::size_t>(stride_ * height) + 128),
        memory_(bytes_ + 64) {
    const auto address = reinterpret_cast<std::uintptr_t>(memory_.data());
    std::byte* const first = memory_.data() + (64 - address % 64) % 64 + 64;
    const std::int64_t top = upward ? stride_ * (height - 1) : 0;
    texture.wrap(width, height, first + top + pixelsAfterLine * static_cast<std::int64_t>(sizeof(Pixel)));
    texture.stride = upward ? -stride_ : stride_;
  }
  void fill(Random& random, bool extremes) {
    auto noise = static_cast<std::uint32_t>(random.within(0, 1 << 30));
    for (std::byte& b : memory_) {
      noise = noise * 1664525u + 1013904223u;
      b = extremes ? static_cast<std::byte>(noise >> 31 ? 0xFF : 0) : static_cast<std::byte>(noise >> 24);
    }
  }
  // The pixels, in order.
  std::vector<std::byte> rows() const {
    std::vector<std::byte> all;
    for (std::int32_t y = 0; y < texture.height(); ++y) {
      const auto* row = reinterpret_cast<const std::byte*>(texture.at(0, y));
      all.insert(all.end(), row, row + rowBytes());
    }
    return all;
  }
  void setRows(const std::vector<std::byte>& all) {
    for (std::int32_t y = 0; y < texture.height(); ++y)
      std::memcpy(texture.at(0, y), all.data() + static_cast<std::size_t>(y) * rowBytes(), rowBytes());
  }
  const std::vector<std::byte>& memory() const { return memory_; }

  Texture texture;

 private:
  std::size_t rowBytes() const { return static_cast<std::size_t>(texture.width()) * sizeof(Pixel); }

  std::int64_t stride_;
  std::size_t bytes_;
  std::vector<std::byte> memory_;
};

struct Window {
  std::int32_t x1, y1, x2, y2;
};

template <class Pixel, class Mask>
struct FusedCase {
  using Picture = LinedPicture<Pixel>;

  explicit FusedCase(Random& random)
      : width(random.within(1, random.oneIn(2) ? 40 : 260)),
        height(random.within(1, random.oneIn(2) ? 30 : 150)),
        covers(random.oneIn(3)),
        source(covers ? width : random.within(1, 260), covers ? height : random.within(1, 150), random.within(0, 20),
               random.oneIn(4)),
        result(width, height, random.within(0, 20), random.oneIn(4), random.oneIn(2) ? 0 : 8 * random.within(0, 7)),
        radiusX(radius(random, 3 * std::max(width, height))),
        radiusY(radius(random, 3 * std::max(width, height))) {
    const bool extremes = random.oneIn(4);
    source.fill(random, extremes);
    if constexpr (!Pixel::kIntegral) {
      if (!random.oneIn(3)) fillSmall(random, source.texture);
    }
    result.fill(random, extremes);
    auto& in = source.texture;
    in.setEdgeMethods(random.within(0, 3), random.within(0, 3));
    Pixel outside;
    std::memcpy(&outside, source.texture.at(0, 0), sizeof outside);
    in.setOutsideColour(outside);
    in.setOrigin(random.within(-30, 30), random.within(-30, 30));
    if (random.oneIn(3)) {
      in.setBounds(random.within(0, in.width() - 1), random.within(0, in.width() - 1),
                   random.within(0, in.height() - 1), random.within(0, in.height() - 1));
    }
    result.texture.setWriteOrigin(random.within(-9, 9), random.within(-9, 9));
    const std::int32_t left = result.texture.horizontal.writeOrigin;
    const std::int32_t top = result.texture.vertical.writeOrigin;
    window = {left, top, left + width, top + height};
    if (covers) {
      coverWithImages(random);
    } else if (random.oneIn(2)) {
      window.x1 = random.within(left, left + width - 1);
      window.y1 = random.within(top, top + height - 1);
      window.x2 = random.within(window.x1 + 1, left + width);
      window.y2 = random.within(window.y1 + 1, top + height);
    }
  }
  // The source in its place, whose rows beyond the edges are images of those within. The farthest row counts: boxes are
  // small, and rows often come in whole blocks.
  void coverWithImages(Random& random) {
    const bool inBlocks = height >= kFusedRows && random.oneIn(2);
    if (inBlocks) window.y2 = window.y1 + height / kFusedRows * kFusedRows;
    auto& in = source.texture;
    in.setBounds(0, width - 1, 0, window.y2 - window.y1 - 1);
    in.setOrigin(window.x1, window.y1);
    in.setEdgeMethods(random.within(0, 3), random.oneOf({kEdgeReflect, kEdgeReflect, kEdgeRepeat}));
    radiusY = std::min(static_cast<float>(random.within(1, 9)) / 2.0f, radiusY);
  }
  // The filter cuts sizes to `most`.
  static float radius(Random& random, std::int32_t most) {
    return std::min(anyRadius(random), static_cast<float>(most));
  }
  static float anyRadius(Random& random) {
    switch (random.within(0, 5)) {
      case 0: return static_cast<float>(random.within(1, 12));
      case 1: return random.oneOf({0.25f, 0.5f, 1.25f, 2.9999f, 31.5f, 62.0f, 62.5f, 63.0f, 127.0f, 127.5f, 140.0f});
      case 2: return static_cast<float>(random.within(1, 150));
      default: return random.between(0.1f, random.oneIn(4) ? 150.0f : 12.0f);
    }
  }

  using Passes = FusedPasses<Pixel, AccumOf<Pixel>>;
  Passes passes() const {
    return Passes(result.texture, boxOf<Pixel>(radiusX), boxOf<Pixel>(radiusY), {window.x1, window.x2},
                  {window.y1, window.y2}, StripChannels<Pixel>::template of<Mask>(), 1);
  }
  bool fits() const {
    return Passes::fits(source.texture, result.texture, boxOf<Pixel>(radiusX), boxOf<Pixel>(radiusY),
                        StripChannels<Pixel>::template of<Mask>(), true);
  }
  // By plain code, into a picture like the result.
  void runPlain(Picture& plain) {
    const CpuLevel level("twin");
    plain.texture.setWriteOrigin(result.texture.horizontal.writeOrigin, result.texture.vertical.writeOrigin);
    Sampler<typename Picture::Texture, typename Picture::Texture> as;
    as.setWindow(window.x1, window.y1, window.x2 - 1, window.y2 - 1);
    runFilter<Mask>(as, {.sizeX = radiusX, .sizeY = radiusY, .keepsOthers = true, .keepsIntermediate = false},
                    &source.texture, &plain.texture);
  }
  std::string name() const {
    return std::to_string(width) + " x " + std::to_string(height) + " of " + std::to_string(source.texture.width()) +
           " x " + std::to_string(source.texture.height()) + " sizes " + std::to_string(radiusX) + " " +
           std::to_string(radiusY) + " window " + std::to_string(window.x1) + " " + std::to_string(window.y1) + " " +
           std::to_string(window.x2) + " " + std::to_string(window.y2) + " edges " +
           std::to_string(source.texture.horizontal.edgeMethod) + " " +
           std::to_string(source.texture.vertical.edgeMethod);
  }

  std::int32_t width;
  std::int32_t height;
  bool covers;
  Picture source;
  Picture result;
  float radiusX;
  float radiusY;
  Window window{};
};

template <class Pixel, class Mask>
void compareWithPlainCode(Random& random) {
  FusedCase<Pixel, Mask> c(random);
  SCOPED_TRACE(c.name());
  ASSERT_TRUE(c.fits());
  LinedPicture<Pixel> plain(c.width, c.height, 3, false);
  plain.setRows(c.result.rows());
  c.runPlain(plain);

  const std::vector<std::byte> before = c.result.memory();
  const std::vector<std::byte> pixelsBefore = c.result.rows();
  auto passes = c.passes();
  passes.divide(random.within(1, 4), random.within(1, 3));
  passes.streams(random.oneIn(2));
  const auto work = [&] { EXPECT_TRUE(passes.run(c.source.texture, c.result.texture, nullptr)); };
  std::vector<std::thread> others;
  for (int i = random.within(0, 2); i > 0; --i)
    others.emplace_back(work);
  work();
  for (std::thread& other : others)
    other.join();
  ASSERT_TRUE(c.result.rows() == plain.rows());
  c.result.setRows(pixelsBefore);
  ASSERT_TRUE(c.result.memory() == before) << "beside the picture";
}

class FusedPassesLevels : public AtEachLevel {};

TEST_P(FusedPassesLevels, EqualPlainCode) {
  forRandomCases(120, [](Random& random) {
    switch (random.within(0, 5)) {
      case 0: return compareWithPlainCode<R8, ChannelMask<1, 1, 1, 1>>(random);
      case 1: return compareWithPlainCode<R8, ChannelMask<0, 1, 1, 0>>(random);
      case 2: return compareWithPlainCode<R16, ChannelMask<1, 1, 1, 1>>(random);
      case 3: return compareWithPlainCode<R16, ChannelMask<0, 1, 0, 0>>(random);
      case 4: return compareWithPlainCode<Rf, ChannelMask<1, 1, 1, 1>>(random);
      default: return compareWithPlainCode<Rf, ChannelMask<0, 1, 1, 0>>(random);
    }
  });
  if (!runsFewCases()) {
    EXPECT_TRUE(kernelsRanAmongOthers({"fuseBand 8", "fuseBand 16", "fuseBand 32"}));
  }
}

// A sum that has lost the bits of small components beside a large one shows when the large one has left it: in any
// block of a band, in any band, and among components that are filtered or are not.
template <class Mask>
void compareBesideOneLarge(Random& random) {
  constexpr std::int32_t kWidth = 500;
  constexpr std::int32_t kHeight = 48;
  LinedPicture<Rf> source(kWidth, kHeight, 0, false);
  LinedPicture<Rf> result(kWidth, kHeight, 0, false);
  LinedPicture<Rf> plain(kWidth, kHeight, 0, false);
  for (std::int32_t y = 0; y < kHeight; ++y) {
    for (std::int32_t x = 0; x < kWidth; ++x) {
      const float v = random.between(0.0f, 1e-9f);
      *source.texture.at(x, y) = Rf{{v, v, v, v}};
    }
  }
  Rf* const place = source.texture.at(random.within(0, kWidth - 1), random.within(0, kHeight - 1));
  (random.oneIn(2) ? place->red : place->green) = random.oneOf({-40.0f, kMostCarried});
  source.texture.setEdgeMethods(kEdgeReflect, random.within(0, 3));
  const float size = random.oneOf({1.0f, 2.5f, 6.0f});
  const auto channels = StripChannels<Rf>::of<Mask>();
  FusedPasses<Rf, Rf> passes(result.texture, exactBox(size), exactBox(size), {0, kWidth}, {0, kHeight}, channels, 1);
  passes.divide(random.within(1, 2), 1);
  ASSERT_TRUE(passes.run(source.texture, result.texture, nullptr));
  const CpuLevel level("twin");
  runFilter<Mask>(Sampler<LinedPicture<Rf>::Texture, LinedPicture<Rf>::Texture>(),
                  {.sizeX = size, .sizeY = size, .keepsOthers = true, .keepsIntermediate = false}, &source.texture,
                  &plain.texture);
  ASSERT_TRUE(result.rows() == plain.rows());
}

TEST_P(FusedPassesLevels, KeepWhatIsSmallBesideOneLargeComponent) {
  forRandomCases(24, [](Random& random) {
    compareBesideOneLarge<ChannelMask<1, 1, 1, 1>>(random);
    compareBesideOneLarge<ChannelMask<0, 1, 1, 0>>(random);
  });
}

INSTANTIATE_TEST_SUITE_P(Levels, FusedPassesLevels, testing::ValuesIn(vectorLevels()), levelName);

// A stop leaves pixels as they were or finishes them, and nobody is asked again.
TEST(FusedPasses, StopsWithinABand) {
  forRandomCases(30, [](Random& random) {
    FusedCase<R8, ChannelMask<1, 1, 1, 1>> c(random);
    LinedPicture<R8> whole(c.width, c.height, 0, false);
    whole.setRows(c.result.rows());
    LinedPicture<R8> before(c.width, c.height, 0, false);
    before.setRows(c.result.rows());
    c.runPlain(whole);
    StopAfter stop(random.within(0, 200));
    auto passes = c.passes();
    EXPECT_TRUE(passes.run(c.source.texture, c.result.texture, &stop.record));
    const bool finished = stop.record.interrupted == 0;
    if (!finished) {
      EXPECT_EQ(poll(&stop.record), 1);
    }
    for (std::int32_t y = 0; y < c.height; ++y) {
      for (std::int32_t x = 0; x < c.width; ++x) {
        const R8 pixel = *c.result.texture.at(x, y);
        ASSERT_TRUE(pixel == *whole.texture.at(x, y) || (!finished && pixel == *before.texture.at(x, y)))
            << x << ", " << y;
      }
    }
  });
}

TEST(FusedPasses, RefuseWhatTwoPassesHaveToDo) {
  using Passes = FusedPasses<R8, Ri>;
  LinedPicture<R8> source(64, 9, 0, false);
  LinedPicture<R8> result(64, 9, 0, false);
  const auto all = StripChannels<R8>::of<ChannelMask<1, 1, 1, 1>>();
  const auto some = StripChannels<R8>::of<ChannelMask<0, 1, 1, 0>>();
  const BoxConstants box = boxConstants(2.0f);
  EXPECT_TRUE(Passes::fits(source.texture, result.texture, box, box, all, false));
  EXPECT_TRUE(Passes::fits(source.texture, result.texture, box, box, some, true));
  EXPECT_FALSE(Passes::fits(source.texture, result.texture, box, box, some, false));
  // Boxes that copy.
  EXPECT_FALSE(Passes::fits(source.texture, result.texture, boxConstants(0.0f), box, all, false));
  EXPECT_FALSE(Passes::fits(source.texture, result.texture, box, boxConstants(0.0f), all, false));
  EXPECT_FALSE(Passes::fits(source.texture, source.texture, box, box, all, false));
}

}  // namespace
}  // namespace vblur::test
