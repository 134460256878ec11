#include "composite/PlainRuns.h"

#include <array>

#include <gtest/gtest.h>

#include "tests/composite/Pictures.h"

namespace vblur::test {
namespace {

template <class Pixel>
class PlainRunsOfAllDepths : public testing::Test {};

using AllDepths = testing::Types<R8, R16, Rf>;
TYPED_TEST_SUITE(PlainRunsOfAllDepths, AllDepths, TypeNames);

// Steps of 1, which the compiler knows, -1 and 0.
TYPED_TEST(PlainRunsOfAllDepths, WalkBothInputsByTheirSteps) {
  using Pixel = TypeParam;
  constexpr std::int32_t kCount = 5;
  std::array<Pixel, kCount> a;
  std::array<Pixel, kCount> b;
  for (std::int32_t i = 0; i < kCount; ++i) {
    a[static_cast<std::size_t>(i)] = Make<Pixel>(i + 1, 0, 0, 0);
    b[static_cast<std::size_t>(i)] = Make<Pixel>(10 * (i + 1), 0, 0, 0);
  }
  const auto start = [](const std::array<Pixel, kCount>& row, std::int32_t step) {
    return HvPixelRun<Pixel>{&row[step < 0 ? kCount - 1 : 0], step, kCount, true};
  };
  const auto place = [](std::int32_t i, std::int32_t step) { return step < 0 ? kCount - 1 - i : step * i; };
  for (const std::int32_t stepA : {1, -1, 0}) {
    for (const std::int32_t stepB : {1, -1, 0}) {
      std::array<Pixel, kCount> out{};
      out.fill(Make<Pixel>(100, 0, 0, 0));
      mapRuns(out.data(), kCount, start(a, stepA), start(b, stepB),
              [](const Pixel& p, const Pixel& q, const Pixel& old) {
                return Make<Pixel>(static_cast<std::int32_t>(p.red + q.red + old.red), 0, 0, 0);
              });
      for (std::int32_t i = 0; i < kCount; ++i) {
        const std::int32_t expected = 100 + place(i, stepA) + 1 + 10 * (place(i, stepB) + 1);
        EXPECT_EQ(out[static_cast<std::size_t>(i)], Make<Pixel>(expected, 0, 0, 0)) << stepA << ' ' << stepB;
      }
    }
  }
}

}  // namespace
}  // namespace vblur::test
