// Row functions against their plain twins: rows of every length, anywhere in memory, in place or not.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "image/HvCpu.h"
#include "image/HvTexture.h"
#include "tests/support/Canvas.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/PrintPixel.h"

namespace vblur::test {

// Longer than two and a half of the longest vectors.
inline constexpr std::int32_t kLongestRow = 150;

template <class Pixel>
std::vector<Pixel> randomRow(Random& random, std::size_t n) {
  std::vector<Pixel> row;
  for (std::size_t i = 0; i < n; ++i)
    row.push_back(randomPixel(random, storageRange<Pixel>()));
  return row;
}

// Calls both with (run, n, out) at a random place of a buffer, and compares the whole buffers and the results. `step`
// is the run's.
template <class In, class Out, class Vector, class Plain>
void compareRows(Random& random, std::int32_t step, const Vector& vector, const Plain& plain) {
  const std::int32_t n = random.within(0, random.oneIn(3) ? kLongestRow : 70);
  const auto offset = static_cast<std::size_t>(random.within(0, 7));
  const std::vector<In> in = randomRow<In>(random, kLongestRow + 8);
  std::vector<Out> expected = randomRow<Out>(random, kLongestRow + 8);
  std::vector<Out> out = expected;
  const auto first = offset + (step < 0 && n > 0 ? static_cast<std::size_t>(n) - 1 : 0);
  const HvPixelRun<In> run{in.data() + first, step, n, true};
  const auto to = static_cast<std::size_t>(random.within(0, 7));
  const bool wanted = plain(run, n, expected.data() + to);
  EXPECT_EQ(vector(run, n, out.data() + to), wanted) << HvCpuLevel() << " " << n;
  EXPECT_EQ(out, expected) << HvCpuLevel() << " " << n << " step " << step;
}

// The same within one row: written `apart` pixels to the right of where it is read.
template <class Pixel, class Vector, class Plain>
void compareRowsInPlace(Random& random, std::ptrdiff_t apart, const Vector& vector, const Plain& plain,
                        std::int32_t step = 1) {
  constexpr std::ptrdiff_t kFirst = 8;
  const std::int32_t n = random.within(0, kLongestRow);
  const std::ptrdiff_t distance = step < 0 ? -step : step;
  std::vector<Pixel> expected = randomRow<Pixel>(
      random, kLongestRow * static_cast<std::size_t>(std::max(distance, std::ptrdiff_t{1})) + 2 * kFirst);
  std::vector<Pixel> row = expected;
  const auto runOf = [=](std::vector<Pixel>& pixels) {
    const std::ptrdiff_t first = kFirst + (step < 0 && n > 0 ? (n - 1) * distance : 0);
    return HvPixelRun<Pixel>{pixels.data() + first, step, n, true};
  };
  const bool wanted = plain(runOf(expected), n, expected.data() + kFirst + apart);
  EXPECT_EQ(vector(runOf(row), n, row.data() + kFirst + apart), wanted) << HvCpuLevel() << " " << n;
  EXPECT_EQ(row, expected) << HvCpuLevel() << " " << n << " apart " << apart << " step " << step;
}

}  // namespace vblur::test
