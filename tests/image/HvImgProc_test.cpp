#include "image/HvImgProc.h"

#include <algorithm>
#include <optional>

#include <gtest/gtest.h>

#include "image/HvImgProc1.h"
#include "image/HvImgProc3.h"
#include "image/Sampler.h"
#include "tests/image/WindowEnds.h"
#include "tests/support/Scene.h"
#include "tests/support/VirtualSlot.h"

namespace vblur::test {
namespace {

using Frame = HvTexture<R8, Rf>;

class Proc : public HvImgProc {
 public:
  using HvImgProc::columns;
  using HvImgProc::rowLoop;
  using HvImgProc::threadRows;
};

Ends procSettledOn(const Frame& target, std::optional<Window> window, std::uint32_t options) {
  Proc proc;
  proc.options = options;
  if (window) proc.setWindow(window->x1, window->y1, window->x2, window->y2);
  proc.process(&target);
  EXPECT_NE(proc.flags & HvImgProc::kWindowSet, 0u);
  return windowOf(proc);
}

TEST(HvImgProc, WindowIsStoredWithItsFarEndsExclusive) {
  Proc proc;
  proc.setWindow(10, 20, 30, 40);
  EXPECT_EQ(windowOf(proc), (Ends{10, 20, 31, 41}));
  EXPECT_EQ(proc.flags, static_cast<std::uint32_t>(HvImgProc::kWindowSet));
  std::int32_t left = 0, top = 0, right = 0, bottom = 0;
  proc.getWindow(left, top, right, bottom);
  EXPECT_EQ((Ends{left, top, right, bottom}), (Ends{10, 20, 30, 40}));
}

TEST(HvImgProc, WindowSettlesOnTheTarget) {
  Frame target(10, 6);
  target.setWriteOrigin(100, -50);
  const auto settled = [&](std::optional<Window> window) {
    return procSettledOn(target, window, HvImgProc::kUseThreads);
  };
  EXPECT_EQ(settled(std::nullopt), (Ends{100, -50, 110, -44}));
  EXPECT_EQ(settled(Window{102, -49, 105, -47}), (Ends{102, -49, 106, -46}));
  EXPECT_EQ(settled(Window{0, -500, 500, 500}), (Ends{100, -50, 110, -44}));
  EXPECT_EQ(settled(Window{0, -49, 20, -47}), (Ends{100, -49, 101, -46}));
}

// Sets a window once the run has settled its own, and fills it.
class LateProc : public HvImgProc1<Frame> {
 public:
  void prePass() override { storeWindow(98, -60, 200, 100); }
  void processRows() override {
    const HvRowLoop loop = rowLoop();
    for (std::int32_t y = loop.firstRow; y < loop.lastRow; y += loop.rowStep)
      std::fill_n(target->target(loop.x1, y), loop.x2 - loop.x1, R8{9, 9, 9, 9});
  }
  // On the calling thread alone, unlike the rows.
  void postPass() override { inRows = windowOf(*this); }

