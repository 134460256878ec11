// Outside the region that is rendered an output holds the samples of its input.
#include "tests/host/sequence/KeptOutside.h"

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

TEST_F(KeptOutside, SixteenBitsAreAllKept) {
  const PlainPicture<std::uint16_t> picture{4, 3, 3, Counting<std::uint16_t>(36)};
  WritePng(folder_.path() / "in.png", picture);
  WriteTiff(folder_.path() / "in.tif", picture);
  ExpectKept("in.png", "out.png", 3, StoredSamples<std::uint16_t>);
  ExpectKept("in.tif", "out.tif", 3, StoredSamples<std::uint16_t>);
  ExpectKept("in.png", "in.png", 3, StoredSamples<std::uint16_t>);
}

TEST_F(KeptOutside, ColoursThatAreMultipliedAreNotDivided) {
  job_.premultipliesAround = true;
  PlainPicture<std::uint8_t> picture{4, 3, 4, {}};
  for (int i = 0; i < 12; ++i)
    picture.samples.insert(picture.samples.end(),
                           {200, 101, static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i % 4)});
  picture.samples[3] = 255;
  WritePng(folder_.path() / "in.png", picture);
  ExpectKept("in.png", "out.png", 4, StoredSamples<std::uint8_t>);
}

TEST_F(KeptOutside, AWiderTypeGetsTheSameValue) {
  WritePng(folder_.path() / "in.png", PlainPicture<std::uint8_t>{4, 3, 1, {9, 1, 2, 3, 4, 5, 6, 7, 8, 100, 254, 255}});
  job_.output.storage.type = SampleType::Unsigned16;
  Render("in.png", "wide.png");
  EXPECT_EQ(StoredSamples<std::uint16_t>(folder_.path() / "wide.png")[10], 254 * 257);
}

TEST_F(KeptOutside, NothingIsWhereItIsToBeClear) {
  WritePng(folder_.path() / "in.png", PlainPicture<std::uint16_t>{4, 3, 3, Counting<std::uint16_t>(36)});
  job_.outside = OutsideChoice::Clear;
  Render("in.png", "out.png");
  EXPECT_EQ(StoredSamples<std::uint16_t>(folder_.path() / "out.png")[10], 0);
}

}  // namespace
}  // namespace vblur::host
