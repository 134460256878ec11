// The contract of all processors, on the filler and on a processor of each framework.
#include "image/Combiner.h"
#include "image/Generator.h"
#include "image/HvImgFiller.h"
#include "image/HvImgProc3.h"
#include "tests/support/ProcessorContract.h"

namespace vblur::test {
namespace {

template <class Pixel>
struct Fill : GeneratorSubject<HvImgFiller<Pixel, Rf>, HvTexture<Pixel, Rf>> {
  static void setUp(HvImgFiller<Pixel, Rf>& filler) {
    filler.colourIsZero = false;
    filler.colour.green = 77;
  }
};

template <class Pixel>
struct FillToZero : GeneratorSubject<HvImgFiller<Pixel, Rf>, HvTexture<Pixel, Rf>> {};

template <class Pixel>
struct FillOutside : GeneratorSubject<HvImgFiller<Pixel, Rf>, HvTexture<Pixel, Rf>> {
  static constexpr bool kPartsEqualWhole = false;
  static constexpr bool kMoves = false;
  static void setUp(HvImgFiller<Pixel, Rf>& filler) {
    filler.fillOutside = true;
    filler.left = -2;
    filler.right = 4;
    filler.bottom = 1;
    filler.top = 6;
  }
};

// The larger of each two components, for frameworks without a processor in this folder.
R8 greater(const R8& a, const R8& b) {
  R8 result{};
  for (int c = 0; c < 4; ++c)
    result[c] = std::max(a[c], b[c]);
  return result;
}

const auto kGreaterOfRuns = [](R8* to, std::int32_t n, const HvPixelRun<R8>& a, const HvPixelRun<R8>& b) {
  for (std::int32_t i = 0; i < n; ++i)
    to[i] = greater(a.first[i * a.step], b.first[i * b.step]);
};

using Frame = HvTexture<R8, Rf>;

class GreaterCombiner : public Combiner<Frame, Frame, Frame> {
 public:
  void processRows(Frame* a, Frame* b, Frame* out) override {
    walkRuns(rowLoop(), interrupt, *out, kGreaterOfRuns, *a, *b);
  }
};

class GreaterProc3 : public HvImgProc3<Frame, Frame, Frame> {
 public:
  void processRows() override { walkRuns(rowLoop(), interrupt, *target, kGreaterOfRuns, *imageA, *imageB); }
};

class PlainGenerator : public Generator<Frame> {
 public:
  void processRows(Frame* out) override {
    walkRuns(rowLoop(), interrupt, *out, [](R8* to, std::int32_t n) { std::fill_n(to, n, R8{{1, 2, 3, 4}}); });
  }
};

struct Greater : CombinerSubject<GreaterCombiner, Frame, Frame, Frame> {};
struct GreaterOfMembers : CombinerSubject<GreaterProc3, Frame, Frame, Frame> {};
struct Generated : GeneratorSubject<PlainGenerator, Frame> {};

using Fills = Subjects<Fill<R8>, FillToZero<R16>, FillOutside<R8>, FillOutside<R16>>;
using Frameworks = Subjects<Greater, GreaterOfMembers, Generated>;

INSTANTIATE_TYPED_TEST_SUITE_P(FrameworkContractFills, ProcessorContract, Fills, TypeNames);
INSTANTIATE_TYPED_TEST_SUITE_P(FrameworkContract, ProcessorContract, Frameworks, TypeNames);

}  // namespace
}  // namespace vblur::test
