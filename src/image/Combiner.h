// A processor that reads two textures and writes a third, which may be one of the two.
#pragma once

#include "image/Imager.h"
#include "image/PassRunner.h"
#include "image/RowWalk.h"
#include "image/TargetCheck.h"

namespace vblur {

template <class TextureA, class TextureB, class OutTexture>
class Combiner : public virtual Imager {
 public:
  // Once, before all passes, on the calling thread.
  virtual void preProcess(TextureA* /*a*/, TextureB* /*b*/, OutTexture* /*map*/) {}
  // The pixel loop, at once on every thread of a pass.
  virtual void processRows(TextureA* /*a*/, TextureB* /*b*/, OutTexture* /*map*/) {}
  // Once, after all passes, on the calling thread; after an interruption too.
  virtual void postProcess(TextureA* /*a*/, TextureB* /*b*/, OutTexture* /*map*/) {}

  void process(TextureA* a, TextureB* b, OutTexture* target) {
    if (!isTarget(target, "Map passed into Combiner::process is NULL\n",
                  "Map passed into Generator::process is bogus\n")) {
      return;
    }
    settle(*target);
    preProcess(a, b, target);
    for (pass = 0; pass < passes; ++pass) {
      if (poll(interrupt) != 0) break;
      checkWindow();
      if ((flags & kOneThread) != 0) {
        processRows(a, b, target);
      } else {
        runRowsOnAllThreads(this, a, b, target);
      }
    }
    postProcess(a, b, target);
  }
};

}  // namespace vblur
