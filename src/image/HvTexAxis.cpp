#include "image/HvTexAxis.h"

#include <algorithm>
#include <limits>

#include "image/Arithmetic.h"

namespace vblur {

void HvTexAxis::setSize(std::int32_t n) {
  size = n;
  lo = 0;
  hi = n - 1;
  count = n;
}

void HvTexAxis::setBounds(std::int32_t a, std::int32_t b) {
  if (size <= 0) {
    lo = hi = -1;
    count = 1;
    return;
  }
  lo = clampTo(std::min(a, b), 0, size - 1);
  hi = clampTo(std::max(a, b), 0, size - 1);
  count = hi - lo + 1;
}

void HvTexAxis::setOrigin(std::int32_t origin) {
  originI = origin;
  originF = static_cast<float>(origin);
}

void HvTexAxis::setOrigin(float origin) {
  originF = origin;
  originI = floorToInt(origin + 0.5f);
}

std::int32_t HvTexAxis::mapIndex(std::int32_t i) const {
  if (size <= 0) return kOutside;
  const std::int32_t n = count;
  const std::int32_t v = wrapSub(i, lo);
  if (v >= 0 && v < n) return i;
  switch (edgeMethod) {
    case kEdgeRepeat: return v < 0 ? lo : hi;
    case kEdgeReflect: {
      if (v >= 0) return v / n % 2 != 0 ? lo + n - v % n - 1 : lo + v % n;
      const std::int32_t beyond = -(v + 1);
      return beyond / n % 2 == 0 ? lo + beyond % n : lo + floorMod(v);
    }
    case kEdgeWrap: return v < 0 ? lo + floorMod(v) : lo + v % n;
    default: return kOutside;
  }
}

HvTexRun HvTexAxis::runBeyond(std::int32_t i) const {
  if (size <= 0) return {kOutside, 0, kInt32Max};
  return i < lo ? runBelow(i) : runAbove(i);
}

HvTexRun HvTexAxis::runBelow(std::int32_t i) const {
  const std::int32_t n = count;
  const std::int32_t v = wrapSub(i, lo);
  const auto reach = static_cast<std::int32_t>(
      std::min<std::int64_t>(static_cast<std::int64_t>(lo) - i, std::numeric_limits<std::int32_t>::max()));
  switch (edgeMethod) {
    case kEdgeRepeat: return {lo, 0, reach};
    case kEdgeReflect: {
      const std::int32_t beyond = -(v + 1);
      const std::int32_t r = beyond % n;
      if (beyond / n % 2 == 0) return {lo + r, -1, r + 1};
      [[fallthrough]];
    }
    case kEdgeWrap: return {lo + floorMod(v), 1, n - floorMod(v)};
    default: return {kOutside, 0, reach};
  }
}

HvTexRun HvTexAxis::runAbove(std::int32_t i) const {
  const std::int32_t n = count;
  const std::int32_t v = wrapSub(i, lo);
  switch (edgeMethod) {
    case kEdgeRepeat: return {hi, 0, kInt32Max};
    case kEdgeReflect:
      if (v / n % 2 != 0) return {lo + n - v % n - 1, -1, n - v % n};
      [[fallthrough]];
    case kEdgeWrap: return {lo + v % n, 1, n - v % n};
    default: return {kOutside, 0, kInt32Max};
  }
}

HvTexPair HvTexAxis::pairAt(std::int32_t i) const {
  if (size <= 0) return {};
  const std::int32_t v = wrapSub(i, lo);
  if (v < 0) return pairBelow(v);
  if (v >= count - 1) return pairAbove(v);
  return {i, i + 1, true};
}

HvTexPair HvTexAxis::pairBelow(std::int32_t v) const {
  const std::int32_t n = count;
  switch (edgeMethod) {
    case kEdgeRepeat: return {lo, lo, false};
    case kEdgeReflect: {
      const std::int32_t beyond = -(v + 1);
      const std::int32_t r = beyond % n;
      if (beyond / n % 2 == 0) return {lo + r, r == 0 ? lo : lo + r - 1, false};
      const std::int32_t p = floorMod(v);
      return p == n - 1 ? HvTexPair{lo + p, lo + p, false} : HvTexPair{lo + p, lo + p + 1, true};
    }
    case kEdgeWrap: {
      const std::int32_t p0 = lo + floorMod(v);
      const std::int32_t p1 = lo + (floorMod(v) + 1) % n;
      return {p0, p1, p1 == p0 + 1};
    }
    default: return {kOutside, v == -1 ? lo : kOutside, false};
  }
}

HvTexPair HvTexAxis::pairAbove(std::int32_t v) const {
  const std::int32_t n = count;
  const std::int32_t r = v % n;
  switch (edgeMethod) {
    case kEdgeRepeat: return {hi, hi, false};
    case kEdgeReflect:
      if (v / n % 2 != 0) return {lo + n - r - 1, n - r == 1 ? lo : lo + n - r - 2, false};
      return r == n - 1 ? HvTexPair{lo + r, lo + r, false} : HvTexPair{lo + r, lo + r + 1, true};
    case kEdgeWrap: {
      const std::int32_t p0 = lo + r;
      const std::int32_t p1 = lo + (r + 1) % n;
      return {p0, p1, p1 == p0 + 1};
    }
    default: return {v < n ? hi : kOutside, kOutside, false};
  }
}

}  // namespace vblur
