#include "image/Imager.h"

#include <algorithm>

#include "image/Arithmetic.h"

namespace vblur {

void Imager::setWindow(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) {
  storeWindow(left, top, right, bottom);
  flags |= kClipWindow | kSubWindow;
}

void Imager::copyWindow(const Imager& other) {
  x1 = other.x1;
  y1 = other.y1;
  x2 = other.x2;
  y2 = other.y2;
  flags |= kClipWindow | kSubWindow;
}

void Imager::runLike(const Imager& parent) {
  interrupt = parent.interrupt;
  flags = (flags & ~static_cast<std::uint32_t>(kOneThread)) | (parent.flags & kOneThread);
}

void Imager::setAspect(float a) {
  aspect = std::max(a, 0.001f);
  inverseAspect = 1.0f / aspect;
}

void Imager::settle(const HvTexIndexer& target) {
  map = &target;
  mapWidth = target.width();
  mapHeight = target.height();
  const std::int32_t mx = target.horizontal.writeOrigin;
  const std::int32_t my = target.vertical.writeOrigin;
  const std::int32_t lastX = mx + mapWidth - 1;
  const std::int32_t lastY = my + mapHeight - 1;
  if ((flags & kSubWindow) != 0) {
    x1 = std::clamp(x1, mx, lastX);
    x2 = std::clamp(wrapSub(x2, 1), mx, lastX) + 1;
    y1 = std::clamp(y1, my, lastY);
    y2 = std::clamp(wrapSub(y2, 1), my, lastY) + 1;
  } else {
    x1 = mx;
    x2 = lastX + 1;
    y1 = my;
    y2 = lastY + 1;
  }
  // The cut above is the clipping that a new window asks for.
  flags &= ~static_cast<std::uint32_t>(kClipWindow | kSubWindow);
  if (x1 != 0 || y1 != 0 || x2 != mapWidth || y2 != mapHeight) flags |= kSubWindow;
}

HvSpan Imager::bandOfThread(std::int32_t first, std::int32_t last) const {
  const bool alone = (flags & kOneThread) != 0;
  const HvSpan band = bandOf(last - first, alone ? 1 : HvThreadCount(), alone ? 0 : HvThreadIndex());
  return {first + band.first, first + band.last};
}

HvRowLoop Imager::rowLoop(std::int32_t field) const {
  HvRowLoop loop{0, mapWidth, 0, mapHeight, fieldRowStep(field)};
  if ((flags & kSubWindow) != 0) {
    loop = {x1, x2, y1, y2, fieldRowStep(field)};
    if ((flags & kReplaceWindow) != 0) {
      const std::int32_t mx = map->horizontal.writeOrigin;
      const std::int32_t my = map->vertical.writeOrigin;
      if (x1 < mx || x2 > mx + mapWidth) loop.x1 = mx, loop.x2 = mx + mapWidth;
      if (y1 < my || y2 > my + mapHeight) loop.firstRow = my, loop.lastRow = my + mapHeight;
    }
  }
  const HvSpan rows = bandOfThread(loop.firstRow, loop.lastRow);
  loop.firstRow = firstFieldRow(field, rows.first);
  loop.lastRow = rows.last;
  return loop;
}

}  // namespace vblur
