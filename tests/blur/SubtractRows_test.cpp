// Reflected rows against the plain arithmetic, at every instruction set that this machine has.
#include "blur/SubtractRows.h"

#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "blur/SubtractCombiner.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/Rows.h"

namespace vblur::test {
namespace {

class SubtractRows : public AtEachLevel {};

std::uint8_t plain(std::uint8_t a, std::uint8_t b) {
  return SubtractCombiner<R8, Ri, 255>::reflected(a, b);
}
std::int16_t plain(std::int16_t a, std::int16_t b) {
  return SubtractCombiner<R16, Ri, 32767>::reflected(a, b);
}

float plain(float a, float b) {
  return SubtractCombiner<Rf, Rf, 1>::reflected(a, b);
}

template <class T>
void compareReflected(const std::vector<T>& a, const std::vector<T>& b, std::size_t offset = 0) {
  std::vector<T> expected(a.size(), T{77});
  for (std::size_t i = offset; i < a.size(); ++i)
    expected[i] = plain(a[i], b[i]);
  const auto n = static_cast<std::int64_t>(a.size() - offset);
  std::vector<T> out(a.size(), T{77});
  reflectRow(a.data() + offset, b.data() + offset, n, out.data() + offset);
  ASSERT_TRUE(out == expected) << HvCpuLevel() << " " << n;
  for (const bool overA : {true, false}) {
    std::vector<T> row = overA ? a : b;
    std::fill_n(row.begin(), offset, T{77});
    const T* const at = row.data() + offset;
    reflectRow(overA ? at : a.data() + offset, overA ? b.data() + offset : at, n, row.data() + offset);
    ASSERT_TRUE(row == expected) << HvCpuLevel() << " in place " << n;
  }
}

// Every value of one beside random ones and the ends of the other.
template <class T>
void compareEveryValue() {
  constexpr int kLow = std::numeric_limits<T>::min();
  constexpr int kHigh = std::numeric_limits<T>::max();
  forRandomCases(40, [](Random& random) {
    std::vector<T> a;
    std::vector<T> b;
    for (int value = kLow; value <= kHigh; ++value) {
      a.push_back(static_cast<T>(value));
      const int other =
          random.oneIn(4) ? random.oneOf({kLow, kLow + 1, kHigh - 1, kHigh, 0, value}) : random.within(kLow, kHigh);
      b.push_back(static_cast<T>(other));
    }
    compareReflected(a, b);
    compareReflected(b, a);
  });
}

TEST_P(SubtractRows, EqualThePlainArithmetic) {
  compareEveryValue<std::uint8_t>();
  compareEveryValue<std::int16_t>();
}

TEST_P(SubtractRows, OfFloatsEqualItInTheirBits) {
  forRandomCases(100, [](Random& random) {
    std::vector<float> a;
    std::vector<float> b;
    for (int i = random.within(1, 300); i > 0; --i) {
      a.push_back(random.oneOf({random.between(-4.0f, 4.0f), 65504.0f, 1e-42f, -0.0f}));
      b.push_back(random.oneOf({random.between(-4.0f, 4.0f), -65504.0f, 1e-42f, a.back()}));
    }
    compareReflected(a, b);
  });
  EXPECT_TRUE(kernelsRan({"reflectRow float"}));
}

TEST_P(SubtractRows, OfEightBitsEqualItOnEveryPair) {
  std::vector<std::uint8_t> a(65536);
  std::vector<std::uint8_t> b(65536);
  for (std::size_t i = 0; i < 65536; ++i) {
    a[i] = static_cast<std::uint8_t>(i >> 8);
    b[i] = static_cast<std::uint8_t>(i & 255);
  }
  compareReflected(a, b);
}

template <class T>
void compareLengths() {
  Random random(5);
  for (std::size_t n = 0; n <= 280; ++n) {
    std::vector<T> a(n + 3);
    std::vector<T> b(n + 3);
    for (std::size_t i = 0; i < a.size(); ++i) {
      a[i] = static_cast<T>(random.within(-40000, 40000));
      b[i] = static_cast<T>(random.within(-40000, 40000));
    }
    compareReflected(a, b, 3);
  }
}

TEST_P(SubtractRows, OfEveryLengthWriteNothingBesideThem) {
  compareLengths<std::uint8_t>();
  compareLengths<std::int16_t>();
}

INSTANTIATE_TEST_SUITE_P(Levels, SubtractRows, testing::ValuesIn(vectorLevels()), levelName);

}  // namespace
}  // namespace vblur::test
