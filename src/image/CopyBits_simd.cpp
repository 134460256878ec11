#include "image/CopyBits.h"

#include <algorithm>

#include <hwy/cache_control.h>

#include "image/HvKernel.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "image/CopyBits_simd.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

template <class D>
HWY_INLINE hn::Vec<D> Mixed(D d, hn::Vec<D> chosen, hn::Vec<D> in, const hn::TFromD<D>* out) {
  return hn::Or(hn::And(chosen, in), hn::AndNot(chosen, hn::LoadU(d, out)));
}

template <class Word>
HWY_INLINE void MixWord(Word chosen, const Word* in, Word* out) {
  Word from;
  Word to;
  std::memcpy(&from, in, sizeof(Word));
  std::memcpy(&to, out, sizeof(Word));
  to = (from & chosen) | (to & ~chosen);
  std::memcpy(out, &to, sizeof(Word));
}

// Calls each(i) for vectors of `count` words that cover n. The last may overlap the one before, so writing a result
// twice must be harmless. False, with nothing done, if n is shorter than a vector.
template <class Each>
HWY_INLINE bool ForVectors(std::ptrdiff_t count, std::ptrdiff_t n, const Each& each) {
  if (count == 0 || n < count) return false;
  for (std::ptrdiff_t i = 0; i + count < n; i += count)
    each(i);
  each(n - count);
  return true;
}

template <class D>
HWY_INLINE std::ptrdiff_t LanesOf(D d) {
  return static_cast<std::ptrdiff_t>(hn::Lanes(d));
}

// A word is one lane, or two of 64 bits.
template <int kLanesPerWord, class D>
HWY_INLINE hn::Vec<D> Reversed(D d, hn::Vec<D> v) {
  if constexpr (kLanesPerWord == 1) {
    return hn::Reverse(d, v);
  } else {
    return hn::ReverseBlocks(d, v);
  }
}

// The vector that ends with the word at `in`, its words in reverse order.
template <int kLanesPerWord, class D>
HWY_INLINE hn::Vec<D> LoadMirrored(D d, const hn::TFromD<D>* in) {
  return Reversed<kLanesPerWord>(d, hn::LoadU(d, in + kLanesPerWord - LanesOf(d)));
}

template <class Word>
HWY_INLINE void Copy(const void* from, std::int32_t n, Word chosenBits, void* to) {
  const hn::ScalableTag<Word> d;
  const auto chosen = hn::Set(d, chosenBits);
  const auto* in = static_cast<const Word*>(from);
  auto* out = static_cast<Word*>(to);
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));
  std::int32_t i = 0;
  for (; i + lanes <= n; i += lanes)
    hn::StoreU(Mixed(d, chosen, hn::LoadU(d, in + i), out + i), d, out + i);
  for (; i < n; ++i)
    MixWord(chosenBits, in + i, out + i);
}

template <class Word>
HWY_INLINE void Mirror(const void* from, std::int32_t n, Word chosenBits, void* to) {
  const hn::ScalableTag<Word> d;
  const auto chosen = hn::Set(d, chosenBits);
  const auto* in = static_cast<const Word*>(from);
  auto* out = static_cast<Word*>(to);
  const auto each = [&](std::ptrdiff_t i)
                        HWY_ATTR { hn::StoreU(Mixed(d, chosen, LoadMirrored<1>(d, in - i), out + i), d, out + i); };
  if (ForVectors(LanesOf(d), n, each)) return;
  for (std::ptrdiff_t i = 0; i < n; ++i)
    MixWord(chosenBits, in - i, out + i);
}

template <class Word>
HWY_INLINE void Fill(Word word, std::int32_t n, Word chosenBits, void* to) {
  const hn::ScalableTag<Word> d;
  const auto chosen = hn::Set(d, chosenBits);
  const auto in = hn::Set(d, word);
  auto* out = static_cast<Word*>(to);
  const auto each = [&](std::ptrdiff_t i) HWY_ATTR { hn::StoreU(Mixed(d, chosen, in, out + i), d, out + i); };
  if (ForVectors(LanesOf(d), n, each)) return;
  for (std::ptrdiff_t i = 0; i < n; ++i)
    MixWord(chosenBits, &word, out + i);
}

template <int kLanesPerWord, class Lane>
HWY_INLINE void MirrorWhole(const Lane* in, std::int32_t n, Lane* out) {
  const hn::ScalableTag<Lane> d;
  // Stores do not trigger the prefetcher.
  constexpr std::ptrdiff_t kWordsAhead = 512 / (kLanesPerWord * sizeof(Lane));
  const std::ptrdiff_t last = n - 1;
  const auto each = [&](std::ptrdiff_t i) HWY_ATTR {
    hwy::Prefetch(out + std::min(i + kWordsAhead, last) * kLanesPerWord);
    hn::StoreU(LoadMirrored<kLanesPerWord>(d, in - i * kLanesPerWord), d, out + i * kLanesPerWord);
  };
  if (ForVectors(LanesOf(d) / kLanesPerWord, n, each)) return;
  for (std::ptrdiff_t i = 0; i < n; ++i)
    std::memcpy(out + i * kLanesPerWord, in - i * kLanesPerWord, kLanesPerWord * sizeof(Lane));
}

