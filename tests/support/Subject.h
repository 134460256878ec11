// How the contract of all processors gets hold of one. Three lines make a subject of a processor:
//
//   struct CopyR8 : SamplerSubject<SimpleCopySampler<R8, Rf>, HvTexture<R8, Rf>> {};
//   struct AlphaR8 : SamplerSubject<BlurRGBAGauss<R8, Ri, 255, 0, 0, 0, 1>, HvTexture<R8, Ri>> {
//     static void setUp(Processor& processor) { processor.sizeX = processor.sizeY = 1.25f; }
//   };
//   INSTANTIATE_TYPED_TEST_SUITE_P(Copies, ProcessorContract, Subjects<CopyR8, AlphaR8>, TypeNames);
//
// ctest then prints Copies/ProcessorContract/CopyR8.WritesNothing..., see TypeNames.h. A clause that does not hold for a
// subject is switched off by hiding a constant below.
#pragma once

#include <tuple>

#include "tests/support/Canvas.h"

namespace vblur::test {

template <class ProcessorUnderTest, class OutTextureOfIt, class... InTextures>
struct Subject {
  using Processor = ProcessorUnderTest;
  using OutTexture = OutTextureOfIt;
  using Inputs = std::tuple<InTextures...>;

  // Each clause that holds for all but a few.
  static constexpr bool kKeepsToWindow = true;    // nothing outside the window changes
  static constexpr bool kPartsEqualWhole = true;  // a window of a picture has that part of the whole
  static constexpr bool kKnowsFields = true;      // a field mode limits the rows
  static constexpr bool kMoves = true;            // the place of pictures and window plays no part
  static constexpr bool kPixelsOldOrNew = true;   // no pixel ever holds anything but its old or its last value
  static constexpr bool kReadsThroughEdges = true;
  // The input that may be the target itself; -1: none may.
  static constexpr int kInPlaceInput = sizeof...(InTextures) == 0 ? -1 : 0;

  // What the components of all pictures are taken from.
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
  static constexpr int kInPlaceInput = std::is_same_v<InTexture, OutTexture> ? 0 : -1;
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
