// The contract of all processors, on the merges, mixes and mask stages.
#include "composite/HvDsMaskFixer.h"
#include "composite/HvDsPaintCombiner.h"
#include "composite/HvMerge.h"
#include "composite/HvQuickMixer.h"
#include "composite/MixCombiner.h"
#include "tests/support/ProcessorContract.h"

namespace vblur::test {
namespace {

template <class Pixel>
using Picture = HvTexture<Pixel, Rf>;
template <class Pixel, class Processor>
using TwoPictures = CombinerSubject<Processor, Picture<Pixel>, Picture<Pixel>, Picture<Pixel>>;

template <class Pixel, int Method, int Percent>
struct Merge : TwoPictures<Pixel, HvMerge<Pixel, Rf, Pixel::kOne>> {
  static void setUp(HvMerge<Pixel, Rf, Pixel::kOne>& merge) {
    merge.rgbMode = 1;
    merge.method = Method;
    merge.setGains(1.0f, Percent == 50 ? 1.0f : 0.75f);
    merge.setBlend(static_cast<float>(Percent) / 100.0f);
  }
};

template <class Pixel, int PercentOfA>
struct Mix : TwoPictures<Pixel, MixCombiner<Pixel, Rf, Pixel::kOne>> {
  static void setUp(MixCombiner<Pixel, Rf, Pixel::kOne>& mix) {
    mix.weightA = static_cast<float>(PercentOfA) / 100.0f;
    mix.weightB = 0.25f;
  }
};

template <class Pixel>
struct QuickMix : TwoPictures<Pixel, HvQuickMixer<Pixel, Rf, Pixel::kMax>> {
  static void setUp(HvQuickMixer<Pixel, Rf, Pixel::kMax>& mixer) { mixer.amount = 0.3f; }
};

// The second picture is the target itself.
template <class Pixel>
struct QuickMixInPlace : Subject<HvQuickMixer<Pixel, Rf, Pixel::kMax>, Picture<Pixel>, Picture<Pixel>> {
  using Processor = HvQuickMixer<Pixel, Rf, Pixel::kMax>;
  static void setUp(Processor& mixer) { mixer.amount = 0.7f; }
  static void process(Processor& mixer, std::tuple<Picture<Pixel>>& inputs, Picture<Pixel>* out) {
    mixer.process(&std::get<0>(inputs), nullptr, out);
  }
};

template <class Pixel, int Channels, int ByAlpha>
struct Fix : SamplerSubject<HvDsMaskFixer<Pixel, Rf, Pixel::kMax>, Picture<Pixel>> {
  static constexpr bool kKnowsFields = ByAlpha != 0;
  static void setUp(HvDsMaskFixer<Pixel, Rf, Pixel::kMax>& fixer) {
    fixer.channels = Channels;
    fixer.mixByAlpha = ByAlpha;
  }
};

// Where the source has no pixel it counts as zero, whatever its outside colour.
template <class Pixel, class MaskPixel>
struct Paint : CombinerSubject<HvDsPaintCombiner<Pixel, Rf, MaskPixel, Cf>, Picture<Pixel>, HvTexture<MaskPixel, Cf>,
                               Picture<Pixel>> {
  static constexpr bool kReadsThroughEdges = false;
};

struct ScreenOfR8 : Merge<R8, kMergeScreen, 50> {};
struct LuminanceTowardsEffectOfR8 : Merge<R8, kMergeLuminance, 20> {};
struct DarkenTowardsSourceOfR8 : Merge<R8, kMergeDarken, 80> {};
struct HardLightOfR16 : Merge<R16, kMergeHardLight, 50> {};
struct AddUnderTowardsEffectOfR16 : Merge<R16, kMergeAddUnder, 20> {};
struct ColourTowardsSourceOfR16 : Merge<R16, kMergeColour, 80> {};
struct MultiplyOfRf : Merge<Rf, kMergeMultiply, 50> {};
struct HueTowardsEffectOfRf : Merge<Rf, kMergeHue, 20> {};
struct OverlayTowardsSourceOfRf : Merge<Rf, kMergeOverlay, 80> {};
using Merges = Subjects<ScreenOfR8, LuminanceTowardsEffectOfR8, DarkenTowardsSourceOfR8, HardLightOfR16,
                        AddUnderTowardsEffectOfR16, ColourTowardsSourceOfR16, MultiplyOfRf, HueTowardsEffectOfRf,
                        OverlayTowardsSourceOfRf>;
INSTANTIATE_TYPED_TEST_SUITE_P(CompositeContractMerges, ProcessorContract, Merges, TypeNames);

struct MixOfR8 : Mix<R8, 75> {};
struct MixBeyondOneOfR8 : Mix<R8, 150> {};
struct MixOfR16 : Mix<R16, 75> {};
struct MixBelowZeroOfR16 : Mix<R16, -20> {};
struct QuickMixOfR8 : QuickMix<R8> {};
struct QuickMixOfR16 : QuickMix<R16> {};
struct QuickMixInPlaceOfR8 : QuickMixInPlace<R8> {};
struct QuickMixInPlaceOfR16 : QuickMixInPlace<R16> {};
struct MixOfRf : Mix<Rf, -20> {};
struct QuickMixOfRf : QuickMix<Rf> {};
struct QuickMixInPlaceOfRf : QuickMixInPlace<Rf> {};
using Mixes = Subjects<MixOfR8, MixBeyondOneOfR8, MixOfR16, MixBelowZeroOfR16, QuickMixOfR8, QuickMixOfR16,
                       QuickMixInPlaceOfR8, QuickMixInPlaceOfR16, MixOfRf, QuickMixOfRf, QuickMixInPlaceOfRf>;
INSTANTIATE_TYPED_TEST_SUITE_P(CompositeContractMixes, ProcessorContract, Mixes, TypeNames);

struct RedOfR8 : Fix<R8, 1, 0> {};
struct BlueAndAlphaOfR16 : Fix<R16, 12, 0> {};
struct AllButGreenByAlphaOfR8 : Fix<R8, 2, 1> {};
struct ColoursByAlphaOfR16 : Fix<R16, 0, 1> {};
struct PaintOfR8 : Paint<R8, C8> {};
struct PaintOfR16 : Paint<R16, C16> {};
struct GreenOfRf : Fix<Rf, 2, 0> {};
struct AllButRedByAlphaOfRf : Fix<Rf, 1, 1> {};
struct PaintOfRf : Paint<Rf, Cf> {};
using MaskStages = Subjects<RedOfR8, BlueAndAlphaOfR16, AllButGreenByAlphaOfR8, ColoursByAlphaOfR16, PaintOfR8,
                            PaintOfR16, GreenOfRf, AllButRedByAlphaOfRf, PaintOfRf>;
INSTANTIATE_TYPED_TEST_SUITE_P(CompositeContractMaskStages, ProcessorContract, MaskStages, TypeNames);

}  // namespace
}  // namespace vblur::test
