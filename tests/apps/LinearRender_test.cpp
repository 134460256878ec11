// --linear: sRGB pictures blurred in linear light.
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class LinearRender : public ProgramTest {
 protected:
  static constexpr std::int32_t kWidth = 41;
  static constexpr std::int32_t kHeight = 9;

  // Black on the left, white on the right, both opaque, and half the light between them.
  void MakeEdge(const std::string& name, std::int32_t middle) const {
    host::HostImage image;
    image.Reset(8, 4, kWidth, kHeight);
    for (std::int32_t i = 0; i < kWidth * kHeight; ++i) {
      const std::int32_t x = i % kWidth;
      for (int c = 0; c < 4; ++c)
        SetComponent(image, static_cast<std::size_t>(4 * i + c),
                     c == 3 || x > kWidth / 2 ? 255
                     : x == kWidth / 2        ? middle
                                              : 0);
    }
    host::PictureWriter().Write(Path(name), image, nullptr, true);
  }

  std::vector<std::int32_t> Rendered(const std::string& input, std::vector<std::string> more,
                                     std::int32_t depth = 8) const {
    more.insert(more.begin(), {"render", input, "out.png", "--overwrite"});
    const auto result = Run(std::move(more));
    EXPECT_EQ(result.exit, 0) << result.err;
    return Pixels("out.png", depth);
  }
};

TEST_F(LinearRender, TheMiddleOfAnEdgeIsHalfTheLight) {
  constexpr std::size_t kMiddle = 4 * (4 * kWidth + kWidth / 2);
  MakeEdge("in.png", 188);
  const auto linear = Rendered("in.png", {"--blur", "9", "--linear"});
  EXPECT_NEAR(linear[kMiddle], 188, 1);
  EXPECT_EQ(linear[kMiddle + 3], 255);
  MakeEdge("in.png", 128);
  EXPECT_NEAR(Rendered("in.png", {"--blur", "9"})[kMiddle], 128, 1);
}

TEST_F(LinearRender, WhereNothingIsBlurredNothingChanges) {
  MakePicture("in.png");
  EXPECT_EQ(Rendered("in.png", {"--blur", "0", "--linear"}), Pixels("in.png"));
  MakePicture("deep.png", 40, 30, 16);
  const auto before = Pixels("deep.png", 16);
  for (const std::string more : {"", "--premultiply=around"}) {
    std::vector<std::string> options{"--blur", "9", "--linear", "--roi", "5,3,20,10"};
    if (!more.empty()) options.push_back(more);
    const auto after = Rendered("deep.png", options, 16);
    std::size_t inside = 0;
    for (std::size_t i = 0; i < after.size(); ++i) {
      const std::size_t x = i / 4 % 40;
      const std::size_t y = i / 4 / 40;
      if (x >= 5 && x < 25 && y >= 3 && y < 13) {
        inside += after[i] != before[i];
      } else {
        ASSERT_EQ(after[i], before[i]) << "x " << x << ", y " << y;
      }
    }
    EXPECT_GT(inside, 100u);
  }
}

TEST_F(LinearRender, JobsHaveIt) {
  MakePicture("in.png");
  const auto expected = Rendered("in.png", {"--blur", "5", "--linear", "--save-job", "job.json"});
  EXPECT_NE(host::Bytes(Path("job.json")).find("\"linear\": true"), std::string::npos);
  std::filesystem::remove(Path("out.png"));
  EXPECT_EQ(Run({"job", "job.json"}).exit, 0);
  EXPECT_EQ(Pixels("out.png"), expected);
  EXPECT_NE(Rendered("in.png", {"--blur", "5"}), expected);
  // In floats at any depth.
  for (const char* depth : {"8", "16", "32"})
    EXPECT_EQ(Rendered("in.png", {"--blur", "5", "--linear", "--depth", depth}), expected);
}

}  // namespace
}  // namespace vblur::cli
