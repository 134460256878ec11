// The contract of all processors, on the chains of the filter.
#include "blur/FuzzSampler.h"
#include "tests/support/ProcessorContract.h"

namespace vblur::test {
namespace {

// A whole chain holds finished pixels of one stage before the next one has its turn. Those that go
// through a plane fill it round the window only, so a wrapped edge finds nothing at the far end; and
// grey is spread over alpha too before alpha comes back from the source.
template <class Pixel, std::int32_t Max, int Mode, int Method, int Sixteenths = 20>
struct Chain : SamplerSubject<FuzzSampler<Pixel, Ri, Max>, HvTexture<Pixel, Ri>> {
  static constexpr bool kKeepsToWindow = Mode != kFuzzRGB && Mode < kFuzzLuminance;
  static constexpr bool kPartsEqualWhole = Mode != kFuzzGrey && Mode < kFuzzLuminance;
  static constexpr bool kKnowsFields = false;
  static constexpr bool kPixelsOldOrNew = false;
  static constexpr int kInPlaceInput = Mode != kFuzzGrey && Method == kFuzzBlur ? 0 : -1;
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
INSTANTIATE_TYPED_TEST_SUITE_P(Chains, ProcessorContract, Chains);

}  // namespace
}  // namespace vblur::test
