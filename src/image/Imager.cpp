#include "image/Imager.h"

#include <algorithm>

#include "image/Arithmetic.h"

namespace vblur {

void Imager::setWindow(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) {
  storeWindow(left, top, right, bottom);
  flags |= kClipWindow | kSubWindow;
}

void Imager::copyWindow(const Imager& other) {
  takeWindow(other);
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
  if ((flags & kSubWindow) != 0) {
    cutWindow(target);
  } else {
    x1 = target.horizontal.writeOrigin;
    x2 = x1 + mapWidth;
    y1 = target.vertical.writeOrigin;
    y2 = y1 + mapHeight;
  }
  // The window is clipped; kClipWindow would undo what a filter adds to it from pass to pass.
  flags &= ~static_cast<std::uint32_t>(kClipWindow | kSubWindow);
  if (x1 != 0 || y1 != 0 || x2 != mapWidth || y2 != mapHeight) flags |= kSubWindow;
}

HvSpan Imager::bandOfThread(std::int32_t first, std::int32_t last) const {
  const bool alone = (flags & kOneThread) != 0;
  const HvSpan band = bandOf(last - first, alone ? 1 : HvThreadCount(), alone ? 0 : HvThreadIndex());
  return {first + band.first, first + band.last};
}

void Imager::checkWindow() {
  if ((flags & kSubWindow) != 0) {
    if ((flags & kClipWindow) != 0) cutWindow(*map);
    if ((flags & kReplaceWindow) != 0) {
      const std::int32_t mx = map->horizontal.writeOrigin;
      const std::int32_t my = map->vertical.writeOrigin;
      if (x1 < mx || x2 > mx + mapWidth) x1 = mx, x2 = mx + mapWidth;
      if (y1 < my || y2 > my + mapHeight) y1 = my, y2 = my + mapHeight;
    }
  }
  flags &= ~static_cast<std::uint32_t>(kClipWindow);
}

HvRowLoop Imager::rowLoop(std::int32_t field) const {
  HvRowLoop loop{0, mapWidth, 0, mapHeight, fieldRowStep(field)};
  if ((flags & kSubWindow) != 0) loop = {x1, x2, y1, y2, fieldRowStep(field)};
  const HvSpan rows = bandOfThread(loop.firstRow, loop.lastRow);
  loop.firstRow = firstFieldRow(field, rows.first);
  loop.lastRow = rows.last;
  return loop;
}

}  // namespace vblur
