// How windows settle on a target, how rows are shared, and which rows a field has.
#include <vector>

#include <gtest/gtest.h>

#include "image/HvIPWindowStack.h"
#include "image/HvImgProc.h"
#include "image/RowBand.h"
#include "image/Sampler.h"
#include "tests/support/Scene.h"

namespace vblur::test {
namespace {

using Frame = HvTexture<R8, Rf>;

// A sampler that does nothing but show what it was given to do.
class Probe : public Sampler<Frame, Frame> {
 public:
  using Imager::rowLoop;
};

class Proc : public HvImgProc {
 public:
  using HvImgProc::columns;
  using HvImgProc::rowLoop;
  using HvImgProc::threadRows;
};

template <class Processor>
std::vector<std::int32_t> windowOf(const Processor& processor) {
  return {processor.x1, processor.y1, processor.x2, processor.y2};
}

using Ends = std::vector<std::int32_t>;

Ends settledOn(Frame& target, std::optional<Window> window) {
  Probe probe;
  if (window) probe.setWindow(window->x1, window->y1, window->x2, window->y2);
  probe.process(&target, &target);
  return windowOf(probe);
}

TEST(ImagerWindow, IsStoredWithItsFarEndsExclusive) {
  Probe probe;
  probe.setWindow(10, 20, 30, 40);
  EXPECT_EQ(windowOf(probe), (Ends{10, 20, 31, 41}));
  EXPECT_EQ(probe.flags, Imager::kClipWindow | Imager::kSubWindow);
  std::int32_t left = 0, top = 0, right = 0, bottom = 0;
  probe.getWindow(left, top, right, bottom);
  EXPECT_EQ((Ends{left, top, right, bottom}), (Ends{10, 20, 30, 40}));
  Probe copy;
  copy.copyWindow(probe);
  EXPECT_EQ(windowOf(copy), windowOf(probe));
  EXPECT_EQ(copy.flags, probe.flags);
}

TEST(ImagerWindow, SettlesOnTheTarget) {
  Frame target(10, 6);
  target.setWriteOrigin(100, -50);
  EXPECT_EQ(settledOn(target, std::nullopt), (Ends{100, -50, 110, -44}));
  EXPECT_EQ(settledOn(target, Window{102, -49, 105, -47}), (Ends{102, -49, 106, -46}));
  EXPECT_EQ(settledOn(target, Window{0, -500, 500, 500}), (Ends{100, -50, 110, -44}));
}

TEST(ImagerWindow, BesideTheTargetBecomesTheNearestRowOrColumn) {
  Frame target(10, 6);
  target.setWriteOrigin(100, -50);
  EXPECT_EQ(settledOn(target, Window{0, -49, 20, -47}), (Ends{100, -49, 101, -46}));
  EXPECT_EQ(settledOn(target, Window{200, -49, 220, -47}), (Ends{109, -49, 110, -46}));
  EXPECT_EQ(settledOn(target, Window{102, 10, 103, 20}), (Ends{102, -45, 104, -44}));
}

TEST(ImagerWindow, OfAWholeTargetAtTheOriginIsNoWindow) {
  Frame target(10, 6);
  Probe whole;
  whole.setWindow(-3, -3, 40, 40);
  whole.process(&target, &target);
  EXPECT_EQ(whole.flags & Imager::kSubWindow, 0u);
  EXPECT_EQ(windowOf(whole), (Ends{0, 0, 10, 6}));
  const HvRowLoop loop = whole.rowLoop(kAllRows);
  EXPECT_EQ(loop.x1, 0);
  EXPECT_EQ(loop.x2, 10);
  target.setWriteOrigin(1, 0);
  Probe moved;
  moved.process(&target, &target);
  EXPECT_NE(moved.flags & Imager::kSubWindow, 0u);
}

TEST(ImagerWindow, StaysCutForTheNextTarget) {
  Frame small(4, 4);
  Frame large(20, 20);
  Probe probe;
  probe.setWindow(1, 1, 10, 10);
  probe.process(&small, &small);
  probe.process(&large, &large);
  EXPECT_EQ(windowOf(probe), (Ends{1, 1, 4, 4}));
}

TEST(ImagerWindow, ThatOverrunsIsReplacedWhereThatIsAskedFor) {
  Frame target(10, 6);
  const ThreadCount scope(1);
  Probe probe;
  probe.setWindow(2, 1, 4, 3);
  probe.process(&target, &target);
  probe.flags |= Imager::kReplaceWindow;
  probe.x2 = 11;
  const HvRowLoop loop = probe.rowLoop(kAllRows);
  EXPECT_EQ(loop.x1, 0);
  EXPECT_EQ(loop.x2, 10);
  EXPECT_EQ(loop.firstRow, 1);
  EXPECT_EQ(loop.lastRow, 4);
}

TEST(ImagerAspect, IsNeverBelowAThousandth) {
  Probe probe;
  EXPECT_EQ(probe.aspect, 1.0f);
  EXPECT_EQ(probe.inverseAspect, 1.0f);
  probe.setAspect(1.422f);
  EXPECT_EQ(probe.aspect, 1.422f);
  EXPECT_EQ(probe.inverseAspect, 1.0f / 1.422f);
  probe.setAspect(-7.0f);
  EXPECT_EQ(probe.aspect, 0.001f);
}

Ends procSettledOn(const Frame& target, std::optional<Window> window, std::uint32_t options) {
  Proc proc;
  proc.options = options;
  if (window) proc.setWindow(window->x1, window->y1, window->x2, window->y2);
  proc.process(&target);
  EXPECT_NE(proc.flags & HvImgProc::kWindowSet, 0u);
  return windowOf(proc);
}

TEST(HvImgProcWindow, IsStoredWithItsFarEndsExclusive) {
  Proc proc;
  proc.setWindow(10, 20, 30, 40);
  EXPECT_EQ(windowOf(proc), (Ends{10, 20, 31, 41}));
  EXPECT_EQ(proc.flags, static_cast<std::uint32_t>(HvImgProc::kWindowSet));
  std::int32_t left = 0, top = 0, right = 0, bottom = 0;
  proc.getWindow(left, top, right, bottom);
  EXPECT_EQ((Ends{left, top, right, bottom}), (Ends{10, 20, 30, 40}));
}

TEST(HvImgProcWindow, SettlesOnTheTarget) {
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

TEST(HvImgProcWindow, ThatOverrunsIsReplacedByInclusiveEndsWhereThatIsAskedFor) {
  Frame target(10, 6);
  const std::uint32_t options = HvImgProc::kUseThreads | HvImgProc::kReplaceWindow;
  EXPECT_EQ(procSettledOn(target, Window{2, 1, 4, 3}, options), (Ends{2, 1, 5, 4}));
  EXPECT_EQ(procSettledOn(target, Window{-1, 1, 4, 3}, options), (Ends{0, 1, 9, 4}));
  EXPECT_EQ(procSettledOn(target, Window{2, 1, 4, 30}, options), (Ends{2, 0, 5, 5}));
  // The last column is inclusive in the test too: a window that ends with the target overruns it.
  EXPECT_EQ(procSettledOn(target, Window{2, 1, 9, 3}, options), (Ends{0, 1, 9, 4}));
  EXPECT_EQ(procSettledOn(target, std::nullopt, options), (Ends{0, 0, 9, 5}));
}

TEST(Bands, OfFiveRowsOnFourThreads) {
  EXPECT_EQ(bandOf(5, 4, 0), (HvSpan{0, 2}));
  EXPECT_EQ(bandOf(5, 4, 1), (HvSpan{2, 4}));
  EXPECT_EQ(bandOf(5, 4, 2), (HvSpan{4, 5}));
  EXPECT_EQ(bandOf(5, 4, 3), (HvSpan{6, 5}));
}

TEST(Bands, OfThreeRowsOnEightThreads) {
  for (int t = 0; t < 3; ++t)
    EXPECT_EQ(bandOf(3, 8, t), (HvSpan{t, t + 1}));
  for (int t = 3; t < 7; ++t)
    EXPECT_GE(bandOf(3, 8, t).first, bandOf(3, 8, t).last);
  EXPECT_EQ(bandOf(3, 8, 7), (HvSpan{7, 3}));
}

TEST(Bands, HaveEveryRowOnceForAnyNumberOfThreads) {
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

TEST(Bands, AreWholeWithoutThreads) {
  EXPECT_EQ(bandOf(9, 0, 0), (HvSpan{0, 9}));
  EXPECT_EQ(bandOf(9, 4, -1), (HvSpan{0, 9}));
}

TEST(Fields, StartOnARowOfTheirParity) {
  EXPECT_EQ(firstFieldRow(kAllRows, 5), 5);
  EXPECT_EQ(firstFieldRow(kOddRows, 0), 1);
  EXPECT_EQ(firstFieldRow(kOddRows, 5), 5);
  EXPECT_EQ(firstFieldRow(kOddRows, 6), 7);
  EXPECT_EQ(firstFieldRow(kEvenRows, 5), 6);
  EXPECT_EQ(firstFieldRow(kEvenRows, 6), 6);
  EXPECT_EQ(firstFieldRow(kEvenRows, -3), -2);
  // Division truncates, so that below 0 the pair that a row lies in is the one above.
  EXPECT_EQ(firstFieldRow(kOddRows, -3), -1);
  EXPECT_EQ(fieldRowStep(kAllRows), 1);
  EXPECT_EQ(fieldRowStep(kEvenRows), 2);
  EXPECT_EQ(fieldRowStep(kOddRows), 2);
}

TEST(HvImgProcRows, AreSharedOnlyWhileAPassIsSpreadOverThreads) {
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

class Stack : public ::testing::Test {
 protected:
  Proc proc_;
  HvIPWindowStack stack_{&proc_};
};

TEST_F(Stack, GivesWindowsBackInTurn) {
  proc_.setWindow(1, 2, 3, 4);
  const std::uint32_t flags = proc_.flags;
  EXPECT_EQ(stack_.push(), 1);
  EXPECT_EQ(stack_.pushAndSet(10, 20, 30, 40), 1);
  EXPECT_EQ(windowOf(proc_), (Ends{10, 20, 31, 41}));
  EXPECT_EQ(stack_.push(), 1);
  proc_.x1 = 99;
  EXPECT_EQ(stack_.pop(), 1);
  EXPECT_EQ(windowOf(proc_), (Ends{10, 20, 31, 41}));
  EXPECT_EQ(stack_.pop(), 1);
  EXPECT_EQ(windowOf(proc_), (Ends{1, 2, 4, 5}));
  EXPECT_EQ(stack_.pop(), 1);
  EXPECT_EQ(stack_.pop(), 0);
  EXPECT_EQ(windowOf(proc_), (Ends{1, 2, 4, 5}));
  EXPECT_EQ(proc_.flags, flags);
}

TEST_F(Stack, DoesNotMarkAWindowAsSet) {
  EXPECT_EQ(stack_.pushAndSet(1, 2, 3, 4), 1);
  EXPECT_EQ(proc_.flags, 0u);
}

TEST_F(Stack, RefusesAnEleventhWindow) {
  for (int i = 0; i < 10; ++i) {
    proc_.x1 = i;
    EXPECT_EQ(stack_.push(), 1);
  }
  proc_.x1 = 100;
  const Ends before = windowOf(proc_);
  EXPECT_EQ(stack_.push(), 0);
  EXPECT_EQ(stack_.pushAndSet(7, 7, 7, 7), 0);
  EXPECT_EQ(windowOf(proc_), before);
  for (int i = 9; i >= 0; --i) {
    EXPECT_EQ(stack_.pop(), 1);
    EXPECT_EQ(proc_.x1, i);
  }
  EXPECT_EQ(stack_.pop(), 0);
}

}  // namespace
}  // namespace vblur::test
