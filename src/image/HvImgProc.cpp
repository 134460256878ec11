#include "image/HvImgProc.h"

#include "image/PassRunner.h"

namespace vblur {

void HvImgProc::setWindow(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) {
  storeWindow(left, top, right, bottom);
  flags |= kWindowSet;
}

void HvImgProc::copyWindow(const HvRowProcessor& other) {
  takeWindow(other);
  flags |= kWindowSet;
}

void HvImgProc::process(const HvTexIndexer* target) {
  if (target == nullptr) return;
  settle(*target);
  map = target;
  mapWidth = target->width();
  mapHeight = target->height();
  preProcess();
  runPasses();
  postProcess();
  map = nullptr;
}

void HvImgProc::settle(const HvTexIndexer& target) {
  if ((flags & kWindowSet) == 0) {
    x1 = target.horizontal.writeOrigin;
    y1 = target.vertical.writeOrigin;
    x2 = x1 + target.width();
    y2 = y1 + target.height();
    flags |= kWindowSet;
  }
  fitWindow(target);
}

void HvImgProc::fitWindow(const HvTexIndexer& target) {
  if ((options & kReplaceWindow) == 0) return cutWindow(target);
  const std::int32_t mx = target.horizontal.writeOrigin;
  const std::int32_t my = target.vertical.writeOrigin;
  // Inclusive far ends, on this path only.
  const std::int32_t lastX = mx + target.width() - 1;
  const std::int32_t lastY = my + target.height() - 1;
  if (x1 < mx || x2 > lastX) x1 = mx, x2 = lastX;
  if (y1 < my || y2 > lastY) y1 = my, y2 = lastY;
}

void HvImgProc::runPasses() {
  for (pass = 0; pass < passes; ++pass)
    runPass();
}

void HvImgProc::runPass() {
  if (poll(interrupt) != 0) return;
  prePass();
  if (poll(interrupt) != 0) return;
  // prePass may have set a window that is larger than the target.
  fitWindow(*map);
  if ((options & kUseThreads) != 0) {
    flags |= kSharingRows;
    runRowsOnAllThreads(this);
    flags &= ~static_cast<std::uint32_t>(kSharingRows);
  } else {
    processRows();
  }
  postPass();
}

HvSpan HvImgProc::threadRows() const {
  if ((flags & kSharingRows) == 0) return {y1, y2};
  const bool threads = (options & kUseThreads) != 0;
  const HvSpan band = bandOf(y2 - y1, threads ? HvThreadCount() : 1, threads ? HvThreadIndex() : 0);
  return {y1 + band.first, y1 + band.last};
}

HvRowLoop HvImgProc::rowLoop() const {
  if (!hasPixels_ || x2 <= x1 || y2 <= y1) return {};
  const HvSpan rows = threadRows();
  return {x1, x2, firstRow(rows.first), rows.last, rowStep()};
}

}  // namespace vblur
