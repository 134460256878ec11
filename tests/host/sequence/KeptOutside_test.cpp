// Outside the region that is rendered an output holds the samples of its input.
#include <cstring>

#include <gtest/gtest.h>

#include "host/pictures/PictureFileOpen.h"
#include "host/sequence/SequenceRenderer.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TestEffect.h"
#include "tests/support/host/WindowedPictures.h"

namespace vblur::host {
namespace {

class Unheard : public RenderObserver {
 public:
  void OnStart(std::int64_t, std::int32_t) override {}
  void OnWarning(std::int32_t, const std::string&) override {}
  void OnFrame(const FrameResult&) override {}
};

class KeptOutside : public testing::Test {
 protected:
  KeptOutside() {
    job_.folder = folder_.path();
    // The upper left pixel of the frame of three rows.
    job_.roi = Region{0, 2, 1, 1};
    options_.overwrite = options_.lossy = true;
  }

  void Render(const std::string& input, const std::string& output) {
    job_.input.emplace().file = input;
    job_.output.file = output;
    std::vector<RenderedFrame> log;
    const auto make = [&] { return ComPtr<TestEffect>::Own(new TestEffect(log)).As<IDSImageEffect>(); };
    Unheard unheard;
    EXPECT_EQ(RenderSequence(job_, make, options_, context_, unheard).done, 1);
  }

  template <typename Sample>
  std::vector<Sample> Samples(const std::string& name) const {
    const auto file = OIIO::ImageInput::open((folder_.path() / name).string());
    const OIIO::ImageSpec& spec = file->spec();
    EXPECT_EQ(spec.format.size(), sizeof(Sample)) << name;
    std::vector<Sample> samples(static_cast<std::size_t>(spec.image_pixels()) *
                                static_cast<std::size_t>(spec.nchannels));
    EXPECT_TRUE(file->read_image(0, 0, 0, spec.nchannels, OIIO::TypeDesc(), samples.data()));
    return samples;
  }

  // All but the first pixel, which the effect has changed.
  template <typename Sample>
  void ExpectKept(const std::string& input, const std::string& output, std::size_t channels) {
    const auto before = Samples<Sample>(input);
    Render(input, output);
    const auto after = Samples<Sample>(output);
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = channels; i < before.size(); ++i)
      EXPECT_EQ(after[i], before[i]) << input << " " << i;
    EXPECT_NE(after[0], before[0]);
  }

  ScratchFolder folder_;
  Job job_;
  RenderOptions options_;
  ExecuteContext context_;
};

template <typename Sample>
std::vector<Sample> Counting(std::size_t count) {
  std::vector<Sample> samples(count);
  for (std::size_t i = 0; i < count; ++i)
    samples[i] = static_cast<Sample>(30001 + 7 * i);
  return samples;
}

TEST_F(KeptOutside, SixteenBitsAreAllKept) {
  for (const auto& [name, format] : {std::pair{"in.png", "png"}, {"in.tif", "tiff"}, {"in.sgi", "sgi"}}) {
    WriteRaw(folder_.path() / name, format, OIIO::ImageSpec(4, 3, 3, OIIO::TypeDesc::UINT16),
             Counting<std::uint16_t>(36));
    ExpectKept<std::uint16_t>(name, "out" + std::filesystem::path(name).extension().string(), 3);
  }
  ExpectKept<std::uint16_t>("in.png", "in.png", 3);
}

TEST_F(KeptOutside, ColoursThatAreMultipliedAreNotDivided) {
  job_.premultipliesAround = true;
  std::vector<std::uint8_t> samples;
  for (int i = 0; i < 12; ++i)
    samples.insert(samples.end(), {200, 101, static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i % 4)});
  samples[3] = 255;
  WriteRaw(folder_.path() / "in.png", "png", OIIO::ImageSpec(4, 3, 4, OIIO::TypeDesc::UINT8), samples);
  ExpectKept<std::uint8_t>("in.png", "out.png", 4);
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
      ExpectKept<std::uint32_t>("in.exr", "out.exr", 3);
    } else {
      ExpectKept<std::uint16_t>("in.exr", "out.exr", 3);
    }
  }
}

TEST_F(KeptOutside, OtherTypesGetTheNearestValue) {
  WriteRaw(folder_.path() / "in.png", "png", OIIO::ImageSpec(4, 3, 1, OIIO::TypeDesc::UINT8),
           std::vector<std::uint8_t>{9, 1, 2, 3, 4, 5, 6, 7, 8, 100, 254, 255});
  job_.output.storage.type = SampleType::Unsigned16;
  Render("in.png", "wide.png");
  EXPECT_EQ(Samples<std::uint16_t>("wide.png")[10], 254 * 257);
  job_.output.storage.type = SampleType::Float;
  Render("in.png", "out.exr");
  EXPECT_EQ(Samples<float>("out.exr")[10], 254.0f / 255.0f);
  job_.output.storage.type.reset();
  WriteRaw(folder_.path() / "in.tif", "tiff", OIIO::ImageSpec(4, 3, 1, OIIO::TypeDesc::FLOAT),
           std::vector<float>{0.5f, 9.0f, -1.0f, std::nanf(""), 0.3f, 0, 0, 0, 0, 0, 0, 0.99999f});
  Render("in.tif", "narrow.png");
  const auto narrow = Samples<std::uint16_t>("narrow.png");
  EXPECT_EQ(std::vector<std::uint16_t>(narrow.begin() + 1, narrow.begin() + 5),
            (std::vector<std::uint16_t>{65535, 0, 0, 19661}));
  EXPECT_EQ(narrow[11], 65534);
}

TEST_F(KeptOutside, NothingIsWhereItIsToBeClear) {
  WriteRaw(folder_.path() / "in.png", "png", OIIO::ImageSpec(4, 3, 3, OIIO::TypeDesc::UINT16),
           Counting<std::uint16_t>(36));
  job_.outside = OutsideChoice::Clear;
  Render("in.png", "out.png");
  EXPECT_EQ(Samples<std::uint16_t>("out.png")[10], 0);
}

}  // namespace
}  // namespace vblur::host
