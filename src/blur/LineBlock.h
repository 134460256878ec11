// Blocks of lines for the filter by lines: neighbouring rows or columns of a texture, read through its edge methods
// into lanes of 32 bits, integers or floats, and the buffers between two boxes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <type_traits>
#include <utility>

#include "blur/ExactBox.h"
#include "image/ChannelMask.h"
#include "image/HvMemory.h"
#include "image/HvTexture.h"

namespace vblur {

// What a component is in a block, and the box over it.
template <class Pixel>
using LaneOf = std::conditional_t<std::is_same_v<ComponentOf<Pixel>, float>, float, std::int32_t>;

template <class Pixel>
using BoxOf = std::conditional_t<std::is_same_v<LaneOf<Pixel>, float>, ExactBox, BoxConstants>;

template <class Pixel>
BoxOf<Pixel> boxOf(float radius) {
  if constexpr (std::is_same_v<BoxOf<Pixel>, ExactBox>) {
    return exactBox(radius);
  } else {
    return boxConstants(radius);
  }
}

// Lines of a block, side by side. The blocks of three boxes on floats stay in the second cache.
template <class Lane>
inline constexpr std::int32_t kBlockLines = std::is_same_v<Lane, float> ? 8 : 16;
// Lanes of one position, for Count components of each line.
template <class Lane, int Count>
inline constexpr int kBlockLanes = kBlockLines<Lane>* Count;

// Calls body(place, component) for each chosen component, both as compile-time constants.
template <class Mask, class Body>
constexpr void forEachChosen(const Body& body) {
  [&]<int... Place>(std::integer_sequence<int, Place...>) {
    (body(std::integral_constant<int, Place>{}, std::integral_constant<int, Mask::componentAt(Place)>{}), ...);
  }
  (std::make_integer_sequence<int, Mask::kCount>{});
}

template <class Lane, class Component>
constexpr Lane laneOf(Component v) {
  if constexpr (std::is_same_v<Lane, float>) {
    return carried(v);
  } else {
    return v;
  }
}

template <class Mask, class Pixel, class Lane = LaneOf<Pixel>>
inline void widenPixel(Lane* lanes, const Pixel& pixel) {
  forEachChosen<Mask>([&](auto place, auto component) {
    if constexpr (PixelTraits<Pixel>::kComponents == 1) {
      lanes[place] = laneOf<Lane>(componentOf(pixel, 0));
    } else if constexpr (component == 0) {
      lanes[place] = laneOf<Lane>(pixel.red);
    } else if constexpr (component == 1) {
      lanes[place] = laneOf<Lane>(pixel.green);
    } else if constexpr (component == 2) {
      lanes[place] = laneOf<Lane>(pixel.blue);
    } else {
      lanes[place] = laneOf<Lane>(pixel.alpha);
    }
  });
}

// Keeps the low bits of each integer lane; components that are not chosen stay as they are.
template <class Mask, class Pixel, class Lane = LaneOf<Pixel>>
inline void narrowPixel(Pixel& pixel, const Lane* lanes) {
  forEachChosen<Mask>([&](auto place, auto component) {
    const auto value = static_cast<ComponentOf<Pixel>>(lanes[place]);
    if constexpr (PixelTraits<Pixel>::kComponents == 1) {
      setComponent(pixel, 0, value);
    } else if constexpr (component == 0) {
      pixel.red = value;
    } else if constexpr (component == 1) {
      pixel.green = value;
    } else if constexpr (component == 2) {
      pixel.blue = value;
    } else {
      pixel.alpha = value;
    }
  });
}

// Zeroed 32-bit memory; null when there is none, and for a negative count.
struct FreeLanes {
  std::size_t bytes = 0;
  void operator()(void* lanes) const {
    HvNoteGiven(bytes);
    std::free(lanes);
  }
};
template <class Lane>
using LaneMemory = std::unique_ptr<Lane[], FreeLanes>;

template <class Lane>
LaneMemory<Lane> allocateLanes(std::int64_t positions, int lanes) {
  if (positions < 0) return {};
  const std::size_t count = static_cast<std::size_t>(positions) + 1;
  const std::size_t bytes = static_cast<std::size_t>(lanes) * sizeof(Lane);
  auto* memory = static_cast<Lane*>(std::calloc(count, bytes));
  if (memory == nullptr) return {};
  HvNoteTaken(count * bytes);
  return LaneMemory<Lane>(memory, FreeLanes{count * bytes});
}

// Reads the lines of a block.
template <class Lane>
class BlockReader {
 public:
  virtual ~BlockReader() = default;
  // Widens positions first to last - 1, in image coordinates.
  virtual void gather(std::int64_t first, std::int64_t last, Lane* block) const = 0;
};
// Stores the results of one position of a block.
template <class Lane>
class BlockWriter {
 public:
  virtual ~BlockWriter() = default;
  virtual void store(std::int64_t position, const Lane* lanes) const = 0;
};

// A block of rows, for the x pass.
template <class Mask, class Pixel, class Accum>
class RowLines : public BlockReader<LaneOf<Pixel>> {
 public:
  using Lane = LaneOf<Pixel>;
  static constexpr int kLanes = kBlockLanes<Lane, Mask::kCount>;

