// The vector form of the colour conversions against its plain twin, at every instruction set that this machine
// has.
#include "blur/ColourRows.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/support/Rows.h"

namespace vblur::test {
namespace {

class ColourRows : public AtEachLevel {};

template <class Pixel>
const auto kToYuv =
    [](const HvPixelRun<Pixel>& run, std::int32_t n, Pixel* out) { return yuvRowFromRgb<Pixel::kMax>(out, run, n); };
template <class Pixel>
const auto kToYuvPlain =
    [](const HvPixelRun<Pixel>& run, std::int32_t n, Pixel* out) { return yuvRowPlain<Pixel::kMax>(out, run, n); };
template <class Pixel>
const auto kToRgb = [](const HvPixelRun<Pixel>& run, std::int32_t n, Pixel* out) {
  rgbRowFromYuv<Pixel::kMax>(out, run, n);
  return true;
};
template <class Pixel>
const auto kToRgbPlain = [](const HvPixelRun<Pixel>& run, std::int32_t n, Pixel* out) {
  rgbRowPlain<Pixel::kMax>(out, run, n);
  return true;
};

template <class Pixel>
void compareAnyRows() {
  forRandomCases(300, [](Random& random) {
    for (const std::int32_t step : {1, 0, -1}) {
      compareRows<Pixel, Pixel>(random, step, kToYuv<Pixel>, kToYuvPlain<Pixel>);
      compareRows<Pixel, Pixel>(random, step, kToRgb<Pixel>, kToRgbPlain<Pixel>);
    }
    const int apart = random.oneIn(2) ? 0 : random.within(-8, 8);
    compareRowsInPlace<Pixel>(random, apart, kToYuv<Pixel>, kToYuvPlain<Pixel>);
    compareRowsInPlace<Pixel>(random, apart, kToRgb<Pixel>, kToRgbPlain<Pixel>);
  });
}

TEST_P(ColourRows, EqualThePlainOnes) {
  compareAnyRows<R8>();
  compareAnyRows<R16>();
}

// Both directions, on one long row.
template <class Pixel>
void compareAll(const std::vector<Pixel>& pixels) {
  const auto n = static_cast<std::int32_t>(pixels.size());
  const HvPixelRun<Pixel> run{pixels.data(), 1, n, true};
  std::vector<Pixel> expected(pixels.size());
  std::vector<Pixel> out(pixels.size());
  const bool allFit = yuvRowPlain<Pixel::kMax>(expected.data(), run, n);
  EXPECT_EQ(yuvRow(pixels.data(), n, out.data()), allFit) << HvCpuLevel();
  ASSERT_TRUE(out == expected) << HvCpuLevel();
  rgbRowPlain<Pixel::kMax>(expected.data(), run, n);
  rgbRow(pixels.data(), n, out.data());
  ASSERT_TRUE(out == expected) << HvCpuLevel();
}

TEST_P(ColourRows, EqualThePlainOnesOnEveryColourOfEightBits) {
  std::vector<R8> pixels(65536);
  for (int red = 0; red < 256; red += kShareOfCases) {
    for (int i = 0; i < 65536; ++i) {
      pixels[static_cast<std::size_t>(i)] =
          R8{{static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(i >> 8), static_cast<std::uint8_t>(i & 255),
              static_cast<std::uint8_t>(i * 7 + red)}};
    }
    compareAll(pixels);
  }
}

// Every value of a component beside ends and turning points of the others.
TEST_P(ColourRows, EqualThePlainOnesOnEveryValueOfSixteenBits) {
  const std::int16_t aimed[] = {-32768, -32767, -16385, -3760, -3759, -1,    0,     1,
                                2,      16383,  16384,  16385, 26455, 32765, 32766, 32767};
  std::vector<R16> pixels(65536);
  int round = 0;
  for (const std::int16_t a : aimed) {
    for (const std::int16_t b : aimed) {
      if (++round % kShareOfCases != 0) continue;
      for (int i = 0; i < 65536; ++i) {
        R16& pixel = pixels[static_cast<std::size_t>(i)];
        pixel[round % 3] = static_cast<std::int16_t>(i - 32768);
        pixel[(round + 1) % 3] = a;
        pixel[(round + 2) % 3] = b;
        pixel.alpha = static_cast<std::int16_t>(i * 77);
      }
      compareAll(pixels);
    }
  }
}

// One pixel that does not fit is detected at any position.
TEST_P(ColourRows, FindTheOnePixelThatDoesNotFit) {
  for (std::int32_t n = 1; n <= 70; ++n) {
    std::vector<R16> pixels(static_cast<std::size_t>(n), R16{{100, 200, 300, 0}});
    std::vector<R16> out(pixels.size());
    EXPECT_TRUE(yuvRow(pixels.data(), n, out.data()));
    for (R16& pixel : pixels) {
      pixel = R16{{32767, -32768, -32768, 0}};
      EXPECT_FALSE(yuvRow(pixels.data(), n, out.data())) << HvCpuLevel() << " " << n;
      pixel = R16{{100, 200, 300, 0}};
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Levels, ColourRows, testing::ValuesIn(vectorLevels()), levelName);

}  // namespace
}  // namespace vblur::test
