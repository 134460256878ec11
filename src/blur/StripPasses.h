// Both passes of the filter by vector code. Between them the picture lies in strips of rows, turned by their
// diagonal: the pass along x writes memory from one end to the other, and the pass along y reads a few lines
// of it at a time.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include <hwy/cache_control.h>

#include "blur/PassRanges.h"
#include "blur/StreamRows.h"
#include "blur/StripBoxes.h"
#include "blur/StripSlots.h"
#include "blur/TurnPixels.h"
#include "image/ChannelMask.h"
#include "image/HvInteruptable.h"
#include "image/HvMemory.h"
#include "image/HvScratch.h"
#include "image/HvTexture.h"
#include "image/RowBand.h"
#include "image/SimpleLineCopier.h"

namespace vblur {

// A row of the turned picture is a cache line: one position of as many rows as it holds. A strip along y is
// two cache lines wide where it is gathered.
inline constexpr std::size_t kStoreBytes = 64;
inline constexpr std::size_t kColumnBytes = 128;

// From so many bytes on a picture is written past the caches, which would not hold it until it is read.
inline constexpr std::int64_t kStreamedBytes = std::int64_t{4} << 20;

// A tile of lines to be gathered into a strip, and the place for it.
template <class Pixel>
struct StripTile {
  const Pixel* first;      // the first position of the first line
  std::int64_t lineBytes;  // from one line to the next
  std::int32_t step;       // from one position to the next, in pixels: 1, -1 or 0
  std::int32_t lines;
  std::int32_t count;  // positions

  const Pixel* at(std::int32_t line, std::int32_t position) const {
    return reinterpret_cast<const Pixel*>(reinterpret_cast<const std::byte*>(first) + line * lineBytes) +
           position * step;
  }

  // Position i of line j goes to pixel j of row i; rows lie rowBytes apart.
  void gather(Pixel* row, std::size_t rowBytes) const {
    const auto rowPixels = static_cast<std::int32_t>(rowBytes / sizeof(Pixel));
    std::int32_t turnedLines = 0;
    std::int32_t turned = 0;
    if constexpr (sizeof(Pixel) <= 8) {
      constexpr std::int32_t kSide = turnSide(sizeof(Pixel));
      turnedLines = lines - lines % kSide;
      turned = step == 0 ? 0 : count - count % kSide;
    }
    if (turnedLines > 0 && turned > 0) {
      // Backwards through the picture is backwards through the strip.
      const auto bytes = static_cast<std::int64_t>(rowBytes);
      const bool forward = step > 0;
      turnIntoStrip(sizeof(Pixel), at(0, forward ? 0 : turned - 1), lineBytes, turnedLines, turned,
                    forward ? row : row + (turned - 1) * rowPixels, forward ? bytes : -bytes);
    } else {
      turned = 0;
    }
    const std::int32_t distinct = step == 0 ? 1 : count;
    for (std::int32_t i = 0; i < distinct; ++i) {
      for (std::int32_t j = i < turned ? turnedLines : 0; j < lines; ++j)
        row[i * rowPixels + j] = *at(j, i);
    }
    for (std::int32_t i = distinct; i < count; ++i)
      std::memcpy(row + i * rowPixels, row, static_cast<std::size_t>(lines) * sizeof(Pixel));
  }
};

// One run of the filter over one picture, shared by all threads.
template <class Pixel, class Accum>
class StripPasses {
 public:
  using Texture = HvTexture<Pixel, Accum>;
  using Component = ComponentOf<Pixel>;
  static constexpr auto kRows = static_cast<std::int32_t>(kStoreBytes / sizeof(Pixel));
  static constexpr auto kColumns = static_cast<std::int32_t>(kColumnBytes / sizeof(Pixel));

