// The contract of all processors, on those of the filter.
#include "blur/ChannelExtractor.h"
#include "blur/FuzzSampler.h"
#include "blur/GaussFilter.h"
#include "blur/GreyToRGBSampler.h"
#include "blur/RGBToYUVSampler.h"
#include "blur/SubtractCombiner.h"
#include "blur/YUVToRGBSampler.h"
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
  }
};

using Filters = Subjects<FilterSubject<BlurRGBAGauss<R8, Ri, 255, 1, 1, 1, 1>, 20, 37>,
                         FilterSubject<BlurRGBAGauss<R8, Ri, 255, 1, 1, 1, 0>, 8, 160>,
                         FilterSubject<BlurRGBAGauss<R8, Ri, 255, 0, 1, 0, 0>, 0, 32>,
                         FilterSubject<BlurRGBAGauss<R8, Ri, 255, 0, 0, 0, 1>, 0, 0>,
                         FilterSubject<BlurRGBAGauss<R16, Ri, 32767, 1, 1, 1, 0>, 48, 9>,
                         FilterSubject<BlurRGBAGauss<R16, Ri, 32767, 1, 0, 0, 0>, 1000, 2>,
                         FilterSubject<BlurRGBAGauss<Ri, Ri, 255, 0, 1, 1, 0>, 24, 24>,
                         FilterSubject<BlurGeneralGauss<int, int, 255, 1, 0, 0, 0>, 31, 16>>;
INSTANTIATE_TYPED_TEST_SUITE_P(Filters, ProcessorContract, Filters);

// A whole chain holds finished pixels of one stage before the next one has its turn.
template <class Pixel, std::int32_t Max, int Mode, int Method, int Sixteenths = 20>
struct Chain : SamplerSubject<FuzzSampler<Pixel, Ri, Max>, HvTexture<Pixel, Ri>> {
  static constexpr bool kKeepsToWindow = Mode != kFuzzRGB && Mode < kFuzzLuminance;
  static constexpr bool kKnowsFields = false;
  static constexpr bool kPixelsOldOrNew = false;
  static constexpr int kInPlaceInput = Method == kFuzzBlur ? 0 : -1;
  static void setUp(FuzzSampler<Pixel, Ri, Max>& chain) {
    chain.mode = Mode;
    chain.method = Method;
    chain.sizeX = Sixteenths / 16.0f;
    chain.sizeY = Sixteenths / 24.0f;
  }
};

using Chains = Subjects<Chain<R8, 255, kFuzzRGBA, kFuzzBlur>, Chain<R16, 32767, kFuzzAlpha, kFuzzBlur>,
                        Chain<R8, 255, kFuzzRGB, kFuzzBlur>, Chain<R16, 32767, kFuzzGrey, kFuzzBlur>,
                        Chain<R8, 255, kFuzzGrey, kFuzzBlur, 0>, Chain<R16, 32767, kFuzzBlue, kFuzzBlur>,
                        Chain<R8, 255, kFuzzLuminance, kFuzzBlur>, Chain<R16, 32767, kFuzzChroma, kFuzzBlur, 61>>;
INSTANTIATE_TYPED_TEST_SUITE_P(Chains, ProcessorContract, Chains);

// Sharpening reads its result where it lies, so the result must not be read through a smaller box.
using Sampling = Subjects<
    SamplerSubject<RGBToYUVSampler<HvTexture<R8, Ri>, HvTexture<Ri, Ri>, R8, Ri, 255>, HvTexture<R8, Ri>,
                   HvTexture<Ri, Ri>>,
    SamplerSubject<RGBToYUVSampler<HvTexture<R16, Ri>, HvTexture<Ri, Ri>, R16, Ri, 32767>, HvTexture<R16, Ri>,
                   HvTexture<Ri, Ri>>,
    SamplerSubject<YUVToRGBSampler<HvTexture<Ri, Ri>, HvTexture<R8, Ri>, Ri, R8, 255>, HvTexture<Ri, Ri>,
                   HvTexture<R8, Ri>>,
    SamplerSubject<YUVToRGBSampler<HvTexture<Ri, Ri>, HvTexture<R16, Ri>, Ri, R16, 32767>, HvTexture<Ri, Ri>,
                   HvTexture<R16, Ri>>,
    SamplerSubject<ChannelExtractor<HvTexture<R16, Ri>, HvTexture<int, int>, R16, int, 0>, HvTexture<R16, Ri>,
                   HvTexture<int, int>>,
    SamplerSubject<GreyToRGBSampler<HvTexture<int, int>, HvTexture<R8, Ri>, int, R8, 255>, HvTexture<int, int>,
                   HvTexture<R8, Ri>>,
    CombinerSubject<SubtractCombiner<R8, Ri, 255>, HvTexture<R8, Ri>, HvTexture<R8, Ri>, HvTexture<R8, Ri>>,
    CombinerSubject<SubtractCombiner<R16, Ri, 32767>, HvTexture<R16, Ri>, HvTexture<R16, Ri>, HvTexture<R16, Ri>>>;
INSTANTIATE_TYPED_TEST_SUITE_P(Sampling, ProcessorContract, Sampling);

}  // namespace
}  // namespace vblur::test
