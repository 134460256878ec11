// The contract of all processors, on the filter and its chains.
#include "blur/FuzzSampler.h"
#include "blur/GaussFilter.h"
#include "tests/support/ProcessorContract.h"

namespace vblur::test {
namespace {

// The filter works on all rows, and keeps no pixel but those that it has finished.
template <class Filter, int SixteenthsX, int SixteenthsY>
struct FilterSubject : SamplerSubject<Filter, typename Filter::Texture> {
  static constexpr bool kKnowsFields = false;
  static void setUp(Filter& filter) {
    filter.sizeX = SixteenthsX / 16.0f;
    filter.sizeY = SixteenthsY / 16.0f;
    filter.keepsIntermediate = false;
  }
};

using Filters = Subjects<FilterSubject<BlurRGBAGauss<R8, Ri, 255, 1, 1, 1, 0>, 20, 37>,
                         FilterSubject<BlurRGBAGauss<R8, Ri, 255, 0, 0, 0, 1>, 0, 0>,
                         FilterSubject<BlurRGBAGauss<R16, Ri, 32767, 1, 1, 1, 1>, 1000, 9>,
                         FilterSubject<BlurGeneralGauss<int, int, 255, 1, 0, 0, 0>, 31, 160>>;
INSTANTIATE_TYPED_TEST_SUITE_P(Filters, ProcessorContract, Filters);

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
