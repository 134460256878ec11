// The contract of all processors, on the filter.
#include "blur/GaussFilter.h"
#include "tests/support/ProcessorContract.h"

namespace vblur::test {
namespace {

// The filter works on all rows and writes finished pixels only.
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
INSTANTIATE_TYPED_TEST_SUITE_P(GaussFilterContract, ProcessorContract, Filters, TypeNames);

}  // namespace
}  // namespace vblur::test
