// Pictures of 32-bit floats, from files and into files.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureFile.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/RawPictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

class FloatPictures : public testing::Test {
 protected:
  std::filesystem::path Raw(const std::string& name, const OIIO::TypeDesc& type, int channels,
                            const std::vector<float>& samples) {
    const auto path = folder_.path() / name;
    const int width = static_cast<int>(samples.size()) / channels;
    WriteRaw(path,
             path.extension() == ".exr"   ? "openexr"
             : path.extension() == ".tif" ? "tiff"
                                          : "png",
             OIIO::ImageSpec(width, 1, channels, type), samples);
    return path;
  }

  ScratchFolder folder_;
  HostImage image_;
  const float infinity_ = std::numeric_limits<float>::infinity();
};

TEST_F(FloatPictures, EveryValueOfAFloatFileIsKept) {
  const std::vector<float> samples{0.1f, -3.5f, 1e-30f, 1.0f, 65504.0f, 1000.25f, -65504.0f, 0.0f};
  for (const char* const name : {"in.exr", "in.tif"}) {
    const auto path = Raw(name, OIIO::TypeDesc::FLOAT, 4, samples);
    const ReadPicture read = PictureReader().ReadColour(path, 32, image_);
    EXPECT_EQ(Floats(image_), samples) << name;
    EXPECT_TRUE(read.beyond.IsEmpty());
    const auto written = folder_.path() / (std::string("out-") + name);
    PictureWriter().Write(written, image_, read.metadata.get(), false);
    image_.Clear();
    EXPECT_EQ(PictureReader().ReadColour(written, 32, image_).info.stored, read.info.stored);
    EXPECT_EQ(Floats(image_), samples) << name;
  }
}

TEST_F(FloatPictures, HalvesAreRoundedOnce) {
  const auto path = Raw("in.exr", OIIO::TypeDesc::HALF, 4, {0.5f, 2.0f, -1.0f, 1.0f});
  const ReadPicture read = PictureReader().ReadColour(path, 32, image_);
  EXPECT_EQ(Floats(image_), (std::vector<float>{0.5f, 2.0f, -1.0f, 1.0f}));
  // Halfway between two halves, and just beyond it: to even, and to the nearest.
  const float step = std::ldexp(1.0f, -10);
  SetFloats(image_, {1.0f + step / 2, std::nextafterf(1.0f + step / 2, 2.0f), 1e6f, 0.25f});
  const auto out = folder_.path() / "out.exr";
  const WrittenPicture written = PictureWriter().WriteBeside(out, image_, read.metadata.get(), {});
  EXPECT_EQ(written.Notes(),
            std::vector<std::string>{out.string() + ": 1 component from 1e+06 to 1e+06 clipped to -65504 to 65504, "
                                                    "which half samples hold"});
  auto commit = PictureWriter().WriteBeside(out, image_, read.metadata.get(), {});
  commit.Commit();
  PictureReader().ReadColour(out, 32, image_);
  EXPECT_EQ(Floats(image_), (std::vector<float>{1.0f, 1.0f + step, 65504.0f, 0.25f}));
}

TEST_F(FloatPictures, WholeNumbersArePartsOfTheirRange) {
  PictureReader().ReadColour(Raw("8.png", OIIO::TypeDesc::UINT8, 3, {51 / 255.0f, 77 / 255.0f, 1.0f}), 32, image_);
  EXPECT_EQ(Floats(image_), (std::vector<float>{0.2f, 77.0f / 255.0f, 1.0f, 1.0f}));
  const auto read =
      PictureReader().ReadColour(Raw("16.png", OIIO::TypeDesc::UINT16, 3, {1234 / 65535.0f, 0.0f, 1.0f}), 32, image_);
  EXPECT_EQ(Floats(image_), (std::vector<float>{1234.0f / 65535.0f, 0.0f, 1.0f, 1.0f}));
  SetFloats(image_, {1.25f, -0.25f, 1234.75f / 65535.0f, 1.0f});
  const auto out = folder_.path() / "out.png";
  PictureWriter().Write(out, image_, read.metadata.get(), false);
  PictureReader().ReadColour(out, 32, image_);
  EXPECT_EQ(Floats(image_), (std::vector<float>{1.0f, 0.0f, 1235.0f / 65535.0f, 1.0f}));
}

TEST_F(FloatPictures, WhatIsNotCarriedIsCountedApartFromLosses) {
  const auto path = Raw("in.exr", OIIO::TypeDesc::FLOAT, 4, {std::nanf(""), infinity_, -1e5f, 1.0f});
  const ReadPicture read = PictureReader().ReadColour(path, 32, image_);
  EXPECT_EQ(Floats(image_), (std::vector<float>{0.0f, 65504.0f, -65504.0f, 1.0f}));
  EXPECT_EQ(read.losses, std::vector<std::string>{});
  EXPECT_EQ(read.beyond.count, 2);
  EXPECT_EQ(read.beyond.notNumbers, 1);
  EXPECT_TRUE(PictureReader().ReadColour(path, 16, image_).beyond.IsEmpty());
}

TEST_F(FloatPictures, AMaskCountsItsOwnChannelOnly) {
  // Two rows would not do: alpha is taken until a colour varies.
  const auto first = Raw("first.exr", OIIO::TypeDesc::FLOAT, 4,
                         {0.5f, 0.5f, 0.5f, infinity_, std::nanf(""), 0.5f, 0.5f, std::nanf("")});
  ReadPicture read = PictureReader().ReadMask(first, 32, image_);
  EXPECT_EQ(Floats(image_), (std::vector<float>{0.5f, 0.0f}));
  EXPECT_EQ(read.beyond.count, 0);
  EXPECT_EQ(read.beyond.notNumbers, 1);
  const auto alpha = Raw("alpha.exr", OIIO::TypeDesc::FLOAT, 4, {0.5f, 0.5f, 0.5f, -infinity_, 0.5f, 0.5f, 0.5f, 2.0f});
  read = PictureReader().ReadMask(alpha, 32, image_);
  EXPECT_EQ(Floats(image_), (std::vector<float>{-65504.0f, 2.0f}));
  EXPECT_EQ(read.beyond.count, 1);
}

TEST_F(FloatPictures, AMaskWithoutVaryingAlphaIsItsFirstChannel) {
  const auto path = Raw("flat.exr", OIIO::TypeDesc::FLOAT, 4, {0.3f, 0.1f, 0.1f, 1.0f, 0.3f, 0.1f, 0.1f, 1.0f});
  PictureReader().ReadMask(path, 32, image_);
  EXPECT_EQ(Floats(image_), (std::vector<float>{0.3f, 0.3f}));
}

}  // namespace
}  // namespace vblur::host
