// A processor without inputs. Part of the framework: no processor here is a Generator.
#pragma once

#include "image/Imager.h"
#include "image/PassRunner.h"
#include "image/TargetCheck.h"

namespace vblur {

template <class Texture>
class Generator : public Imager {
 public:
  // Once, before all passes, on the calling thread.
  virtual void preProcess(Texture* /*map*/) {}
  // The pixel loop, at once on every thread of a pass.
  virtual void processRows(Texture* /*map*/) {}
  // Once, after all passes, on the calling thread; after an interruption too.
  virtual void postProcess(Texture* /*map*/) {}

  void process(Texture* target) {
    if (!isTarget(target, "Map passed into Generator::process is NULL\n",
                  "Map passed into Generator::process is bogus\n")) {
      return;
    }
    settle(*target);
    preProcess(target);
    for (pass = 0; pass < passes; ++pass) {
      if (poll(interrupt) != 0) break;
      checkWindow();
      if ((flags & kOneThread) != 0) {
        processRows(target);
      } else {
        runRowsOnAllThreads(this, target);
      }
    }
    postProcess(target);
  }
};

}  // namespace vblur
