// The contract of all processors, on the colour samplers and the sharpening combiner.
#include "blur/ChannelExtractor.h"
#include "blur/GreyToRGBSampler.h"
#include "blur/RGBToYUVSampler.h"
#include "blur/SubtractCombiner.h"
#include "blur/YUVToRGBSampler.h"
#include "tests/support/ProcessorContract.h"

namespace vblur::test {
namespace {

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
    SamplerSubject<RGBToYUVSampler<HvTexture<R8, Ri>, HvTexture<R8, Ri>, R8, Ri, 255>, HvTexture<R8, Ri>>,
    SamplerSubject<RGBToYUVSampler<HvTexture<R16, Ri>, HvTexture<R16, Ri>, R16, Ri, 32767>, HvTexture<R16, Ri>>,
    SamplerSubject<YUVToRGBSampler<HvTexture<R8, Ri>, HvTexture<R8, Ri>, R8, R8, 255>, HvTexture<R8, Ri>>,
    SamplerSubject<YUVToRGBSampler<HvTexture<R16, Ri>, HvTexture<R16, Ri>, R16, R16, 32767>, HvTexture<R16, Ri>>,
    SamplerSubject<ChannelExtractor<HvTexture<R8, Ri>, HvTexture<C8, Ci>, R8, C8, 0>, HvTexture<R8, Ri>,
                   HvTexture<C8, Ci>>,
    SamplerSubject<GreyToRGBSampler<HvTexture<C16, Ci>, HvTexture<R16, Ri>, C16, R16, 32767>, HvTexture<C16, Ci>,
                   HvTexture<R16, Ri>>,
    SamplerSubject<GreyToRGBSampler<HvTexture<int, int>, HvTexture<R8, Ri>, int, R8, 255>, HvTexture<int, int>,
                   HvTexture<R8, Ri>>,
    CombinerSubject<SubtractCombiner<R8, Ri, 255>, HvTexture<R8, Ri>, HvTexture<R8, Ri>, HvTexture<R8, Ri>>,
    CombinerSubject<SubtractCombiner<R16, Ri, 32767>, HvTexture<R16, Ri>, HvTexture<R16, Ri>, HvTexture<R16, Ri>>>;
INSTANTIATE_TYPED_TEST_SUITE_P(SamplerContract, ProcessorContract, Sampling, TypeNames);

}  // namespace
}  // namespace vblur::test
