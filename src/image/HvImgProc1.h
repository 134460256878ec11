// A processor with one target texture as a member.
#pragma once

#include "image/HvImgProc.h"

namespace vblur {

template <class Texture>
class HvImgProc1 : public HvImgProc {
 public:
  using HvImgProc::process;

  virtual void process(Texture* newTarget) { run(newTarget); }
  virtual void run(Texture* newTarget) {
    target = newTarget;
    this->processTexture(newTarget);
    target = nullptr;
  }

 protected:
  Texture* target = nullptr;
};

}  // namespace vblur
