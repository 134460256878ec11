#include "host/files/PictureInfo.h"

#include <gtest/gtest.h>

#include "tests/support/host/PlainFiles.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

class PictureInfoOfPng : public testing::Test {
 protected:
  template <typename Sample>
  PictureInfo InfoOf(std::uint32_t channels, Sample value) {
    return ReadPictureInfo(WritePng(folder_.path() / "a.png", FlatPicture<Sample>(2, 2, channels, value)));
  }

  ScratchFolder folder_;
};

TEST_F(PictureInfoOfPng, TheStoredTypeIsThatOfTheSamples) {
  EXPECT_EQ(InfoOf<std::uint8_t>(3, 128).stored, StoredType{});
  EXPECT_EQ(InfoOf<std::uint16_t>(3, 32768).stored, (StoredType{NumberKind::Unsigned, 2, 16}));
}

TEST_F(PictureInfoOfPng, ReportsGreyAndAlpha) {
  const PictureInfo grey = InfoOf<std::uint8_t>(1, 128);
  EXPECT_TRUE(grey.IsGrey());
  EXPECT_FALSE(grey.HasAlpha());
  const PictureInfo colour = InfoOf<std::uint8_t>(4, 128);
  EXPECT_FALSE(colour.IsGrey());
  EXPECT_TRUE(colour.HasAlpha());
}

}  // namespace
}  // namespace vblur::host
