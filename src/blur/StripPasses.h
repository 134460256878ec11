// Both passes of the filter by vector code. Between them the picture is stored transposed, in strips of rows: the pass
// along x writes memory from one end to the other, and the pass along y reads a few cache lines of it at a time.
#pragma once

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "blur/BoxConstants.h"
#include "blur/BoxFilter.h"
#include "blur/LineBlock.h"
#include "blur/StripSlots.h"
#include "image/ChannelMask.h"
#include "image/HvInteruptable.h"
#include "image/HvScratch.h"
#include "image/HvTexture.h"
#include "image/RowBand.h"

namespace vblur {

template <class Component>
class StripBoxes;

// A row of the transposed picture is one cache line: one position of as many rows as fit. A strip along y is two
// cache lines wide where it is gathered.
inline constexpr std::size_t kStoreBytes = 64;
inline constexpr std::size_t kColumnBytes = 128;

// Pictures of this size and more are written past the caches, which would not hold them until they are read.
inline constexpr std::int64_t kStreamedBytes = std::int64_t{4} << 20;

template <class Component>
constexpr Component allBitsIf(bool set) {
  if constexpr (std::is_same_v<Component, float>) {
    return std::bit_cast<float>(set ? ~std::uint32_t{0} : 0);
  } else {
    return storeNarrow<Component>(set ? -1 : 0);
  }
}

// Polls once per line.
inline bool stoppedBefore(HvInterruptRecord* interrupt, std::int32_t lines) {
  for (std::int32_t i = 0; i < lines; ++i) {
    if (poll(interrupt) != 0) return true;
  }
  return false;
}

// The components that are filtered.
template <class Pixel>
struct StripChannels {
  bool all = true;
  Pixel bits{};  // all bits of a filtered component set, none of the others
  void (*copy)(Pixel* out, const HvPixelRun<Pixel>& run, std::int32_t n) = copyPixels<Pixel>;

  template <class Mask>
  static StripChannels of() {
    StripChannels channels;
    if constexpr (Mask::kCount < PixelTraits<Pixel>::kComponents) {
      for (int c = 0; c < PixelTraits<Pixel>::kComponents; ++c)
        setComponent(channels.bits, c, allBitsIf<ComponentOf<Pixel>>(Mask::chosen(c)));
      channels.all = false;
      channels.copy = copyChannels<Mask, Pixel>;
    }
    return channels;
  }
};

// One run of the filter over one picture, shared by all threads. Instances: R8, R16 and Ri with Ri, C8 and C16 with
// Ci, int with int, Rf with Rf, Cf with Cf.
template <class Pixel, class Accum>
class StripPasses {
 public:
  using Texture = HvTexture<Pixel, Accum>;
  using Component = ComponentOf<Pixel>;

  // Columns and rows are the window, in image coordinates, and lie within the output. Components that are not filtered
  // keep what the output has, or, with keepsOthers, become those of the input.
  StripPasses(const Texture& in, const BoxOf<Pixel>& boxX, const BoxOf<Pixel>& boxY, const BoxReach& columns,
              const BoxReach& rows, const StripChannels<Pixel>& channels, bool keepsOthers);
  ~StripPasses() { giveScratch(store_); }
  StripPasses(const StripPasses&) = delete;
  StripPasses& operator=(const StripPasses&) = delete;

  // False when there is no memory.
  bool isReady() const { return store_.memory != nullptr; }

  // How many strips each pass has to share among its threads.
  std::int32_t stripsAlongX() const { return (slots_.count() + kRows - 1) / kRows; }
  std::int32_t stripsAlongY() const { return (width() + kColumns - 1) / kColumns; }

  // Filters a band of the strips of a pass. False when there is no memory for it.
  bool alongX(const Texture& in, const HvSpan& band, HvInterruptRecord* interrupt);
  bool alongY(const Texture& out, const HvSpan& band, HvInterruptRecord* interrupt);

 private:
  static constexpr auto kRows = static_cast<std::int32_t>(kStoreBytes / sizeof(Pixel));
  static constexpr auto kColumns = static_cast<std::int32_t>(kColumnBytes / sizeof(Pixel));

  std::int32_t width() const { return static_cast<std::int32_t>(columns_.last - columns_.first); }
  bool merges() const { return !channels_.all && keepsOthers_; }
  bool streams() const { return static_cast<std::int64_t>(stripBytes_) * stripsAlongX() >= kStreamedBytes; }
  // The rows of strip s at column x of the window.
  Pixel* stored(std::int32_t s, std::int32_t x) const {
    return reinterpret_cast<Pixel*>(store_.memory + static_cast<std::size_t>(s) * stripBytes_ +
                                    static_cast<std::size_t>(x) * kStoreBytes);
  }

  // Reads `n` slots from `first` on, at places [from, to) of the input of the pass along x, through the edge methods.
  // Returns whether there are floats beyond kMostInDoubles.
  bool gatherRows(const Texture& in, std::int32_t first, std::int32_t n, std::int64_t from, std::int64_t to,
                  const StripBoxes<Component>& strip) const;
  // Reads `n` columns of the window, at places [from, to) of the input of the pass along y.
  void gatherColumns(std::int32_t first, std::int32_t n, std::int64_t from, std::int64_t to,
                     const StripBoxes<Component>& strip) const;

  // Addresses of the next tile, to prefetch while this one is filtered. A tile that is cut short or reversed is
  // not prefetched, or in part only.
  std::size_t prefetchRows(const Texture& in, std::int32_t first, std::int32_t n, std::int64_t from, std::int64_t to,
                           const StripBoxes<Component>& strip, const std::byte** ahead) const;
  std::size_t prefetchColumns(std::int32_t first, std::int32_t n, std::int64_t from, std::int64_t to,
                              const std::byte** ahead) const;

  BoxOf<Pixel> boxX_;
  BoxOf<Pixel> boxY_;
  BoxReach columns_;
  BoxReach rows_;
  StripChannels<Pixel> channels_;
  bool keepsOthers_;
  StripSlots slots_;
  std::size_t stripBytes_;
  HvScratchBlock store_;
  // Whether the pass along x read floats beyond kMostInDoubles, and the pass along y may.
  std::atomic<bool> large_{false};
};

}  // namespace vblur
