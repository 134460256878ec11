// Operations on single components: all 65,536 pairs of 8-bit components against plain formulas, colours and alpha.
#include <algorithm>
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/composite/Operations.h"

namespace vblur::test {
namespace {

using Formula = int (*)(int p, int q);

int Limited(int v) {
  return std::min(std::max(v, 0), 255);
}

struct PlainOperation {
  const char* name;
  R8 (*operation)(const R8&, const R8&);
  Formula colour;
  Formula alpha;
};

// For grey pixels, where S(q) = 3q.
int AddOverOfGrey(int p, int q) {
  const float share = static_cast<float>(3 * q) / 765.0f;
  const float product = static_cast<float>(p) * share;
  return Limited(static_cast<int>(product + static_cast<float>(p)));
}

const PlainOperation kPlainOperations[] = {
    {"Screen", Blend<R8>::Screen::ofIntegers, [](int p, int q) { return p + q - p * q / 255; },
     [](int p, int q) { return std::max(p, q); }},
    {"Multiply", Blend<R8>::Multiply::ofIntegers, [](int p, int q) { return p * q / 255; },
     [](int p, int q) { return std::min(p, q); }},
    {"Add", Blend<R8>::Add::ofIntegers, [](int p, int q) { return std::min(p + q, 255); },
     [](int p, int q) { return std::min(p + q, 255); }},
    {"Subtract", Blend<R8>::Subtract::ofIntegers, [](int p, int q) { return std::max(p - q, 0); },
     [](int p, int q) { return std::max(p - q, 0); }},
    {"Difference", Blend<R8>::Difference::ofIntegers, [](int p, int q) { return std::abs(p - q); },
     [](int p, int q) { return std::abs(p - q); }},
    {"Add Over", Blend<R8>::AddOver::ofIntegers, AddOverOfGrey, [](int p, int q) { return Limited(p + q); }},
    {"Add Under", Blend<R8>::AddUnder::ofIntegers, [](int p, int q) { return AddOverOfGrey(q, p); },
     [](int p, int q) { return Limited(p + q); }},
    {"Overlay", Blend<R8>::Overlay::ofIntegers, [](int p, int q) { return Limited(2 * p * q / 255); },
     [](int p, int q) { return Limited(2 * p * q / 255); }},
    {"HardLight", Blend<R8>::HardLight::ofIntegers, [](int p, int q) { return Limited(2 * p * q / 255); },
     [](int p, int q) { return Limited(2 * p * q / 255); }},
    {"Darken", Blend<R8>::Darken::ofIntegers, [](int p, int q) { return std::min(p, q); }, [](int, int) { return 0; }},
    {"Lighten", Blend<R8>::Lighten::ofIntegers, [](int p, int q) { return std::max(p, q); },
     [](int p, int q) { return std::max(p, q); }},
};

TEST(BlendComponents, AllPairsAtEightBits) {
  for (const PlainOperation& plain : kPlainOperations) {
    int wrong = 0;
    for (int p = 0; p < 256; ++p) {
      for (int q = 0; q < 256; ++q) {
        const R8 result = plain.operation(Make<R8>(p, p, p, p), Make<R8>(q, q, q, q));
        const int colour = plain.colour(p, q);
        wrong += result != Make<R8>(colour, colour, colour, plain.alpha(p, q));
      }
    }
    EXPECT_EQ(wrong, 0) << plain.name;
  }
}

// A different pair for each component, so that a read of the wrong one shows.
TEST(BlendComponents, EachComponentByItself) {
  for (const PlainOperation& plain : kPlainOperations) {
    if (plain.operation == Blend<R8>::AddOver::ofIntegers || plain.operation == Blend<R8>::AddUnder::ofIntegers ||
        plain.operation == Blend<R8>::Darken::ofIntegers || plain.operation == Blend<R8>::Lighten::ofIntegers) {
      continue;  // the whole pixel decides
    }
    const R8 result = plain.operation(Make<R8>(200, 90, 30, 255), Make<R8>(100, 10, 250, 77));
    EXPECT_EQ(result,
              Make<R8>(plain.colour(200, 100), plain.colour(90, 10), plain.colour(30, 250), plain.alpha(255, 77)))
        << plain.name;
  }
}

TEST(BlendComponents, OperationsAreConstant) {
  static_assert(Blend<R8>::Screen::ofIntegers(Make<R8>(0, 255, 128, 0), Make<R8>(0, 7, 128, 255)) ==
                Make<R8>(0, 255, 192, 255));
  static_assert(Blend<R16>::Multiply::ofFloats(MakeFloat(16384, 8192, -16384, 5), MakeFloat(16384, 8192, 8192, 4)) ==
                Make<R16>(16384, 4096, -8192, 4));
  static_assert(Blend<R8>::Colour::ofIntegers(Make<R8>(255, 0, 0, 9), Make<R8>(100, 100, 100, 0)) ==
                Make<R8>(100, 0, 0, 9));
}

TEST(BlendComponents, ScreenAndMultiplyOfAlpha) {
  const R8 clear = Make<R8>(10, 20, 30, 0);
  const R8 solid = Make<R8>(40, 50, 60, 255);
  EXPECT_EQ(Blend<R8>::Screen::ofIntegers(clear, solid).alpha, 255);
  EXPECT_EQ(Blend<R8>::Screen::ofIntegers(solid, clear).alpha, 255);
  EXPECT_EQ(Blend<R8>::Multiply::ofIntegers(clear, solid).alpha, 0);
  EXPECT_EQ(Blend<R8>::Multiply::ofIntegers(solid, clear).alpha, 0);
}

// With negative gains a sum can reach the lower bound and a difference the upper one.
TEST(BlendComponents, FloatFormsLimitAtBothEnds) {
  const Rf negative = MakeFloat(-200, -1, -255, -50);
  const Rf positive = MakeFloat(100, 2, 255, 20);
  EXPECT_EQ(Blend<R8>::Add::ofFloats(negative, positive), Make<R8>(0, 1, 0, 0));
  EXPECT_EQ(Blend<R8>::Subtract::ofFloats(positive, negative), Make<R8>(255, 3, 255, 70));
  EXPECT_EQ(Blend<R8>::Subtract::ofFloats(negative, positive), Make<R8>(0, 0, 0, 0));
}

TEST(BlendComponents, SixteenBitResultsGoBeyondOneAndBelowZero) {
  const R16 bright = Make<R16>(32767, 30000, -32768, 20000);
  EXPECT_EQ(Blend<R16>::Add::ofIntegers(bright, bright), Make<R16>(32767, 32767, -32768, 32767));
  EXPECT_EQ(Blend<R16>::Subtract::ofIntegers(Make<R16>(-20000, 0, 5, 0), bright),
            Make<R16>(-32768, -30000, 32767, -20000));
  EXPECT_EQ(Blend<R16>::Multiply::ofIntegers(bright, bright), Make<R16>(32767, 32767, 32767, 20000));
  EXPECT_EQ(Blend<R16>::Multiply::ofIntegers(Make<R16>(-3, 3, 16384, 1), Make<R16>(8192, 8192, -5, 2)),
            Make<R16>(-1, 1, -5, 1));
}

}  // namespace
}  // namespace vblur::test
