// The image class: a view of foreign memory, or an owner of its own. It reads as an infinite plane: a box of real
// pixels, and an edge method per axis beyond it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <type_traits>
#include <utility>

#include "image/Arithmetic.h"
#include "image/CopyBits.h"
#include "image/HvMemory.h"
#include "image/HvScratch.h"
#include "image/HvTexIndexer.h"
#include "image/Pixels.h"

namespace vblur {

// A run of pixels for a loop: the first pixel, the step to the next in pixels (0 repeats one pixel, which may
// be the outside colour), the length, and whether it lies in the picture.
template <class Pixel>
struct HvPixelRun {
  const Pixel* first = nullptr;
  std::int32_t step = 0;
  std::int32_t length = 0;
  bool exists = false;
};

// The virtual operations of a texture, in their order. A texture of int returns a sample, all others write it
// to a result. Samples are part of the framework: the processors here read runs.
template <class Texture, class Pixel, class Accum>
class HvTextureOperations : public HvTexIndexer {
 public:
  // Makes this a second view of another texture: its axes, pixels, outside colour and stride.
  virtual void referTo(const Texture& other) = 0;
  virtual void setOutsideColour(const Pixel& pixel) = 0;
  virtual void sampleBox(Accum& result, float x1, float y1, float x2, float y2) const {
    result = static_cast<const Texture*>(this)->sampleAt((x1 + x2) * 0.5f, (y1 + y2) * 0.5f);
  }
  virtual void sampleAround(Accum& result, float x, float y, float dx, float dy) const {
    sampleBox(result, x - dx, y - dy, x + dx, y + dy);
  }
};

template <class Texture, class Pixel>
class HvTextureOperations<Texture, Pixel, int> : public HvTexIndexer {
 public:
  virtual void referTo(const Texture& other) = 0;
  virtual void setOutsideColour(const Pixel& pixel) = 0;
  virtual int sampleBox(float x1, float y1, float x2, float y2) const {
    return static_cast<const Texture*>(this)->sampleAt((x1 + x2) * 0.5f, (y1 + y2) * 0.5f);
  }
  virtual int sampleAround(float x, float y, float dx, float dy) const {
    return sampleBox(x - dx, y - dy, x + dx, y + dy);
  }
};

// Accum is what a filtered read gives: floats, or integers that truncate after each step.
template <class Pixel_, class Accum_>
class HvTexture : public HvTextureOperations<HvTexture<Pixel_, Accum_>, Pixel_, Accum_> {
 public:
  using Pixel = Pixel_;
  using Accum = Accum_;

  HvTexture() = default;
  // An owner of width x height pixels, all zero. See allocate for a failure.
  HvTexture(std::int32_t width, std::int32_t height) {
    this->horizontal.setSize(width);
    this->vertical.setSize(height);
    allocate();
  }
  HvTexture(const HvTexture&) = delete;
  HvTexture& operator=(const HvTexture&) = delete;
  ~HvTexture() override { freeOwned(); }

  void referTo(const HvTexture& other) override {
    if (this != &other) viewOf(other);
  }
  void setOutsideColour(const Pixel& pixel) override { outsideColour = pixel; }

  // Owns zeroed memory for the size of the axes. A size with a side of 0 has no pixels; a negative size, or
  // one that there is no memory for, sets allocationFailed.
  void allocate() {
    freeOwned();
    data = nullptr;
    allocationFailed = 0;
    owned = 1;
    const std::int64_t width = this->horizontal.size;
    const std::int64_t height = this->vertical.size;
    if (width == 0 || height == 0) return;
    stride = width * static_cast<std::int64_t>(sizeof(Pixel));
    if (width > 0 && height > 0) {
      // Extra rows make room for the alignment to a cache line.
      const auto rowBytes = static_cast<std::size_t>(stride);
      void* block = std::calloc(static_cast<std::size_t>(height) + kCacheLine / rowBytes + 1, rowBytes);
      ownedBlock_ = static_cast<std::byte*>(block);
      data = ownedBlock_ + (kCacheLine - reinterpret_cast<std::uintptr_t>(block) % kCacheLine) % kCacheLine;
      if (block == nullptr) data = nullptr;
    }
    if (data == nullptr) {
      allocationFailed = 1;
      return;
    }
    ownedBytes_ = static_cast<std::size_t>(height) * static_cast<std::size_t>(stride);
    HvNoteTaken(ownedBytes_);
  }

