// A processor that reads one texture and writes another.
#pragma once

#include "image/Imager.h"
#include "image/PassRunner.h"
#include "image/RowWalk.h"
#include "image/TargetCheck.h"

namespace vblur {

template <class InTexture, class OutTexture>
class Sampler : public virtual Imager {
 public:
  // Once, before all passes, on the calling thread.
  virtual void preProcess(InTexture* /*in*/, OutTexture* /*map*/) {}
  // The pixel loop, at once on every thread of a pass.
  virtual void processRows(InTexture* /*in*/, OutTexture* /*map*/) {}
  // Once, after all passes, on the calling thread; after an interruption too.
  virtual void postProcess(InTexture* /*in*/, OutTexture* /*map*/) {}
  // Before each pass, on the calling thread.
  virtual void prePass(InTexture* /*in*/, OutTexture* /*map*/) {}

  // Runs all passes over the target. A target without pixels is refused with a message; an empty
  // input reads as its outside colour.
  void process(InTexture* in, OutTexture* target) {
    if (!isTarget(target, "Map passed into Generator::process is NULL\n",
                  "Map passed into Sampler::process is bogus\n")) {
      return;
    }
    settle(*target);
    preProcess(in, target);
    for (pass = 0; pass < passes; ++pass) {
      if (poll(interrupt) != 0) break;
      prePass(in, target);
      checkWindow();
      if ((flags & kOneThread) != 0) {
        processRows(in, target);
      } else {
        runRowsOnAllThreads(this, in, target);
      }
    }
    postProcess(in, target);
  }
};

}  // namespace vblur
