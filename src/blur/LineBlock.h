// Blocks of lines for the plain filter: neighbouring rows or columns of a texture, read through its edge methods into
// 32-bit lanes, and the buffers between two boxes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <utility>

#include "image/ChannelMask.h"
#include "image/HvMemory.h"
#include "image/HvTexture.h"

namespace vblur {

// Lines of a block, side by side.
inline constexpr std::int32_t kBlockLines = 16;
// Lanes of one position, for Count components of each line.
template <int Count>
inline constexpr int kBlockLanes = kBlockLines* Count;

// Calls body(place, component) for each chosen component, both as compile-time constants.
template <class Mask, class Body>
constexpr void forEachChosen(const Body& body) {
  [&]<int... Place>(std::integer_sequence<int, Place...>) {
    (body(std::integral_constant<int, Place>{}, std::integral_constant<int, Mask::componentAt(Place)>{}), ...);
  }
  (std::make_integer_sequence<int, Mask::kCount>{});
}

template <class Mask, class Pixel>
inline void widenPixel(std::int32_t* lanes, const Pixel& pixel) {
  forEachChosen<Mask>([&](auto place, auto component) {
    if constexpr (PixelTraits<Pixel>::kComponents == 1) {
      lanes[place] = componentOf(pixel, 0);
    } else if constexpr (component == 0) {
      lanes[place] = pixel.red;
    } else if constexpr (component == 1) {
      lanes[place] = pixel.green;
    } else if constexpr (component == 2) {
      lanes[place] = pixel.blue;
    } else {
      lanes[place] = pixel.alpha;
    }
  });
}

// Keeps the low bits of each lane; components that are not chosen stay as they are.
template <class Mask, class Pixel>
inline void narrowPixel(Pixel& pixel, const std::int32_t* lanes) {
  forEachChosen<Mask>([&](auto place, auto component) {
    const auto value = storeNarrow<ComponentOf<Pixel>>(lanes[place]);
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
  void operator()(std::int32_t* lanes) const {
    HvNoteGiven(bytes);
    std::free(lanes);
  }
};
using LaneMemory = std::unique_ptr<std::int32_t[], FreeLanes>;

inline LaneMemory allocateLanes(std::int64_t positions, int lanes) {
  if (positions < 0) return {};
  const std::size_t count = static_cast<std::size_t>(positions) + 1;
  const std::size_t bytes = static_cast<std::size_t>(lanes) * sizeof(std::int32_t);
  auto* memory = static_cast<std::int32_t*>(std::calloc(count, bytes));
  if (memory == nullptr) return {};
  HvNoteTaken(count * bytes);
  return LaneMemory(memory, FreeLanes{count * bytes});
}

// Reads the lines of a block.
class BlockReader {
 public:
  virtual ~BlockReader() = default;
  // Widens positions first to last - 1, in image coordinates.
  virtual void gather(std::int64_t first, std::int64_t last, std::int32_t* block) const = 0;
};
// Stores the results of one position of a block.
class BlockWriter {
 public:
  virtual ~BlockWriter() = default;
  virtual void store(std::int64_t position, const std::int32_t* lanes) const = 0;
};

// A block of rows, for the x pass.
template <class Mask, class Pixel, class Accum>
class RowLines : public BlockReader {
 public:
  RowLines(const HvTexture<Pixel, Accum>& in, std::int32_t firstRow, std::int32_t rows)
      : in_(in), firstRow_(firstRow), rows_(rows) {}

  // In tiles, so that rows that share cache lines of the block are written together.
  void gather(std::int64_t first, std::int64_t last, std::int32_t* block) const override {
    constexpr std::int64_t kTile = 64;
    for (std::int64_t x = first; x < last;) {
      std::int64_t n = 0;
      for (std::int32_t j = 0; j < rows_; ++j) {
        const HvPixelRun<Pixel> run = in_.readRun(static_cast<std::int32_t>(x), firstRow_ + j);
        n = std::min({static_cast<std::int64_t>(run.length), last - x, kTile});
        const Pixel* pixel = run.first;
        std::int32_t* lanes = block + (x - first) * kBlockLanes<Mask::kCount> + j * Mask::kCount;
        for (std::int64_t i = 0; i < n; ++i, pixel += run.step, lanes += kBlockLanes<Mask::kCount>) {
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
class ColumnLines : public BlockReader {
 public:
  ColumnLines(const HvTexture<Pixel, Accum>& in, std::int32_t firstColumn, std::int32_t columns)
      : in_(in), firstColumn_(firstColumn), columns_(columns) {}

  void gather(std::int64_t first, std::int64_t last, std::int32_t* block) const override {
    for (std::int64_t y = first; y < last; ++y) {
      std::int32_t* lanes = block + (y - first) * kBlockLanes<Mask::kCount>;
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
template <int Count>
class LineBuffer : public BlockReader {
 public:
  static constexpr int kLanes = kBlockLanes<Count>;

  // Fails when there is no memory: see isReady.
  LineBuffer(std::int64_t start, std::int64_t length, std::int32_t edgeMethod, const std::int32_t* outside)
      : memory_(allocateLanes(length, kLanes)), start_(start), length_(length) {
    axis_.setSize(static_cast<std::int32_t>(length));
    axis_.setEdgeMethod(edgeMethod);
    for (std::int32_t j = 0; j < kBlockLines; ++j)
      std::copy_n(outside, Count, outside_ + j * Count);
  }

  bool isReady() const { return memory_ != nullptr; }
  std::int64_t start() const { return start_; }
  std::int64_t end() const { return start_ + length_; }
  bool holds(std::int64_t first, std::int64_t last) const { return first >= start() && last <= end(); }
  std::int32_t* row(std::int64_t position) { return memory_.get() + (position - start_) * kLanes; }

  // Positions beyond the ends come from the edge method.
  void gather(std::int64_t first, std::int64_t last, std::int32_t* block) const override {
    for (std::int64_t i = first; i < last; ++i, block += kLanes) {
      const std::int32_t at = axis_.mapIndex(static_cast<std::int32_t>(i - start_));
      std::copy_n(at == kOutside ? outside_ : memory_.get() + at * static_cast<std::int64_t>(kLanes), kLanes, block);
    }
  }

 private:
  LaneMemory memory_;
  std::int64_t start_;
  std::int64_t length_;
  HvTexAxis axis_;
  std::int32_t outside_[kLanes] = {};
};

}  // namespace vblur
