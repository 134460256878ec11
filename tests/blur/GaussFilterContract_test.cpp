// The contract of all processors, on the filter.
#include "tests/blur/FilterRuns.h"
#include "tests/support/ProcessorContract.h"

namespace vblur::test {
namespace {

// The filter works on all rows and writes finished pixels only.
template <class Pixel, class Accum, class Mask, int SixteenthsX, int SixteenthsY>
struct FilterOf : SamplerSubject<Sampler<HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>>, HvTexture<Pixel, Accum>> {
  using Texture = HvTexture<Pixel, Accum>;
  static constexpr bool kKnowsFields = false;
  static void process(Sampler<Texture, Texture>& as, std::tuple<Texture>& inputs, Texture* out) {
    runFilter<Mask>(as,
                    {.sizeX = SixteenthsX / 16.0f,
                     .sizeY = SixteenthsY / 16.0f,
                     .boxes = 3,
                     .keepsOthers = false,
                     .keepsIntermediate = false},
                    &std::get<0>(inputs), out);
  }
};

struct ColoursOfR8 : FilterOf<R8, Ri, ChannelMask<1, 1, 1, 0>, 20, 37> {};
struct AlphaOfR8WithoutSize : FilterOf<R8, Ri, ChannelMask<0, 0, 0, 1>, 0, 0> {};
struct LargeAlongXOfR16 : FilterOf<R16, Ri, ChannelMask<1, 1, 1, 1>, 1000, 9> {};
struct OneInteger : FilterOf<int, int, ChannelMask<1, 0, 0, 0>, 31, 160> {};

using Filters = Subjects<ColoursOfR8, AlphaOfR8WithoutSize, LargeAlongXOfR16, OneInteger>;
INSTANTIATE_TYPED_TEST_SUITE_P(GaussFilterContract, ProcessorContract, Filters, TypeNames);

}  // namespace
}  // namespace vblur::test