  // The window's columns and rows, in image coordinates, which the output has.
  // Components that are not filtered stay as the output has them, or, with keepsOthers, become those of the input.
  StripPasses(const Texture& in, const BoxConstants& boxX, const BoxConstants& boxY, const BoxReach& columns,
              const BoxReach& rows, bool keepsOthers)
      : boxX_(withWeightyEnds(boxX)),
        boxY_(withWeightyEnds(boxY)),
        columns_(columns),
        rows_(rows),
        keepsOthers_(keepsOthers),
        slots_(in.vertical, stripReach(rows, boxY_)),
        stripBytes_(static_cast<std::size_t>(columns.last - columns.first) * kStoreBytes) {
    if (!slots_.isReady()) return;
    store_ = takeScratch(stripBytes_ * static_cast<std::size_t>(strips()));
  }
  ~StripPasses() { giveScratch(store_); }
  StripPasses(const StripPasses&) = delete;
  StripPasses& operator=(const StripPasses&) = delete;

  bool isReady() const { return store_.memory != nullptr; }

  // How many strips each pass has to share among its threads.
  std::int32_t stripsAlongX() const { return strips(); }
  std::int32_t stripsAlongY() const { return (width() + kColumns - 1) / kColumns; }

  // A band of the strips of the pass along x; false when there is no memory for it.
  template <class Mask>
  bool alongX(const Texture& in, const HvSpan& band, HvInterruptRecord* interrupt) {
    const Pixel filtered = filteredBits<Mask>();
    StripBoxes<Component> strip(boxX_, columns_, kStoreBytes, in.horizontal.originI,
                                merges<Mask>() ? &filtered : nullptr);
    const HvMemoryNote note(static_cast<std::size_t>(width()) * sizeof(Component*));
    const std::unique_ptr<Component*[]> targets(new (std::nothrow) Component*[static_cast<std::size_t>(width())]);
    if (!strip.isReady() || targets == nullptr) return false;
    const bool inPlace = !streams() || BoxSweep::fillsLines(sizeof(Component));
    for (std::int32_t s = band.first; s < band.last; ++s) {
      const std::int32_t first = s * kRows;
      const std::int32_t n = std::min(kRows, slots_.count() - first);
      if (stoppedBefore(interrupt, n)) return true;
      for (std::int32_t x = 0; inPlace && x < width(); ++x)
        targets[static_cast<std::size_t>(x)] = componentsOf(stored(s, x));
      strip.run(
          inPlace ? targets.get() : strip.result().table(), inPlace && streams(),
          [&](std::int64_t from, std::int64_t to) { gatherRows(in, first, n, from, to, strip); },
          [&](std::int64_t from, std::int64_t to, const std::byte** ahead) {
            return askForRows(in, first, n, from, to, strip, ahead);
          },
          [&](std::int64_t from, std::int64_t to) {
            if (inPlace) return;
            const StreamedPiece piece{reinterpret_cast<std::byte*>(stored(s, static_cast<std::int32_t>(from))),
                                      kStoreBytes,
                                      to - from,
                                      kStoreBytes,
                                      true,
                                      true};
            streamRows(piece, reinterpret_cast<std::byte* const*>(strip.result().table() + from), nullptr);
          });
    }
    hwy::FlushStream();
    return true;
  }

