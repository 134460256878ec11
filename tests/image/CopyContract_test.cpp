// The contract of all processors, on the copies.
#include "image/ChannelCopySampler.h"
#include "image/HvRGBCopySampler.h"
#include "image/SimpleCopySampler.h"
#include "tests/support/ProcessorContract.h"

namespace vblur::test {
namespace {

template <class Pixel, class Accum>
struct WholeCopy : SamplerSubject<SimpleCopySampler<Pixel, Accum>, HvTexture<Pixel, Accum>> {};

template <class Pixel, int R, int G, int B, int A>
struct ChannelCopy : SamplerSubject<ChannelCopySampler<Pixel, Ri, R, G, B, A>, HvTexture<Pixel, Ri>> {};

template <class Pixel, int Channels>
struct NamedCopy : SamplerSubject<HvRGBCopySampler<Pixel, Rf>, HvTexture<Pixel, Rf>> {
  static constexpr bool kKnowsFields = Channels == 15;
  static void setUp(HvRGBCopySampler<Pixel, Rf>& copy) { copy.channels = Channels; }
};

using WholeCopies = Subjects<WholeCopy<R8, Rf>, WholeCopy<R16, Ri>, WholeCopy<Ri, Ri>, WholeCopy<int, int>>;
using ChannelCopies = Subjects<ChannelCopy<R8, 0, 0, 0, 1>, ChannelCopy<R16, 1, 1, 1, 0>, ChannelCopy<R16, 1, 0, 1, 1>>;
using NamedCopies = Subjects<NamedCopy<R8, 0>, NamedCopy<R16, 10>, NamedCopy<R16, 15>>;

INSTANTIATE_TYPED_TEST_SUITE_P(CopyContractWhole, ProcessorContract, WholeCopies, TypeNames);
INSTANTIATE_TYPED_TEST_SUITE_P(CopyContractChannel, ProcessorContract, ChannelCopies, TypeNames);
INSTANTIATE_TYPED_TEST_SUITE_P(CopyContractNamed, ProcessorContract, NamedCopies, TypeNames);

}  // namespace
}  // namespace vblur::test
