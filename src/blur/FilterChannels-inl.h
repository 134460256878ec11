// filterChannels, for the files that list its instances.
#pragma once

#include <algorithm>
#include <cstddef>

#include "blur/FilterChannels.h"
#include "blur/ThreeBoxes.h"

namespace vblur {
namespace filter_channels {

// Stores the results of n lines from `line` on.
template <class Lane, class Store>
class StoreOf : public BlockWriter<Lane> {
 public:
  StoreOf(const Store& store, std::int32_t line, std::int32_t n) : store_(store), line_(line), n_(n) {}
  void store(std::int64_t position, const Lane* lanes) const override { store_(line_, n_, position, lanes); }

 private:
  const Store& store_;
  std::int32_t line_;
  std::int32_t n_;
};

// Filters the lines of a pass in blocks. makeLines(line, n) reads n lines; store(line, n, position, lanes) takes the
// result of one position.
template <class Mask, class Pixel, class MakeLines, class Store>
void filterLines(const PlainPass<BoxOf<Pixel>>& pass, const Pixel& outside, const MakeLines& makeLines,
                 const Store& store) {
  using Lane = LaneOf<Pixel>;
  Lane outsideLanes[Mask::kCount];
  widenPixel<Mask>(outsideLanes, outside);
  ThreeBoxes<Lane, Mask::kCount> threeBoxes(pass.box, pass.boxes, pass.axis, outsideLanes);
  if (!threeBoxes.isReady()) return stopForRefusedMemory(pass.interrupt);
  for (std::int32_t line = pass.lines.first; line < pass.lines.last; line += kBlockLines<Lane>) {
    const std::int32_t n = std::min(kBlockLines<Lane>, pass.lines.last - line);
    for (std::int32_t i = 0; i < n; ++i) {
      if (poll(pass.interrupt) != 0) return;
    }
    threeBoxes.run(makeLines(line, n), StoreOf<Lane, Store>(store, line, n));
  }
}

template <class Mask, class Pixel, class Accum>
void filterRows(const PlainPass<BoxOf<Pixel>>& pass, const HvTexture<Pixel, Accum>& in,
                const HvTexture<Pixel, Accum>& out) {
  const std::int64_t firstColumn = out.horizontal.writeOrigin;
  const std::int64_t lastColumn = firstColumn + out.width();
  filterLines<Mask>(
      pass, in.outsideColour, [&](std::int32_t y, std::int32_t n) { return RowLines<Mask, Pixel, Accum>(in, y, n); },
      [&](std::int32_t y, std::int32_t n, std::int64_t x, const LaneOf<Pixel>* lanes) {
        if (x < firstColumn || x >= lastColumn) return;
        Pixel* pixel = out.target(static_cast<std::int32_t>(x), y);
        for (std::int32_t i = 0; i < n; ++i) {
          narrowPixel<Mask>(*pixel, lanes + i * Mask::kCount);
          pixel = reinterpret_cast<Pixel*>(reinterpret_cast<std::byte*>(pixel) + out.stride);
        }
      });
}

template <class Mask, class Pixel, class Accum>
void filterColumns(const PlainPass<BoxOf<Pixel>>& pass, const HvTexture<Pixel, Accum>& in,
                   const HvTexture<Pixel, Accum>& out) {
  filterLines<Mask>(
      pass, in.outsideColour, [&](std::int32_t x, std::int32_t n) { return ColumnLines<Mask, Pixel, Accum>(in, x, n); },
      [&](std::int32_t x, std::int32_t n, std::int64_t y, const LaneOf<Pixel>* lanes) {
        Pixel* pixel = out.target(x, static_cast<std::int32_t>(y));
        for (std::int32_t i = 0; i < n; ++i)
          narrowPixel<Mask>(pixel[i], lanes + i * Mask::kCount);
      });
}

}  // namespace filter_channels

template <class Mask, class Pixel, class Accum>
const FilterChannels<Pixel, Accum>& filterChannels() {
  static const FilterChannels<Pixel, Accum> channels = [] {
    FilterChannels<Pixel, Accum> made;
    made.filtered = StripChannels<Pixel>::template of<Mask>();
    if constexpr (Mask::kCount < PixelTraits<Pixel>::kComponents) {
      made.copyOthers = copyChannels<typename Mask::Others, Pixel>;
    }
    made.filterRows = filter_channels::filterRows<Mask, Pixel, Accum>;
    made.filterColumns = filter_channels::filterColumns<Mask, Pixel, Accum>;
    return made;
  }();
  return channels;
}

}  // namespace vblur
