// The kernels of the filter's strips, for tests and benchmarks. At level "twin" the filter does not call them, so a
// case has plain code of its own.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <hwy/cache_control.h>

#include "blur/BoxFilter.h"
#include "blur/BoxSweep.h"
#include "blur/CarriedRows.h"
#include "blur/ExactBox.h"
#include "blur/StreamRows.h"
#include "blur/StripPasses.h"
#include "blur/TransposePixels.h"
#include "image/HvCpu.h"
#include "tests/support/KernelCase.h"

namespace vblur::test {

// One plain box over one lane; position 0 of the result is `reach` after that of the line.
inline std::vector<std::int32_t> boxed(const std::vector<std::int32_t>& line, const BoxConstants& box) {
  const auto count = static_cast<std::int64_t>(line.size()) - BoxSweep::taps(box);
  std::vector<std::int32_t> result(static_cast<std::size_t>(count));
  filterBox<1>(
      box.reach(), box.reach() + count, box, [&](std::int64_t i) { return line.data() + i; },
      [&](std::int64_t i) { return result.data() + (i - box.reach()); }, [](std::int64_t) {});
  return result;
}

// The same on floats.
inline std::vector<float> boxed(const std::vector<float>& line, const ExactBox& box) {
  const auto count = static_cast<std::int64_t>(line.size()) - BoxSweep::taps(box);
  std::vector<float> result(static_cast<std::size_t>(count));
  exactBoxRows(line.data(), count, 1, box, result.data());
  return result;
}

template <class C>
auto sweptBox(float radius) {
  if constexpr (std::is_same_v<C, float>) {
    return withWeightyEnds(exactBox(radius));
  } else {
    return withWeightyEnds(boxConstants(radius));
  }
}

// A lane of a picture, as the plain boxes take it.
template <class C>
using PlainLine = std::vector<std::conditional_t<std::is_same_v<C, float>, float, std::int32_t>>;

// Floats of any kind, or carried ones up to kMostInDoubles.
enum class Floats { kAny, kSmall };

// A strip of rows that fill a vector each. Its first and last row repeat beyond its ends.
template <class C>
class SweptStrip {
 public:
  static constexpr std::int32_t kLanes = kSweepUnit / sizeof(C);

  explicit SweptStrip(Floats floats) : floats_(floats) {}

  // n components, whole rows.
  void run(const C* a, std::int32_t n, C* out) {
    const std::int64_t count = n / kLanes;
    carried_.assign(a, a + n);
    if constexpr (std::is_same_v<C, float>) {
      for (float& v : carried_)
        v = floats_ == Floats::kAny ? carried(v) : carried(v) / kMostCarried * kMostInDoubles;
    }
    in_.clear();
    for (std::int64_t j = 0; j < count + sweep_.lead(); ++j)
      in_.push_back(carried_.data() + kLanes * std::clamp<std::int64_t>(j - BoxSweep::centre(box_), 0, count - 1));
    if (!HvUsesVectors()) return runPlain(out);
    out_.clear();
    for (std::int64_t i = 0; i < count; ++i)
      out_.push_back(out + kLanes * i);
    SweepRows rows{0, count + sweep_.lead()};
    rows.large = floats_ == Floats::kAny;
    sweep_.advance(rows, in_.data(), out_.data());
  }

 private:
  void runPlain(C* out) const {
    for (std::int32_t lane = 0; lane < kLanes; ++lane) {
      PlainLine<C> line;
      for (const C* row : in_)
        line.push_back(row[lane]);
      C* to = out + lane;
      for (const auto value : boxed(boxed(boxed(line, box_), box_), box_)) {
        *to = static_cast<C>(value);
        to += kLanes;
      }
    }
  }

