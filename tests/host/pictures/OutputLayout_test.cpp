#include "host/pictures/OutputLayout.h"

#include <fstream>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/pictures/PictureFileOpen.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/WindowedPictures.h"

namespace vblur::host {
namespace {

class OutputLayout : public testing::Test {
 protected:
  void Read(const std::string& name, const std::string& layer = {}) {
    ReadChoice choice;
    choice.keepsPassing = true;
    choice.layer = layer;
    read_ = PictureReader().ReadColour(folder_.path() / name, 16, image_, choice);
  }

  void SetPixel(std::int32_t x, std::int32_t fromTop, std::int32_t component, std::int32_t value) {
    const std::int32_t y = image_.Height() - 1 - fromTop;
    SetComponent(image_, static_cast<std::size_t>(4 * (y * image_.Width() + x) + component), value);
  }

  // The notes of what the file does not hold.
  std::vector<std::string> Write(const std::string& name, const OutputStorage& storage = {}) {
    const OutputOptions options{true, false, storage};
    auto written = PictureWriter().WriteBeside(folder_.path() / name, image_, read_.metadata.get(), options);
    written.Commit();
    return written.Notes();
  }

  std::unique_ptr<OIIO::ImageInput> Open(const std::string& name) {
    return OpenPictureFile(folder_.path() / name, {}).file;
  }

  std::vector<float> Samples(OIIO::ImageInput& file) {
    std::vector<float> samples(static_cast<std::size_t>(file.spec().image_pixels()) *
                               static_cast<std::size_t>(file.spec().nchannels));
    EXPECT_TRUE(file.read_image(0, 0, 0, file.spec().nchannels, OIIO::TypeDesc::FLOAT, samples.data()));
    return samples;
  }

