// --linear: files of light and of film.
#include "host/files/Sample.h"
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

  // The components of a picture of light as sRGB.
  std::vector<std::int32_t> Encoded(const std::string& name) const {
    auto pixels = Pixels(name, 16);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
      if (i % 4 != 3) pixels[i] = host::EncodedOf(static_cast<std::int16_t>(pixels[i]));
    }
    return pixels;
  }

  // The same components with their colours through a function, at 16 bits.
  void Convert(const std::string& from, const std::string& to, std::int16_t (*function)(std::int16_t)) const {
    host::HostImage image;
    host::PictureReader().ReadColour(Path(from), 16, image);
    for (std::size_t i = 0; i < host::ComponentCount(image); ++i) {
      if (i % 4 != 3) SetComponent(image, i, function(static_cast<std::int16_t>(host::Component(image, i))));
    }
    host::PictureWriter().Write(Path(to), image, nullptr, true);
  }
};

// As if the files had held light: an EXR file does.
TEST_F(LinearRenderOfLight, IsTheRenderOfTheLightItself) {
  MakePicture("in.png");
  Convert("in.png", "light.exr", host::LinearOf);
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
    EXPECT_EQ(Pixels("encoded.exr", 16), Encoded("out.exr"));
  }
}

TEST_F(LinearRenderOfLight, LightAndLogarithmsAreToldApart) {
  MakePicture("in.exr", 20, 10, 16);
  ASSERT_EQ(Run({"in.exr", "plain.exr", "--blur", "5"}).exit, 0);
  const auto result = Run({"in.exr", "out.exr", "--blur", "5", "--linear"});
  EXPECT_EQ(result.exit, 0);
  EXPECT_TRUE(
      result.err.starts_with("vblur: linear: the input holds linear light already; it is rendered as without\n"))
      << result.err;
  EXPECT_EQ(Pixels("out.exr", 16), Pixels("plain.exr", 16));
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
  Convert("in.png", "light.exr", host::LinearOf);
  ASSERT_EQ(Run({"light.exr", "lit.exr", "--blur", "9", "--mask", "mask.png", "--type", "float"}).exit, 0);
  const auto light = Encoded("lit.exr");
  for (std::size_t i = 0; i < light.size(); ++i)
    ASSERT_EQ(masked[i], host::ToSample<std::uint8_t>(static_cast<std::int16_t>(light[i]))) << i;
}

}  // namespace
}  // namespace vblur::cli
