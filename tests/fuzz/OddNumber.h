// A random number: mostly one that people would use, now and then one that calculations trip over.
#pragma once

#include <array>
#include <limits>

#include "tests/support/Random.h"

namespace vblur::test {

inline double OddNumber(Random& random) {
  constexpr std::array kOdd = {0.0,
                               -0.0,
                               -1.0,
                               -100.0,
                               100.0,
                               1e-40,
                               3e38,
                               -1e300,
                               1.7e308,
                               4294967296.0,
                               std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()};
  if (random.oneIn(8)) return kOdd[static_cast<std::size_t>(random.within(0, static_cast<int>(kOdd.size()) - 1))];
  return static_cast<double>(random.between(-50.0f, 250.0f));
}

}  // namespace vblur::test
