// The base of the processors that hold their textures as members.
#pragma once

#include <cstdint>

#include "image/HvRowProcessor.h"
#include "image/RowBand.h"

namespace vblur {

class HvImgProc : public HvRowProcessor {
 public:
  enum Flag : std::uint32_t {
    kSharingRows = 1,  // rows are being shared among threads
    kWindowSet = 2,
  };
  // Part of the framework: the processors here run with the default.
  enum Option : std::uint32_t {
    kUseThreads = 1,
    kReplaceWindow = 2,  // a window that overruns is replaced rather than clipped
  };

  // Once, before and after all passes; after an interruption too.
  virtual void preProcess() {}
  // The pixel loop, at once on every thread of a pass.
  virtual void processRows() {}
  virtual void postProcess() {}
  // Before and after each pass, on the calling thread. An interrupted pass has no postPass.
  virtual void prePass() {}
  virtual void postPass() {}
  virtual void runPasses();
  // Settles the window on a target and runs all passes; a null target is ignored. On a target without pixels
  // they run too, over no rows.
  virtual void process(const HvTexIndexer* target);

  // x2 and y2 inclusive.
  void setWindow(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom);
  // Takes the window of a processor of either family.
  void copyWindow(const HvRowProcessor& other);
  void setFieldMode(std::int32_t mode) { fieldMode = mode; }
  std::int32_t firstRow(std::int32_t y) const { return firstFieldRow(fieldMode, y); }
  std::int32_t rowStep() const { return fieldRowStep(fieldMode); }

  // Behind the fields of the base, in this order.
  std::uint32_t options = kUseThreads;
  std::int32_t fieldMode = kAllRows;
  float aspect = 1.0f;
  float inverseAspect = 1.0f;
  // The target while it is processed, and its size.
  const HvTexIndexer* map = nullptr;
  std::int32_t mapWidth = 0;
  std::int32_t mapHeight = 0;

 protected:
  // The rows of the calling thread, not yet aligned to a field.
  HvSpan threadRows() const;
  HvSpan columns() const { return {x1, x2}; }
  // Rows and columns of the calling thread, the first row aligned to the field; none where the window or the
  // target is empty.
  HvRowLoop rowLoop() const;
  // The texture may have a size but no memory.
  template <class Texture>
  void processTexture(const Texture* texture) {
    hasPixels_ = texture == nullptr || texture->hasPixels();
    process(static_cast<const HvTexIndexer*>(texture));
    hasPixels_ = true;
  }

 private:
  void settle(const HvTexIndexer& target);
  // Clips the window to the target, or replaces it with kReplaceWindow. Twice is the same as once.
  void fitWindow(const HvTexIndexer& target);
  void runPass();

  bool hasPixels_ = true;
};

}  // namespace vblur
