#include "tests/differential/PngLimits.h"

#include <gtest/gtest.h>

namespace vblur::differential {
namespace {

TEST(PngLimits, AreThoseOfColoursAndAmounts) {
  DrawnPicture colours{1, 1, 4, {-1, 0, 16384, 16385}};
  LimitToPng(colours, 16);
  EXPECT_EQ(colours.values, (std::vector<std::int32_t>{0, 0, 16384, 16384}));
  DrawnPicture amounts{4, 1, 1, {-32768, 0, 32767, 16384}};
  LimitToPng(amounts, 16);
  EXPECT_EQ(amounts.values, (std::vector<std::int32_t>{0, 0, 32767, 16384}));
}

}  // namespace
}  // namespace vblur::differential
