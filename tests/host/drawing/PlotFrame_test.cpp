#include "host/drawing/PlotFrame.h"

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

TEST(PlotFrame, TicksAreRoundAndInRange) {
  EXPECT_EQ(TicksOf({-2.0, 2.0}, 4), (std::vector<double>{-2.0, -1.0, 0.0, 1.0, 2.0}));
  EXPECT_EQ(TicksOf({0.0, 107.0}, 6), (std::vector<double>{0.0, 20.0, 40.0, 60.0, 80.0, 100.0}));
  EXPECT_EQ(TicksOf({-868.0, 868.0}, 13).front(), -800.0);
  EXPECT_EQ(TickText(0.1, 0.05), "0.10");
  EXPECT_EQ(TickText(-20.0, 20.0), "-20");
}

}  // namespace
}  // namespace vblur::host
