// The members of GaussFilter, for the files that instantiate it: GaussFilter8.cpp, GaussFilter16.cpp and
// GaussFilterPlanes.cpp. Everybody else includes GaussFilter.h, which compiles fast.
#pragma once

#include <algorithm>
#include <new>

#include "blur/BoxSweep.h"
#include "blur/GaussFilter.h"
#include "blur/StripPasses.h"
#include "blur/ThreeBoxes.h"
#include "image/HvCpu.h"
#include "image/SimpleCopySampler.h"

namespace vblur {
namespace gauss_filter {

template <class Texture>
void takeSurroundings(Texture& texture, const Texture& from) {
  texture.setEdgeMethods(from.horizontal.edgeMethod, from.vertical.edgeMethod);
  texture.setOutsideColour(from.outsideColour);
}

template <class Mask, class Pixel>
struct CopyRun {
  void operator()(Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& run) const { copyChannels<Mask>(to, run, n); }
};

// Stores the results of n lines from `line` on.
template <class Store>
class StoreOf : public BlockWriter {
 public:
  StoreOf(const Store& store, std::int32_t line, std::int32_t n) : store_(store), line_(line), n_(n) {}
  void store(std::int64_t position, const std::int32_t* lanes) const override { store_(line_, n_, position, lanes); }

