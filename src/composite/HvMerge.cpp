#include "composite/HvMerge.h"

#include <array>
#include <cmath>

#include "composite/MergeRows.h"
#include "composite/StraightRuns.h"

namespace vblur {

namespace {

// How near to 1 a gain, and to one half a blend, count as such: 1/255 in 32 bits. Floats show every difference.
template <class Pixel>
constexpr float kNear = Pixel::kIntegral ? 0.003921569f : 0.0f;

template <class Operation, MergeForm Form>
constexpr MergeKernel<typename Operation::Pixel> runOf() {
  // With gains of 1 the gained form leaves every float as it is.
  constexpr bool kIsInteger = Form == MergeForm::Integer && Operation::Pixel::kIntegral;
  return &mergeRun < Operation, Form == MergeForm::Integer && !kIsInteger ? MergeForm::Gained : Form > ;
}

template <class Operation>
MergeKernel<typename Operation::Pixel> kernelOf(MergeForm form) {
  switch (form) {
    case MergeForm::TowardsB: return runOf<Operation, MergeForm::TowardsB>();
    case MergeForm::TowardsA: return runOf<Operation, MergeForm::TowardsA>();
    case MergeForm::Gained: return runOf<Operation, MergeForm::Gained>();
    default: return runOf<Operation, MergeForm::Integer>();
  }
}

template <class Pixel>
using KernelChoice = MergeKernel<Pixel> (*)(MergeForm);

// By HvMergeMethod.
template <class Pixel, class Merge = HvMerge<Pixel, Rf, Pixel::kOne>>
constexpr std::array<KernelChoice<Pixel>, 21> kOperations = {
    &kernelOf<typename Merge::Luminance>,
    &kernelOf<typename Merge::Chroma>,
    &kernelOf<typename Merge::Hue>,
    &kernelOf<typename Merge::Saturation>,
    &kernelOf<typename Merge::Value>,
    &kernelOf<typename Merge::Colour>,
    &kernelOf<typename Merge::Darken>,
    &kernelOf<typename Merge::Lighten>,
    &kernelOf<typename Merge::Screen>,
    &kernelOf<typename Merge::Multiply>,
    &kernelOf<typename Merge::Add>,
    &kernelOf<typename Merge::Subtract>,
    &kernelOf<typename Merge::Difference>,
    &kernelOf<typename Merge::Overlay>,
    &kernelOf<typename Merge::HardLight>,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    &kernelOf<typename Merge::AddOver>,
    &kernelOf<typename Merge::AddUnder>,
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
  gainA = a;
  gainB = b;
  const bool gained = std::fabs(a - 1.0f) > kNear<Pixel> || std::fabs(b - 1.0f) > kNear<Pixel>;
  flags = gained ? flags | kGained : flags & ~static_cast<std::uint32_t>(kGained);
}

template <class Pixel, class Accum, std::int32_t One>
void HvMerge<Pixel, Accum, One>::setBlend(float m) {
  blend = clampTo(m, 0.0f, 1.0f);
  flags &= ~static_cast<std::uint32_t>(kTowardsA | kTowardsB);
  if (blend == 0.5f || std::fabs(static_cast<double>(blend) - 0.5) < static_cast<double>(kNear<Pixel>)) return;
  if (blend < 0.5f) {
    flags |= kTowardsA;
    weightB = blend * 2.0f;
    weightA = 1.0f - weightB;
  } else {
    flags |= kTowardsB;
    weightA = (1.0f - blend) * 2.0f;
    weightB = 1.0f - weightA;
  }
  mixA = gainA * weightA;
  mixB = gainB * weightB;
}

template <class Pixel, class Accum, std::int32_t One>
MergeForm HvMerge<Pixel, Accum, One>::form() const {
  if ((flags & kTowardsB) != 0) return MergeForm::TowardsB;
  if ((flags & kTowardsA) != 0) return MergeForm::TowardsA;
  return (flags & kGained) != 0 || !Pixel::kIntegral ? MergeForm::Gained : MergeForm::Integer;
}

template <class Pixel, class Accum, std::int32_t One>
void HvMerge<Pixel, Accum, One>::processRows(Texture* a, Texture* b, Texture* out) {
  const MergeKernel<Pixel> kernel = rgbMode == 1 ? kernelFor<Pixel>(method, form()) : nullptr;
  if (kernel == nullptr) return;
  const MergeWeights weights{gainA, gainB, weightA, weightB, mixA, mixB};
  // Null: the plain code runs.
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
template class HvMerge<Rf, Rf, 1>;

}  // namespace vblur