  // The same for the pass along y.
  template <class Mask>
  bool alongY(const Texture& out, const HvSpan& band, HvInterruptRecord* interrupt) {
    const bool whole = kAll<Mask> || keepsOthers_;
    const Pixel filtered = filteredBits<Mask>();
    StripBoxes<Component> strip(boxY_, rows_, kColumnBytes, rows_.first, merges<Mask>() ? &filtered : nullptr);
    const auto height = static_cast<std::size_t>(rows_.last - rows_.first);
    const HvMemoryNote note(height * (sizeof(Component*) + kCacheLineBytes));
    const std::unique_ptr<Component*[]> targets(new (std::nothrow) Component*[height]);
    const std::unique_ptr<std::byte[]> waiting(new (std::nothrow) std::byte[height * kCacheLineBytes]);
    if (!strip.isReady() || targets == nullptr || waiting == nullptr) return false;
    for (std::int32_t s = band.first; s < band.last; ++s) {
      const std::int32_t first = s * kColumns;
      const std::int32_t n = std::min(kColumns, width() - first);
      if (stoppedBefore(interrupt, n)) return true;
      const auto at = [&](std::int64_t i) {
        return out.target(static_cast<std::int32_t>(columns_.first) + first,
                          static_cast<std::int32_t>(rows_.first + i));
      };
      const bool streamsItself = BoxSweep::fillsLines(sizeof(Component)) && beginsCacheLines(at(0), out.stride);
      const bool inPlace = whole && n == kColumns && (streamsItself || !streams());
      const bool joins = whole && streams() && !inPlace;
      for (std::size_t i = 0; inPlace && i < height; ++i)
        targets[i] = componentsOf(at(static_cast<std::int64_t>(i)));
      strip.run(
          inPlace ? targets.get() : strip.result().table(), inPlace && streams(),
          [&](std::int64_t from, std::int64_t to) { gatherColumns(first, n, from, to, strip); },
          [&](std::int64_t from, std::int64_t to, const std::byte** ahead) {
            return askForColumns(first, n, from, to, ahead);
          },
          [&](std::int64_t from, std::int64_t to) {
            if (joins) {
              const StreamedPiece piece{
                  reinterpret_cast<std::byte*>(at(from)),      out.stride,      to - from,
                  static_cast<std::size_t>(n) * sizeof(Pixel), s == band.first, s == band.last - 1};
              streamRows(piece, reinterpret_cast<std::byte* const*>(strip.result().table() + from),
                         waiting.get() + static_cast<std::size_t>(from) * kCacheLineBytes);
            } else if (!inPlace && whole) {
              scatterColumns<ChannelMask<1, 1, 1, 1>>(strip, from, to, n, at);
            } else if (!inPlace) {
              scatterColumns<Mask>(strip, from, to, n, at);
            }
          });
    }
    hwy::FlushStream();
    return true;
  }

 private:
  template <class Mask>
  static constexpr bool kAll = Mask::kCount == PixelTraits<Pixel>::kComponents;
  template <class Mask>
  bool merges() const {
    return !kAll<Mask> && keepsOthers_;
  }
  // A pixel whose components of Mask have all bits set, and the others none.
  template <class Mask>
  static Pixel filteredBits() {
    Pixel pixel{};
    for (int c = 0; c < PixelTraits<Pixel>::kComponents; ++c)
      setComponent(pixel, c, storeNarrow<Component>(Mask::chosen(c) ? -1 : 0));
    return pixel;
  }

  // How many rows before their turn rows of the output are asked for, which lie pages apart.
  static constexpr std::int64_t kRowsAhead = 24;

  std::int32_t width() const { return static_cast<std::int32_t>(columns_.last - columns_.first); }
  std::int32_t strips() const { return (slots_.count() + kRows - 1) / kRows; }
  bool streams() const { return static_cast<std::int64_t>(stripBytes_) * strips() >= kStreamedBytes; }

  // The rows of strip s at column x of the window.
  Pixel* stored(std::int32_t s, std::int32_t x) const {
    return reinterpret_cast<Pixel*>(store_.memory + static_cast<std::size_t>(s) * stripBytes_ +
                                    static_cast<std::size_t>(x) * kStoreBytes);
  }
  static Component* componentsOf(Pixel* pixel) { return reinterpret_cast<Component*>(pixel); }
  static Pixel* pixelsOf(Component* row) { return reinterpret_cast<Pixel*>(row); }

  // One question for each line.
  static bool stoppedBefore(HvInterruptRecord* interrupt, std::int32_t lines) {
    for (std::int32_t i = 0; i < lines; ++i) {
      if (poll(interrupt) != 0) return true;
    }
    return false;
  }