  Ends inRows;
};

// The window of the rows, within a picture of 10 x 6 at (100, -50) that is `before` pixels from the start of its
// memory.
Ends lateWindow(std::uint32_t options) {
  constexpr std::size_t before = 200;
  std::vector<R8> memory(2000);
  Frame target;
  target.wrap(10, 6, memory.data() + before);
  target.setWriteOrigin(100, -50);
  LateProc proc;
  proc.options = options;
  proc.run(&target);
  const Ends& ends = proc.inRows;
  std::vector<R8> expected(memory.size());
  for (std::int32_t y = ends[1]; y < ends[3]; ++y) {
    for (std::int32_t x = ends[0]; x < ends[2]; ++x)
      expected[before + static_cast<std::size_t>((y + 50) * 10 + x - 100)] = R8{9, 9, 9, 9};
  }
  EXPECT_TRUE(memory == expected);
  return ends;
}

TEST(HvImgProc, WindowSetByPrePassIsCutToTheTarget) {
  for (const std::uint32_t threads : {0u, std::uint32_t{HvImgProc::kUseThreads}}) {
    EXPECT_EQ(lateWindow(threads), (Ends{100, -50, 110, -44}));
    EXPECT_EQ(lateWindow(threads | HvImgProc::kReplaceWindow), (Ends{100, -50, 109, -45}));
  }
}

TEST(HvImgProc, WindowThatOverrunsIsReplacedByInclusiveEndsWhereThatIsAskedFor) {
  Frame target(10, 6);
  const std::uint32_t options = HvImgProc::kUseThreads | HvImgProc::kReplaceWindow;
  EXPECT_EQ(procSettledOn(target, Window{2, 1, 4, 3}, options), (Ends{2, 1, 5, 4}));
  EXPECT_EQ(procSettledOn(target, Window{-1, 1, 4, 3}, options), (Ends{0, 1, 9, 4}));
  EXPECT_EQ(procSettledOn(target, Window{2, 1, 4, 30}, options), (Ends{2, 0, 5, 5}));
  // The test takes the last column as inclusive too: a window that ends with the target overruns.
  EXPECT_EQ(procSettledOn(target, Window{2, 1, 9, 3}, options), (Ends{0, 1, 9, 4}));
  EXPECT_EQ(procSettledOn(target, std::nullopt, options), (Ends{0, 0, 9, 5}));
}

TEST(HvImgProc, RowsAreSharedOnlyWhileAPassIsSpreadOverThreads) {
  const ThreadCount scope(4);
  Proc proc;
  proc.setWindow(1, 2, 8, 11);
  EXPECT_EQ(proc.threadRows(), (HvSpan{2, 12}));
  EXPECT_EQ(proc.columns(), (HvSpan{1, 9}));
  proc.flags |= HvImgProc::kSharingRows;
  EXPECT_EQ(proc.threadRows(), (HvSpan{2, 5}));
  proc.options = 0;
  EXPECT_EQ(proc.threadRows(), (HvSpan{2, 12}));
}

TEST(HvImgProc, WindowIsCopiedFromEitherFamilyAsItStands) {
  Sampler<Frame, Frame> sampler;
  sampler.setWindow(-3, 5, 2, 700);
  Proc proc;
  proc.copyWindow(sampler);
  EXPECT_EQ(windowOf(proc), (Ends{-3, 5, 3, 701}));
  EXPECT_EQ(proc.flags, static_cast<std::uint32_t>(HvImgProc::kWindowSet));
  Proc copy;
  copy.copyWindow(proc);
  EXPECT_EQ(windowOf(copy), windowOf(proc));
  EXPECT_EQ(copy.flags, proc.flags);
}

// Counts the calls of its operations, and its rows.
class Counting : public HvImgProc1<Frame> {
 public:
  void preProcess() override { ++pre; }
  void processRows() override {
    const HvRowLoop loop = rowLoop();
    ++passesOfRows;
    rows += std::max(0, loop.lastRow - loop.firstRow);
  }
  void postProcess() override { ++post; }
  std::int32_t pre = 0;
  std::int32_t passesOfRows = 0;
  std::int32_t rows = 0;
  std::int32_t post = 0;
};

TEST(HvImgProc, RunsOverNoRowsOfATargetWithoutPixels) {
  const ThreadCount scope(1);
  R8 pixel{};
  Frame empty;
  Frame noRows;
  noRows.wrap(5, 0, &pixel);
  Frame noColumns;
  noColumns.wrap(0, 5, &pixel);
  Frame noMemory;
  noMemory.wrap(5, 5, nullptr);
  for (Frame* target : {&empty, &noRows, &noColumns, &noMemory}) {
    Counting proc;
    proc.process(target);
    EXPECT_EQ((Ends{proc.pre, proc.passesOfRows, proc.rows, proc.post}), (Ends{1, 1, 0, 1}));
    EXPECT_EQ(proc.map, nullptr);
  }
  Counting proc;
  proc.process(static_cast<Frame*>(nullptr));
  EXPECT_EQ((Ends{proc.pre, proc.passesOfRows, proc.post}), (Ends{0, 0, 0}));
  Frame target(5, 4);
  proc.process(&target);
  EXPECT_EQ((Ends{proc.pre, proc.passesOfRows, proc.rows, proc.post}), (Ends{1, 1, 4, 1}));
}

TEST(HvImgProc, FieldsHaveTheirOrder) {
  const Proc p;
  EXPECT_TRUE(standInOrder(p.interrupt, p.flags, p.x1, p.y1, p.x2, p.y2, p.passes, p.pass, p.options, p.fieldMode,
                           p.aspect, p.inverseAspect, p.map, p.mapWidth, p.mapHeight));
}

TEST(HvImgProc, OperationsHaveTheirOrder) {
  if (!kSlotsAreKnown) GTEST_SKIP() << "where virtual functions lie is not known here";
  EXPECT_EQ(virtualSlot(&HvImgProc::preProcess), 2u);
  EXPECT_EQ(virtualSlot(&HvImgProc::processRows), 3u);
  EXPECT_EQ(virtualSlot(&HvImgProc::postProcess), 4u);
  EXPECT_EQ(virtualSlot(&HvImgProc::prePass), 5u);
  EXPECT_EQ(virtualSlot(&HvImgProc::postPass), 6u);
  EXPECT_EQ(virtualSlot(&HvImgProc::runPasses), 7u);
  EXPECT_EQ(virtualSlot(static_cast<void (HvImgProc::*)(const HvTexIndexer*)>(&HvImgProc::process)), 8u);
  using One = HvImgProc1<Frame>;
  EXPECT_EQ(virtualSlot(static_cast<void (One::*)(Frame*)>(&One::process)), 9u);
  EXPECT_EQ(virtualSlot(&One::run), 10u);
  using Three = HvImgProc3<Frame, Frame, Frame>;
  EXPECT_EQ(virtualSlot(static_cast<void (Three::*)(const Frame*, const Frame*, Frame*)>(&Three::process)), 9u);
  EXPECT_EQ(virtualSlot(&Three::run), 10u);
}

}  // namespace
}  // namespace vblur::test