  Floats floats_;
  decltype(sweptBox<C>(0.0f)) box_ = sweptBox<C>(1.25f);
  BoxSweep sweep_{box_, kSweepUnit, sizeof(C)};
  std::vector<C> carried_;
  std::vector<const C*> in_;
  std::vector<C*> out_;
};

template <class C>
void addSweep(std::vector<KernelCase>& cases, Floats floats = Floats::kAny) {
  const std::string kernel = std::is_same_v<C, float> ? "boxSweep float" : "boxSweep " + std::to_string(8 * sizeof(C));
  const std::string name = floats == Floats::kAny ? kernel : kernel + ", small";
  const auto strip = std::make_shared<SweptStrip<C>>(floats);
  cases.push_back(
      rowCase<C, C>(name, kernel, [strip](const C* in, std::int32_t n, C* out) { strip->run(in, n, out); }));
  cases.back().unit = SweptStrip<C>::kLanes;
}

// All components of a pixel, and all but the second.
inline void addCarrying(std::vector<KernelCase>& cases) {
  for (const bool keepsOne : {false, true}) {
    const std::array<float, kCarriedMask> mask{allBitsIf<float>(true), allBitsIf<float>(!keepsOne),
                                               allBitsIf<float>(true), allBitsIf<float>(true)};
    cases.push_back(rowCase<float, float>(keepsOne ? "carryRow, one kept" : "carryRow", "carryRow",
                                          [=](const float* in, std::int32_t n, float* out) {
                                            std::memcpy(out, in, static_cast<std::size_t>(n) * sizeof(float));
                                            if (HvUsesVectors()) {
                                              carryRow(out, n, keepsOne ? &mask[0] : nullptr);
                                              return;
                                            }
                                            for (std::int32_t i = 0; i < n; ++i) {
                                              if (!keepsOne || i % kCarriedMask != 1) out[i] = carried(out[i]);
                                            }
                                          }));
  }
}

// The fewest lines that are transposed at once, one after the other in the row.
template <class Word>
void addTranspose(std::vector<KernelCase>& cases) {
  constexpr std::int32_t kLines = transposedSide(sizeof(Word));
  cases.push_back(rowCase<Word, Word>("transposePixels " + std::to_string(8 * sizeof(Word)), "transposePixels",
                                      [](const Word* in, std::int32_t n, Word* out) {
                                        const std::int32_t count = n / kLines;
                                        if (HvUsesVectors()) {
                                          return transposeIntoStrip(
                                              sizeof(Word), in, count * static_cast<std::int64_t>(sizeof(Word)), kLines,
                                              count, out, kLines * static_cast<std::int64_t>(sizeof(Word)));
                                        }
                                        for (std::int32_t i = 0; i < n; ++i)
                                          out[i] = in[i % kLines * count + i / kLines];
                                      }));
  cases.back().unit = kLines * kLines;
}

inline void addStreaming(std::vector<KernelCase>& cases) {
  cases.push_back(rowCase<std::byte, std::byte>(
      "streamRows", "streamRows", [](const std::byte* in, std::int32_t n, std::byte* out) {
        if (!HvUsesVectors()) {
          std::copy_n(in, n, out);
          return;
        }
        alignas(kCacheLineBytes) std::byte waiting[kCacheLineBytes] = {};
        const auto all = static_cast<std::size_t>(n);
        for (std::size_t at = 0; at < all; at += kMostStreamedBytes) {
          const std::size_t bytes = std::min(kMostStreamedBytes, all - at);
          const std::byte* const piece = in + at;
          streamRows({out + at, 0, 1, bytes, at == 0, at + bytes == all}, &piece, waiting);
        }
        hwy::FlushStream();
      }));
}

inline void addStripKernels(std::vector<KernelCase>& cases) {
  addSweep<std::uint8_t>(cases);
  addSweep<std::int16_t>(cases);
  addSweep<std::int32_t>(cases);
  addSweep<float>(cases);
  addSweep<float>(cases, Floats::kSmall);
  addTranspose<std::uint8_t>(cases);
  addTranspose<std::uint16_t>(cases);
  addTranspose<std::uint32_t>(cases);
  addTranspose<std::uint64_t>(cases);
  addStreaming(cases);
  addCarrying(cases);
}

}  // namespace vblur::test