template <int kLanesPerWord, class Lane>
HWY_INLINE void FillWhole(const Lane* from, std::int32_t n, Lane* out) {
  const hn::ScalableTag<Lane> d;
  alignas(16) Lane word[16 / sizeof(Lane)];
  for (std::size_t i = 0; i < 16 / sizeof(Lane); i += kLanesPerWord)
    std::memcpy(word + i, from, kLanesPerWord * sizeof(Lane));
  const auto all = hn::LoadDup128(d, word);
  const auto each = [&](std::ptrdiff_t i) HWY_ATTR { hn::StoreU(all, d, out + i * kLanesPerWord); };
  if (ForVectors(LanesOf(d) / kLanesPerWord, n, each)) return;
  for (std::ptrdiff_t i = 0; i < n; ++i)
    std::memcpy(out + i * kLanesPerWord, word, kLanesPerWord * sizeof(Lane));
}

void Copy32(const void* in, std::int32_t n, std::uint32_t chosen, void* out) {
  HvEnterKernel<"copyBits 32", HWY_TARGETS>(HWY_TARGET);
  Copy(in, n, chosen, out);
}
void Copy64(const void* in, std::int32_t n, std::uint64_t chosen, void* out) {
  HvEnterKernel<"copyBits 64", HWY_TARGETS>(HWY_TARGET);
  Copy(in, n, chosen, out);
}
void Mirror32(const void* in, std::int32_t n, std::uint32_t chosen, void* out) {
  HvEnterKernel<"mirrorBits 32", HWY_TARGETS>(HWY_TARGET);
  Mirror(in, n, chosen, out);
}
void Mirror64(const void* in, std::int32_t n, std::uint64_t chosen, void* out) {
  HvEnterKernel<"mirrorBits 64", HWY_TARGETS>(HWY_TARGET);
  Mirror(in, n, chosen, out);
}
void Fill32(std::uint32_t word, std::int32_t n, std::uint32_t chosen, void* out) {
  HvEnterKernel<"fillBits 32", HWY_TARGETS>(HWY_TARGET);
  Fill(word, n, chosen, out);
}
void Fill64(std::uint64_t word, std::int32_t n, std::uint64_t chosen, void* out) {
  HvEnterKernel<"fillBits 64", HWY_TARGETS>(HWY_TARGET);
  Fill(word, n, chosen, out);
}

void MirrorWords(std::size_t wordBytes, const void* in, std::int32_t n, void* out) {
  HvEnterKernel<"mirrorWords", HWY_TARGETS>(HWY_TARGET);
  const auto* in64 = static_cast<const std::uint64_t*>(in);
  auto* out64 = static_cast<std::uint64_t*>(out);
  switch (wordBytes) {
    case 4: return MirrorWhole<1>(static_cast<const std::uint32_t*>(in), n, static_cast<std::uint32_t*>(out));
    case 8: return MirrorWhole<1>(in64, n, out64);
    case 16: return MirrorWhole<2>(in64, n, out64);
    default: return;
  }
}

void FillWords(std::size_t wordBytes, const void* word, std::int32_t n, void* out) {
  HvEnterKernel<"fillWords", HWY_TARGETS>(HWY_TARGET);
  const auto* word64 = static_cast<const std::uint64_t*>(word);
  auto* out64 = static_cast<std::uint64_t*>(out);
  switch (wordBytes) {
    case 4: return FillWhole<1>(static_cast<const std::uint32_t*>(word), n, static_cast<std::uint32_t*>(out));
    case 8: return FillWhole<1>(word64, n, out64);
    case 16: return FillWhole<2>(word64, n, out64);
    default: return;
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(Copy32);
HWY_EXPORT(Copy64);
HWY_EXPORT(Mirror32);
HWY_EXPORT(Mirror64);
HWY_EXPORT(Fill32);
HWY_EXPORT(Fill64);
HWY_EXPORT(MirrorWords);
HWY_EXPORT(FillWords);

}  // namespace

void copyBits(const void* in, std::int32_t n, std::uint32_t chosen, void* out) {
  HWY_DYNAMIC_DISPATCH(Copy32)(in, n, chosen, out);
}

void copyBits(const void* in, std::int32_t n, std::uint64_t chosen, void* out) {
  HWY_DYNAMIC_DISPATCH(Copy64)(in, n, chosen, out);
}

void mirrorBits(const void* in, std::int32_t n, std::uint32_t chosen, void* out) {
  HWY_DYNAMIC_DISPATCH(Mirror32)(in, n, chosen, out);
}

void mirrorBits(const void* in, std::int32_t n, std::uint64_t chosen, void* out) {
  HWY_DYNAMIC_DISPATCH(Mirror64)(in, n, chosen, out);
}

void fillBits(std::uint32_t word, std::int32_t n, std::uint32_t chosen, void* out) {
  HWY_DYNAMIC_DISPATCH(Fill32)(word, n, chosen, out);
}

void fillBits(std::uint64_t word, std::int32_t n, std::uint64_t chosen, void* out) {
  HWY_DYNAMIC_DISPATCH(Fill64)(word, n, chosen, out);
}

void mirrorWords(std::size_t wordBytes, const void* in, std::int32_t n, void* out) {
  HWY_DYNAMIC_DISPATCH(MirrorWords)(wordBytes, in, n, out);
}

void fillWords(std::size_t wordBytes, const void* word, std::int32_t n, void* out) {
  HWY_DYNAMIC_DISPATCH(FillWords)(wordBytes, word, n, out);
}

}  // namespace vblur
#endif  // HWY_ONCE
