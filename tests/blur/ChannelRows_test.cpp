// Rows of one component, the vector form against its plain twin, at every instruction set that this machine has.
#include "blur/ChannelRows.h"

#include <gtest/gtest.h>

#include "tests/support/Rows.h"

namespace vblur::test {
namespace {

class ChannelRows : public AtEachLevel {};

template <int Channel, class Pixel, class Single>
void compareExtract(Random& random, std::int32_t step) {
  compareRows<Pixel, Single>(
      random, step,
      [](const HvPixelRun<Pixel>& run, std::int32_t n, Single* out) {
        extractRow<Channel>(out, run, n);
        return true;
      },
      [](const HvPixelRun<Pixel>& run, std::int32_t n, Single* out) {
        extractRowPlain<Channel>(out, run, n);
        return true;
      });
}

template <class Pixel, class Single>
void compareSpread(Random& random, std::int32_t step) {
  const Spread how{random.oneIn(2), random.oneIn(2)};
  compareRows<Single, Pixel>(
      random, step,
      [&](const HvPixelRun<Single>& run, std::int32_t n, Pixel* out) {
        spreadRow<Pixel::kMax>(out, run, how, n);
        return true;
      },
      [&](const HvPixelRun<Single>& run, std::int32_t n, Pixel* out) {
        spreadRowPlain<Pixel::kMax>(out, run, how, n);
        return true;
      });
}

template <class Pixel, class Single>
void compareBoth() {
  forRandomCases(200, [](Random& random) {
    for (const std::int32_t step : {1, 0, -1}) {
      compareExtract<0, Pixel, Single>(random, step);
      compareExtract<1, Pixel, Single>(random, step);
      compareExtract<2, Pixel, Single>(random, step);
      compareExtract<3, Pixel, Single>(random, step);
      compareSpread<Pixel, Single>(random, step);
    }
  });
}

TEST_P(ChannelRows, EqualThePlainOnes) {
  compareBoth<R8, C8>();
  compareBoth<R16, C16>();
}

// Half of the values are 0, which random ones hardly are.
TEST_P(ChannelRows, CutAtZero) {
  C16 in[64];
  R16 out[64];
  for (int i = 0; i < 64; ++i)
    in[i].value = static_cast<std::int16_t>(i % 2 == 0 ? 0 : i - 32);
  spreadRow(in, Spread{true, false}, 64, out);
  for (int i = 0; i < 64; ++i) {
    const std::int16_t value = in[i].value != 0 ? std::int16_t{32767} : std::int16_t{0};
    EXPECT_EQ(out[i], (R16{{value, value, value, value}})) << HvCpuLevel() << " " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Levels, ChannelRows, testing::ValuesIn(vectorLevels()), levelName);

}  // namespace
}  // namespace vblur::test
