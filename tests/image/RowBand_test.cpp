#include "image/RowBand.h"

#include <vector>

#include <gtest/gtest.h>

namespace vblur {
namespace {

TEST(RowBand, OfFiveRowsOnFourThreads) {
  EXPECT_EQ(bandOf(5, 4, 0), (HvSpan{0, 2}));
  EXPECT_EQ(bandOf(5, 4, 1), (HvSpan{2, 4}));
  EXPECT_EQ(bandOf(5, 4, 2), (HvSpan{4, 5}));
  EXPECT_EQ(bandOf(5, 4, 3), (HvSpan{6, 5}));
}

TEST(RowBand, OfThreeRowsOnEightThreads) {
  for (int t = 0; t < 3; ++t)
    EXPECT_EQ(bandOf(3, 8, t), (HvSpan{t, t + 1}));
  for (int t = 3; t < 7; ++t)
    EXPECT_GE(bandOf(3, 8, t).first, bandOf(3, 8, t).last);
  EXPECT_EQ(bandOf(3, 8, 7), (HvSpan{7, 3}));
}

TEST(RowBand, HaveEveryRowOnceForAnyNumberOfThreads) {
  for (int rows = 0; rows <= 40; ++rows) {
    for (int threads = 1; threads <= 12; ++threads) {
      std::vector<int> seen(static_cast<std::size_t>(rows), 0);
      for (int t = 0; t < threads; ++t) {
        const HvSpan band = bandOf(rows, threads, t);
        for (int y = band.first; y < band.last; ++y)
          ++seen.at(static_cast<std::size_t>(y));
      }
      ASSERT_EQ(seen, std::vector<int>(static_cast<std::size_t>(rows), 1)) << rows << " rows on " << threads;
    }
  }
}

TEST(RowBand, AreWholeWithoutThreads) {
  EXPECT_EQ(bandOf(9, 0, 0), (HvSpan{0, 9}));
  EXPECT_EQ(bandOf(9, 4, -1), (HvSpan{0, 9}));
}

TEST(RowBand, FieldsStartOnARowOfTheirParity) {
  EXPECT_EQ(firstFieldRow(kAllRows, 5), 5);
  EXPECT_EQ(firstFieldRow(kOddRows, 0), 1);
  EXPECT_EQ(firstFieldRow(kOddRows, 5), 5);
  EXPECT_EQ(firstFieldRow(kOddRows, 6), 7);
  EXPECT_EQ(firstFieldRow(kEvenRows, 5), 6);
  EXPECT_EQ(firstFieldRow(kEvenRows, 6), 6);
  EXPECT_EQ(firstFieldRow(kEvenRows, -3), -2);
  // Division truncates: below 0 a row belongs to the pair above it.
  EXPECT_EQ(firstFieldRow(kOddRows, -3), -1);
  EXPECT_EQ(fieldRowStep(kAllRows), 1);
  EXPECT_EQ(fieldRowStep(kEvenRows), 2);
  EXPECT_EQ(fieldRowStep(kOddRows), 2);
}

}  // namespace
}  // namespace vblur
