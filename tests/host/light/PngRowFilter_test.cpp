// The filters of PNG files against their definitions.
#include "host/light/png/PngRowFilter.h"

#include <algorithm>
#include <cstdlib>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

using Bytes = std::vector<std::uint8_t>;

// By the definitions, a byte at a time.
Bytes FilteredBy(int number, const Bytes& row, const Bytes& above, std::size_t pixelBytes) {
  Bytes filtered;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const int a = i < pixelBytes ? 0 : row[i - pixelBytes];
    const int b = above[i];
    const int c = i < pixelBytes ? 0 : above[i - pixelBytes];
    int guess = 0;
    if (number == 1) guess = a;
    if (number == 2) guess = b;
    if (number == 3) guess = (a + b) / 2;
    if (number == 4) {
      const int p = a + b - c;
      guess = c;
      if (std::abs(p - b) <= std::abs(p - c)) guess = b;
      if (std::abs(p - a) <= std::abs(p - b) && std::abs(p - a) <= std::abs(p - c)) guess = a;
    }
    filtered.push_back(static_cast<std::uint8_t>(row[i] - guess));
  }
  return filtered;
}

std::int64_t MagnitudesOf(const Bytes& bytes) {
  std::int64_t sum = 0;
  for (const std::uint8_t byte : bytes)
    sum += std::abs(static_cast<int>(static_cast<std::int8_t>(byte)));
  return sum;
}

TEST(PngRowFilter, TakesTheFirstOfTheLeastMagnitudes) {
  std::mt19937 random(11);
  std::vector<int> taken(5);
  for (int i = 0; i < 4000; ++i) {
    const std::size_t pixelBytes = 1 + random() % 8;
    const std::size_t bytes = pixelBytes * (1 + random() % 40) + (i % 500 == 0 ? 3 * 4096 * pixelBytes : 0);
    // Neighbours that say much, little or nothing of each other.
    const unsigned range = 1u << random() % 9;
    Bytes rows[2];
    for (Bytes& row : rows) {
      for (std::size_t at = 0; at < bytes; ++at)
        row.push_back(static_cast<std::uint8_t>(random() % range + (i % 3 == 0 ? at * 2 : 0) +
                                                (i % 5 == 0 && &row == &rows[1] ? rows[0][at] : 0)));
    }
    Bytes spaced[2];
    for (int r = 0; r < 2; ++r) {
      spaced[r].assign(pixelBytes, 0);
      spaced[r].insert(spaced[r].end(), rows[r].begin(), rows[r].end());
    }
    Bytes best = FilteredBy(0, rows[1], rows[0], pixelBytes);
    int number = 0;
    for (int other = 1; other < 5; ++other) {
      const Bytes tried = FilteredBy(other, rows[1], rows[0], pixelBytes);
      if (MagnitudesOf(tried) >= MagnitudesOf(best)) continue;
      best = tried;
      number = other;
    }
    PngRowFilter filter(bytes, pixelBytes);
    const std::uint8_t* const given = filter.Filter(spaced[1].data() + pixelBytes, spaced[0].data() + pixelBytes);
    ASSERT_EQ(static_cast<int>(given[0]), number);
    ASSERT_TRUE(std::equal(best.begin(), best.end(), given + 1));
    ++taken[static_cast<std::size_t>(number)];
  }
  for (const int count : taken)
    EXPECT_GT(count, 20);
}

}  // namespace
}  // namespace vblur::host
