// Sharpening by exact values: twice the source less the blurred picture, limited to the type.
#include <gtest/gtest.h>

#include "blur/ColourConversion.h"
#include "tests/blur/SmallBlur.h"
#include "tests/support/KernelRuns.h"

namespace vblur::test {
namespace {

TEST(Sharpen, OfNoRadiusIsTheSource) {
  Blur8 blur(7, 7);
  blur.fillRandom(9);
  EXPECT_EQ(pixelsOf(blur.run(kFuzzRGBA, 0.0f, 0.0f, kFuzzSharpen)), pixelsOf(blur.source));
}

TEST(Sharpen, ReflectsAnEdgeThroughItself) {
  Blur8 blur(8, 1);
  blur.source.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
  for (int x = 0; x < 8; ++x)
    *blur.source.at(x, 0) = x < 4 ? R8{{50, 0, 100, 200}} : R8{{150, 255, 100, 100}};
  blur.run(kFuzzRGBA, 1.0f, 0.0f, kFuzzSharpen);
  const R8 expected[] = {{{50, 0, 100, 200}},   {{46, 0, 100, 204}},   {{35, 0, 100, 215}},   {{13, 0, 100, 237}},
                         {{187, 255, 100, 63}}, {{165, 255, 100, 85}}, {{154, 255, 100, 96}}, {{150, 255, 100, 100}}};
  EXPECT_EQ(pixelsOf(blur.result), std::vector<R8>(std::begin(expected), std::end(expected)));
}

TEST(Sharpen, OfColoursLetsAlphaThrough) {
  Blur8 blur(7, 7);
  blur.fillRandom(9);
  blur.run(kFuzzRGB, 2.0f, 2.0f, kFuzzSharpen);
  for (int i = 0; i < 49; ++i)
    EXPECT_EQ((blur.result.at(0, 0) + i)->alpha, (blur.source.at(0, 0) + i)->alpha);
}

// Alpha is copied over the whole picture; in the window 2a - a is a.
TEST(Sharpen, OfColoursInAWindowGivesTheSourcesAlphaEverywhere) {
  for (const std::string& name : HvCpuLevels()) {
    const CpuLevel level(name);
    Blur8 whole(12, 11);
    whole.fillRandom(9);
    forgetKernelRuns();
    whole.run(kFuzzRGB, 1.5f, 2.0f, kFuzzSharpen);
    EXPECT_TRUE(kernelsRanAmongOthers({"boxSweep 8", "reflectRow 8"}));
    Blur8 blur(12, 11);
    blur.fillRandom(9);
    blur.sampler.setWindow(3, 4, 8, 6);
    blur.run(kFuzzRGB, 1.5f, 2.0f, kFuzzSharpen);
    for (int y = 0; y < 11; ++y) {
      for (int x = 0; x < 12; ++x) {
        const bool inside = x >= 3 && x <= 8 && y >= 4 && y <= 6;
        const R8 outside{{0, 0, 0, blur.source.at(x, y)->alpha}};
        EXPECT_EQ(*blur.result.at(x, y), inside ? *whole.result.at(x, y) : outside) << name << ' ' << x << ", " << y;
      }
    }
  }
}

TEST(Sharpen, OfYuvDoublesTheRoundingOfTheTrip) {
  for (const std::int32_t mode : {kFuzzLuminance, kFuzzU, kFuzzV, kFuzzChroma}) {
    Blur8 blur(2, 2);
    blur.fill(R8{{128, 128, 128, 7}});
    EXPECT_EQ(*blur.run(mode, 0.0f, 0.0f, kFuzzSharpen).at(0, 0), (R8{{131, 129, 132, 7}})) << mode;
  }
}

// Blurs one component of a row of 8-bit YUV by boxes of radius 1 with repeated ends.
void blurHeld(std::vector<Ri>& row, std::int32_t Ri::*component) {
  const auto last = static_cast<int>(row.size()) - 1;
  // The row with its ends repeated beyond the reach of three boxes.
  std::vector<int> line;
  for (int x = -3; x <= last + 3; ++x)
    line.push_back(row[static_cast<std::size_t>(std::clamp(x, 0, last))].*component);
  for (int box = 0; box < 3; ++box) {
    std::vector<int> next;
    for (std::size_t i = 1; i + 1 < line.size(); ++i)
      next.push_back(((line[i - 1] + line[i] + line[i + 1]) * 5461 + 8192) >> 14);
    line = next;
  }
  for (std::size_t x = 0; x < row.size(); ++x)
    row[x].*component = line[x];
}

Ri heldOf(const R8& pixel) {
  const YuvInt c = yuvFromRgb(std::int32_t{pixel.red}, std::int32_t{pixel.green}, std::int32_t{pixel.blue});
  return {{heldYuv<255>(c.y), heldYuv<255>(c.u), heldYuv<255>(c.v), pixel.alpha}};
}

R8 rgbOf(const Ri& held) {
  const auto value = [](std::int32_t stored) { return static_cast<float>(2 * stored - 255); };
  R8 pixel{};
  rgbFromYuv(pixel, {value(held.red), value(held.green), value(held.blue)}, 0.0f, 255.0f);
  return pixel;
}

R8 sharpened(const R8& source, const R8& blurred) {
  R8 pixel{};
  for (int c = 0; c < 3; ++c)
    pixel[c] = static_cast<std::uint8_t>(std::clamp(2 * source[c] - blurred[c], 0, 255));
  pixel.alpha = source.alpha;
  return pixel;
}

// Each choice of Y, U and V sharpens its own components only.
TEST(Sharpen, OfEachChoiceOfYuvReflectsItsOwnComponents) {
  struct {
    std::int32_t mode;
    bool y, u, v;
  } const choices[] = {{kFuzzLuminance, true, false, false},
                       {kFuzzU, false, true, false},
                       {kFuzzV, false, false, true},
                       {kFuzzChroma, false, true, true}};
  for (const std::string& name : HvCpuLevels()) {
    const CpuLevel level(name);
    for (const auto& [mode, y, u, v] : choices) {
      Blur8 blur(12, 1);
      blur.fillRandom(11);
      blur.source.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
      const std::vector<R8> source = pixelsOf(blur.source);
      std::vector<Ri> held;
      for (const R8& pixel : source)
        held.push_back(heldOf(pixel));
      if (y) blurHeld(held, &Ri::red);
      if (u) blurHeld(held, &Ri::green);
      if (v) blurHeld(held, &Ri::blue);
      forgetKernelRuns();
      blur.run(mode, 1.0f, 0.0f, kFuzzSharpen);
      EXPECT_TRUE(kernelsRanAmongOthers({"boxSweep 8", "reflectRow 8", "rgbRow 8", "yuvRow 8"}));
      for (std::size_t x = 0; x < source.size(); ++x)
        EXPECT_EQ(pixelsOf(blur.result)[x], sharpened(source[x], rgbOf(held[x]))) << name << ' ' << mode << " at " << x;
    }
  }
}

TEST(Sharpen, PutsTheOriginOfTheResultBackWithoutItsFraction) {
  Blur8 blur(4, 4);
  blur.result.setOrigin(3.75f, -2.5f);
  blur.run(kFuzzRGBA, 1.0f, 1.0f, kFuzzSharpen);
  EXPECT_EQ(blur.result.horizontal.originF, 3.0f);
  EXPECT_EQ(blur.result.vertical.originF, -2.0f);
}

}  // namespace
}  // namespace vblur::test
