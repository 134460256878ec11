#include "image/Imager.h"

#include <optional>

#include <gtest/gtest.h>

#include "image/Combiner.h"
#include "image/Generator.h"
#include "image/RowWalk.h"
#include "image/Sampler.h"
#include "tests/image/WindowEnds.h"
#include "tests/support/Scene.h"
#include "tests/support/VirtualSlot.h"

namespace vblur::test {
namespace {

using Frame = HvTexture<R8, Rf>;

// A sampler that exposes its window and rows.
class Probe : public Sampler<Frame, Frame> {
 public:
  using Imager::rowLoop;
};

Ends settledOn(Frame& target, std::optional<Window> window) {
  Probe probe;
  if (window) probe.setWindow(window->x1, window->y1, window->x2, window->y2);
  probe.process(&target, &target);
  return windowOf(probe);
}

TEST(Imager, WindowIsStoredWithItsFarEndsExclusive) {
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

TEST(Imager, WindowSettlesOnTheTarget) {
  Frame target(10, 6);
  target.setWriteOrigin(100, -50);
  EXPECT_EQ(settledOn(target, std::nullopt), (Ends{100, -50, 110, -44}));
  EXPECT_EQ(settledOn(target, Window{102, -49, 105, -47}), (Ends{102, -49, 106, -46}));
  EXPECT_EQ(settledOn(target, Window{0, -500, 500, 500}), (Ends{100, -50, 110, -44}));
}

TEST(Imager, WindowBesideTheTargetBecomesTheNearestRowOrColumn) {
  Frame target(10, 6);
  target.setWriteOrigin(100, -50);
  EXPECT_EQ(settledOn(target, Window{0, -49, 20, -47}), (Ends{100, -49, 101, -46}));
  EXPECT_EQ(settledOn(target, Window{200, -49, 220, -47}), (Ends{109, -49, 110, -46}));
  EXPECT_EQ(settledOn(target, Window{102, 10, 103, 20}), (Ends{102, -45, 104, -44}));
}

TEST(Imager, WindowOfAWholeTargetAtTheOriginIsNoWindow) {
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

TEST(Imager, WindowStaysCutForTheNextTarget) {
  Frame small(4, 4);
  Frame large(20, 20);
  Probe probe;
  probe.setWindow(1, 1, 10, 10);
  probe.process(&small, &small);
  probe.process(&large, &large);
  EXPECT_EQ(windowOf(probe), (Ends{1, 1, 4, 4}));
}

// Sets a window in preProcess or prePass, and marks every pixel of it.
template <class Base>
class LateWindow : public Base {
 public:
  std::optional<Window> early;
  std::optional<Window> late;
  Ends windowInRows;
  std::uint32_t flagsInRows = 0;

 protected:
  void set(const std::optional<Window>& window) {
    if (window) this->setWindow(window->x1, window->y1, window->x2, window->y2);
  }
  void mark(Frame& out) {
    if (HvThreadIndex() == 0) {
      windowInRows = windowOf(*this);
      flagsInRows = this->flags;
    }
    walkRuns(this->rowLoop(), nullptr, out, [](R8* to, std::int32_t n) {
      for (std::int32_t i = 0; i < n; ++i)
        ++to[i].red;
    });
  }
};

class LateSampler : public LateWindow<Sampler<Frame, Frame>> {
 public:
  void preProcess(Frame*, Frame*) override { set(early); }
  void prePass(Frame*, Frame*) override { set(late); }
  void processRows(Frame*, Frame* out) override { mark(*out); }
};

class LateCombiner : public LateWindow<Combiner<Frame, Frame, Frame>> {
 public:
  void preProcess(Frame*, Frame*, Frame*) override { set(early); }
  void processRows(Frame*, Frame*, Frame* out) override { mark(*out); }
};

class LateGenerator : public LateWindow<Generator<Frame>> {
 public:
  void preProcess(Frame*) override { set(early); }
  void processRows(Frame* out) override { mark(*out); }
};

// Runs the processor on a target of 10 by 6 pixels at (100, -50) in guarded memory; returns the marked pixels.
template <class Process>
std::vector<R8> marked(const Process& process) {
  Canvas<R8> canvas(10, 6);
  Frame target;
  canvas.wrapIn(target);
  target.setWriteOrigin(100, -50);
  process(target);
  EXPECT_TRUE(canvas.guardsAreIntact());
  return canvas.pixels();
}

std::vector<R8> marksIn(const Window& window) {
  std::vector<R8> pixels(60);
  for (int y = window.y1; y <= window.y2; ++y) {
    for (int x = window.x1; x <= window.x2; ++x)
      pixels[static_cast<std::size_t>((y + 50) * 10 + x - 100)].red = 1;
  }
  return pixels;
}

TEST(Imager, WindowSetByPreProcessIsCutToTheTarget) {
  const Window beyond{97, -47, 250, 300};
  const Window cut{100, -47, 109, -45};
  for (const std::int32_t threads : {1, 3}) {
    const ThreadCount scope(threads);
    LateSampler sampler;
    sampler.early = beyond;
    EXPECT_EQ(marked([&](Frame& target) { sampler.process(&target, &target); }), marksIn(cut));
    EXPECT_EQ(sampler.windowInRows, (Ends{100, -47, 110, -44}));
    EXPECT_EQ(sampler.flagsInRows, Imager::kSubWindow);
    LateCombiner combiner;
    combiner.early = beyond;
    EXPECT_EQ(marked([&](Frame& target) { combiner.process(&target, &target, &target); }), marksIn(cut));
    LateGenerator generator;
    generator.early = beyond;
    EXPECT_EQ(marked([&](Frame& target) { generator.process(&target); }), marksIn(cut));
  }
}

TEST(Imager, WindowSetByPrePassIsCutToTheTarget) {
  LateSampler sampler;
  sampler.late = Window{103, -500, 104, 500};
  EXPECT_EQ(marked([&](Frame& target) { sampler.process(&target, &target); }), marksIn({103, -50, 104, -45}));
  // A window beside the target becomes the nearest pixel.
  sampler.late = Window{-9, -9, -8, -8};
  EXPECT_EQ(marked([&](Frame& target) { sampler.process(&target, &target); }), marksIn({100, -45, 100, -45}));
}

TEST(Imager, WindowThatOverrunsIsReplacedWhereThatIsAskedFor) {
  // Without kClipWindow.
  class Overrunning : public LateSampler {
   public:
    void prePass(Frame*, Frame*) override {
      set(late);
      flags = kSubWindow | kReplaceWindow;
    }
  };
  const auto settled = [](Window window) {
    Overrunning sampler;
    sampler.late = window;
    marked([&](Frame& target) { sampler.process(&target, &target); });
    return sampler.windowInRows;
  };
  EXPECT_EQ(settled({102, -49, 104, -47}), (Ends{102, -49, 105, -46}));
  EXPECT_EQ(settled({102, -49, 110, -47}), (Ends{100, -49, 110, -46}));
  EXPECT_EQ(settled({102, -51, 104, -47}), (Ends{102, -50, 105, -44}));
}

TEST(Imager, AspectIsNeverBelowAThousandth) {
  Probe probe;
  EXPECT_EQ(probe.aspect, 1.0f);
  EXPECT_EQ(probe.inverseAspect, 1.0f);
  probe.setAspect(1.422f);
  EXPECT_EQ(probe.aspect, 1.422f);
  EXPECT_EQ(probe.inverseAspect, 1.0f / 1.422f);
  probe.setAspect(-7.0f);
  EXPECT_EQ(probe.aspect, 0.001f);
}

// Sampler and Combiner have no slots for the destructor, which is in a virtual base; Generator has.
TEST(Imager, OperationsOfItsFamilyHaveTheirOrder) {
  if (!kSlotsAreKnown) GTEST_SKIP() << "where virtual functions lie is not known here";
  using S = Sampler<Frame, Frame>;
  EXPECT_EQ(virtualSlot(&S::preProcess), 0u);
  EXPECT_EQ(virtualSlot(&S::processRows), 1u);
  EXPECT_EQ(virtualSlot(&S::postProcess), 2u);
  EXPECT_EQ(virtualSlot(&S::prePass), 3u);
  using C = Combiner<Frame, Frame, Frame>;
  EXPECT_EQ(virtualSlot(&C::preProcess), 0u);
  EXPECT_EQ(virtualSlot(&C::processRows), 1u);
  EXPECT_EQ(virtualSlot(&C::postProcess), 2u);
  using G = Generator<Frame>;
  EXPECT_EQ(virtualSlot(&G::preProcess), 2u);
  EXPECT_EQ(virtualSlot(&G::processRows), 3u);
  EXPECT_EQ(virtualSlot(&G::postProcess), 4u);
}

TEST(Imager, FieldsHaveTheirOrder) {
  const Probe p;
  EXPECT_TRUE(standInOrder(p.interrupt, p.flags, p.x1, p.y1, p.x2, p.y2, p.passes, p.pass, p.aspect, p.inverseAspect,
                           p.fieldMode, p.map, p.mapWidth, p.mapHeight));
}

}  // namespace
}  // namespace vblur::test
