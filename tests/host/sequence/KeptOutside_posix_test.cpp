// The samples of OpenEXR, float TIFF and SGI files around a region.
#include "tests/host/sequence/KeptOutside.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/support/host/WindowedPictures.h"

namespace vblur::host {
namespace {

template <typename Sample>
std::vector<Sample> SamplesOf(const std::filesystem::path& path) {
  const auto file = OIIO::ImageInput::open(path.string());
  const OIIO::ImageSpec& spec = file->spec();
  EXPECT_EQ(spec.format.size(), sizeof(Sample)) << path;
  std::vector<Sample> samples(static_cast<std::size_t>(spec.image_pixels()) * static_cast<std::size_t>(spec.nchannels));
  EXPECT_TRUE(file->read_image(0, 0, 0, spec.nchannels, OIIO::TypeDesc(), samples.data()));
  return samples;
}

TEST_F(KeptOutside, SixteenBitsOfSgiFilesAreKept) {
  WriteRaw(folder_.path() / "in.sgi", "sgi", OIIO::ImageSpec(4, 3, 3, OIIO::TypeDesc::UINT16),
           Counting<std::uint16_t>(36));
  ExpectKept("in.sgi", "out.sgi", 3, SamplesOf<std::uint16_t>);
}

// Highlights, values below the steps of the render, and infinities; a data window beside the display window.
TEST_F(KeptOutside, FloatsAreKeptWhateverTheyAre) {
  const std::vector<float> values{0.5f,     37.25f, 1e-6f, -3.5f,   0.0001f, 65504.0f, 1.0f / 3, 6e-8f, 1e30f,
                                  -0.0001f, 0.25f,  2.5f,  -1e-30f, 7.0f,    0.125f,   0.1f,     0.2f,  0.3f};
  job_.roi = Region{-1, 2, 1, 1};
  for (const OIIO::TypeDesc type : {OIIO::TypeDesc::FLOAT, OIIO::TypeDesc::HALF}) {
    auto spec = WindowedSpec({-1, 0, 3, 2}, {0, 0, 4, 3}, {"R", "G", "B"});
    spec.set_format(type);
    WriteRaw(folder_.path() / "in.exr", "openexr", spec, values);
    if (type == OIIO::TypeDesc::FLOAT) {
      ExpectKept("in.exr", "out.exr", 3, SamplesOf<std::uint32_t>);
    } else {
      ExpectKept("in.exr", "out.exr", 3, SamplesOf<std::uint16_t>);
    }
  }
}

TEST_F(KeptOutside, OtherTypesGetTheNearestValue) {
  WritePng(folder_.path() / "in.png", PlainPicture<std::uint8_t>{4, 3, 1, {9, 1, 2, 3, 4, 5, 6, 7, 8, 100, 254, 255}});
  job_.output.storage.type = SampleType::Float;
  Render("in.png", "out.exr");
  EXPECT_EQ(SamplesOf<float>(folder_.path() / "out.exr")[10], 254.0f / 255.0f);
  job_.output.storage.type.reset();
  WriteRaw(folder_.path() / "in.tif", "tiff", OIIO::ImageSpec(4, 3, 1, OIIO::TypeDesc::FLOAT),
           std::vector<float>{0.5f, 9.0f, -1.0f, std::nanf(""), 0.3f, 0, 0, 0, 0, 0, 0, 0.99999f});
  Render("in.tif", "narrow.png");
  const auto narrow = SamplesOf<std::uint16_t>(folder_.path() / "narrow.png");
  EXPECT_EQ(std::vector<std::uint16_t>(narrow.begin() + 1, narrow.begin() + 5),
            (std::vector<std::uint16_t>{65535, 0, 0, 19661}));
  EXPECT_EQ(narrow[11], 65534);
}

}  // namespace
}  // namespace vblur::host
