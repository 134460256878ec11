#include <gtest/gtest.h>

#include "host/files/PictureFile.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/WindowedPictures.h"

namespace vblur::host {
namespace {

class PictureWindows : public testing::Test {
 protected:
  std::filesystem::path Make(const FileWindow& data, const FileWindow& display,
                             const std::vector<std::string>& channels = {"R", "G", "B"}) {
    const auto path = folder_.path() / "windows.exr";
    WriteWindowed(path, data, display, channels);
    return path;
  }

  // Whether each pixel has a full alpha, the top row first.
  std::vector<std::string> Covered() const {
    std::vector<std::string> rows;
    for (std::int32_t y = image_.Height() - 1; y >= 0; --y) {
      std::string row;
      for (std::int32_t x = 0; x < image_.Width(); ++x) {
        const auto pixel = static_cast<std::size_t>(y * image_.Width() + x) * 4;
        const std::int32_t alpha = Component(image_, pixel + 3);
        EXPECT_EQ(Component(image_, pixel), alpha);
        row += alpha == 255 ? '#' : '.';
      }
      rows.push_back(row);
    }
    return rows;
  }

  ScratchFolder folder_;
  HostImage image_;
};

TEST_F(PictureWindows, AnElementCutOutOfItsFrameLiesInIt) {
  PictureReader().ReadColour(Make({1, 0, 2, 1}, {0, 0, 4, 3}), 8, image_);
  EXPECT_EQ(Covered(), (std::vector<std::string>{".##.", "....", "...."}));
  EXPECT_EQ(image_.FrameCorner().x, 0);
  EXPECT_EQ(image_.FrameSize().x, 4);
}

TEST_F(PictureWindows, AnOverscanReachesOverItsFrame) {
  const auto path = Make({-1, -2, 4, 6}, {0, 0, 2, 3});
  PictureReader().ReadColour(path, 8, image_);
  EXPECT_EQ(Covered(), std::vector<std::string>(6, "####"));
  EXPECT_EQ(image_.FrameCorner().x, -1);
  EXPECT_EQ(image_.FrameCorner().y, -1);
  EXPECT_EQ(image_.FrameSize().x, 2);
  EXPECT_EQ(image_.FrameSize().y, 3);
  EXPECT_EQ(ReadPictureInfo(path).width, 4);
}

TEST_F(PictureWindows, DataBesideItsFrameMakesThePictureReachThere) {
  PictureReader().ReadColour(Make({5, 6, 2, 1}, {3, 4, 1, 2}), 8, image_);
  EXPECT_EQ(Covered(), (std::vector<std::string>{"....", "....", "..##"}));
  EXPECT_EQ(image_.FrameCorner().x, 0);
  EXPECT_EQ(image_.FrameCorner().y, -1);
}

// The memory held another picture before.
TEST_F(PictureWindows, WhatNoDataCoversIsTransparentBlack) {
  PictureReader reader;
  reader.ReadColour(Make({0, 0, 4, 3}, {0, 0, 4, 3}), 8, image_);
  reader.ReadColour(Make({3, 2, 1, 1}, {0, 0, 4, 3}), 8, image_);
  EXPECT_EQ(Covered(), (std::vector<std::string>{"....", "....", "...#"}));
}

TEST_F(PictureWindows, AMaskLiesInItsFrameToo) {
  PictureReader().ReadMask(Make({1, 1, 1, 1}, {0, 0, 3, 2}, {"Y"}), 8, image_);
  EXPECT_EQ(Components(image_), (std::vector<std::int32_t>{0, 255, 0, 0, 0, 0}));
}

TEST_F(PictureWindows, WindowsTooFarApartAreRefused) {
  const auto path = Make({0, 0, 1, 1}, {2000000, 0, 10, 1000});
  EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(path); })->what(),
            path.string() +
                ": cannot read: 2000010 x 1000 pixels of the data and the display window together, "
                "2000010000 in all, expected at most 1000000000");
  const auto farther = Make({-900000000, 0, 1, 1}, {900000000, 900000000, 1, 1});
  EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(farther); })->Code(), ExitCode::CannotRead);
}

}  // namespace
}  // namespace vblur::host
