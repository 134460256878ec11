#include "tests/differential/PngLimits.h"

#include <bit>
#include <utility>

#include <gtest/gtest.h>

namespace vblur::differential {
namespace {

TEST(PngLimits, OfFloatsAreStepsOfSixteenBits) {
  const auto bits = [](float value) { return std::bit_cast<std::int32_t>(value); };
  DrawnPicture colours{1, 1, 4, {bits(-1.0f), bits(0.5f), bits(1.0f), bits(900.0f)}};
  LimitToPng(colours, 32);
  EXPECT_EQ(colours.values, (std::vector<std::int32_t>{0, bits(32768.0f / 65535.0f), bits(1.0f), bits(1.0f)}));
}

TEST(PngLimits, OfAnOutputOfFloatsAreSamplesOfSixteenBits) {
  using enum host::SampleType;
  for (const auto& [type, limited] : {std::pair{Float, Unsigned16}, {Half, Unsigned16}, {Unsigned8, Unsigned8}}) {
    DrawnFrame frame = DrawFrame(6, 0, DrawnKinds::All, DrawnDepths::Floats);
    frame.job.output.storage.type = type;
    LimitToPng(frame);
    EXPECT_EQ(frame.job.output.storage.type, limited);
    EXPECT_EQ(frame.job.output.file, "out.png");
  }
}

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
