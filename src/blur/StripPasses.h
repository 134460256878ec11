// The passes of the filter in strips: how pixels come into the rows of a strip and out of them again.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>

#include "blur/StripBoxes.h"
#include "blur/TurnPixels.h"
#include "image/ChannelMask.h"

namespace vblur {

// Positions are taken a few at a time, so that the cache lines of rows that they share stay at hand.
inline constexpr std::int64_t kStripTile = 16;

template <class Pixel>
Pixel* pixelsOf(ComponentOf<Pixel>* row) {
  static_assert(sizeof(Pixel) == 4 * sizeof(ComponentOf<Pixel>));
  return reinterpret_cast<Pixel*>(row);
}

// A pixel as the one number that fills it.
template <class Pixel>
using PixelWord = std::conditional_t<sizeof(Pixel) == 4, std::uint32_t, std::uint64_t>;

// How many positions from x on lie side by side in memory for all lines of a whole strip of rows, in squares
// that can be turned; the first of them in `line`.
template <class Pixel, class Accum>
std::int32_t turnable(const HvTexture<Pixel, Accum>& in, std::int64_t x, std::int64_t last, std::int32_t firstRow,
                      const Pixel** line) {
  constexpr std::int32_t kLines = StripBoxes<Pixel>::kLines;
  const HvTexRun run = in.horizontal.runAt(static_cast<std::int32_t>(x));
  if (run.index == kOutside || run.step != 1) return 0;
  const std::int32_t row = wrapSub(firstRow, in.vertical.originI);
  // Inside the box every row stands for itself.
  if (row < in.vertical.lo || row > in.vertical.hi - (kLines - 1)) return 0;
  *line = in.at(run.index, row);
  const std::int64_t length = std::min({static_cast<std::int64_t>(run.length), last - x, kStripTile});
  return static_cast<std::int32_t>(length) / 4 * 4;
}

// Rows of a picture become lines of a strip: line j is picture row firstRow + j, read at the positions
// [first, last) along x through the edge methods. Row 0 of the strip is position `start`.
template <class Pixel, class Accum>
void gatherRows(const HvTexture<Pixel, Accum>& in, std::int32_t firstRow, std::int32_t n, const BoxReach& range,
                const StripRows<ComponentOf<Pixel>>& rows, std::int64_t start) {
  constexpr std::int32_t kLines = StripBoxes<Pixel>::kLines;
  for (std::int64_t x = range.first; x < range.last;) {
    const Pixel* line = nullptr;
    const std::int64_t end = std::min(range.last, x + rows.together(x - start));
    if (const std::int32_t count = n == kLines ? turnable(in, x, end, firstRow, &line) : 0; count > 0) {
      turnIntoStrip(reinterpret_cast<const PixelWord<Pixel>*>(line), in.stride, kLines, count,
                    reinterpret_cast<PixelWord<Pixel>*>(rows.row(x - start)), kLines);
      x += count;
      continue;
    }
    std::int64_t length = 0;
    for (std::int32_t j = 0; j < n; ++j) {
      const HvPixelRun<Pixel> run = in.readRun(static_cast<std::int32_t>(x), firstRow + j);
      length = std::min({static_cast<std::int64_t>(run.length), end - x, kStripTile});
      const Pixel* pixel = run.first;
      Pixel* to = pixelsOf<Pixel>(rows.row(x - start)) + j;
      for (std::int64_t i = 0; i < length; ++i, pixel += run.step, to += kLines)
        *to = *pixel;
    }
    x += length;
  }
}

// Columns of a picture become lines of a strip, read along y.
template <class Pixel, class Accum>
void gatherColumns(const HvTexture<Pixel, Accum>& in, std::int32_t firstColumn, std::int32_t n, const BoxReach& range,
                   const StripRows<ComponentOf<Pixel>>& rows, std::int64_t start) {
  for (std::int64_t y = range.first; y < range.last; ++y) {
    Pixel* to = pixelsOf<Pixel>(rows.row(y - start));
    for (std::int32_t j = 0; j < n;) {
      const HvPixelRun<Pixel> run = in.readRun(firstColumn + j, static_cast<std::int32_t>(y));
      const std::int32_t length = std::min(run.length, n - j);
      const Pixel* pixel = run.first;
      for (std::int32_t i = 0; i < length; ++i, pixel += run.step)
        *to++ = *pixel;
      j += length;
    }
  }
}

// The lines of a strip become rows of a picture, at the positions of [first, last) that it has.
template <class Mask, class Pixel, class Accum>
void scatterRows(const StripRows<ComponentOf<Pixel>>& rows, std::int64_t start, const BoxReach& range,
                 std::int32_t firstRow, std::int32_t n, const HvTexture<Pixel, Accum>& out) {
  constexpr std::int32_t kLines = StripBoxes<Pixel>::kLines;
  const std::int64_t firstColumn = out.horizontal.writeOrigin;
  const std::int64_t last = std::min(range.last, firstColumn + out.width());
  std::int32_t length = 0;
  for (std::int64_t x = std::max(range.first, firstColumn); x < last; x += length) {
    length = static_cast<std::int32_t>(std::min({last - x, kStripTile, rows.together(x - start)}));
    if (Mask::kAll && n == kLines && length % 4 == 0) {
      turnOutOfStrip(reinterpret_cast<const PixelWord<Pixel>*>(rows.row(x - start)), kLines, kLines, length,
                     reinterpret_cast<PixelWord<Pixel>*>(out.target(static_cast<std::int32_t>(x), firstRow)),
                     out.stride);
      continue;
    }
    for (std::int32_t j = 0; j < n; ++j) {
      const HvPixelRun<Pixel> run{pixelsOf<Pixel>(rows.row(x - start)) + j, kLines, length, true};
      copyChannels<Mask>(out.target(static_cast<std::int32_t>(x), firstRow + j), run, length);
    }
  }
}

// The lines of a strip become columns of a picture.
template <class Mask, class Pixel, class Accum>
void scatterColumns(const StripRows<ComponentOf<Pixel>>& rows, std::int64_t start, const BoxReach& range,
                    std::int32_t firstColumn, std::int32_t n, const HvTexture<Pixel, Accum>& out) {
  for (std::int64_t y = range.first; y < range.last; ++y) {
    const HvPixelRun<Pixel> run{pixelsOf<Pixel>(rows.row(y - start)), 1, n, true};
    copyChannels<Mask>(out.target(firstColumn, static_cast<std::int32_t>(y)), run, n);
  }
}

// The rows of a picture at the positions that a pass along y reads, worked out once for all strips.
template <class Pixel, class Accum>
class ColumnRows {
 public:
  using Component = ComponentOf<Pixel>;