  // The same from scratch memory. Only a caller that writes every pixel may leave it uncleared.
  void allocateScratch(bool cleared) {
    freeOwned();
    allocationFailed = 0;
    const std::int64_t width = this->horizontal.size;
    const std::int64_t height = this->vertical.size;
    if (width <= 0 || height <= 0) return allocate();
    stride = scratchStride(width * static_cast<std::int64_t>(sizeof(Pixel)));
    const auto rowBytes = static_cast<std::size_t>(stride);
    const auto rows = static_cast<std::size_t>(height);
    const std::size_t bytes = rowBytes * rows;
    scratch_ = bytes / rowBytes == rows ? takeScratch(bytes) : HvScratchBlock{};
    data = scratch_.memory;
    owned = data != nullptr ? 1 : 0;
    if (data == nullptr) allocationFailed = 1;
    if (data != nullptr && cleared) clearBytes(data, bytes);
  }

  // A view of tightly packed memory; to wrap a field or a bottom-up image, set stride afterwards.
  void wrap(std::int32_t width, std::int32_t height, void* memory) {
    if (owned != 0) release();
    this->horizontal.size = width;
    this->vertical.size = height;
    this->wholeBounds();
    data = static_cast<std::byte*>(memory);
    owned = 0;
    stride = static_cast<std::int64_t>(width) * static_cast<std::int64_t>(sizeof(Pixel));
  }

  // Frees the pixels if they are owned; the texture is empty.
  void release() {
    freeOwned();
    data = nullptr;
    this->horizontal.size = 0;
    this->vertical.size = 0;
    this->setBounds(0, 0, 0, 0);
    stride = 0;
  }

  // referTo for a texture with another Accum. Does nothing if both have the same data, which includes two empty
  // textures.
  template <class OtherAccum>
  void share(const HvTexture<Pixel, OtherAccum>& other) {
    if (data != other.data) viewOf(other);
  }

  // Owns pixels for the axes of another texture; the outside colour is zero.
  template <class OtherPixel, class OtherAccum>
  void cloneShape(const HvTexture<OtherPixel, OtherAccum>& other) {
    if (static_cast<const void*>(this) == static_cast<const void*>(&other)) return;
    release();
    this->horizontal = other.horizontal;
    this->vertical = other.vertical;
    outsideColour = Pixel{};
    owned = 1;
    allocate();
  }

  bool hasPixels() const { return this->width() >= 1 && this->height() >= 1 && data != nullptr; }

  // The pixel at buffer indices, which must lie in the buffer.
  Pixel* at(std::int32_t x, std::int32_t y) const { return reinterpret_cast<Pixel*>(data + y * stride) + x; }

  // The pixel of a target at image coordinates, whatever its box and edge methods.
  Pixel* target(std::int32_t x, std::int32_t y) const {
    return at(x - this->horizontal.writeOrigin, y - this->vertical.writeOrigin);
  }

  // The run of pixels that starts at image coordinates (x, y). If either axis is outside it repeats
  // the outside colour.
  HvPixelRun<Pixel> readRun(std::int32_t x, std::int32_t y) const {
    const HvTexRun run = this->horizontal.runAt(x);
    if (run.index != kOutside) {
      const std::int32_t row = this->vertical.mapIndex(wrapSub(y, this->vertical.originI));
      if (row != kOutside) return {at(run.index, row), run.step, run.length, true};
    }
    return {&outsideColour, 0, run.length, false};
  }

  // The bilinear read at a point; pixel i covers i to i + 1 with its centre in the middle.
  Accum sampleAt(float x, float y) const;

