#include "host/pages/DialogUnits.h"

#include <limits>

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

TEST(DialogUnits, CountQuartersOfACharacterAcrossAndEighthsDown) {
  const DialogUnits units{6, 13};
  EXPECT_EQ(units.ToPixels({17, 38, 156, 12}), (PixelRectangle{26, 62, 234, 20}));
  EXPECT_EQ(units.ToPixels({190, 160, 4, 8}), (PixelRectangle{285, 260, 6, 13}));
}

TEST(DialogUnits, RoundHalvesAwayFromZero) {
  const DialogUnits units{6, 12};
  EXPECT_EQ(units.Across(1), 2) << "1.5";
  EXPECT_EQ(units.Across(-1), -2);
  EXPECT_EQ(units.Across(3), 5) << "4.5";
  EXPECT_EQ(units.Down(1), 2) << "1.5";
  EXPECT_EQ((DialogUnits{5, 9}.Across(1)), 1) << "1.25";
  EXPECT_EQ((DialogUnits{7, 9}.Across(-1)), -2) << "-1.75";
}

TEST(DialogUnits, KeepWhatIsTooLargeWithin32Bits) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
  EXPECT_EQ(Scaled(kMost, 8, 4), kMost);
  EXPECT_EQ(Scaled(kLeast, 8, 4), kLeast);
  EXPECT_EQ(Scaled(kMost, 4, 4), kMost);
}

}  // namespace
}  // namespace vblur::host
