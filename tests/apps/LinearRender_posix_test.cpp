// --linear: files of light and of film.
#include <algorithm>
#include <cmath>

#include "host/hosted/LinearLight.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class LinearRenderOfLight : public ProgramTest {
 protected:
  std::vector<std::int32_t> Rendered(const std::string& input, std::vector<std::string> more,
                                     std::int32_t depth = 8) const {
    more.insert(more.begin(), {"render", input, "out.png", "--overwrite"});
    const auto result = Run(std::move(more));
    EXPECT_EQ(result.exit, 0) << result.err;
    return Pixels("out.png", depth);
  }

  std::vector<float> Floats(const std::string& name) const {
    host::HostImage image;
    host::PictureReader().ReadColour(Path(name), 32, image);
    return host::Floats(image);
  }

  // The components of a picture of light as sRGB.
  std::vector<float> Encoded(const std::string& name) const {
    auto pixels = Floats(name);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
      if (i % 4 != 3) pixels[i] = host::EncodedOf(pixels[i]);
    }
    return pixels;
  }

  // The light of a picture, in floats.
  void Decode(const std::string& from, const std::string& to) const {
    host::HostImage image;
    host::PictureReader().ReadColour(Path(from), 32, image);
    auto pixels = host::Floats(image);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
      if (i % 4 != 3) pixels[i] = host::LinearOf(pixels[i]);
    }
    host::SetFloats(image, pixels);
    host::PictureWriter().Write(Path(to), image, nullptr, true);
  }
};

// As if the files had held light: an EXR file does.
TEST_F(LinearRenderOfLight, IsTheRenderOfTheLightItself) {
  MakePicture("in.png");
  Decode("in.png", "light.exr");
  for (const std::vector<std::string>& options : {std::vector<std::string>{"--blur", "7"},
                                                  {"--blur", "4", "--method", "Sharpen"},
                                                  {"--blur", "7", "--mix-back", "Screen", "--blend", "30"}}) {
    std::vector<std::string> render{"render", "light.exr", "out.exr", "--overwrite", "--type", "float"};
    render.insert(render.end(), options.begin(), options.end());
    ASSERT_EQ(Run(render).exit, 0);
    auto linear = options;
    linear.push_back("--linear");
    std::vector<std::string> toFloat{"render", "in.png", "encoded.exr", "--overwrite", "--type", "float"};
    toFloat.insert(toFloat.end(), linear.begin(), linear.end());
    ASSERT_EQ(Run(toFloat).exit, 0);
    EXPECT_EQ(Floats("encoded.exr"), Encoded("out.exr"));
  }
}

TEST_F(LinearRenderOfLight, LightAndLogarithmsAreToldApart) {
  MakePicture("in.exr", 20, 10, 16);
  ASSERT_EQ(Run({"in.exr", "plain.exr", "--blur", "5", "--depth", "32"}).exit, 0);
  const auto result = Run({"in.exr", "out.exr", "--blur", "5", "--linear"});
  EXPECT_EQ(result.exit, 0);
  EXPECT_TRUE(
      result.err.starts_with("vblur: linear: the input holds linear light already; it is rendered as without\n"))
      << result.err;
  EXPECT_EQ(Floats("out.exr"), Floats("plain.exr"));
}

// What the header of a DPX file says of its first picture's numbers.
TEST_F(LinearRenderOfLight, FilmIsRefused) {
  constexpr std::size_t kTransferByte = 801;
  MakePicture("in.dpx");
  std::string bytes = host::Bytes(Path("in.dpx"));
  for (const char transfer : {'\1', '\3'}) {
    bytes[kTransferByte] = transfer;
    folder_.Write("film.dpx", bytes);
    ExpectRefusal({"render", "film.dpx", "out.png", "--linear"}, 2,
                  "linear: film.dpx: its colours are logarithmic, expected sRGB or linear light");
    EXPECT_EQ(Run({"film.dpx", "out.png"}).exit, 0);
    std::filesystem::remove(Path("out.png"));
  }
  bytes[kTransferByte] = 2;
  folder_.Write("light.dpx", bytes);
  EXPECT_TRUE(Run({"light.dpx", "out.png", "--linear"}).err.starts_with("vblur: linear: the input holds linear light"));
}

// A mask is an amount, not a colour.
TEST_F(LinearRenderOfLight, MasksAreAmounts) {
  MakePicture("in.png");
  MakePicture("mask.png");
  const auto masked = Rendered("in.png", {"--blur", "9", "--linear", "--mask", "mask.png"});
  Decode("in.png", "light.exr");
  ASSERT_EQ(Run({"light.exr", "lit.exr", "--blur", "9", "--mask", "mask.png", "--type", "float"}).exit, 0);
  const auto light = Encoded("lit.exr");
  for (std::size_t i = 0; i < light.size(); ++i)
    ASSERT_EQ(masked[i], std::lround(std::clamp(light[i], 0.0f, 1.0f) * 255.0f)) << i;
}

}  // namespace
}  // namespace vblur::cli
