#include <cstddef>
#include <cstring>

#include "image/CopyBits.h"

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
HWY_INLINE void Fill(Word word, std::int32_t n, Word chosenBits, void* to) {
  const hn::ScalableTag<Word> d;
  const auto chosen = hn::Set(d, chosenBits);
  const auto in = hn::Set(d, word);
  auto* out = static_cast<Word*>(to);
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));
  std::int32_t i = 0;
  for (; i + lanes <= n; i += lanes)
    hn::StoreU(Mixed(d, chosen, in, out + i), d, out + i);
  for (; i < n; ++i)
    MixWord(chosenBits, &word, out + i);
}

void Copy32(const void* in, std::int32_t n, std::uint32_t chosen, void* out) {
  Copy(in, n, chosen, out);
}
void Copy64(const void* in, std::int32_t n, std::uint64_t chosen, void* out) {
  Copy(in, n, chosen, out);
}
void Fill32(std::uint32_t word, std::int32_t n, std::uint32_t chosen, void* out) {
  Fill(word, n, chosen, out);
}
void Fill64(std::uint64_t word, std::int32_t n, std::uint64_t chosen, void* out) {
  Fill(word, n, chosen, out);
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(Copy32);
HWY_EXPORT(Copy64);
HWY_EXPORT(Fill32);
HWY_EXPORT(Fill64);

}  // namespace

void copyBits(const void* in, std::int32_t n, std::uint32_t chosen, void* out) {
  HWY_DYNAMIC_DISPATCH(Copy32)(in, n, chosen, out);
}

void copyBits(const void* in, std::int32_t n, std::uint64_t chosen, void* out) {
  HWY_DYNAMIC_DISPATCH(Copy64)(in, n, chosen, out);
}

void fillBits(std::uint32_t word, std::int32_t n, std::uint32_t chosen, void* out) {
  HWY_DYNAMIC_DISPATCH(Fill32)(word, n, chosen, out);
}

void fillBits(std::uint64_t word, std::int32_t n, std::uint64_t chosen, void* out) {
  HWY_DYNAMIC_DISPATCH(Fill64)(word, n, chosen, out);
}

}  // namespace vblur
#endif  // HWY_ONCE