 private:
  const Store& store_;
  std::int32_t line_;
  std::int32_t n_;
};

}  // namespace gauss_filter

template <class Pixel, class Accum, class Mask>
GaussFilter<Pixel, Accum, Mask>::GaussFilter() = default;
template <class Pixel, class Accum, class Mask>
GaussFilter<Pixel, Accum, Mask>::~GaussFilter() = default;

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::preProcess(Texture* in, Texture* out) {
  strips_.reset();
  // A preparation that fails leaves one empty pass.
  this->passes = 1;
  limitSizes();
  lineLengthX = std::max(in->width(), this->mapWidth);
  lineLengthY = std::max(in->height(), this->mapHeight);
  save(*in, *out);
  copyBack = 0;
  if (sizeX == 0.0f && sizeY == 0.0f) return copyWhole(in, out);
  gauss_filter::takeSurroundings(*out, *in);
  if (runsInStrips()) return makeStrips(*in);
  if (!makeIntermediate()) return;
  gauss_filter::takeSurroundings(*intermediate, *in);
  const std::int32_t y = wrapSub(savedWriteOriginY, verticalMargin());
  intermediate->setOrigin(savedWriteOriginX, y);
  intermediate->setWriteOrigin(savedWriteOriginX, y);
  this->passes = 3;
}

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::prePass(Texture* in, Texture* out) {
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

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::processRows(Texture* in, Texture* out) {
  if (poll(this->interrupt) != 0) return;
  if (strips_ != nullptr) return processStrips(*in, *out);
  if (intermediate == nullptr || intermediate->data == nullptr) return;
  switch (this->pass) {
    case 0: return filterAlongX(*in);
    case 1: return filterAlongY(*out);
    default:
      if (copyBack != 0) copyIntermediate(*out);
      if (keepsOthers && in->data != out->data) copyOthers(*in, *out);
  }
}

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::postProcess(Texture* /*in*/, Texture* /*out*/) {
  strips_.reset();
  // A stop during the first pass leaves it wider.
  restoreWindow();
}

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::limitSizes() {
  sizeX = sizeX / this->aspect;
  const float limit = static_cast<float>(std::max(this->mapWidth, this->mapHeight)) * 3.0f;
  if (sizeX > limit) sizeX = limit;
  if (sizeY > limit) sizeY = limit;
}

template <class Pixel, class Accum, class Mask>
std::int32_t GaussFilter<Pixel, Accum, Mask>::verticalMargin() const {
  return truncToInt((sizeY + 2.0f) * static_cast<float>(boxes));
}

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::save(const Texture& in, const Texture& out) {
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

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::restoreWindow() {
  this->x1 = savedWindowX1;
  this->x2 = savedWindowX2;
  this->y1 = savedWindowY1;
  this->y2 = savedWindowY2;
}

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::restore(Texture& in, Texture& out) {
  out.setWriteOrigin(savedWriteOriginX, savedWriteOriginY);
  out.setEdgeMethods(savedEdgeX, savedEdgeY);
  out.setOutsideColour(savedOutsideColour);
  restoreWindow();
  if (copyBack == 0 || intermediate == nullptr) return;
  in.setOrigin(savedInputOriginX, savedInputOriginY);
  intermediate->setBounds(in.horizontal.lo, in.horizontal.hi, in.vertical.lo, in.vertical.hi);
  intermediate->setOrigin(in.horizontal.originI, in.vertical.originI);
}

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::copyWhole(Texture* in, Texture* out) {
  SimpleCopySampler<Pixel, Accum> copy;
  copy.runLike(*this);
  copy.copyWindow(*this);
  copy.process(in, out);
  this->passes = 0;
}

// Whether the x pass writes every component of the intermediate. The ranges of boxes of a radius below zero may leave
// something out.
template <class Pixel, class Accum, class Mask>
bool GaussFilter<Pixel, Accum, Mask>::fillsIntermediate() const {
  return sizeX >= 0.0f && PixelTraits<Pixel>::kComponents == Mask::kCount && savedWindowX1 <= savedWriteOriginX &&
         savedWindowX2 >= static_cast<std::int64_t>(savedWriteOriginX) + this->mapWidth &&
         savedWindowY1 <= savedWriteOriginY &&
         savedWindowY2 >= static_cast<std::int64_t>(savedWriteOriginY) + lineLengthY;
}

template <class Pixel, class Accum, class Mask>
bool GaussFilter<Pixel, Accum, Mask>::makeIntermediate() {
  const std::int64_t height = static_cast<std::int64_t>(lineLengthY) + 2 * static_cast<std::int64_t>(verticalMargin());
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
  // Gives its memory to the new one.
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

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::clearIntermediate() {
  for (std::int32_t y = 0; y < intermediate->height(); ++y)
    clearBytes(intermediate->at(0, y), static_cast<std::size_t>(intermediate->width()) * sizeof(Pixel));
}

// Vector code knows three boxes of the usual kind, within the picture.
template <class Pixel, class Accum, class Mask>
bool GaussFilter<Pixel, Accum, Mask>::runsInStrips() const {
  if (!HvUsesVectors() || boxes != 3 || keepsIntermediate) return false;
  if (!sweepKnows(boxConstants(sizeX)) || !sweepKnows(boxConstants(sizeY))) return false;
  const auto within = [](std::int64_t first, std::int64_t last, std::int64_t origin, std::int64_t length) {
    return first < last && first >= origin && last <= origin + length;
  };
  return within(this->x1, this->x2, savedWriteOriginX, this->mapWidth) &&
         within(this->y1, this->y2, savedWriteOriginY, this->mapHeight);
}

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::makeStrips(const Texture& in) {
  intermediate.reset();
  // A view that claims so many bytes has no memory behind it, however little of the source it would read.
  constexpr double kMostBytes = 1e12;
  const double bytes = static_cast<double>(this->mapWidth) * this->mapHeight * sizeof(Pixel);
  if (bytes > kMostBytes) return stopForRefusedMemory(this->interrupt);
  strips_.reset(new (std::nothrow) StripPasses<Pixel, Accum>(in, boxConstants(sizeX), boxConstants(sizeY),
                                                             {this->x1, this->x2}, {this->y1, this->y2},
                                                             StripChannels<Pixel>::template of<Mask>(), keepsOthers));
  if (strips_ != nullptr && strips_->isReady()) {
    this->passes = 3;
    return;
  }
  strips_.reset();
  stopForRefusedMemory(this->interrupt);
}

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::processStrips(const Texture& in, const Texture& out) {
  if (this->pass > 1) return;
  const bool alongX = this->pass == 0;
  const HvSpan band = this->bandOfThread(0, alongX ? strips_->stripsAlongX() : strips_->stripsAlongY());
  const bool done = alongX ? strips_->alongX(in, band, this->interrupt) : strips_->alongY(out, band, this->interrupt);
  if (!done) stopForRefusedMemory(this->interrupt);
}

// Filters the lines of this thread in blocks. makeLines(line, n) reads n lines; store(line, n, position, lanes) takes
// the result of one position.
template <class Pixel, class Accum, class Mask>
template <class MakeLines, class Store>
void GaussFilter<Pixel, Accum, Mask>::filterLines(const HvSpan& lines, const BoxConstants& box, const PassAxis& axis,
                                                  const Pixel& outside, const MakeLines& makeLines,
                                                  const Store& store) {
  std::int32_t outsideLanes[Mask::kCount];
  widenPixel<Mask>(outsideLanes, outside);
  ThreeBoxes<Mask::kCount> threeBoxes(box, boxes, axis, outsideLanes);
  if (!threeBoxes.isReady()) return stopForRefusedMemory(this->interrupt);
  for (std::int32_t line = lines.first; line < lines.last; line += kBlockLines) {
    const std::int32_t n = std::min(kBlockLines, lines.last - line);
    for (std::int32_t i = 0; i < n; ++i) {
      if (poll(this->interrupt) != 0) return;
    }
    threeBoxes.run(makeLines(line, n), gauss_filter::StoreOf<Store>(store, line, n));
  }
}

// A line of negative length counts as refused memory, whatever there is to filter.
template <class Pixel, class Accum, class Mask>
bool GaussFilter<Pixel, Accum, Mask>::hasLines(const HvSpan& lines, const BoxConstants& box, const PassAxis& axis) {
  if (axis.lineLength + 2 * box.margin(boxes) >= 0) return lines.first < lines.last;
  stopForMemory(this->interrupt);
  return false;
}

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::filterAlongX(const Texture& in) {
  const HvSpan rows = this->bandOfThread(this->y1, this->y2);
  const PassAxis axis{this->x1, this->x2, savedWriteOriginX, lineLengthX, in.horizontal.edgeMethod, false};
  const BoxConstants box = boxConstants(sizeX);
  if (!hasLines(rows, box, axis)) return;
  // Results beyond the picture have no place.
  const std::int64_t firstColumn = savedWriteOriginX;
  const std::int64_t lastColumn = firstColumn + intermediate->width();
  filterLines(
      rows, box, axis, in.outsideColour,
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

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::filterAlongY(const Texture& out) {
  const HvSpan columns = this->bandOfThread(this->x1, this->x2);
  const PassAxis axis{this->y1, this->y2, savedWriteOriginY, lineLengthY, intermediate->vertical.edgeMethod, true};
  const BoxConstants box = boxConstants(sizeY);
  if (!hasLines(columns, box, axis)) return;
  filterLines(
      columns, box, axis, intermediate->outsideColour,
      [&](std::int32_t x, std::int32_t n) { return ColumnLines<Mask, Pixel, Accum>(*intermediate, x, n); },
      [&](std::int32_t x, std::int32_t n, std::int64_t y, const std::int32_t* lanes) {
        Pixel* pixel = out.target(x, static_cast<std::int32_t>(y));
        for (std::int32_t i = 0; i < n; ++i)
          narrowPixel<Mask>(pixel[i], lanes + i * Mask::kCount);
      });
}

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::copyOthers(const Texture& in, const Texture& out) {
  if constexpr (PixelTraits<Pixel>::kComponents == 4 && !Mask::kAll) {
    walkRuns(this->rowLoop(), this->interrupt, out, gauss_filter::CopyRun<typename Mask::Others, Pixel>{}, in);
  }
}

template <class Pixel, class Accum, class Mask>
void GaussFilter<Pixel, Accum, Mask>::copyIntermediate(const Texture& out) {
  if constexpr (PixelTraits<Pixel>::kComponents == 4) {
    walkRuns(this->rowLoop(), this->interrupt, out, gauss_filter::CopyRun<Mask, Pixel>{}, *intermediate);
  } else {
    walkRuns(
        this->rowLoop(), this->interrupt, out,
        [](Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& run) { copyPixels(to, run, n); }, *intermediate);
  }
}

}  // namespace vblur
