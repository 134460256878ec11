// Vector copies and fills of whole pixels against plain ones, at every instruction set of this machine.
#include "image/CopyPixels.h"

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "image/ChannelMask.h"
#include "tests/support/GuardedPages.h"
#include "tests/support/Rows.h"

namespace vblur::test {
namespace {

class CopyPixels : public AtEachLevel {};

template <class Pixel>
void compareCopies(Random& random) {
  const auto copy = [](const HvPixelRun<Pixel>& run, std::int32_t n, Pixel* out) {
    copyPixels(out, run, n);
    return true;
  };
  const auto plain = [](const HvPixelRun<Pixel>& run, std::int32_t n, Pixel* out) {
    copyPixelsPlain(out, run, n);
    return true;
  };
  for (const std::int32_t step : {1, 0, -1, 2}) {
    if (step != 2) compareRows<Pixel, Pixel>(random, step, copy, plain);
    for (const std::ptrdiff_t apart : {0, -1, 1, random.within(-8, 8)})
      compareRowsInPlace<Pixel>(random, apart, copy, plain, step);
  }
}

TEST_P(CopyPixels, EqualPlainCopiesForwardsInReverseAndOfOnePixel) {
  forRandomCases(250, [](Random& random) {
    compareCopies<R8>(random);
    compareCopies<R16>(random);
    compareCopies<Ri>(random);
    compareCopies<int>(random);
    compareCopies<C16>(random);
  });
}

template <class Pixel>
void compareFills(Random& random) {
  const std::int32_t n = random.within(0, random.oneIn(3) ? kLongestRow : 40);
  const auto to = static_cast<std::size_t>(random.within(0, 20));
  std::vector<Pixel> expected = randomRow<Pixel>(random, kLongestRow + 40);
  std::vector<Pixel> row = expected;
  // Anywhere, in the filled row too.
  const auto from = static_cast<std::size_t>(random.within(0, kLongestRow + 39));
  fillPixelsPlain(expected.data() + to, expected[from], n);
  fillPixels(row.data() + to, row[from], n);
  EXPECT_EQ(row, expected) << HvCpuLevel() << " " << n << " at " << to << " with " << from;
  fillPixelsPlain(expected.data() + to, Pixel{}, n);
  clearPixels(row.data() + to, n);
  EXPECT_EQ(row, expected) << HvCpuLevel() << " " << n << " at " << to;
}

TEST_P(CopyPixels, FillsEqualPlainFills) {
  forRandomCases(1000, [](Random& random) {
    compareFills<R8>(random);
    compareFills<R16>(random);
    compareFills<Ri>(random);
    compareFills<int>(random);
    compareFills<C16>(random);
  });
}

std::vector<unsigned char> numberedBytes(int factor) {
  std::vector<unsigned char> bytes(1200);
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<unsigned char>(static_cast<int>(i) * factor + static_cast<int>(i / 251));
  return bytes;
}

// Every length up to more than two vectors, at any alignment; nothing around the words changes.
TEST_P(CopyPixels, WordsMayLieAtAnyAddress) {
  for (const std::size_t size : {4u, 8u, 16u}) {
    for (std::size_t n = 0; n <= 40; ++n) {
      for (std::size_t offset = 0; offset < 17; ++offset) {
        const std::vector<unsigned char> in = numberedBytes(91);
        std::vector<unsigned char> expected = numberedBytes(57);
        std::vector<unsigned char> out = expected;
        const std::size_t last = offset + (n == 0 ? 0 : n - 1) * size;
        const std::size_t to = 3 * offset % 17;
        for (std::size_t i = 0; i < n; ++i)
          std::memcpy(expected.data() + to + i * size, in.data() + last - i * size, size);
        mirrorWords(size, in.data() + last, static_cast<std::int32_t>(n), out.data() + to);
        ASSERT_EQ(out, expected) << HvCpuLevel() << " " << size << " " << n << " " << offset;
        for (std::size_t i = 0; i < n; ++i)
          std::memcpy(expected.data() + to + i * size, in.data() + offset, size);
        fillWords(size, in.data() + offset, static_cast<std::int32_t>(n), out.data() + to);
        ASSERT_EQ(out, expected) << HvCpuLevel() << " " << size << " " << n << " " << offset;
      }
    }
  }
}

// All forms of a row of n pixels from `in` to `out`: an access one byte beyond either crashes the test.
template <class Pixel>
void touchAllForms(const Pixel* in, std::int32_t n, Pixel* out) {
  const Pixel* last = in + n - 1;
  for (const HvPixelRun<Pixel>& run :
       {HvPixelRun<Pixel>{in, 1, n, true}, HvPixelRun<Pixel>{last, -1, n, true}, HvPixelRun<Pixel>{in, 0, n, true}}) {
    copyPixels(out, run, n);
    for (std::ptrdiff_t i = 0; i < n; ++i)
      ASSERT_EQ(out[i], run.first[i * run.step]) << HvCpuLevel() << " " << n << " step " << run.step;
    if constexpr (kIsWord<Pixel>) {
      copyChannels<ChannelMask<0, 1, 0, 1>>(out, run, n);
      copyChannels<ChannelMask<1, 0, 1, 0>>(out, run, n);
      for (std::ptrdiff_t i = 0; i < n; ++i)
        ASSERT_EQ(out[i], run.first[i * run.step]) << HvCpuLevel() << " " << n << " step " << run.step;
    }
  }
  fillPixels(out, *in, n);
  ASSERT_EQ(out[n - 1], *in);
  clearPixels(out, n);
  ASSERT_EQ(out[n - 1], Pixel{});
}

template <class Pixel>
void touchNothingElse() {
  constexpr std::size_t kBytes = kLongestRow * sizeof(Pixel);
  const GuardedPages source(kBytes);
  const GuardedPages target(kBytes);
  Random random(7);
  for (std::int32_t n = 1; n <= kLongestRow; n += 1 + n / 40) {
    const std::vector<Pixel> row = randomRow<Pixel>(random, static_cast<std::size_t>(n));
    const std::size_t bytes = row.size() * sizeof(Pixel);
    for (std::byte* in : {source.begin(), source.end() - bytes}) {
      std::memcpy(in, row.data(), bytes);
      for (std::byte* out : {target.begin(), target.end() - bytes})
        touchAllForms(reinterpret_cast<const Pixel*>(in), n, reinterpret_cast<Pixel*>(out));
    }
  }
}

TEST_P(CopyPixels, TouchNothingBeforeOrBehindTheirRows) {
  touchNothingElse<R8>();
  touchNothingElse<R16>();
  touchNothingElse<Ri>();
  touchNothingElse<int>();
}

using Names = std::vector<std::string>;

// Rows of 20 pixels in all forms, and the kernel that each has to run; none at the twin.
template <class Pixel>
void expectKernels(bool vectors) {
  const std::vector<Pixel> in(40);
  std::vector<Pixel> out(40);
  const auto expect = [vectors](const char* kernel, const auto& body) {
    forgetKernelRuns();
    body();
    EXPECT_TRUE(kernelsRan(vectors ? Names{kernel} : Names{})) << sizeof(Pixel);
  };
  const auto run = [&](std::int32_t step) { return HvPixelRun<Pixel>{in.data() + 20, step, 20, true}; };
  expect("mirrorWords", [&] { copyPixels(out.data(), run(-1), 20); });
  expect("fillWords", [&] { copyPixels(out.data(), run(0), 20); });
  expect("fillWords", [&] { fillPixels(out.data(), in[3], 20); });
  if constexpr (kIsWord<Pixel>) {
    using Alpha = ChannelMask<0, 0, 0, 1>;
    const auto kernel = [](const char* narrow, const char* wide) { return sizeof(Pixel) == 4 ? narrow : wide; };
    const auto copyAlpha = [&](std::int32_t step) {
      return [&, step] { copyChannels<Alpha>(out.data(), run(step), 20); };
    };
    expect(kernel("copyBits 32", "copyBits 64"), copyAlpha(1));
    expect(kernel("fillBits 32", "fillBits 64"), copyAlpha(0));
    expect(kernel("mirrorBits 32", "mirrorBits 64"), copyAlpha(-1));
  }
}

TEST(CopyPixelsLevels, RunTheirKernelsAtEachLevelButTheTwin) {
  for (const std::string& name : HvCpuLevels()) {
    const CpuLevel level(name);
    const bool vectors = name != "twin";
    expectKernels<R8>(vectors);
    expectKernels<R16>(vectors);
    expectKernels<Ri>(vectors);
    expectKernels<int>(vectors);
  }
}

// The plain code, which the tests above compare with.
TEST(CopyPixelsLevels, TheTwinTakesOnePixelAfterTheOther) {
  const CpuLevel level("twin");
  int row[] = {1, 2, 3, 4, 5, 6, 7, 8};
  copyPixels(row + 1, {row, 1, 4, true}, 4);
  EXPECT_EQ((std::vector<int>(row, row + 8)), (std::vector{1, 1, 1, 1, 1, 6, 7, 8}));
  copyPixels(row, {row + 7, -1, 8, true}, 8);
  EXPECT_EQ((std::vector<int>(row, row + 8)), (std::vector{8, 7, 6, 1, 1, 6, 7, 8}));
  copyPixels(row + 2, {row + 3, 0, 5, true}, 4);
  EXPECT_EQ((std::vector<int>(row, row + 8)), (std::vector{8, 7, 1, 1, 1, 1, 7, 8}));
  clearPixels(row + 1, 2);
  fillPixels(row + 3, 9, 2);
  EXPECT_EQ((std::vector<int>(row, row + 8)), (std::vector{8, 0, 0, 9, 9, 1, 7, 8}));
}

INSTANTIATE_TEST_SUITE_P(Levels, CopyPixels, testing::ValuesIn(vectorLevels()), levelName);

}  // namespace
}  // namespace vblur::test
