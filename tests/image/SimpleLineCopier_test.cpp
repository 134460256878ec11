#include "image/SimpleLineCopier.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/image/CompareCopy.h"

namespace vblur::test {
namespace {

TEST(SimpleLineCopier, CopiesOneRunAndMovesOn) {
  HvTexture<R8, Rf> in(4, 1);
  for (int i = 0; i < 4; ++i)
    in.at(i, 0)->red = static_cast<std::uint8_t>(i + 1);
  in.setBounds(1, 2, 0, 0);
  in.setEdgeMethods(kEdgeReflect, kEdgeColour);
  in.setOutsideColour(R8{{9, 9, 9, 9}});
  R8 row[8] = {};
  R8* to = row;
  using Copier = SimpleLineCopier<R8, Rf>;
  EXPECT_EQ(Copier::copyRun(to, in, 1, 0, 8), 2);
  EXPECT_EQ(Copier::copyRun(to, in, 3, 0, 8), 2);
  EXPECT_EQ(Copier::copyRun(to, in, 3, 0, 4), 1);
  EXPECT_EQ(Copier::copyRun(to, in, 1, 1, 8), 2);
  EXPECT_EQ(to, row + 7);
  const int expected[] = {2, 3, 3, 2, 3, 9, 9, 0};
  for (int i = 0; i < 8; ++i)
    EXPECT_EQ(row[i].red, expected[i]) << i;
}

TEST(SimpleLineCopier, CopiesATiledBoxInOneRunPerTile) {
  HvTexture<R8, Rf> in(6, 1);
  for (int i = 0; i < 6; ++i)
    in.at(i, 0)->red = static_cast<std::uint8_t>(i);
  in.setBounds(1, 3, 0, 0);
  in.setEdgeMethods(kEdgeWrap, kEdgeWrap);
  R8 row[11] = {};
  R8* to = row;
  std::vector<std::int32_t> runs;
  for (std::int32_t x = 0; x < 11; x += runs.back())
    runs.push_back(SimpleLineCopier<R8, Rf>::copyRun(to, in, x, 0, 11));
  EXPECT_EQ(runs, (std::vector<std::int32_t>{1, 3, 3, 3, 1}));
  const int expected[] = {3, 1, 2, 3, 1, 2, 3, 1, 2, 3, 1};
  for (int i = 0; i < 11; ++i)
    EXPECT_EQ(row[i].red, expected[i]) << i;
}

}  // namespace
}  // namespace vblur::test
