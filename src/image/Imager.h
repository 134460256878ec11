// The base of the processors whose operations take their textures as arguments: Sampler, Combiner and
// Generator. It keeps the window, the passes and the field, and settles the window on a target.
#pragma once

#include <cstdint>

#include "image/HvRowProcessor.h"
#include "image/RowBand.h"

namespace vblur {

class Imager : public HvRowProcessor {
 public:
  enum Flag : std::uint32_t {
    kClipWindow = 1,     // the window awaits clipping to the target
    kReplaceWindow = 2,  // a window that overruns the target becomes the target's extent; no processor here sets it
    kOneThread = 4,      // run on the calling thread only
    kSubWindow = 8,      // the window is a true sub-rectangle
  };

  // right and bottom inclusive.
  void setWindow(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom);
  void copyWindow(const Imager& other);
  // Copies the interrupt record and kOneThread of the processor that runs this one.
  void runLike(const Imager& parent);
  // At least 0.001. Part of the framework: a frame's processors have aspect 1.
  void setAspect(float a);
  void setFieldMode(std::int32_t mode) { fieldMode = mode; }
  std::int32_t firstRow(std::int32_t y) const { return firstFieldRow(fieldMode, y); }
  std::int32_t rowStep() const { return fieldRowStep(fieldMode); }

  // Behind the fields of the base, in this order.
  float aspect = 1.0f;
  float inverseAspect = 1.0f;
  std::int32_t fieldMode = kAllRows;
  // The target while it is processed, and its size.
  const HvTexIndexer* map = nullptr;
  std::int32_t mapWidth = 0;
  std::int32_t mapHeight = 0;

 protected:
  // The share of the calling thread of rows or columns first to last - 1: all of them with kOneThread.
  HvSpan bandOfThread(std::int32_t first, std::int32_t last) const;
  // Clips the window to the target, or takes the whole target if no window is set. The clipped window stays for
  // later runs.
  void settle(const HvTexIndexer& target);
  // Clips a window that preProcess or prePass has set. Runs before the threads of a pass start.
  void checkWindow();

  // The head of a pixel loop: the share of the calling thread. Reads only, so every thread may ask.
  HvRowLoop rowLoop() const { return rowLoop(fieldMode); }
  // The same for another field.
  HvRowLoop rowLoop(std::int32_t field) const;
};

}  // namespace vblur