  // `n` slots from `first` on, at places [from, to) of what the pass along x reads, through the edge methods.
  void gatherRows(const Texture& in, std::int32_t first, std::int32_t n, std::int64_t from, std::int64_t to,
                  const StripBoxes<Component>& strip) const {
    const std::int32_t row = slots_.rowOf(first);
    const std::int32_t index = wrapSub(row, in.vertical.originI);
    // Inside the box every row stands for itself.
    const bool inside =
        index >= in.vertical.lo && index <= in.vertical.hi - (n - 1) && slots_.rowOf(first + n - 1) == row + n - 1;
    const auto length = [&](const HvPixelRun<Pixel>& run, std::int64_t i) {
      return static_cast<std::int32_t>(std::min<std::int64_t>({run.length, to - i, strip.gathered().together(i)}));
    };
    for (std::int64_t i = from; i < to;) {
      const auto x = static_cast<std::int32_t>(strip.read().first + i);
      Pixel* place = pixelsOf(strip.gathered().row(i));
      HvPixelRun<Pixel> run = in.readRun(x, row);
      const std::int32_t count = length(run, i);
      if (inside) {
        StripTile<Pixel>{run.first, run.exists ? in.stride : 0, run.step, n, count}.gather(place, kStoreBytes);
      } else {
        for (std::int32_t j = 0; j < n; ++j) {
          run = in.readRun(x, slots_.rowOf(first + j));
          StripTile<Pixel>{run.first, 0, run.step, 1, count}.gather(place + j, kStoreBytes);
        }
      }
      i += count;
    }
  }

  // `n` columns of the window, at places [from, to) of what the pass along y reads.
  void gatherColumns(std::int32_t first, std::int32_t n, std::int64_t from, std::int64_t to,
                     const StripBoxes<Component>& strip) const {
    for (std::int64_t i = from; i < to;) {
      const std::int64_t most = std::min(to - i, strip.gathered().together(i));
      const StripSlots::Run run = slots_.template runAt<kRows>(i, most);
      const Pixel* pixels = stored(run.slot / kRows, first) + run.slot % kRows;
      StripTile<Pixel>{pixels, kStoreBytes, run.step, n, run.length}.gather(pixelsOf(strip.gathered().row(i)),
                                                                            kColumnBytes);
      i += run.length;
    }
  }

  // Where the next tile lies, so that its memory is asked for while this one is filtered. Of a tile that is cut
  // short, or that goes backwards, no more than some lines are not there in time.
  static constexpr std::size_t kLinesOfColumns = kColumnBytes / kStoreBytes;
  std::size_t askForColumns(std::int32_t first, std::int32_t n, std::int64_t from, std::int64_t to,
                            const std::byte** ahead) const {
    if (n != kColumns || to - from != kStripTile) return 0;
    for (std::int64_t i = from; i < to; i += kRows) {
      const auto* line = reinterpret_cast<const std::byte*>(stored(slots_.at(i) / kRows, first));
      for (std::int32_t j = 0; j < kRows; ++j, line += kColumnBytes)
        *ahead++ = line;
    }
    return kLinesOfColumns;
  }

  std::size_t askForRows(const Texture& in, std::int32_t first, std::int32_t n, std::int64_t from, std::int64_t to,
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

  // The components of Mask of the results [from, to), at(i) being where that of place i belongs.
  template <class Mask, class At>
  static void scatterColumns(const StripBoxes<Component>& strip, std::int64_t from, std::int64_t to, std::int32_t n,
                             const At& at) {
    const std::int64_t last = strip.produced().last - strip.produced().first - 1;
    for (std::int64_t i = from; i < to; ++i) {
      const HvPixelRun<Pixel> run{pixelsOf(strip.result().row(i)), 1, n, true};
      const Pixel* ahead = at(std::min(i + kRowsAhead, last));
      hwy::Prefetch(ahead);
      hwy::Prefetch(ahead + n - 1);
      if constexpr (Mask::kCount >= PixelTraits<Pixel>::kComponents) {
        copyPixels(at(i), run, n);
      } else {
        copyChannels<Mask>(at(i), run, n);
      }
    }
  }

  static bool beginsCacheLines(const Pixel* first, std::int64_t stride) {
    constexpr auto kLine = static_cast<std::int64_t>(kCacheLineBytes);
    return stride % kLine == 0 && reinterpret_cast<std::uintptr_t>(first) % kCacheLineBytes == 0;
  }

  BoxConstants boxX_;
  BoxConstants boxY_;
  BoxReach columns_;
  BoxReach rows_;
  bool keepsOthers_;
  StripSlots slots_;
  std::size_t stripBytes_;
  HvScratchBlock store_;
};

}  // namespace vblur
