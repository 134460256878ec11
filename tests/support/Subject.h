// Tests a processor against the contract of all processors. A subject takes three lines:
//
//   struct CopyR8 : SamplerSubject<SimpleCopySampler<R8, Rf>, HvTexture<R8, Rf>> {};
//   struct AlphaR8 : SamplerSubject<BlurRGBAGauss<R8, Ri, 255, 0, 0, 0, 1>, HvTexture<R8, Ri>> {
//     static void setUp(Processor& processor) { processor.sizeX = processor.sizeY = 1.25f; }
//   };
//   INSTANTIATE_TYPED_TEST_SUITE_P(Copies, ProcessorContract, Subjects<CopyR8, AlphaR8>, TypeNames);
//
// ctest then prints Copies/ProcessorContract/CopyR8.WritesNothing..., see TypeNames.h. A subject that does not keep a
// clause hides the clause's constant below with false; the test then fails if the clause is kept.
#pragma once

#include <tuple>

#include "tests/support/Canvas.h"

namespace vblur::test {

template <class ProcessorUnderTest, class OutTextureOfIt, class... InTextures>
struct Subject {
  using Processor = ProcessorUnderTest;
  using OutTexture = OutTextureOfIt;
  using Inputs = std::tuple<InTextures...>;

  // The clauses that some processors do not keep.
  static constexpr bool kKeepsToWindow = true;      // nothing outside the window changes
  static constexpr bool kPartsEqualWhole = true;    // in a window, the result is that part of the whole
  static constexpr bool kKnowsFields = true;        // a field mode limits the rows
  static constexpr bool kMoves = true;              // the origin of pictures and window does not matter
  static constexpr bool kPixelsOldOrNew = true;     // a pixel is old or finished, never in between
  static constexpr bool kReadsThroughEdges = true;  // inputs are read by their edge methods
  static constexpr bool kMayBeInPlace = true;       // the first input may be the target itself, if it is of its type

  // The component values of all pictures.
  template <class Pixel>
  static constexpr ComponentRange<Pixel> range() {
    if constexpr (sizeof(ComponentOf<Pixel>) == 4) {
      return {-4000, 40000};
    } else {
      return storageRange<Pixel>();
    }
  }

  static void setUp(Processor&) {}
};

template <class Processor, class InTexture, class OutTexture = InTexture>
struct SamplerSubject : Subject<Processor, OutTexture, InTexture> {
  static void process(Processor& processor, std::tuple<InTexture>& inputs, OutTexture* out) {
    processor.process(&std::get<0>(inputs), out);
  }
};

// For Combiner and HvImgProc3.
template <class Processor, class TextureA, class TextureB, class OutTexture>
struct CombinerSubject : Subject<Processor, OutTexture, TextureA, TextureB> {
  static void process(Processor& processor, std::tuple<TextureA, TextureB>& inputs, OutTexture* out) {
    processor.process(&std::get<0>(inputs), &std::get<1>(inputs), out);
  }
};

// For Generator and HvImgProc1.
template <class Processor, class OutTexture>
struct GeneratorSubject : Subject<Processor, OutTexture> {
  static void process(Processor& processor, std::tuple<>&, OutTexture* out) { processor.process(out); }
};

}  // namespace vblur::test
