// The contract of all processors, on the chains of the filter.
#include "blur/FuzzSampler.h"
#include "tests/support/ProcessorContract.h"

namespace vblur::test {
namespace {

// Between two stages of a chain the target holds the first one's result. Planes are filled around the window only, so a
// wrapped edge reads 0 at the far end; alpha is grey until it is copied from the source.
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

struct AllOfR8 : Chain<R8, 255, kFuzzRGBA, kFuzzBlur> {};
struct ColoursOfR8 : Chain<R8, 255, kFuzzRGB, kFuzzBlur> {};
struct GreyOfR16 : Chain<R16, 32767, kFuzzGrey, kFuzzBlur> {};
struct BlueOfR16 : Chain<R16, 32767, kFuzzBlue, kFuzzBlur> {};
struct LuminanceOfR8 : Chain<R8, 255, kFuzzLuminance, kFuzzBlur> {};
struct ChromaOfR16WithoutSize : Chain<R16, 32767, kFuzzChroma, kFuzzBlur, 0> {};

using Chains = Subjects<AllOfR8, ColoursOfR8, GreyOfR16, BlueOfR16, LuminanceOfR8, ChromaOfR16WithoutSize>;
INSTANTIATE_TYPED_TEST_SUITE_P(FuzzSamplerContract, ProcessorContract, Chains, TypeNames);

}  // namespace
}  // namespace vblur::test