  ColumnRows(const HvTexture<Pixel, Accum>& in, const BoxReach& range)
      : in_(in),
        range_(range),
        outside_(1, 1),
        rows_(std::max<std::int64_t>(range.last - range.first, 0)),
        strip_(std::max<std::int64_t>(range.last - range.first, 0)) {
    if (!isReady()) return;
    std::fill_n(pixelsOf<Pixel>(outside_.row(0)), StripBoxes<Pixel>::kLines, in.outsideColour);
    for (std::int64_t y = range.first; y < range.last; ++y) {
      const std::int32_t row = in.vertical.mapIndex(wrapSub(static_cast<std::int32_t>(y), in.vertical.originI));
      rows_.table[y - range.first] = row == kOutside ? nullptr : in.at(0, row);
    }
  }

  bool isReady() const { return outside_.isReady() && rows_.table != nullptr && strip_.table != nullptr; }

  // The rows of a whole strip from a column on, where the columns lie side by side in memory; else null.
  const Component* const* at(std::int32_t firstColumn) {
    const HvTexRun run = in_.horizontal.runAt(firstColumn);
    if (run.index == kOutside || run.step != 1 || run.length < StripBoxes<Pixel>::kLines) return nullptr;
    for (std::int64_t i = 0; i < range_.last - range_.first; ++i) {
      const Pixel* row = rows_.table[i];
      strip_.table[i] = row == nullptr ? outside_.row(0) : reinterpret_cast<const Component*>(row + run.index);
    }
    return strip_.table.get();
  }

 private:
  template <class T>
  struct Table {
    explicit Table(std::int64_t count) : table(new (std::nothrow) T[static_cast<std::size_t>(count) + 1]) {}
    std::unique_ptr<T[]> table;
  };

  const HvTexture<Pixel, Accum>& in_;
  BoxReach range_;
  StripRows<Component> outside_;
  Table<const Pixel*> rows_;
  Table<const Component*> strip_;
};

// Where the rows of whole strips lie in a target, to be written in place.
template <class Pixel, class Accum>
class StripTargets {
 public:
  using Component = ComponentOf<Pixel>;

  StripTargets(const HvTexture<Pixel, Accum>& out, const BoxReach& range)
      : out_(out),
        range_(range),
        rows_(new (std::nothrow)
                  Component*[static_cast<std::size_t>(std::max<std::int64_t>(range.last - range.first, 0)) + 1]) {}

  bool isReady() const { return rows_ != nullptr; }

  Component* const* at(std::int32_t firstColumn) {
    for (std::int64_t y = range_.first; y < range_.last; ++y)
      rows_[static_cast<std::size_t>(y - range_.first)] =
          reinterpret_cast<Component*>(out_.target(firstColumn, static_cast<std::int32_t>(y)));
    return rows_.get();
  }

 private:
  const HvTexture<Pixel, Accum>& out_;
  BoxReach range_;
  std::unique_ptr<Component*[]> rows_;
};

}  // namespace vblur
