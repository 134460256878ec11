// The base of the processors whose operations take their textures as arguments: Sampler, Combiner and
// Generator. It keeps the window, the passes and the field, and settles the window on a target.
#pragma once

#include <cstdint>

#include "image/HvInteruptable.h"
#include "image/HvTexIndexer.h"
#include "image/RowBand.h"

namespace vblur {

// What one thread has to do of a target: columns x1 to x2 - 1 of rows firstRow, firstRow + rowStep ...
// below lastRow.
struct HvRowLoop {
  std::int32_t x1 = 0;
  std::int32_t x2 = 0;
  std::int32_t firstRow = 0;
  std::int32_t lastRow = 0;
  std::int32_t rowStep = 1;
};

class Imager : public HvInteruptable {
 public:
  enum Flag : std::uint32_t {
    kClipWindow = 1,     // the window awaits clipping to the target
    kReplaceWindow = 2,  // a window that overruns the target becomes the target's extent
    kOneThread = 4,      // run on the calling thread only
    kSubWindow = 8,      // the window is a true sub-rectangle
  };

  // x2 and y2 inclusive.
  void setWindow(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom);
  void getWindow(std::int32_t& left, std::int32_t& top, std::int32_t& right, std::int32_t& bottom) const;
  void copyWindow(const Imager& other);
  void setPasses(std::int32_t n) { passes = n; }
  void setFieldMode(std::int32_t mode) { fieldMode = mode; }
  // Never below 0.001.
  void setAspect(float a);
  std::int32_t firstRow(std::int32_t y) const { return firstFieldRow(fieldMode, y); }
  std::int32_t rowStep() const { return fieldRowStep(fieldMode); }

  std::uint32_t flags = 0;
  // The window: x1 and y1 inclusive, x2 and y2 exclusive.
  std::int32_t x1 = 0;
  std::int32_t y1 = 0;
  std::int32_t x2 = 0;
  std::int32_t y2 = 0;
  std::int32_t passes = 1;
  std::int32_t pass = 0;
  float aspect = 1.0f;
  float inverseAspect = 1.0f;
  std::int32_t fieldMode = kAllRows;
  // The target while it is processed, and its size.
  const HvTexIndexer* map = nullptr;
  std::int32_t mapWidth = 0;
  std::int32_t mapHeight = 0;

 protected:
  // Cuts the window to the target, or takes the whole target for a processor without one. The cut is
  // for good: a processor that is used again keeps it.
  void settle(const HvTexIndexer& target);

  // The head of a pixel loop: the share of the calling thread. Reads only, so every thread may ask.
  HvRowLoop rowLoop() const { return rowLoop(fieldMode); }
  // The same for a field other than the processor's own.
  HvRowLoop rowLoop(std::int32_t field) const;
};

}  // namespace vblur
