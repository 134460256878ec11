// The filter: along x three boxes one after the other into an intermediate picture, then along y three
// more into the output. The cost of a pixel does not depend on the size.
//
// Values keep the scale and the precision of the pixel type: each box rounds to whole pixel units
// before the next one sees it, and the intermediate has the pixels of the picture.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>

#include "blur/StripPasses.h"
#include "blur/ThreeBoxes.h"
#include "image/ChannelMask.h"
#include "image/HvCpu.h"
#include "image/Sampler.h"
#include "image/SimpleCopySampler.h"

namespace vblur {

// Filters the components of Mask and neither reads nor writes the others, but for sizes of 0 on both
// axes, which copy whole pixels.
template <class Pixel, class Accum, class Mask>
class GaussFilter : public Sampler<HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>> {
 public:
  using Texture = HvTexture<Pixel, Accum>;

  void preProcess(Texture* in, Texture* out) override {
    strips.reset();
    // A preparation that fails leaves an empty pass.
    this->passes = 1;
    limitSizes();
    lineLengthX = std::max(in->width(), this->mapWidth);
    lineLengthY = std::max(in->height(), this->mapHeight);
    save(*in, *out);
    copyBack = 0;
    if (sizeX == 0.0f && sizeY == 0.0f) return copyWhole(in, out);
    takeSurroundings(*out, *in);
    if (runsInStrips()) return makeStrips(*in);
    if (!makeIntermediate()) return;
    takeSurroundings(*intermediate, *in);
    const std::int32_t y = wrapSub(savedWriteOriginY, verticalMargin());
    intermediate->setOrigin(savedWriteOriginX, y);
    intermediate->setWriteOrigin(savedWriteOriginX, y);
    this->passes = 3;
  }

  void prePass(Texture* in, Texture* out) override {
    switch (this->pass) {
      case 0:
        // The y boxes read this far beyond the window.
        this->y1 = wrapSub(this->y1, verticalMargin());
        this->y2 = wrapAdd(this->y2, verticalMargin());
        break;
      case 1: restoreWindow(); break;
      default: restore(*in, *out); break;
    }
  }

  void processRows(Texture* in, Texture* out) override {
    if (poll(this->interrupt) != 0) return;
    if (strips != nullptr) return processStrips(*in, *out);
    if (intermediate == nullptr || intermediate->data == nullptr) return;
    switch (this->pass) {
      case 0: return filterAlongX(*in);
      case 1: return filterAlongY(*out);
      default:
        if (copyBack != 0) copyIntermediate(*out);
        if (keepsOthers && in->data != out->data) copyOthers(*in, *out);
    }
  }

  void postProcess(Texture* /*in*/, Texture* /*out*/) override {
    strips.reset();
    // A stop during the first pass has left it wider.
    restoreWindow();
  }

  // The radius of one box along each axis, in pixels. The preparation divides sizeX by the pixel
  // aspect and limits both to three times the longer side of the picture.
  float sizeX = 0.0f;
  float sizeY = 0.0f;
  std::int32_t boxes = 3;
  // The components that are not filtered become those of the input, within the window, instead of staying as the
  // output has them. No pixel of the input may then lie in the memory of another one of the output.
  bool keepsOthers = false;
  std::int32_t savedWriteOriginX = 0;
  std::int32_t savedWriteOriginY = 0;
  // Where the copy back reads the input.
  std::int32_t savedInputOriginX = 0;
  std::int32_t savedInputOriginY = 0;
  std::int32_t savedEdgeX = 0;
  std::int32_t savedEdgeY = 0;
  Pixel savedOutsideColour{};
  // The picture between the passes. One of the right size that is there already is used again.
  std::unique_ptr<Texture> intermediate;
  // False: nobody needs `intermediate` or sets `copyBack`, so that vector code may keep the picture between the
  // passes in a form of its own, and `intermediate` stays null where it runs.
  bool keepsIntermediate = true;
  std::int32_t savedWindowX1 = 0;
  std::int32_t savedWindowX2 = 0;
  std::int32_t savedWindowY1 = 0;
  std::int32_t savedWindowY2 = 0;
  // Non-zero: the last pass copies the filtered components of the intermediate to the output. The preparation clears
  // it, so that only a derived class can set it.
  std::int32_t copyBack = 0;
  std::int32_t lineLengthX = 0;
  std::int32_t lineLengthY = 0;

