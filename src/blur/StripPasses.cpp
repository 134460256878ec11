#include "blur/StripPasses.h"

#include <algorithm>
#include <memory>
#include <new>

#include <hwy/cache_control.h>

#include "blur/CarriedRows.h"
#include "blur/PassRanges.h"
#include "blur/StreamRows.h"
#include "blur/StripBoxes.h"
#include "blur/StripTile.h"
#include "image/HvMemory.h"

namespace vblur {
namespace {

template <class Pixel>
ComponentOf<Pixel>* componentsOf(Pixel* pixel) {
  return reinterpret_cast<ComponentOf<Pixel>*>(pixel);
}

// How far ahead output rows are prefetched, in rows: they are pages apart.
constexpr std::int64_t kRowsAhead = 24;

template <class Pixel>
bool isLineAligned(const Pixel* first, std::int64_t stride) {
  constexpr auto kLine = static_cast<std::int64_t>(kCacheLineBytes);
  return stride % kLine == 0 && reinterpret_cast<std::uintptr_t>(first) % kCacheLineBytes == 0;
}

}  // namespace

template <class Pixel, class Accum>
StripPasses<Pixel, Accum>::StripPasses(const Texture& in, const BoxOf<Pixel>& boxX, const BoxOf<Pixel>& boxY,
                                       const BoxReach& columns, const BoxReach& rows,
                                       const StripChannels<Pixel>& channels, bool keepsOthers)
    : boxX_(withWeightyEnds(boxX)),
      boxY_(withWeightyEnds(boxY)),
      columns_(columns),
      rows_(rows),
      channels_(channels),
      keepsOthers_(keepsOthers),
      slots_(in.vertical, stripReach(rows, boxY_)),
      stripBytes_(static_cast<std::size_t>(columns.last - columns.first) * kStoreBytes) {
  if (!slots_.isReady()) return;
  store_ = takeScratch(stripBytes_ * static_cast<std::size_t>(stripsAlongX()));
}

template <class Pixel, class Accum>
bool StripPasses<Pixel, Accum>::alongX(const Texture& in, const HvSpan& band, HvInterruptRecord* interrupt) {
  StripBoxes<Component> strip(boxX_, columns_, kStoreBytes, in.horizontal.originI,
                              merges() ? &channels_.bits : nullptr);
  const HvMemoryNote note(static_cast<std::size_t>(width()) * sizeof(Component*));
  const std::unique_ptr<Component*[]> targets(new (std::nothrow) Component*[static_cast<std::size_t>(width())]);
  if (!strip.isReady() || targets == nullptr) return false;
  const bool inPlace = !streams() || BoxSweep::fillsLines();
  for (std::int32_t s = band.first; s < band.last; ++s) {
    const std::int32_t first = s * kRows;
    const std::int32_t n = std::min(kRows, slots_.count() - first);
    if (stoppedBefore(interrupt, n)) return true;
    for (std::int32_t x = 0; inPlace && x < width(); ++x)
      targets[static_cast<std::size_t>(x)] = componentsOf(stored(s, x));
    const bool large = strip.run(
        inPlace ? targets.get() : strip.result().table(), inPlace && streams(),
        [&](std::int64_t from, std::int64_t to) { return gatherRows(in, first, n, from, to, strip); },
        [&](std::int64_t from, std::int64_t to, const std::byte** ahead) {
          return prefetchRows(in, first, n, from, to, strip, ahead);
        },
        [&](std::int64_t from, std::int64_t to) {
          if (inPlace) return;
          auto* const place = reinterpret_cast<std::byte*>(stored(s, static_cast<std::int32_t>(from)));
          const StreamedPiece piece{place, kStoreBytes, to - from, kStoreBytes, true, true};
          streamRows(piece, reinterpret_cast<std::byte* const*>(strip.result().table() + from), nullptr);
        });
    if (large) large_.store(true, std::memory_order_relaxed);
  }
  hwy::FlushStream();
  return true;
}

template <class Pixel, class Accum>
bool StripPasses<Pixel, Accum>::alongY(const Texture& out, const HvSpan& band, HvInterruptRecord* interrupt) {
  const bool whole = channels_.all || keepsOthers_;
  // Means of components are at most the largest of them.
  const bool large = large_.load(std::memory_order_relaxed);
  StripBoxes<Component> strip(boxY_, rows_, kColumnBytes, rows_.first, merges() ? &channels_.bits : nullptr);
  const std::int64_t height = rows_.last - rows_.first;
  const auto count = static_cast<std::size_t>(height);
  const HvMemoryNote note(count * (sizeof(Component*) + kCacheLineBytes));
  const std::unique_ptr<Component*[]> targets(new (std::nothrow) Component*[count]);
  const std::unique_ptr<std::byte[]> waiting(new (std::nothrow) std::byte[count * kCacheLineBytes]);
  if (!strip.isReady() || targets == nullptr || waiting == nullptr) return false;
  for (std::int32_t s = band.first; s < band.last; ++s) {
    const std::int32_t first = s * kColumns;
    const std::int32_t n = std::min(kColumns, width() - first);
    if (stoppedBefore(interrupt, n)) return true;
    const auto at = [&](std::int64_t i) {
      return out.target(static_cast<std::int32_t>(columns_.first) + first, static_cast<std::int32_t>(rows_.first + i));
    };
    const bool streamsItself = BoxSweep::fillsLines() && isLineAligned(at(0), out.stride);
    const bool inPlace = whole && n == kColumns && (streamsItself || !streams());
    const bool joins = whole && streams() && !inPlace;
    for (std::int64_t i = 0; inPlace && i < height; ++i)
      targets[static_cast<std::size_t>(i)] = componentsOf(at(i));
    const auto scatter = [&](std::int64_t i) {
      const Pixel* ahead = at(std::min(i + kRowsAhead, height - 1));
      hwy::Prefetch(ahead);
      hwy::Prefetch(ahead + n - 1);
      const HvPixelRun<Pixel> run{reinterpret_cast<const Pixel*>(strip.result().row(i)), 1, n, true};
      (whole ? copyPixels<Pixel> : channels_.copy)(at(i), run, n);
    };
    strip.run(
        inPlace ? targets.get() : strip.result().table(), inPlace && streams(),
        [&](std::int64_t from, std::int64_t to) {
          gatherColumns(first, n, from, to, strip);
          return large;
        },
        [&](std::int64_t from, std::int64_t to, const std::byte** ahead) {
          return prefetchColumns(first, n, from, to, ahead);
        },
        [&](std::int64_t from, std::int64_t to) {
          if (joins) {
            const StreamedPiece piece{reinterpret_cast<std::byte*>(at(from)),      out.stride,      to - from,
                                      static_cast<std::size_t>(n) * sizeof(Pixel), s == band.first, s == band.last - 1};
            streamRows(piece, reinterpret_cast<std::byte* const*>(strip.result().table() + from),
                       waiting.get() + static_cast<std::size_t>(from) * kCacheLineBytes);
            return;
          }
          for (std::int64_t i = from; !inPlace && i < to; ++i)
            scatter(i);
        });
  }
  hwy::FlushStream();
  return true;
}

template <class Pixel, class Accum>
bool StripPasses<Pixel, Accum>::gatherRows(const Texture& in, std::int32_t first, std::int32_t n, std::int64_t from,
                                           std::int64_t to, const StripBoxes<Component>& strip) const {
  const std::int32_t row = slots_.rowOf(first);
  const std::int32_t index = wrapSub(row, in.vertical.originI);
  // Within the box the slots are consecutive rows.
  const bool inside =
      index >= in.vertical.lo && index <= in.vertical.hi - (n - 1) && slots_.rowOf(first + n - 1) == row + n - 1;
  // The pass along y reads carried components, which is what this one returns.
  [[maybe_unused]] const Component* const mask =
      merges() ? reinterpret_cast<const Component*>(&channels_.bits) : nullptr;
  bool large = false;
  for (std::int64_t i = from; i < to;) {
    const auto x = static_cast<std::int32_t>(strip.read().first + i);
    auto* const place = reinterpret_cast<Pixel*>(strip.gathered().row(i));
    HvPixelRun<Pixel> run = in.readRun(x, row);
    const auto count =
        static_cast<std::int32_t>(std::min<std::int64_t>({run.length, to - i, strip.gathered().together(i)}));
    if (inside) {
      StripTile<Pixel>{run.first, run.exists ? in.stride : 0, run.step, n, count}.gather(place, kStoreBytes);
    } else {
      for (std::int32_t j = 0; j < n; ++j) {
        run = in.readRun(x, slots_.rowOf(first + j));
        StripTile<Pixel>{run.first, 0, run.step, 1, count}.gather(place + j, kStoreBytes);
      }
    }
    if constexpr (std::is_same_v<Component, float>) {
      constexpr auto kFloats = static_cast<std::int64_t>(kStoreBytes / sizeof(float));
      if (carryRow(strip.gathered().row(i), count * kFloats, mask)) large = true;
    }
    i += count;
  }
  return large;
}

template <class Pixel, class Accum>
void StripPasses<Pixel, Accum>::gatherColumns(std::int32_t first, std::int32_t n, std::int64_t from, std::int64_t to,
                                              const StripBoxes<Component>& strip) const {
  for (std::int64_t i = from; i < to;) {
    const std::int64_t most = std::min(to - i, strip.gathered().together(i));
    const StripSlots::Run run = slots_.template runAt<kRows>(i, most);
    const Pixel* pixels = stored(run.slot / kRows, first) + run.slot % kRows;
    auto* const place = reinterpret_cast<Pixel*>(strip.gathered().row(i));
    StripTile<Pixel>{pixels, kStoreBytes, run.step, n, run.length}.gather(place, kColumnBytes);
    i += run.length;
  }
}

template <class Pixel, class Accum>
std::size_t StripPasses<Pixel, Accum>::prefetchRows(const Texture& in, std::int32_t first, std::int32_t n,
                                                    std::int64_t from, std::int64_t to,
                                                    const StripBoxes<Component>& strip, const std::byte** ahead) const {
  if (n != kRows || to - from != kStripTile) return 0;
  const HvPixelRun<Pixel> run = in.readRun(static_cast<std::int32_t>(strip.read().first + from), slots_.rowOf(first));
  if (!run.exists || run.step != 1 || run.length < kStripTile) return 0;
  const auto* line = reinterpret_cast<const std::byte*>(run.first);
  for (std::int32_t j = 0; j < kRows; ++j, line += in.stride) {
    for (std::size_t k = 0; k < sizeof(Pixel); ++k)
      *ahead++ = line + k * kStoreBytes;
  }
  return 1;
}

template <class Pixel, class Accum>
std::size_t StripPasses<Pixel, Accum>::prefetchColumns(std::int32_t first, std::int32_t n, std::int64_t from,
                                                       std::int64_t to, const std::byte** ahead) const {
  if (n != kColumns || to - from != kStripTile) return 0;
  for (std::int64_t i = from; i < to; i += kRows) {
    const auto* line = reinterpret_cast<const std::byte*>(stored(slots_.at(i) / kRows, first));
    for (std::int32_t j = 0; j < kRows; ++j, line += kColumnBytes)
      *ahead++ = line;
  }
  return kColumnBytes / kStoreBytes;
}

template class StripPasses<R8, Ri>;
template class StripPasses<R16, Ri>;
template class StripPasses<Ri, Ri>;
template class StripPasses<C8, Ci>;
template class StripPasses<C16, Ci>;
template class StripPasses<int, int>;
template class StripPasses<Rf, Rf>;
template class StripPasses<Cf, Cf>;

}  // namespace vblur
