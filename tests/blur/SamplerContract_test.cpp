// The contract of all processors, on the colour samplers and the sharpening combiner.
#include "blur/ChannelExtractor.h"
#include "blur/GreyToRGBSampler.h"
#include "blur/RGBToYUVSampler.h"
#include "blur/SubtractCombiner.h"
#include "blur/YUVToRGBSampler.h"
#include "tests/support/ProcessorContract.h"

namespace vblur::test {
namespace {

template <class Pixel>
using Picture = HvTexture<Pixel, Ri>;
template <class In, class Out, class Pixel>
using Forward = SamplerSubject<RGBToYUVSampler<In, Out, Pixel, Ri, Pixel::kMax>, In, Out>;
template <class In, class Out, class Pixel>
using Backward = SamplerSubject<YUVToRGBSampler<In, Out, typename In::Pixel, Pixel, Pixel::kMax>, In, Out>;
template <class In, class Out>
using Extractor = SamplerSubject<ChannelExtractor<In, Out, typename In::Pixel, typename Out::Pixel, 0>, In, Out>;
template <class In, class Out, class Pixel>
using Spreader = SamplerSubject<GreyToRGBSampler<In, Out, typename In::Pixel, Pixel, Pixel::kMax>, In, Out>;
template <class Pixel>
using Reflector =
    CombinerSubject<SubtractCombiner<Pixel, Ri, Pixel::kMax>, Picture<Pixel>, Picture<Pixel>, Picture<Pixel>>;

struct WideYuvOfR8 : Forward<Picture<R8>, Picture<Ri>, R8> {};
struct WideYuvOfR16 : Forward<Picture<R16>, Picture<Ri>, R16> {};
struct YuvOfR8 : Forward<Picture<R8>, Picture<R8>, R8> {};
struct YuvOfR16 : Forward<Picture<R16>, Picture<R16>, R16> {};
struct R8OfWideYuv : Backward<Picture<Ri>, Picture<R8>, R8> {};
struct R16OfWideYuv : Backward<Picture<Ri>, Picture<R16>, R16> {};
struct R8OfYuv : Backward<Picture<R8>, Picture<R8>, R8> {};
struct R16OfYuv : Backward<Picture<R16>, Picture<R16>, R16> {};
struct WideRedOfR16 : Extractor<Picture<R16>, HvTexture<int, int>> {};
struct RedOfR8 : Extractor<Picture<R8>, HvTexture<C8, Ci>> {};
struct R16OfGrey : Spreader<HvTexture<C16, Ci>, Picture<R16>, R16> {};
struct R8OfWideGrey : Spreader<HvTexture<int, int>, Picture<R8>, R8> {};
struct SharpenedR8 : Reflector<R8> {};
struct SharpenedR16 : Reflector<R16> {};

using Samplers = Subjects<WideYuvOfR8, WideYuvOfR16, YuvOfR8, YuvOfR16, R8OfWideYuv, R16OfWideYuv, R8OfYuv, R16OfYuv,
                          WideRedOfR16, RedOfR8, R16OfGrey, R8OfWideGrey, SharpenedR8, SharpenedR16>;
INSTANTIATE_TYPED_TEST_SUITE_P(SamplerContract, ProcessorContract, Samplers, TypeNames);

}  // namespace
}  // namespace vblur::test
