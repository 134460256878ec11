#include "blur/GaussFilter.h"

#include <algorithm>
#include <new>
#include <type_traits>

#include "blur/BoxSweep.h"
#include "blur/FilterChannels.h"
#include "blur/FusedPasses.h"
#include "blur/PassRanges.h"
#include "blur/StripPasses.h"
#include "image/HvCpu.h"
#include "image/SimpleCopySampler.h"

namespace vblur {
namespace {

template <class Texture>
void takeSurroundings(Texture& texture, const Texture& from) {
  texture.setEdgeMethods(from.horizontal.edgeMethod, from.vertical.edgeMethod);
  texture.setOutsideColour(from.outsideColour);
}

// The body of a row loop that copies the components of a mask.
template <class Pixel>
auto copyingRuns(void (*copy)(Pixel* out, const HvPixelRun<Pixel>& run, std::int32_t n)) {
  return [copy](Pixel* out, std::int32_t n, const HvPixelRun<Pixel>& run) { copy(out, run, n); };
}

}  // namespace

template <class Pixel, class Accum>
GaussFilter<Pixel, Accum>::GaussFilter(const FilterChannels<Pixel, Accum>& channels) : channels_(channels) {}
template <class Pixel, class Accum>
GaussFilter<Pixel, Accum>::~GaussFilter() = default;

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::preProcess(Texture* in, Texture* out) {
  strips_.reset();
  fused_.reset();
  // A preparation that fails leaves one empty pass.
  this->passes = 1;
  limitSizes();
  lineLengthX = std::max(in->width(), this->mapWidth);
  lineLengthY = std::max(in->height(), this->mapHeight);
  save(*in, *out);
  copyBack = 0;
  if (sizeX == 0.0f && sizeY == 0.0f) return copyWhole(in, out);
  takeSurroundings(*out, *in);
  if (runsInStrips()) return makeVectorPasses(*in, *out);
  if (!makeIntermediate()) return;
  takeSurroundings(*intermediate, *in);
  const std::int32_t y = wrapSub(savedWriteOriginY, verticalMargin());
  intermediate->setOrigin(savedWriteOriginX, y);
  intermediate->setWriteOrigin(savedWriteOriginX, y);
  this->passes = 3;
}

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::prePass(Texture* in, Texture* out) {
  // Nothing is left to do: no other thread need wake.
  if (fused_ != nullptr && this->pass > 0) this->flags |= Imager::kOneThread;
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

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::processRows(Texture* in, Texture* out) {
  if (poll(this->interrupt) != 0) return;
  if (fused_ != nullptr) return processFused(*in, *out);
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

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::postProcess(Texture* /*in*/, Texture* /*out*/) {
  strips_.reset();
  if (fused_ != nullptr && !runsAlone_) this->flags &= ~static_cast<std::uint32_t>(Imager::kOneThread);
  fused_.reset();
  // After a stop in the first pass it is still the wider one.
  restoreWindow();
}

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::limitSizes() {
  sizeX = sizeX / this->aspect;
  const float limit = static_cast<float>(std::max(this->mapWidth, this->mapHeight)) * 3.0f;
  if (sizeX > limit) sizeX = limit;
  if (sizeY > limit) sizeY = limit;
  if constexpr (std::is_same_v<BoxOf<Pixel>, ExactBox>) {
    sizeX = exactRadius(sizeX);
    sizeY = exactRadius(sizeY);
  }
}

template <class Pixel, class Accum>
std::int32_t GaussFilter<Pixel, Accum>::verticalMargin() const {
  return truncToInt((sizeY + 2.0f) * static_cast<float>(boxes));
}

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::save(const Texture& in, const Texture& out) {
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

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::restoreWindow() {
  this->x1 = savedWindowX1;
  this->x2 = savedWindowX2;
  this->y1 = savedWindowY1;
  this->y2 = savedWindowY2;
}

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::restore(Texture& in, Texture& out) {
  out.setWriteOrigin(savedWriteOriginX, savedWriteOriginY);
  out.setEdgeMethods(savedEdgeX, savedEdgeY);
  out.setOutsideColour(savedOutsideColour);
  restoreWindow();
  if (copyBack == 0 || intermediate == nullptr) return;
  in.setOrigin(savedInputOriginX, savedInputOriginY);
  intermediate->setBounds(in.horizontal.lo, in.horizontal.hi, in.vertical.lo, in.vertical.hi);
  intermediate->setOrigin(in.horizontal.originI, in.vertical.originI);
}

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::copyWhole(Texture* in, Texture* out) {
  SimpleCopySampler<Pixel, Accum> copy;
  copy.runLike(*this);
  copy.copyWindow(*this);
  copy.process(in, out);
  this->passes = 0;
}

// Whether the x pass writes every component of the intermediate. The ranges of boxes of a radius below zero may leave
// something out.
template <class Pixel, class Accum>
bool GaussFilter<Pixel, Accum>::fillsIntermediate() const {
  return sizeX >= 0.0f && channels_.filtered.all && savedWindowX1 <= savedWriteOriginX &&
         savedWindowX2 >= static_cast<std::int64_t>(savedWriteOriginX) + this->mapWidth &&
         savedWindowY1 <= savedWriteOriginY &&
         savedWindowY2 >= static_cast<std::int64_t>(savedWriteOriginY) + lineLengthY;
}

template <class Pixel, class Accum>
bool GaussFilter<Pixel, Accum>::makeIntermediate() {
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

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::clearIntermediate() {
  for (std::int32_t y = 0; y < intermediate->height(); ++y)
    clearBytes(intermediate->at(0, y), static_cast<std::size_t>(intermediate->width()) * sizeof(Pixel));
}

// Vector code filters with three boxes that BoxSweep accepts, within the picture.
template <class Pixel, class Accum>
bool GaussFilter<Pixel, Accum>::runsInStrips() const {
  if (!HvUsesVectors() || boxes != 3 || keepsIntermediate) return false;
  if (!sweepKnows(boxOf<Pixel>(sizeX)) || !sweepKnows(boxOf<Pixel>(sizeY))) return false;
  const auto within = [](std::int64_t first, std::int64_t last, std::int64_t origin, std::int64_t length) {
    return first < last && first >= origin && last <= origin + length;
  };
  return within(this->x1, this->x2, savedWriteOriginX, this->mapWidth) &&
         within(this->y1, this->y2, savedWriteOriginY, this->mapHeight);
}

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::processFused(const Texture& in, const Texture& out) {
  if constexpr (kFuses<Pixel>) {
    if (this->pass == 0 && !fused_->run(in, out, this->interrupt)) stopForRefusedMemory(this->interrupt);
  }
}

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::makeVectorPasses(const Texture& in, const Texture& out) {
  intermediate.reset();
  // A view of so many bytes cannot have memory behind it, so it counts as refused memory.
  constexpr double kMostBytes = 1e12;
  const double bytes = static_cast<double>(this->mapWidth) * this->mapHeight * sizeof(Pixel);
  if (bytes > kMostBytes) return stopForRefusedMemory(this->interrupt);
  if (!makeFused(in, out)) makeStrips(in);
}

// False: two passes.
template <class Pixel, class Accum>
bool GaussFilter<Pixel, Accum>::makeFused(const Texture& in, const Texture& out) {
  if constexpr (kFuses<Pixel>) {
    using Passes = FusedPasses<Pixel, Accum>;
    const auto boxX = boxOf<Pixel>(sizeX);
    const auto boxY = boxOf<Pixel>(sizeY);
    if (!Passes::fits(in, out, boxX, boxY, channels_.filtered, keepsOthers)) return false;
    runsAlone_ = (this->flags & Imager::kOneThread) != 0;
    const std::int32_t threads = runsAlone_ ? 1 : HvThreadCount();
    fused_.reset(new (std::nothrow)
                     Passes(out, boxX, boxY, {this->x1, this->x2}, {this->y1, this->y2}, channels_.filtered, threads));
    if (fused_ != nullptr && fused_->pays()) {
      this->passes = 3;
      return true;
    }
    fused_.reset();
  }
  return false;
}

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::makeStrips(const Texture& in) {
  strips_.reset(new (std::nothrow)
                    StripPasses<Pixel, Accum>(in, boxOf<Pixel>(sizeX), boxOf<Pixel>(sizeY), {this->x1, this->x2},
                                              {this->y1, this->y2}, channels_.filtered, keepsOthers));
  if (strips_ != nullptr && strips_->isReady()) {
    this->passes = 3;
    return;
  }
  strips_.reset();
  stopForRefusedMemory(this->interrupt);
}

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::processStrips(const Texture& in, const Texture& out) {
  if (this->pass > 1) return;
  const bool alongX = this->pass == 0;
  const HvSpan band = this->bandOfThread(0, alongX ? strips_->stripsAlongX() : strips_->stripsAlongY());
  const bool done = alongX ? strips_->alongX(in, band, this->interrupt) : strips_->alongY(out, band, this->interrupt);
  if (!done) stopForRefusedMemory(this->interrupt);
}

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::filterAlongX(const Texture& in) {
  filterPlain({this->bandOfThread(this->y1, this->y2),
               boxOf<Pixel>(sizeX),
               boxes,
               {this->x1, this->x2, savedWriteOriginX, lineLengthX, in.horizontal.edgeMethod, false},
               this->interrupt},
              channels_.filterRows, in, *intermediate);
}

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::filterAlongY(const Texture& out) {
  filterPlain({this->bandOfThread(this->x1, this->x2),
               boxOf<Pixel>(sizeY),
               boxes,
               {this->y1, this->y2, savedWriteOriginY, lineLengthY, intermediate->vertical.edgeMethod, true},
               this->interrupt},
              channels_.filterColumns, *intermediate, out);
}

// A line of negative length counts as refused memory, even with nothing to filter.
template <class Pixel, class Accum>
template <class Filter>
void GaussFilter<Pixel, Accum>::filterPlain(const PlainPass<BoxOf<Pixel>>& plain, const Filter& filter,
                                            const Texture& in, const Texture& out) {
  if (plain.axis.lineLength + 2 * plain.box.margin(boxes) < 0) return stopForMemory(this->interrupt);
  if (plain.lines.first < plain.lines.last) filter(plain, in, out);
}

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::copyOthers(const Texture& in, const Texture& out) {
  if (channels_.copyOthers == nullptr) return;
  walkRuns(this->rowLoop(), this->interrupt, out, copyingRuns(channels_.copyOthers), in);
}

template <class Pixel, class Accum>
void GaussFilter<Pixel, Accum>::copyIntermediate(const Texture& out) {
  walkRuns(this->rowLoop(), this->interrupt, out, copyingRuns(channels_.filtered.copy), *intermediate);
}

template class GaussFilter<R8, Ri>;
template class GaussFilter<R16, Ri>;
template class GaussFilter<Ri, Ri>;
template class GaussFilter<C8, Ci>;
template class GaussFilter<C16, Ci>;
template class GaussFilter<int, int>;
template class GaussFilter<Rf, Rf>;
template class GaussFilter<Cf, Cf>;

}  // namespace vblur