  std::int32_t owned = 0;             // 1: data is this texture's to free
  std::byte* data = nullptr;          // the pixel at buffer index (0, 0)
  std::int32_t allocationFailed = 0;  // the last allocate found no memory
  Pixel outsideColour{};
  std::int64_t stride = 0;  // bytes from one row to the next; negative when rows run backwards

 private:
  template <class Other>
  void viewOf(const Other& other) {
    freeOwned();
    this->horizontal = other.horizontal;
    this->vertical = other.vertical;
    data = other.data;
    outsideColour = other.outsideColour;
    stride = other.stride;
    owned = 0;
  }

  void freeOwned() {
    if (owned == 0) return;
    if (scratch_.memory != nullptr) {
      giveScratch(scratch_);
      scratch_ = {};
    } else {
      std::free(ownedBlock_);
      ownedBlock_ = nullptr;
      HvNoteGiven(ownedBytes_);
      ownedBytes_ = 0;
    }
    data = nullptr;
  }

  HvScratchBlock scratch_;
  std::byte* ownedBlock_ = nullptr;
  std::size_t ownedBytes_ = 0;  // of memory that is not scratch

  static constexpr std::size_t kCacheLine = 64;

  // An odd number of whole cache lines: with a stride of a power of two, rows would compete for a few cache
  // sets.
  static constexpr std::int64_t scratchStride(std::int64_t bytes) {
    constexpr auto kLine = static_cast<std::int64_t>(kCacheLine);
    return ((bytes + kLine - 1) / kLine | 1) * kLine;
  }

  static Accum widened(const Pixel& pixel);
  static Accum between(const Accum& a, const Accum& b, float t);
  Accum pixelOrOutside(std::int32_t x, std::int32_t y) const {
    return widened(x == kOutside || y == kOutside ? outsideColour : *at(x, y));
  }
};

template <class Pixel, class Accum>
Accum HvTexture<Pixel, Accum>::widened(const Pixel& pixel) {
  Accum result{};
  for (int c = 0; c < PixelTraits<Pixel>::kComponents; ++c) {
    setComponent(result, c, static_cast<ComponentOf<Accum>>(componentOf(pixel, c)));
  }
  return result;
}

template <class Pixel, class Accum>
Accum HvTexture<Pixel, Accum>::between(const Accum& a, const Accum& b, float t) {
  Accum result{};
  for (int c = 0; c < PixelTraits<Accum>::kComponents; ++c) {
    setComponent(result, c, lerp(componentOf(a, c), componentOf(b, c), t));
  }
  return result;
}

template <class Pixel, class Accum>
Accum HvTexture<Pixel, Accum>::sampleAt(float x, float y) const {
  const float fx = x - 0.5f - this->horizontal.originF;
  const float fy = y - 0.5f - this->vertical.originF;
  const std::int32_t ix = floorToInt(fx);
  const std::int32_t iy = floorToInt(fy);
  const float tx = fx - static_cast<float>(ix);
  const float ty = fy - static_cast<float>(iy);
  const HvTexPair px = this->horizontal.pairAt(ix);
  const HvTexPair py = this->vertical.pairAt(iy);

  if ((px.p0 == kOutside && px.p1 == kOutside) || (py.p0 == kOutside && py.p1 == kOutside)) {
    return widened(outsideColour);
  }
  // Beyond a repeated or mirrored edge both pixels of an axis are the same: nothing to interpolate.
  if (px.p0 == px.p1 && py.p0 == py.p1) return pixelOrOutside(px.p0, py.p0);
  if (px.p0 == px.p1) return between(pixelOrOutside(px.p0, py.p0), pixelOrOutside(px.p0, py.p1), ty);
  const Accum lower = between(pixelOrOutside(px.p0, py.p0), pixelOrOutside(px.p1, py.p0), tx);
  if (py.p0 == py.p1) return lower;
  return between(lower, between(pixelOrOutside(px.p0, py.p1), pixelOrOutside(px.p1, py.p1), tx), ty);
}

}  // namespace vblur
