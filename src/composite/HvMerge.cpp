#include "composite/HvMerge.h"

#include <array>
#include <cmath>

#include "composite/ColourMerge.h"
#include "composite/MergeRows.h"
#include "composite/StraightRuns.h"

namespace vblur {

namespace {

constexpr float kHalfStep = 0.003921569f;  // 1/255 in 32 bits

template <class Operation>
MergeKernel<typename Operation::Pixel> kernelOf(MergeForm form) {
  switch (form) {
    case MergeForm::TowardsB: return &mergeRun<Operation, MergeForm::TowardsB>;
    case MergeForm::TowardsA: return &mergeRun<Operation, MergeForm::TowardsA>;
    case MergeForm::Gained: return &mergeRun<Operation, MergeForm::Gained>;
    default: return &mergeRun<Operation, MergeForm::Integer>;
  }
}

template <class Pixel>
using KernelChoice = MergeKernel<Pixel> (*)(MergeForm);

// By HvMergeMethod.
template <class Pixel>
constexpr std::array<KernelChoice<Pixel>, 21> kOperations = {
    &kernelOf<blend::Luminance<Pixel>>,
    &kernelOf<blend::Chroma<Pixel>>,
    &kernelOf<blend::Hue<Pixel>>,
    &kernelOf<blend::Saturation<Pixel>>,
    &kernelOf<blend::Value<Pixel>>,
    &kernelOf<blend::Colour<Pixel>>,
    &kernelOf<blend::Darken<Pixel>>,
    &kernelOf<blend::Lighten<Pixel>>,
    &kernelOf<blend::Screen<Pixel>>,
    &kernelOf<blend::Multiply<Pixel>>,
    &kernelOf<blend::Add<Pixel>>,
    &kernelOf<blend::Subtract<Pixel>>,
    &kernelOf<blend::Difference<Pixel>>,
    &kernelOf<blend::Overlay<Pixel>>,
    &kernelOf<blend::HardLight<Pixel>>,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    &kernelOf<blend::AddOver<Pixel>>,
    &kernelOf<blend::AddUnder<Pixel>>,
};

template <class Pixel>
MergeKernel<Pixel> kernelFor(std::int32_t method, MergeForm form) {
  const auto index = static_cast<std::size_t>(method);
  if (method < 0 || index >= kOperations<Pixel>.size() || kOperations<Pixel>[index] == nullptr) return nullptr;
  return kOperations<Pixel>[index](form);
}

}  // namespace

template <class Pixel, class Accum, std::int32_t One>
void HvMerge<Pixel, Accum, One>::setGains(float a, float b) {
  weights.gainA = a;
  weights.gainB = b;
  const bool gained = std::fabs(a - 1.0f) > kHalfStep || std::fabs(b - 1.0f) > kHalfStep;
  mergeFlags = gained ? mergeFlags | kGained : mergeFlags & ~static_cast<std::uint32_t>(kGained);
}

template <class Pixel, class Accum, std::int32_t One>
void HvMerge<Pixel, Accum, One>::setBlend(float m) {
  blend = clampTo(m, 0.0f, 1.0f);
  mergeFlags &= ~static_cast<std::uint32_t>(kTowardsA | kTowardsB);
  if (std::fabs(static_cast<double>(blend) - 0.5) < static_cast<double>(kHalfStep)) return;
  if (blend < 0.5f) {
    mergeFlags |= kTowardsA;
    weights.weightB = blend * 2.0f;
    weights.weightA = 1.0f - weights.weightB;
  } else {
    mergeFlags |= kTowardsB;
    weights.weightA = (1.0f - blend) * 2.0f;
    weights.weightB = 1.0f - weights.weightA;
  }
  weights.mixA = weights.gainA * weights.weightA;
  weights.mixB = weights.gainB * weights.weightB;
}

template <class Pixel, class Accum, std::int32_t One>
MergeForm HvMerge<Pixel, Accum, One>::form() const {
  if ((mergeFlags & kTowardsB) != 0) return MergeForm::TowardsB;
  if ((mergeFlags & kTowardsA) != 0) return MergeForm::TowardsA;
  return (mergeFlags & kGained) != 0 ? MergeForm::Gained : MergeForm::Integer;
}

template <class Pixel, class Accum, std::int32_t One>
void HvMerge<Pixel, Accum, One>::processRows(Texture* a, Texture* b, Texture* out) {
  const MergeKernel<Pixel> kernel = kernelFor<Pixel>(method, form());
  if (kernel == nullptr) return;
  const MergeRow<Pixel> row = mergeRowFor<Pixel>(method, form(), weights);
  const auto byVectors = [&](const Pixel* fromA, const Pixel* fromB, Pixel* to, std::int32_t n) {
    row(fromA, fromB, to, n, weights);
  };
  walkRuns<PollAt::BeforeRow>(
      this->rowLoop(), this->interrupt, *out,
      [&](Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& runA, const HvPixelRun<Pixel>& runB) {
        if (row == nullptr || !runStraight(to, n, runA, runB, byVectors)) kernel(to, n, runA, runB, weights);
      },
      *a, *b);
}

template class HvMerge<R8, Rf, 255>;
template class HvMerge<R16, Rf, 16384>;

}  // namespace vblur
