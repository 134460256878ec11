// The contract of all processors, on the chains of the filter.
#include "blur/FuzzSampler.h"
#include "tests/support/ProcessorContract.h"

namespace vblur::test {
namespace {

// Pixels hold the result of one stage before the next stage runs. Chains with a plane fill it around the window only,
// so that a wrapped edge reads nothing at the far end; and grey overwrites alpha before alpha is copied back.
template <class Pixel, std::int32_t Max, int Mode, int Method, int Sixteenths = 20>
struct Chain : SamplerSubject<FuzzSampler<Pixel, Ri, Max>, HvTexture<Pixel, Ri>> {
  static constexpr bool kKeepsToWindow = Mode != kFuzzRGB && Mode < kFuzzLuminance;
  static constexpr bool kPartsEqualWhole = Mode != kFuzzGrey && (Mode < kFuzzLuminance || Sixteenths == 0);
  static constexpr bool kKnowsFields = false;
  static constexpr bool kPixelsOldOrNew = false;
  static constexpr bool kMayBeInPlace = Mode != kFuzzGrey && Method == kFuzzBlur;
  static void setUp(FuzzSampler<Pixel, Ri, Max>& chain) {
    chain.mode = Mode;
    chain.method = Method;
    chain.sizeX = Sixteenths / 16.0f;
    chain.sizeY = Sixteenths / 24.0f;
  }
};

using Chains = Subjects<Chain<R8, 255, kFuzzRGBA, kFuzzBlur>, Chain<R8, 255, kFuzzRGB, kFuzzBlur>,
                        Chain<R16, 32767, kFuzzGrey, kFuzzBlur>, Chain<R16, 32767, kFuzzBlue, kFuzzBlur>,
                        Chain<R8, 255, kFuzzLuminance, kFuzzBlur>, Chain<R16, 32767, kFuzzChroma, kFuzzBlur, 0>>;
INSTANTIATE_TYPED_TEST_SUITE_P(FuzzSamplerContract, ProcessorContract, Chains, TypeNames);

}  // namespace
}  // namespace vblur::test
