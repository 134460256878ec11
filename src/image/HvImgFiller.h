// Fills the window with a colour, or all of the window but a rectangle.
#pragma once

#include <cstdint>

#include "image/Arithmetic.h"
#include "image/CopyPixels.h"
#include "image/HvIPWindowStack.h"
#include "image/HvImgProc1.h"
#include "image/HvTexture.h"

namespace vblur {

template <class Pixel, class Accum>
class HvImgFiller : public HvImgProc1<HvTexture<Pixel, Accum>>, private HvIPWindowStack {
 public:
  HvImgFiller() : HvIPWindowStack(this) {}

  // fillOutside fills three bands: below, beside and above the rectangle. Each has at least one row, so the
  // first and the last row of the window are always filled. Does nothing for a window without rows or columns.
  void preProcess() override {
    this->passes = fillOutside ? 3 : 1;
    isEmpty_ = this->x2 <= this->x1 || this->y2 <= this->y1;
  }

  void prePass() override {
    if (!fillOutside || isEmpty_) return;
    if (this->pass > 0) pop();
    switch (this->pass) {
      case 0: return setBand(this->y1, wrapSub(bottom, 1));
      case 1: return setBand(bottom, wrapSub(top, 1));
      default: return setBand(top, this->y2 - 1);
    }
  }

  void processRows() override {
    if (fillOutside) {
      fillBand();
    } else {
      fillWindow();
    }
  }

  void postProcess() override {
    if (fillOutside) pop();
  }

  Pixel colour{};
  bool colourIsZero = true;
  // The rectangle that is not filled: left <= x < right, bottom <= y < top.
  std::int32_t left = 0;
  std::int32_t bottom = 0;
  std::int32_t right = 0;
  std::int32_t top = 0;
  bool fillOutside = false;

 private:
  // Rows first to last, clamped to the window, which leaves at least one.
  void setBand(std::int32_t first, std::int32_t last) {
    const auto inWindow = [this](std::int32_t y) { return clampTo(y, this->y1, this->y2 - 1); };
    pushAndSet(this->x1, inWindow(first), this->x2 - 1, inWindow(last));
  }

  void fillSpan(std::int32_t y, std::int32_t first, std::int32_t last, bool zero) const {
    if (last <= first) return;
    Pixel* out = this->target->target(first, y);
    if (zero) {
      clearPixels(out, last - first);
    } else {
      fillPixels(out, colour, last - first);
    }
  }

  void fillWindow() const {
    const HvRowLoop loop = this->rowLoop();
    const bool zero = colourIsZero || colour == Pixel{};
    const std::int32_t n = loop.x2 - loop.x1;
    for (std::int32_t y = loop.firstRow; y < loop.lastRow; y += loop.rowStep) {
      if (zero || y == loop.firstRow) {
        fillSpan(y, loop.x1, loop.x2, zero);
      } else {
        copyPixels(this->target->target(loop.x1, y), {this->target->target(loop.x1, loop.firstRow), 1, n, true}, n);
      }
    }
  }

  void fillBand() const {
    const HvRowLoop loop = this->rowLoop();
    const std::int32_t l = clampTo(left, loop.x1, loop.x2);
    const std::int32_t r = clampTo(right, loop.x1, loop.x2);
    for (std::int32_t y = loop.firstRow; y < loop.lastRow; y += loop.rowStep) {
      if (poll(this->interrupt) != 0) return;
      if (this->pass == 1) {
        fillSpan(y, loop.x1, l, colourIsZero);
        fillSpan(y, r, loop.x2, colourIsZero);
      } else {
        fillSpan(y, loop.x1, loop.x2, colourIsZero);
      }
    }
  }

  bool isEmpty_ = false;
};

}  // namespace vblur
