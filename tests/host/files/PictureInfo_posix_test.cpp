// Headers of OpenEXR, DPX, FITS and other files.
#include "host/files/PictureInfo.h"

#include <gtest/gtest.h>

#include "tests/support/host/FailureOf.h"
#include "tests/support/host/RawPictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

class PictureInfoOfFile : public testing::Test {
 protected:
  PictureInfo InfoOf(const std::string& name, const std::string& format, const OIIO::ImageSpec& spec) {
    const auto count = static_cast<std::size_t>(spec.width) * static_cast<std::size_t>(spec.height);
    WriteRaw(folder_.path() / name, format, spec,
             std::vector<float>(count * static_cast<std::size_t>(spec.nchannels), 0.5f));
    return ReadPictureInfo(folder_.path() / name);
  }

  ScratchFolder folder_;
};

TEST_F(PictureInfoOfFile, ReportsBothWindows) {
  OIIO::ImageSpec spec(3, 2, 3, OIIO::TypeDesc::HALF);
  spec.x = -1;
  spec.y = 4;
  spec.full_width = 6;
  spec.full_height = 5;
  const PictureInfo info = InfoOf("windows.exr", "openexr", spec);
  EXPECT_EQ(info.data, (FileWindow{-1, 4, 3, 2}));
  EXPECT_EQ(info.display, (FileWindow{0, 0, 6, 5}));
}

TEST_F(PictureInfoOfFile, TheStoredTypeIsThatOfTheFile) {
  EXPECT_EQ(InfoOf("h.exr", "openexr", OIIO::ImageSpec(2, 2, 3, OIIO::TypeDesc::HALF)).stored,
            (StoredType{NumberKind::Float, 2, 16}));
  OIIO::ImageSpec ten(2, 2, 3, OIIO::TypeDesc::UINT16);
  ten.attribute("oiio:BitsPerSample", 10);
  EXPECT_EQ(InfoOf("ten.dpx", "dpx", ten).stored, (StoredType{NumberKind::Unsigned, 2, 10}));
}

// The reader of the format names the first one alone.
TEST_F(PictureInfoOfFile, EveryChannelHasAName) {
  const PictureInfo info = InfoOf("c.fits", "fits", OIIO::ImageSpec(2, 2, 3, OIIO::TypeDesc::UINT8));
  EXPECT_EQ(info.choice, (ChannelChoice{0, 1, 2, -1}));
  EXPECT_EQ(info.all, (std::vector<FileChannel>{{"R", {}}, {"G", {}}, {"B", {}}}));
}

// Their reader is not safe with damaged files.
TEST_F(PictureInfoOfFile, IffFilesAreRefused) {
  const auto failure = CaughtFailure([&] { InfoOf("c.iff", "iff", OIIO::ImageSpec(2, 2, 3, OIIO::TypeDesc::UINT8)); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->Code(), ExitCode::CannotRead);
  EXPECT_NE(std::string(failure->what()).find("IFF files are not read"), std::string::npos) << failure->what();
}

TEST_F(PictureInfoOfFile, SoftimageFilesAreRefused) {
  const auto path = folder_.Write("c.pic", "\x53\x80\xf6\x34" + std::string(172, '\1'));
  EXPECT_NE(std::string(CaughtFailure([&] { ReadPictureInfo(path); })->what()).find("Softimage files are not read"),
            std::string::npos);
}

TEST_F(PictureInfoOfFile, ChannelsThatTheEffectDoesNotTakePass) {
  OIIO::ImageSpec spec(2, 2, 5, OIIO::TypeDesc::HALF);
  spec.channelnames = {"R", "G", "B", "A", "Z"};
  spec.alpha_channel = 3;
  spec.channelformats.assign(4, OIIO::TypeDesc(OIIO::TypeDesc::HALF));
  spec.channelformats.emplace_back(OIIO::TypeDesc::FLOAT);
  const PictureInfo info = InfoOf("z.exr", "openexr", spec);
  ASSERT_EQ(info.passing.size(), 1u);
  const FileChannel& passing = info.all[static_cast<std::size_t>(info.passing.front())];
  EXPECT_EQ(passing, (FileChannel{"Z", {NumberKind::Float, 4, 32}}));
  EXPECT_EQ(info.PassingBytes(), 4u);
  EXPECT_EQ(info.stored, (StoredType{NumberKind::Float, 2, 16}));
}

}  // namespace
}  // namespace vblur::host