  RowLines(const HvTexture<Pixel, Accum>& in, std::int32_t firstRow, std::int32_t rows)
      : in_(in), firstRow_(firstRow), rows_(rows) {}

  // In tiles, so that rows that share cache lines of the block are written together.
  void gather(std::int64_t first, std::int64_t last, Lane* block) const override {
    constexpr std::int64_t kTile = 64;
    for (std::int64_t x = first; x < last;) {
      std::int64_t n = 0;
      for (std::int32_t j = 0; j < rows_; ++j) {
        const HvPixelRun<Pixel> run = in_.readRun(static_cast<std::int32_t>(x), firstRow_ + j);
        n = std::min({static_cast<std::int64_t>(run.length), last - x, kTile});
        const Pixel* pixel = run.first;
        Lane* lanes = block + (x - first) * kLanes + j * Mask::kCount;
        for (std::int64_t i = 0; i < n; ++i, pixel += run.step, lanes += kLanes) {
          widenPixel<Mask>(lanes, *pixel);
        }
      }
      x += n;
    }
  }

 private:
  const HvTexture<Pixel, Accum>& in_;
  std::int32_t firstRow_;
  std::int32_t rows_;
};

// A block of columns, for the y pass.
template <class Mask, class Pixel, class Accum>
class ColumnLines : public BlockReader<LaneOf<Pixel>> {
 public:
  using Lane = LaneOf<Pixel>;
  static constexpr int kLanes = kBlockLanes<Lane, Mask::kCount>;

  ColumnLines(const HvTexture<Pixel, Accum>& in, std::int32_t firstColumn, std::int32_t columns)
      : in_(in), firstColumn_(firstColumn), columns_(columns) {}

  void gather(std::int64_t first, std::int64_t last, Lane* block) const override {
    for (std::int64_t y = first; y < last; ++y) {
      Lane* lanes = block + (y - first) * kLanes;
      for (std::int32_t j = 0; j < columns_;) {
        const HvPixelRun<Pixel> run = in_.readRun(firstColumn_ + j, static_cast<std::int32_t>(y));
        const std::int32_t n = std::min(run.length, columns_ - j);
        const Pixel* pixel = run.first;
        for (std::int32_t i = 0; i < n; ++i, pixel += run.step, lanes += Mask::kCount) {
          widenPixel<Mask>(lanes, *pixel);
        }
        j += n;
      }
    }
  }

 private:
  const HvTexture<Pixel, Accum>& in_;
  std::int32_t firstColumn_;
  std::int32_t columns_;
};

// The results of one box for the next: lines of a fixed length, with an edge method beyond their ends.
template <class Lane, int Count>
class LineBuffer : public BlockReader<Lane> {
 public:
  static constexpr int kLanes = kBlockLanes<Lane, Count>;

  // Fails when there is no memory: see isReady.
  LineBuffer(std::int64_t start, std::int64_t length, std::int32_t edgeMethod, const Lane* outside)
      : memory_(allocateLanes<Lane>(length, kLanes)), start_(start), length_(length) {
    axis_.setSize(static_cast<std::int32_t>(length));
    axis_.setEdgeMethod(edgeMethod);
    for (std::int32_t j = 0; j < kBlockLines<Lane>; ++j)
      std::copy_n(outside, Count, outside_ + j * Count);
  }

  bool isReady() const { return memory_ != nullptr; }
  std::int64_t start() const { return start_; }
  std::int64_t end() const { return start_ + length_; }
  bool holds(std::int64_t first, std::int64_t last) const { return first >= start() && last <= end(); }
  Lane* row(std::int64_t position) { return memory_.get() + (position - start_) * kLanes; }

  // Positions beyond the ends come from the edge method.
  void gather(std::int64_t first, std::int64_t last, Lane* block) const override {
    for (std::int64_t i = first; i < last; ++i, block += kLanes) {
      const std::int32_t at = axis_.mapIndex(static_cast<std::int32_t>(i - start_));
      std::copy_n(at == kOutside ? outside_ : memory_.get() + at * static_cast<std::int64_t>(kLanes), kLanes, block);
    }
  }

 private:
  LaneMemory<Lane> memory_;
  std::int64_t start_;
  std::int64_t length_;
  HvTexAxis axis_;
  Lane outside_[kLanes] = {};
};

}  // namespace vblur