 private:
  std::unique_ptr<StripPasses<Pixel, Accum>> strips;

  void limitSizes() {
    sizeX = sizeX / this->aspect;
    const float limit = static_cast<float>(std::max(this->mapWidth, this->mapHeight)) * 3.0f;
    if (sizeX > limit) sizeX = limit;
    if (sizeY > limit) sizeY = limit;
  }

  // How many rows the intermediate has above and below the picture.
  std::int32_t verticalMargin() const { return truncToInt((sizeY + 2.0f) * static_cast<float>(boxes)); }

  void save(const Texture& in, const Texture& out) {
    savedEdgeX = out.horizontal.edgeMethod;
    savedEdgeY = out.vertical.edgeMethod;
    savedOutsideColour = out.outsideColour;
    savedWriteOriginX = out.horizontal.writeOrigin;
    savedWriteOriginY = out.vertical.writeOrigin;
    savedInputOriginX = truncToInt(in.horizontal.originF);
    savedInputOriginY = truncToInt(in.vertical.originF);
    savedWindowX1 = this->x1;
    savedWindowX2 = this->x2;
    savedWindowY1 = this->y1;
    savedWindowY2 = this->y2;
  }

  void restoreWindow() {
    this->x1 = savedWindowX1;
    this->x2 = savedWindowX2;
    this->y1 = savedWindowY1;
    this->y2 = savedWindowY2;
  }

  void restore(Texture& in, Texture& out) {
    out.setWriteOrigin(savedWriteOriginX, savedWriteOriginY);
    out.setEdgeMethods(savedEdgeX, savedEdgeY);
    out.setOutsideColour(savedOutsideColour);
    restoreWindow();
    if (copyBack == 0 || intermediate == nullptr) return;
    in.setOrigin(savedInputOriginX, savedInputOriginY);
    intermediate->setBounds(in.horizontal.lo, in.horizontal.hi, in.vertical.lo, in.vertical.hi);
    intermediate->setOrigin(in.horizontal.originI, in.vertical.originI);
  }

  void copyWhole(Texture* in, Texture* out) {
    SimpleCopySampler<Pixel, Accum> copy;
    copy.runLike(*this);
    copy.copyWindow(*this);
    copy.process(in, out);
    this->passes = 0;
  }

  static void takeSurroundings(Texture& texture, const Texture& from) {
    texture.setEdgeMethods(from.horizontal.edgeMethod, from.vertical.edgeMethod);
    texture.setOutsideColour(from.outsideColour);
  }

  // Whether the x pass writes every component of the intermediate. Boxes of a radius below zero have ranges
  // that may leave something out.
  bool fillsIntermediate() const {
    return sizeX >= 0.0f && PixelTraits<Pixel>::kComponents == Mask::kCount && savedWindowX1 <= savedWriteOriginX &&
           savedWindowX2 >= static_cast<std::int64_t>(savedWriteOriginX) + this->mapWidth &&
           savedWindowY1 <= savedWriteOriginY &&
           savedWindowY2 >= static_cast<std::int64_t>(savedWriteOriginY) + lineLengthY;
  }

