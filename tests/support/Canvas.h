// Memory of a picture with guards around every row, which detect writes beside its pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "image/HvTexture.h"
#include "tests/support/PrintPixel.h"
#include "tests/support/Random.h"

namespace vblur::test {

// The layout of rows in memory. No result may depend on it.
struct Layout {
  int guard = 3;          // guard pixels on each side of every row
  int rowsApart = 1;      // 2: every other row belongs to the other field
  bool bottomUp = false;  // row 0 is the last in memory, the stride is negative
};

inline constexpr Layout kLayouts[] = {{3, 1, false}, {0, 1, false}, {1, 1, true}, {2, 2, false}, {5, 2, true}};

inline Layout randomLayout(Random& random) {
  return kLayouts[random.within(0, 4)];
}

// The component values of a random picture.
template <class Pixel>
struct ComponentRange {
  int low;
  int high;
};

template <class Pixel>
constexpr ComponentRange<Pixel> storageRange() {
  if constexpr (std::is_same_v<Pixel, int>) {
    return {kInt32Min, kInt32Max};
  } else {
    return {Pixel::kMin, Pixel::kMax};
  }
}

// Of a float: within the range and a little beyond it, sometimes at its ends or those of what is carried.
inline float randomFloat(Random& random, int low, int high) {
  const auto from = static_cast<float>(low);
  const auto to = static_cast<float>(high);
  if (random.oneIn(8)) return random.oneOf({from, to, 0.0f, -to, 1e-7f, -3e-5f, 0.18f, 65504.0f, -65504.0f});
  const float width = to - from;
  return random.between(from - 0.25f * width, to + 0.25f * width);
}

// Any value in the range, sometimes one of its ends.
template <class Pixel>
Pixel randomPixel(Random& random, ComponentRange<Pixel> range) {
  Pixel pixel{};
  for (int c = 0; c < PixelTraits<Pixel>::kComponents; ++c) {
    if constexpr (std::is_same_v<ComponentOf<Pixel>, float>) {
      setComponent(pixel, c, randomFloat(random, range.low, range.high));
      continue;
    }
    const int value = random.oneIn(8) ? random.oneOf({range.low, range.high}) : random.within(range.low, range.high);
    setComponent(pixel, c, static_cast<ComponentOf<Pixel>>(value));
  }
  return pixel;
}

template <class Pixel>
class Canvas {
 public:
  Canvas(int width, int height, const Layout& layout = {})
      : width_(width),
        height_(height),
        guard_(static_cast<std::size_t>(layout.guard) * sizeof(Pixel)),
        rowsApart_(layout.rowsApart),
        bottomUp_(layout.bottomUp),
        pitch_(static_cast<std::size_t>(width) * sizeof(Pixel) + 2 * guard_),
        memory_(pitch_ * (static_cast<std::size_t>(rowsApart_ * height_) + 2) + 1) {
    for (std::size_t i = 0; i < memory_.size(); ++i)
      memory_[i] = guardByte(i);
    for (int y = 0; y < height_; ++y)
      std::memset(static_cast<void*>(rowStart(y)), 0, rowBytes());
  }

  int width() const { return width_; }
  int height() const { return height_; }
  Pixel& at(int x, int y) { return rowStart(y)[x]; }
  const Pixel& at(int x, int y) const { return const_cast<Canvas*>(this)->rowStart(y)[x]; }

  void fill(const Pixel& pixel) {
    forEach([&](Pixel& to) { to = pixel; });
  }
  void fillRandom(Random& random, ComponentRange<Pixel> range = storageRange<Pixel>()) {
    forEach([&](Pixel& to) { to = randomPixel(random, range); });
  }

  // Copies the pixels of a canvas of the same size and layout; views of this one stay valid.
  void copyFrom(const Canvas& other) {
    for (int y = 0; y < height_; ++y)
      std::memcpy(static_cast<void*>(rowStart(y)), &other.at(0, y), rowBytes());
  }

  // Makes the texture a view of this memory, its box all of it.
  template <class Accum>
  void wrapIn(HvTexture<Pixel, Accum>& texture) {
    texture.wrap(width_, height_, height_ > 0 ? static_cast<void*>(rowStart(0)) : memory_.data());
    const auto step = static_cast<std::int64_t>(pitch_) * rowsApart_;
    texture.stride = bottomUp_ ? -step : step;
  }

  // The pixels row by row from row 0, in any layout.
  std::vector<Pixel> pixels() const {
    std::vector<Pixel> all;
    for (int y = 0; y < height_; ++y) {
      for (int x = 0; x < width_; ++x)
        all.push_back(at(x, y));
    }
    return all;
  }

  bool guardsAreIntact() const {
    std::vector<bool> isPixel(memory_.size(), false);
    for (int y = 0; y < height_; ++y) {
      const std::size_t start = rowOffset(y);
      for (std::size_t i = 0; i < rowBytes(); ++i)
        isPixel[start + i] = true;
    }
    for (std::size_t i = 0; i < memory_.size(); ++i) {
      if (!isPixel[i] && memory_[i] != guardByte(i)) return false;
    }
    return true;
  }

 private:
  static std::byte guardByte(std::size_t i) { return static_cast<std::byte>((i * 37 + 11) & 0xff); }
  std::size_t rowBytes() const { return static_cast<std::size_t>(width_) * sizeof(Pixel); }
  std::size_t rowOffset(int y) const {
    const int line = 1 + (bottomUp_ ? height_ - 1 - y : y) * rowsApart_;
    return static_cast<std::size_t>(line) * pitch_ + guard_;
  }
  Pixel* rowStart(int y) { return reinterpret_cast<Pixel*>(memory_.data() + rowOffset(y)); }

  template <class Body>
  void forEach(const Body& body) {
    for (int y = 0; y < height_; ++y) {
      for (int x = 0; x < width_; ++x)
        body(at(x, y));
    }
  }

  int width_;
  int height_;
  std::size_t guard_;
  int rowsApart_;
  bool bottomUp_;
  std::size_t pitch_;
  std::vector<std::byte> memory_;
};

// Random box, edge methods, origin and outside colour.
template <class Texture>
void setRandomSurroundings(Random& random, Texture& texture, ComponentRange<typename Texture::Pixel> range) {
  if (random.oneIn(2)) {
    const auto end = [&](std::int32_t size) { return random.within(-2, size + 1); };
    const int width = texture.width();
    const int height = texture.height();
    texture.setBounds(end(width), end(width), end(height), end(height));
  }
  texture.setEdgeMethods(random.within(0, 3), random.within(0, 3));
  texture.setOrigin(random.within(-6, 6), random.within(-6, 6));
  texture.setOutsideColour(randomPixel(random, range));
}

}  // namespace vblur::test