  ScratchFolder folder_;
  HostImage image_;
  ReadPicture read_;
};

using Notes = std::vector<std::string>;

TEST_F(OutputLayout, TheDataWindowGrowsToWhatTheEffectHasReached) {
  WriteWindowed(folder_.path() / "in.exr", {2, 1, 3, 2}, {0, 0, 8, 6}, {"R", "G", "B", "A"}, 0.5f);
  Read("in.exr");
  ASSERT_EQ(image_.Width(), 8);
  Write("same.exr");
  EXPECT_EQ(Open("same.exr")->spec().roi(), OIIO::ROI(2, 5, 1, 3, 0, 1, 0, 4));
  SetPixel(6, 4, 0, 8192);
  Write("grown.exr");
  auto grown = Open("grown.exr");
  EXPECT_EQ(grown->spec().roi(), OIIO::ROI(2, 7, 1, 5, 0, 1, 0, 4));
  EXPECT_EQ(grown->spec().roi_full(), OIIO::ROI(0, 8, 0, 6, 0, 1, 0, 4));
  const auto samples = Samples(*grown);
  EXPECT_EQ(samples[0], 0.5f);
  EXPECT_EQ(samples[4 * (3 * 5 + 4)], 0.5f);
  EXPECT_EQ(samples[4 * (3 * 5 + 3)], 0.0f);
}

TEST_F(OutputLayout, OtherFormatsGetTheDisplayWindow) {
  // Data that lies partly in the frame.
  WriteWindowed(folder_.path() / "in.exr", {-2, -1, 5, 4}, {0, 0, 8, 6}, {"R", "G", "B", "A"}, 0.5f);
  Read("in.exr");
  ASSERT_EQ(image_.Width(), 10);
  Write("out.png", {SampleType::Unsigned8, {}, {}});
  auto png = Open("out.png");
  EXPECT_EQ(png->spec().roi(), OIIO::ROI(0, 8, 0, 6, 0, 1, 0, 4));
  const auto samples = Samples(*png);
  EXPECT_GT(samples[0], 0.49f);
  EXPECT_GT(samples[4 * (2 * 8 + 2)], 0.49f);
  EXPECT_EQ(samples[4 * (2 * 8 + 3)], 0.0f);
  EXPECT_EQ(samples[4 * (3 * 8 + 2)], 0.0f);
}

TEST_F(OutputLayout, FurtherChannelsPassInTheirOrderWithTheirTypes) {
  auto spec = WindowedSpec({2, 1, 2, 1}, {0, 0, 6, 4}, {"R", "G", "B", "A", "Z", "id", "light.R"});
  spec.channelformats = {OIIO::TypeDesc::HALF,  OIIO::TypeDesc::HALF,   OIIO::TypeDesc::HALF, OIIO::TypeDesc::HALF,
                         OIIO::TypeDesc::FLOAT, OIIO::TypeDesc::UINT32, OIIO::TypeDesc::HALF};
  WriteRaw(folder_.path() / "in.exr", "openexr", spec,
           std::vector<float>{1, 1, 1, 1, 1e9f, 0.25f, 7, 1, 1, 1, 1, -3e9f, 0.5f, 8});
  const auto before = Samples(*Open("in.exr"));
  Read("in.exr");
  SetPixel(0, 0, 1, 16384);
  EXPECT_EQ(Write("out.exr"),
            Notes{"output: lost: last bits of half samples below 1/16 (steps of 1/16384 are rendered)"});
  auto in = Open("in.exr");
  auto out = Open("out.exr");
  EXPECT_EQ(out->spec().channelnames, in->spec().channelnames);
  EXPECT_EQ(out->spec().channelformats, in->spec().channelformats);
  EXPECT_EQ(out->spec().roi(), OIIO::ROI(0, 4, 0, 2, 0, 1, 0, 7));
  const auto after = Samples(*out);
  for (std::size_t pixel = 0; pixel < 8; ++pixel) {
    for (std::size_t c = 4; c < 7; ++c)
      EXPECT_EQ(after[7 * pixel + c], pixel < 6 ? 0.0f : before[7 * (pixel - 6) + c]) << pixel << " " << c;
  }
  EXPECT_EQ(Write("out.png"),
            Notes{"output: lost: channels Z, id, light.R, last bits of half samples (uint16 are written)"});
}

TEST_F(OutputLayout, ALineNamesTwentyChannels) {
  std::vector<std::string> channels{"R", "G", "B"};
  std::string line = "output: lost: channels ";
  for (int i = 10; i < 32; ++i)
    channels.push_back("c" + std::to_string(i));
  for (std::size_t i = 3; i < 23; ++i)
    line += channels[i] + (i < 22 ? ", " : " and 2 more, last bits of float samples (uint16 are written)");
  WriteWindowed(folder_.path() / "in.exr", {0, 0, 1, 1}, {0, 0, 1, 1}, channels, 0.5f);
  Read("in.exr");
  EXPECT_EQ(Write("out.png"), Notes{line});
}

TEST_F(OutputLayout, GreyStaysGreyUnlessTheResultIsNot) {
  for (const char* name : {"in.png", "in.tif", "in.exr", "in.jpg"}) {
    const auto& format = OutputFormatOf(name);
    const bool isExr = format.name == "openexr";
    OIIO::ImageSpec spec(4, 2, 1, isExr ? OIIO::TypeDesc::HALF : OIIO::TypeDesc::UINT8);
    if (isExr) spec.channelnames = {"Y"};
    WriteRaw(folder_.path() / name, std::string(format.name), spec, std::vector<std::uint8_t>(8, 51));
    Read(name);
    const std::string out = "out" + std::filesystem::path(name).extension().string();
    Write(out);
    EXPECT_EQ(Open(out)->spec().nchannels, 1) << name;
    SetPixel(1, 1, 2, 16384);
    EXPECT_EQ(Write(out)[0], "output: the input is grey and the result is not; written as red, green and blue");
    EXPECT_EQ(Open(out)->spec().nchannels, 3) << name;
    EXPECT_EQ(Open(out)->spec().channelnames[0], "R") << name;
  }
}

// In the layer that was taken; nothing that passes loses its name.
TEST_F(OutputLayout, ColoursMadeOfGreyAreNamedInItsLayer) {
  const auto names = [&](const std::vector<std::string>& channels, const std::string& layer) {
    WriteWindowed(folder_.path() / "in.exr", {0, 0, 2, 1}, {0, 0, 2, 1}, channels, 0.5f);
    Read("in.exr", layer);
    SetPixel(1, 0, 2, 16384);
    Write("out.exr");
    auto written = Open("out.exr")->spec().channelnames;
    std::ranges::sort(written);
    return written;
  };
  using ChannelNames = std::vector<std::string>;
  EXPECT_EQ(names({"R", "G", "B", "m.Y"}, "m"), (ChannelNames{"B", "G", "R", "m.B", "m.G", "m.R"}));
  EXPECT_EQ(names({"m.A", "m.Y"}, ""), (ChannelNames{"m.A", "m.B", "m.G", "m.R"}));
  EXPECT_EQ(names({"R"}, ""), (ChannelNames{"B", "G", "R"}));
  EXPECT_EQ(names({"R", "Y"}, ""), (ChannelNames{"B", "G", "R", "result.R"}));
}

TEST_F(OutputLayout, AMissingColourGetsItsNameAndOthersKeepTheirs) {
  for (const std::string layer : {"", "m."}) {
    WriteWindowed(folder_.path() / "in.exr", {0, 0, 1, 1}, {0, 0, 1, 1}, {layer + "R", layer + "B", layer + "A"}, 0.5f);
    Read("in.exr");
    SetPixel(0, 0, 1, 4096);
    EXPECT_EQ(Write("out.exr").back(), "output: the input has no green channel and the output has");
    auto out = Open("out.exr");
    EXPECT_EQ(out->spec().channelnames, (std::vector<std::string>{layer + "R", layer + "G", layer + "B", layer + "A"}));
    EXPECT_EQ(Samples(*out), (std::vector<float>{0.5f, 0.25f, 0.5f, 0.5f}));
  }
  WriteWindowed(folder_.path() / "in.exr", {0, 0, 1, 1}, {0, 0, 1, 1}, {"G", "B"}, 0.5f);
  Read("in.exr");
  EXPECT_EQ(Write("out.png").back(), "output: the input has no red channel and the output has");
  EXPECT_EQ(Samples(*Open("out.png"))[0], 0.0f);
  EXPECT_NEAR(Samples(*Open("out.png"))[1], 0.5f, 1e-4f);
}

TEST_F(OutputLayout, ValuesThatTheTypeDoesNotHoldAreTold) {
  WriteRaw(folder_.path() / "in.png", "png", OIIO::ImageSpec(2, 1, 3, OIIO::TypeDesc::UINT8),
           std::vector<std::uint8_t>(6, 51));
  Read("in.png");
  SetPixel(0, 0, 0, 24576);
  SetPixel(1, 0, 2, -4096);
  for (const std::string name : {"out.png", "out.jpg", "out.tif", "out.dpx"}) {
    EXPECT_EQ(Write(name), Notes{(folder_.path() / name).string() +
                                 ": 2 components from -0.25 to 1.5 clipped to 0 to 1, which uint8 samples hold"});
  }
  EXPECT_EQ(Write("out.tif", {SampleType::Float, {}, {}}), Notes{});
  EXPECT_EQ(Write("out.exr"), Notes{});
  EXPECT_EQ(Write("out.hdr"), Notes{(folder_.path() / "out.hdr").string() +
                                    ": 1 component from -0.25 to -0.25 clipped to 0 and above, which hdr files hold"});
  EXPECT_EQ(Samples(*Open("out.hdr"))[5], 0.0f);
}

TEST_F(OutputLayout, NoAlphaIsMadeAndOneThatIsNotHeldIsTold) {
  WriteRaw(folder_.path() / "in.png", "png", OIIO::ImageSpec(2, 1, 3, OIIO::TypeDesc::UINT8),
           std::vector<std::uint8_t>(6, 51));
  Read("in.png");
  // What the weights of a large blur leave of it.
  SetPixel(0, 0, 3, 14000);
  EXPECT_EQ(Write("out.png"), Notes{});
  SetPixel(0, 0, 3, 0);
  for (const char* name : {"out.png", "out.tif", "out.exr", "out.dpx", "out.tga", "out.webp", "out.bmp", "out.sgi"}) {
    EXPECT_EQ(Write(name), Notes{"output: the input has no alpha and the result has; written without it"}) << name;
    EXPECT_EQ(Open(name)->spec().nchannels, 3) << name;
  }
  WriteRaw(folder_.path() / "in.png", "png", OIIO::ImageSpec(2, 1, 4, OIIO::TypeDesc::UINT8),
           std::vector<std::uint8_t>(8, 255));
  Read("in.png");
  EXPECT_EQ(Write("out.jpg"), Notes{});
  SetPixel(0, 0, 3, 0);
  EXPECT_EQ(Write("out.jpg"), Notes{"output: alpha is dropped: jpeg files are written without"});
}

// The temporary file's name holds the process's number: files would differ from run to run.
TEST_F(OutputLayout, DpxFilesHoldTheirOwnName) {
  image_.Reset(8, 4, 3, 2);
  Write("out.dpx");
  std::ifstream file(folder_.path() / "out.dpx", std::ios::binary);
  std::string header(136, '\0');
  file.read(header.data(), static_cast<std::streamsize>(header.size()));
  std::string name = "out.dpx";
  name.resize(100);
  EXPECT_EQ(header.substr(36), name);
}

TEST_F(OutputLayout, TypeCompressionAndQualityAreThoseAskedFor) {
  WriteRaw(folder_.path() / "in.png", "png", OIIO::ImageSpec(64, 64, 3, OIIO::TypeDesc::UINT16),
           std::vector<std::uint16_t>(64 * 64 * 3, 9999));
  Read("in.png");
  Write("out.exr", {SampleType::Half, "dwaa", {}});
  EXPECT_EQ(Open("out.exr")->spec().format, OIIO::TypeDesc::HALF);
  EXPECT_EQ(Open("out.exr")->spec().get_string_attribute("compression"), "dwaa");
  Write("out.tif", {SampleType::Half, "LZW", {}});
  EXPECT_EQ(Open("out.tif")->spec().format, OIIO::TypeDesc::HALF);
  EXPECT_EQ(Open("out.tif")->spec().get_string_attribute("compression"), "lzw");
  Write("out.dpx", {SampleType::Unsigned10, {}, {}});
  EXPECT_EQ(Open("out.dpx")->spec().get_int_attribute("oiio:BitsPerSample"), 10);
  FillRandom(image_, 0, 16384, 7);
  const auto sizeAt = [&](const std::string& name, int quality) {
    Write(name, {{}, {}, quality});
    return std::filesystem::file_size(folder_.path() / name);
  };
  EXPECT_LT(2 * sizeAt("out.jpg", 10), sizeAt("out.jpg", 95));
  EXPECT_LT(2 * sizeAt("out.webp", 10), sizeAt("out.webp", 95));
}

// All that info tells of, in one line.
TEST_F(OutputLayout, WhatIsNotHeldIsTold) {
  OIIO::ImageSpec spec(4, 2, 3, OIIO::TypeDesc::UINT8);
  spec.attribute("Orientation", 6);
  spec.attribute("Exif:DateTimeOriginal", "2020:01:01 00:00:00");
  auto profile = MakeProfile("RGB ");
  const OIIO::TypeDesc bytes(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size()));
  spec.attribute("ICCProfile", bytes, profile.data());
  WriteRaw(folder_.path() / "in.jpg", "jpeg", spec, std::vector<std::uint8_t>(24, 100));
  Read("in.jpg");
  EXPECT_EQ(Write("out.jpg"), Notes{});
  EXPECT_EQ(Write("out.png"), Notes{});
  EXPECT_EQ(Write("out.exr"), Notes{"output: lost: colour profile"});
  profile = MakeProfile("GRAY");
  spec.attribute("ICCProfile", bytes, profile.data());
  WriteRaw(folder_.path() / "in.tif", "tiff", spec, std::vector<std::uint8_t>(24, 100));
  Read("in.tif");
  EXPECT_EQ(Write("out.tif"), Notes{"output: lost: colour profile (damaged, or for other colours)"});
  OIIO::ImageSpec film(4, 2, 3, OIIO::TypeDesc::UINT16);
  film.attribute("dpx:Transfer", "Printing density");
  film.attribute("oiio:BitsPerSample", 10);
  WriteRaw(folder_.path() / "in.dpx", "dpx", film, std::vector<std::uint16_t>(24, 9000));
  Read("in.dpx");
  EXPECT_EQ(Write("out.dpx"), Notes{});
  EXPECT_EQ(Write("out.jpg"), Notes{"output: lost: last bits of uint10 samples (uint8 are written), DPX header"});
  WriteWindowed(folder_.path() / "in.exr", {-1, 0, 6, 2}, {0, 0, 4, 2}, {"R", "G", "B"}, 0.5f);
  Read("in.exr");
  EXPECT_EQ(Write("out.png"),
            Notes{"output: lost: last bits of float samples (uint16 are written), pixels beyond the frame"});
}

// The first value of the table for brightness, which every quality has its own of.
int QuantumOf(const std::string& jpeg) {
  const std::size_t at = jpeg.find(std::string("\xff\xdb\0", 3));
  return at == std::string::npos ? 0 : static_cast<unsigned char>(jpeg[at + 5]);
}

// By the format's usual scale: 16 at 50.
TEST_F(OutputLayout, QualityIsThatAskedForWhateverTheSourceTells) {
  for (const char* told : {"compression", "CompressionQuality"}) {
    OIIO::ImageSpec spec(16, 16, 3, OIIO::TypeDesc::UINT8);
    spec.attribute(told, *told == 'c' ? "jpeg:20" : "20");
    WriteRaw(folder_.path() / "in.png", "png", spec, std::vector<std::uint8_t>(16 * 16 * 3, 51));
    Read("in.png");
    for (const auto& [quality, quantum] : {std::pair{25, 32}, {50, 16}, {75, 8}, {90, 3}, {95, 2}, {100, 1}}) {
      Write("out.jpg", {{}, {}, quality});
      EXPECT_EQ(QuantumOf(Bytes(folder_.path() / "out.jpg")), quantum) << quality;
    }
    Write("out.jpg");
    EXPECT_EQ(QuantumOf(Bytes(folder_.path() / "out.jpg")), 1);
  }
}

}  // namespace
}  // namespace vblur::host
