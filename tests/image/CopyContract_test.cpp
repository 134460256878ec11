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

struct AlphaOfR8 : ChannelCopy<R8, 0, 0, 0, 1> {};
struct ColoursOfR16 : ChannelCopy<R16, 1, 1, 1, 0> {};
struct AllButGreenOfR16 : ChannelCopy<R16, 1, 0, 1, 1> {};
struct NoneOfR8 : NamedCopy<R8, 0> {};
struct GreenAndAlphaOfR16 : NamedCopy<R16, 10> {};
struct AllOfR16 : NamedCopy<R16, 15> {};

using WholeCopies = Subjects<WholeCopy<R8, Rf>, WholeCopy<R16, Ri>, WholeCopy<Ri, Ri>, WholeCopy<int, int>>;
using ChannelCopies = Subjects<AlphaOfR8, ColoursOfR16, AllButGreenOfR16>;
using NamedCopies = Subjects<NoneOfR8, GreenAndAlphaOfR16, AllOfR16>;

INSTANTIATE_TYPED_TEST_SUITE_P(CopyContractWhole, ProcessorContract, WholeCopies, TypeNames);
INSTANTIATE_TYPED_TEST_SUITE_P(CopyContractChannel, ProcessorContract, ChannelCopies, TypeNames);
INSTANTIATE_TYPED_TEST_SUITE_P(CopyContractNamed, ProcessorContract, NamedCopies, TypeNames);

}  // namespace
}  // namespace vblur::test