  bool makeIntermediate() {
    const std::int64_t height =
        static_cast<std::int64_t>(lineLengthY) + 2 * static_cast<std::int64_t>(verticalMargin());
    if (height <= 0 || height > kInt32Max) {
      intermediate.reset();
      stopForMemory(this->interrupt);
      return false;
    }
    const auto rows = static_cast<std::int32_t>(height);
    const bool fits = intermediate != nullptr && intermediate->data != nullptr &&
                      intermediate->width() == this->mapWidth && intermediate->height() == rows;
    if (fits) {
      intermediate->wholeBounds();
      if (!fillsIntermediate()) clearIntermediate();
      return true;
    }
    // Its memory may serve the new one.
    intermediate.reset();
    intermediate.reset(new (std::nothrow) Texture());
    if (intermediate != nullptr) {
      intermediate->horizontal.setSize(this->mapWidth);
      intermediate->vertical.setSize(rows);
      intermediate->allocateScratch(!fillsIntermediate());
    }
    if (intermediate != nullptr && intermediate->data != nullptr) return true;
    intermediate.reset();
    stopForRefusedMemory(this->interrupt);
    return false;
  }

  void clearIntermediate() {
    for (std::int32_t y = 0; y < intermediate->height(); ++y)
      clearBytes(intermediate->at(0, y), static_cast<std::size_t>(intermediate->width()) * sizeof(Pixel));
  }

  // Vector code knows three boxes of the usual kind, within the picture.
  bool runsInStrips() const {
    if (!HvUsesVectors() || boxes != 3 || keepsIntermediate) return false;
    if (!sweepKnows(boxConstants(sizeX)) || !sweepKnows(boxConstants(sizeY))) return false;
    const auto within = [](std::int64_t first, std::int64_t last, std::int64_t origin, std::int64_t length) {
      return first < last && first >= origin && last <= origin + length;
    };
    return within(this->x1, this->x2, savedWriteOriginX, this->mapWidth) &&
           within(this->y1, this->y2, savedWriteOriginY, this->mapHeight);
  }

  void makeStrips(const Texture& in) {
    intermediate.reset();
    // A view of so many bytes has no memory behind it, however little of the source it would read.
    constexpr double kMostBytes = 1e12;
    const double bytes = static_cast<double>(this->mapWidth) * this->mapHeight * sizeof(Pixel);
    if (bytes > kMostBytes) return stopForRefusedMemory(this->interrupt);
    strips.reset(new (std::nothrow) StripPasses<Pixel, Accum>(in, boxConstants(sizeX), boxConstants(sizeY),
                                                              {this->x1, this->x2}, {this->y1, this->y2}, keepsOthers));
    if (strips != nullptr && strips->isReady()) {
      this->passes = 3;
      return;
    }
    strips.reset();
    stopForRefusedMemory(this->interrupt);
  }

  void processStrips(const Texture& in, const Texture& out) {
    if (this->pass > 1) return;
    const HvSpan band = this->bandOfThread(0, this->pass == 0 ? strips->stripsAlongX() : strips->stripsAlongY());
    const bool done = this->pass == 0 ? strips->template alongX<Mask>(in, band, this->interrupt)
                                      : strips->template alongY<Mask>(out, band, this->interrupt);
    if (!done) stopForRefusedMemory(this->interrupt);
  }

  // Filters lines [first, last) of this thread in blocks. makeLines(line, n) reads n lines; store(line,
  // n, position, lanes) keeps the result of one position.
  template <class MakeLines, class Store>
  void filterLines(std::int32_t first, std::int32_t last, const BoxConstants& box, const PassAxis& axis,
                   const Pixel& outside, const MakeLines& makeLines, const Store& store) {
    ThreeBoxes<Mask> threeBoxes(box, boxes, axis, outside);
    if (!threeBoxes.isReady()) return stopForRefusedMemory(this->interrupt);
    for (std::int32_t line = first; line < last; line += kBlockLines) {
      const std::int32_t n = std::min(kBlockLines, last - line);
      if (stoppedBefore(n)) return;
      threeBoxes.run(makeLines(line, n),
                     [&](std::int64_t position, const std::int32_t* lanes) { store(line, n, position, lanes); });
    }
  }

  // One question for each line.
  bool stoppedBefore(std::int32_t lines) const {
    for (std::int32_t i = 0; i < lines; ++i) {
      if (poll(this->interrupt) != 0) return true;
    }
    return false;
  }

