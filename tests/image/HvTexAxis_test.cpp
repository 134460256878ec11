#include "image/HvTexAxis.h"

#include <map>

#include <gtest/gtest.h>

#include "image/Pixels.h"

namespace vblur {
namespace {

constexpr std::int32_t kMethods[] = {kEdgeColour, kEdgeRepeat, kEdgeReflect, kEdgeWrap};

HvTexAxis axisOf(std::int32_t size, std::int32_t lo, std::int32_t hi, std::int32_t method) {
  HvTexAxis axis;
  axis.setSize(size);
  axis.setBounds(lo, hi);
  axis.setEdgeMethod(method);
  return axis;
}

// One index of the infinite line: the buffer index it maps to, the copy of the box it lies in, and that
// copy's direction.
struct Place {
  std::int32_t index = kOutside;
  std::int32_t step = 0;
  std::int32_t copy = 0;
};

// One step along the line, up (1) or down (-1): the definition of the edge methods.
Place next(Place from, std::int32_t way, const HvTexAxis& axis) {
  const std::int32_t inside = from.index + from.step * way;
  if (inside >= axis.lo && inside <= axis.hi) return {inside, from.step, from.copy};
  if (axis.edgeMethod == kEdgeReflect) return {from.index, -from.step, from.copy + way};
  return {from.step * way > 0 ? axis.lo : axis.hi, from.step, from.copy + way};
}

std::map<std::int32_t, Place> lineOf(const HvTexAxis& axis, std::int32_t first, std::int32_t last) {
  std::map<std::int32_t, Place> line;
  for (std::int32_t i = axis.lo; i <= axis.hi; ++i)
    line[i] = {i, 1, 0};
  const bool tiles = axis.edgeMethod == kEdgeReflect || axis.edgeMethod == kEdgeWrap;
  const bool repeats = axis.edgeMethod == kEdgeRepeat;
  for (std::int32_t i = axis.hi + 1; i <= last; ++i)
    line[i] = tiles ? next(line[i - 1], 1, axis) : Place{repeats ? axis.hi : kOutside, 0, 1};
  for (std::int32_t i = axis.lo - 1; i >= first; --i)
    line[i] = tiles ? next(line[i + 1], -1, axis) : Place{repeats ? axis.lo : kOutside, 0, -1};
  return line;
}

template <class Body>
void forAllSmallBoxes(const Body& body) {
  for (const std::int32_t method : kMethods) {
    for (std::int32_t size = 1; size <= 6; ++size) {
      for (std::int32_t lo = 0; lo < size; ++lo) {
        for (std::int32_t hi = lo; hi < size; ++hi) {
          SCOPED_TRACE("method " + std::to_string(method) + " size " + std::to_string(size) + " box " +
                       std::to_string(lo) + ".." + std::to_string(hi));
          body(axisOf(size, lo, hi, method));
        }
      }
    }
  }
}

TEST(HvTexAxis, LookupsOfAnIndexEqualTheLineBuiltStepByStep) {
  forAllSmallBoxes([](const HvTexAxis& axis) {
    const auto line = lineOf(axis, -25, 25);
    for (std::int32_t i = -25; i <= 25; ++i)
      ASSERT_EQ(axis.mapIndex(i), line.at(i).index) << i;
  });
}

TEST(HvTexAxis, LookupsOfARunEqualTheLineBuiltStepByStep) {
  forAllSmallBoxes([](HvTexAxis axis) {
    const auto line = lineOf(axis, -25, 40);
    for (const std::int32_t origin : {0, 7, -11}) {
      axis.setOrigin(origin);
      for (std::int32_t i = -25; i <= 25; ++i) {
        const Place& place = line.at(i);
        const bool endless = i > axis.hi && (axis.edgeMethod == kEdgeColour || axis.edgeMethod == kEdgeRepeat);
        std::int32_t length = 0;
        while (!endless && i + length <= 40 && line.at(i + length).copy == place.copy)
          ++length;
        const HvTexRun expected{place.index, place.step, endless ? kInt32Max : length};
        ASSERT_EQ(axis.runAt(i + origin), expected) << i << " origin " << origin;
      }
    }
  });
}

TEST(HvTexAxis, LookupsOfAPairEqualTheLineBuiltStepByStep) {
  forAllSmallBoxes([](const HvTexAxis& axis) {
    const auto line = lineOf(axis, -25, 26);
    for (std::int32_t i = -25; i <= 25; ++i) {
      const std::int32_t p0 = line.at(i).index;
      const std::int32_t p1 = line.at(i + 1).index;
      const HvTexPair expected{p0, p1, p0 != kOutside && p1 == p0 + 1};
      ASSERT_EQ(axis.pairAt(i), expected) << i;
    }
  });
}

TEST(HvTexAxis, LookupsAnswerOutsideEverywhereWithoutPixels) {
  for (const std::int32_t method : kMethods) {
    HvTexAxis fresh;
    HvTexAxis released = axisOf(0, 0, 0, method);
    fresh.setEdgeMethod(method);
    for (const HvTexAxis& axis : {fresh, released}) {
      for (std::int32_t i = -25; i <= 25; ++i) {
        ASSERT_EQ(axis.mapIndex(i), kOutside);
        ASSERT_EQ(axis.runAt(i), (HvTexRun{kOutside, 0, kInt32Max}));
        ASSERT_EQ(axis.pairAt(i), (HvTexPair{kOutside, kOutside, false}));
      }
    }
  }
}

TEST(HvTexAxis, LookupsWorkFarFromTheBox) {
  for (const std::int32_t method : kMethods) {
    const HvTexAxis axis = axisOf(7, 1, 5, method);
    for (const std::int32_t i : {-2000000000, 2000000000}) {
      const std::int32_t period = method == kEdgeReflect ? 10 : 5;
      const std::int32_t near = 1 + ((i - 1) % period + period) % period;
      if (method == kEdgeReflect || method == kEdgeWrap) {
        EXPECT_EQ(axis.mapIndex(i), axis.mapIndex(near)) << method << ' ' << i;
      } else {
        EXPECT_EQ(axis.mapIndex(i), method == kEdgeColour ? kOutside : i < 0 ? 1 : 5);
      }
      EXPECT_EQ(axis.runAt(i).index, axis.mapIndex(i));
      EXPECT_EQ(axis.pairAt(i).p0, axis.mapIndex(i));
    }
  }
}

TEST(HvTexAxis, StartsWithoutPixels) {
  const HvTexAxis axis;
  EXPECT_EQ(axis.size, 0);
  EXPECT_EQ(axis.originF, 0.0f);
  EXPECT_EQ(axis.originI, 0);
  EXPECT_EQ(axis.edgeMethod, kEdgeColour);
  EXPECT_EQ(axis.lo, 0);
  EXPECT_EQ(axis.hi, -1);
  EXPECT_EQ(axis.count, 0);
  EXPECT_EQ(axis.writeOrigin, 0);
}

TEST(HvTexAxis, TakesItsWholeSizeForABox) {
  HvTexAxis axis;
  axis.setSize(12);
  EXPECT_EQ(axis.lo, 0);
  EXPECT_EQ(axis.hi, 11);
  EXPECT_EQ(axis.count, 12);
}

TEST(HvTexAxis, CutsABoxThatEndsAtItsSize) {
  const HvTexAxis axis = axisOf(12, 0, 12, kEdgeColour);
  EXPECT_EQ(axis.lo, 0);
  EXPECT_EQ(axis.hi, 11);
  EXPECT_EQ(axis.count, 12);
}

TEST(HvTexAxis, TakesTheEndsOfABoxInEitherOrder) {
  const HvTexAxis up = axisOf(9, 2, 5, kEdgeColour);
  const HvTexAxis down = axisOf(9, 5, 2, kEdgeColour);
  EXPECT_EQ(up.lo, 2);
  EXPECT_EQ(up.hi, 5);
  EXPECT_EQ(up.count, 4);
  EXPECT_EQ(down.lo, up.lo);
  EXPECT_EQ(down.hi, up.hi);
  EXPECT_EQ(down.count, up.count);
}

TEST(HvTexAxis, MovesABoxBesideThePixelsToTheNearestOne) {
  EXPECT_EQ(axisOf(9, -7, -3, kEdgeColour).hi, 0);
  EXPECT_EQ(axisOf(9, 20, 30, kEdgeColour).lo, 8);
  EXPECT_EQ(axisOf(9, 20, 30, kEdgeColour).count, 1);
}

TEST(HvTexAxis, HasABoxBelowItsStartWithoutPixels) {
  const HvTexAxis axis = axisOf(0, 0, 0, kEdgeColour);
  EXPECT_EQ(axis.lo, -1);
  EXPECT_EQ(axis.hi, -1);
  EXPECT_EQ(axis.count, 1);
}

TEST(HvTexAxis, RoundsASubPixelOriginHalfUpward) {
  struct {
    float origin;
    std::int32_t whole;
  } const cases[] = {{-0.5f, 0}, {-0.6f, -1}, {0.4f, 0}, {0.5f, 1}, {-1.5f, -1}, {-1.51f, -2}, {3.0f, 3}};
  for (const auto& [origin, whole] : cases) {
    HvTexAxis axis;
    axis.setOrigin(origin);
    EXPECT_EQ(axis.originF, origin);
    EXPECT_EQ(axis.originI, whole) << origin;
  }
}

TEST(HvTexAxis, PutsBothOriginsOnAWholePixel) {
  HvTexAxis axis;
  axis.setOrigin(0.75f);
  axis.setOrigin(-13);
  EXPECT_EQ(axis.originF, -13.0f);
  EXPECT_EQ(axis.originI, -13);
}

TEST(HvTexAxis, RunsRepeatTheEndOfABoxUpToIt) {
  const HvTexAxis axis = axisOf(9, 2, 5, kEdgeRepeat);
  EXPECT_EQ(axis.runAt(0), (HvTexRun{2, 0, 2}));
  EXPECT_EQ(axis.runAt(2), (HvTexRun{2, 1, 4}));
}

TEST(HvTexAxis, RunsHaveALengthThatFitsFarBelowTheBox) {
  const HvTexAxis axis = axisOf(9, 2, 5, kEdgeRepeat);
  EXPECT_EQ(axis.runAt(-2147483000).length, 2147483002);
  EXPECT_EQ(axis.runAt(-2147483647).length, kInt32Max);
}

TEST(HvTexAxis, EdgesReflectDoublesTheEdgePixel) {
  const HvTexAxis axis = axisOf(4, 0, 3, kEdgeReflect);
  const std::int32_t below[] = {0, 1, 2, 3, 3, 2};
  const std::int32_t above[] = {3, 2, 1, 0, 0, 1};
  for (std::int32_t i = 0; i < 6; ++i) {
    EXPECT_EQ(axis.mapIndex(-1 - i), below[i]) << -1 - i;
    EXPECT_EQ(axis.mapIndex(4 + i), above[i]) << 4 + i;
  }
}

TEST(HvTexAxis, EdgesWrapTiles) {
  const HvTexAxis axis = axisOf(4, 0, 3, kEdgeWrap);
  EXPECT_EQ(axis.mapIndex(-1), 3);
  EXPECT_EQ(axis.mapIndex(-4), 0);
  EXPECT_EQ(axis.mapIndex(-5), 3);
  EXPECT_EQ(axis.mapIndex(4), 0);
}

}  // namespace
}  // namespace vblur
