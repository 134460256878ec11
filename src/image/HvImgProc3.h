// A processor with a target and two input textures as members; an input may be null where the derived
// class says so.
#pragma once

#include "image/HvImgProc.h"

namespace vblur {

template <class TargetTexture, class TextureA, class TextureB>
class HvImgProc3 : public HvImgProc {
 public:
  using HvImgProc::process;

  virtual void process(const TextureA* a, const TextureB* b, TargetTexture* newTarget) { run(a, b, newTarget); }
  virtual void run(const TextureA* a, const TextureB* b, TargetTexture* newTarget) {
    target = newTarget;
    imageA = a;
    imageB = b;
    this->processTexture(newTarget);
    target = nullptr;
    imageA = nullptr;
    imageB = nullptr;
  }

 protected:
  TargetTexture* target = nullptr;
  const TextureA* imageA = nullptr;
  const TextureB* imageB = nullptr;
};

}  // namespace vblur