  // A line that would be shorter than nothing counts as no memory, whatever there is to filter.
  bool hasLines(const HvSpan& lines, const BoxConstants& box, const PassAxis& axis) {
    if (axis.lineLength + 2 * box.margin(boxes) >= 0) return lines.first < lines.last;
    stopForMemory(this->interrupt);
    return false;
  }

  void filterAlongX(const Texture& in) {
    const HvSpan rows = this->bandOfThread(this->y1, this->y2);
    const PassAxis axis{this->x1, this->x2, savedWriteOriginX, lineLengthX, in.horizontal.edgeMethod, false};
    const BoxConstants box = boxConstants(sizeX);
    if (!hasLines(rows, box, axis)) return;
    // Beyond the picture there is no place for a result.
    const std::int64_t firstColumn = savedWriteOriginX;
    const std::int64_t lastColumn = firstColumn + intermediate->width();
    filterLines(
        rows.first, rows.last, box, axis, in.outsideColour,
        [&](std::int32_t y, std::int32_t n) { return RowLines<Mask, Pixel, Accum>(in, y, n); },
        [&](std::int32_t y, std::int32_t n, std::int64_t x, const std::int32_t* lanes) {
          if (x < firstColumn || x >= lastColumn) return;
          Pixel* pixel = intermediate->target(static_cast<std::int32_t>(x), y);
          for (std::int32_t i = 0; i < n; ++i) {
            narrowPixel<Mask>(*pixel, lanes + i * Mask::kCount);
            pixel = reinterpret_cast<Pixel*>(reinterpret_cast<std::byte*>(pixel) + intermediate->stride);
          }
        });
  }

  void filterAlongY(const Texture& out) {
    const HvSpan columns = this->bandOfThread(this->x1, this->x2);
    const PassAxis axis{this->y1, this->y2, savedWriteOriginY, lineLengthY, intermediate->vertical.edgeMethod, true};
    const BoxConstants box = boxConstants(sizeY);
    if (!hasLines(columns, box, axis)) return;
    filterLines(
        columns.first, columns.last, box, axis, intermediate->outsideColour,
        [&](std::int32_t x, std::int32_t n) { return ColumnLines<Mask, Pixel, Accum>(*intermediate, x, n); },
        [&](std::int32_t x, std::int32_t n, std::int64_t y, const std::int32_t* lanes) {
          Pixel* pixel = out.target(x, static_cast<std::int32_t>(y));
          for (std::int32_t i = 0; i < n; ++i)
            narrowPixel<Mask>(pixel[i], lanes + i * Mask::kCount);
        });
  }

  void copyOthers(const Texture& in, const Texture& out) {
    if constexpr (PixelTraits<Pixel>::kComponents == 4 && !Mask::kAll) {
      walkRuns(
          this->rowLoop(), this->interrupt, out,
          [](Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& run) {
            copyChannels<typename Mask::Others>(to, run, n);
          },
          in);
    }
  }

  void copyIntermediate(const Texture& out) {
    if constexpr (PixelTraits<Pixel>::kComponents == 4) {
      walkRuns(
          this->rowLoop(), this->interrupt, out,
          [](Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& run) { copyChannels<Mask>(to, run, n); },
          *intermediate);
    } else {
      walkRuns(
          this->rowLoop(), this->interrupt, out,
          [](Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& run) { copyPixels(to, run, n); }, *intermediate);
    }
  }
};

// The filter on four-component pixels. Max is the full scale of the chain that it belongs to and has
// no part in the arithmetic.
template <class Pixel, class Accum, std::int32_t Max, int R, int G, int B, int A>
class BlurRGBAGauss : public GaussFilter<Pixel, Accum, ChannelMask<R, G, B, A>> {};

// The filter on one plain integer per pixel; only the first flag has a component to choose.
template <class T, class Accum, std::int32_t Max, int A, int B, int C, int D>
class BlurGeneralGauss : public GaussFilter<T, Accum, ChannelMask<A, B, C, D>> {};

}  // namespace vblur
