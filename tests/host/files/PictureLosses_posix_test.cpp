// What is told of GIF and OpenEXR files that are not read whole, and files that are read in parts.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureFile.h"
#include "host/files/PictureReport.h"
#include "host/pictures/PictureFileMetadata.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/RawPictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

class PictureLossesOfKinds : public testing::Test {
 protected:
  std::vector<std::string> Read(const std::filesystem::path& path, std::int32_t depth) {
    return PictureReader().ReadColour(path, depth, image_).losses;
  }

  std::filesystem::path MakePages(const std::string& name, const std::string& format, int count) {
    const auto path = folder_.path() / name;
    auto writer = OIIO::ImageOutput::create(format);
    const std::vector<OIIO::ImageSpec> specs(static_cast<std::size_t>(count),
                                             OIIO::ImageSpec(8, 4, 3, OIIO::TypeDesc::UINT8));
    std::vector<std::uint8_t> samples(8 * 4 * 3, 51);
    bool done = format == "openexr" ? writer->open(path.string(), count, specs.data())
                                    : writer->open(path.string(), specs.front());
    for (int page = 0; page < count; ++page) {
      if (page > 0) done = done && writer->open(path.string(), specs.front(), OIIO::ImageOutput::AppendSubimage);
      done = done && writer->write_image(OIIO::TypeDesc::UINT8, samples.data());
      samples.assign(samples.size(), 204);
    }
    EXPECT_TRUE(done && writer->close());
    return path;
  }

  ScratchFolder folder_;
  HostImage image_;
};

TEST_F(PictureLossesOfKinds, FurtherFramesAreTold) {
  for (const auto& [name, format] : {std::pair{"pages.tif", "tiff"}, std::pair{"frames.gif", "gif"}}) {
    const auto path = MakePages(name, format, 3);
    EXPECT_EQ(ReadPictureInfo(path).pictures, 3);
    EXPECT_EQ(Read(path, 8),
              std::vector<std::string>{path.string() +
                                       ": only the first of 3 pictures is read; the others are not in the output"});
    EXPECT_EQ(Component(image_, 0), 51);
  }
  EXPECT_EQ(Read(MakePages("one.tif", "tiff", 1), 8), std::vector<std::string>());
}

TEST_F(PictureLossesOfKinds, AnOrientationThatIsNoneIsToldAndNotWritten) {
  const auto source = folder_.path() / "in.exr";
  for (const int orientation : {6, 9}) {
    OIIO::ImageSpec spec(2, 1, 3, OIIO::TypeDesc::HALF);
    spec.attribute("Orientation", orientation);
    WriteRaw(source, "openexr", spec, std::vector<float>(6, 0.5f));
    const bool isOne = orientation == 6;
    EXPECT_EQ(ReadPictureInfo(source).unread,
              isOne ? std::vector<std::string>() : std::vector<std::string>{"orientation 9 (none of 1 to 8)"});
    const ReadPicture read = PictureReader().ReadColour(source, 16, image_);
    for (const char* name : {"out.exr", "out.png", "out.jpg"}) {
      const auto path = folder_.path() / name;
      PictureWriter().Write(path, image_, read.metadata.get(), true);
      const auto& attributes = ReportPicture(path).attributes;
      const bool has =
          std::ranges::any_of(attributes, [](const auto& attribute) { return attribute.first == "Orientation"; });
      EXPECT_EQ(has, isOne) << name << " " << orientation;
    }
  }
}

TEST_F(PictureLossesOfKinds, ValuesBeyondTheDepthAreTold) {
  const float infinite = std::numeric_limits<float>::infinity();
  const auto path = folder_.path() / "hdr.exr";
  const auto make = [&](const std::vector<float>& samples) {
    OIIO::ImageSpec spec(static_cast<int>(samples.size() / 3), 1, 3, OIIO::TypeDesc::FLOAT);
    WriteRaw(path, "openexr", spec, samples);
    return path;
  };
  make({0.0f, 1.0f, 1.99f, -2.0f, 0.5f, 0.5f});
  EXPECT_EQ(Read(path, 16), std::vector<std::string>());
  EXPECT_EQ(Read(path, 8), std::vector<std::string>{
                               path.string() + ": 2 components from -2 to 1.99 clipped to 0 to 1, which 8 bits carry"});
  make({37.25f, 1.0f, 0.0f, -2.5f, 2.5f, 1.0f});
  EXPECT_EQ(Read(path, 16),
            std::vector<std::string>{path.string() +
                                     ": 3 components from -2.5 to 37.25 clipped to -2 to 2, which 16 bits carry"});
  make({infinite, std::nanf(""), 0.0f});
  EXPECT_EQ(Read(path, 16),
            std::vector<std::string>{path.string() + ": 1 component from inf to inf clipped to -2 to 2, which 16 bits "
                                                     "carry; 1 component without a value (NaN) read as 0"});
}

TEST_F(PictureLossesOfKinds, AGreyValueCountsOnceAndWhatPassesNotAtAll) {
  OIIO::ImageSpec spec(1, 1, 2, OIIO::TypeDesc::FLOAT);
  spec.channelnames = {"Y", "Z"};
  const auto path = folder_.path() / "grey.exr";
  WriteRaw(path, "openexr", spec, std::vector<float>{3.0f, 1000.0f});
  EXPECT_EQ(Read(path, 16), std::vector<std::string>{
                                path.string() + ": 1 component from 3 to 3 clipped to -2 to 2, which 16 bits carry"});
}

// In several parts, the last one smaller.
TEST_F(PictureLossesOfKinds, LargeFilesAreReadInParts) {
  constexpr int kColumns = 1500;
  constexpr int kRows = 2200;
  for (const int tile : {0, 96}) {
    OIIO::ImageSpec spec(kColumns, kRows, 4, OIIO::TypeDesc::FLOAT);
    spec.channelnames = {"R", "G", "B", "Z"};
    spec.tile_width = spec.tile_height = tile;
    spec.attribute("compression", "none");
    std::vector<float> samples;
    for (int y = 0; y < kRows; ++y) {
      const int high = y / 256;
      for (int x = 0; x < kColumns; ++x)
        samples.insert(samples.end(), {static_cast<float>(x % 256) / 255.0f, static_cast<float>(y % 256) / 255.0f,
                                       static_cast<float>(high) / 255.0f, static_cast<float>(y)});
    }
    const auto path = folder_.path() / "large.exr";
    WriteRaw(path, "openexr", spec, samples);
    ReadChoice choice;
    choice.keepsPassing = tile == 0;
    const auto read = PictureReader().ReadColour(path, 8, image_, choice);
    std::int64_t wrong = 0;
    for (int y = 0; y < kRows; ++y) {
      const auto* row = reinterpret_cast<const std::uint8_t*>(image_.Row(kRows - 1 - y));
      for (int x = 0; x < kColumns; ++x, row += 4)
        wrong += row[0] != x % 256 || row[1] != y % 256 || row[2] != y / 256 || row[3] != 255;
    }
    EXPECT_EQ(wrong, 0) << tile;
    if (tile != 0) continue;
    ASSERT_EQ(OwnMetadata(read.metadata.get())->passing.size(), std::size_t{4} * kColumns * kRows);
    float last = 0.0f;
    std::memcpy(&last,
                OwnMetadata(read.metadata.get())->passing.data() + OwnMetadata(read.metadata.get())->passing.size() - 4,
                4);
    EXPECT_EQ(last, static_cast<float>(kRows - 1));
  }
}

}  // namespace
}  // namespace vblur::host
