#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

// What a picture holds outside the region that is rendered.
class Outside : public ProgramTest {
 protected:
  static constexpr std::size_t kWidth = 40;
  static constexpr std::size_t kHeight = 30;

  void SetUp() override { MakePicture("in.png", kWidth, kHeight); }

  std::vector<std::int32_t> Rendered(std::vector<std::string> more, const std::string& input = "in.png") {
    more.insert(more.begin(), {"render", input, "out.png", "--blur", "12", "--overwrite"});
    const auto result = Run(std::move(more));
    EXPECT_EQ(result.exit, 0) << result.err;
    return Pixels("out.png");
  }

  // The whole picture is `inside` within x 5 to 24 and y 3 to 12 from the bottom, and `outside` elsewhere.
  static void ExpectParts(const std::vector<std::int32_t>& whole, const std::vector<std::int32_t>& inside,
                          const std::vector<std::int32_t>& outside) {
    ASSERT_EQ(whole.size(), kWidth * kHeight * 4);
    for (std::size_t i = 0; i < whole.size(); ++i) {
      const std::size_t x = i / 4 % kWidth;
      const std::size_t y = i / 4 / kWidth;
      const bool isInside = x >= 5 && x < 25 && y >= 3 && y < 13;
      ASSERT_EQ(whole[i], (isInside ? inside : outside)[i]) << "x " << x << ", y " << y;
    }
  }

  const std::vector<std::int32_t> nothing_ = std::vector<std::int32_t>(kWidth * kHeight * 4, 0);
};

TEST_F(Outside, ARegionLeavesTheRestOfThePicture) {
  const auto whole = Rendered({});
  ExpectParts(Rendered({"--roi", "5,3,20,10"}), whole, Pixels("in.png"));
  ExpectParts(Rendered({"--roi", "5,3,20,10", "--outside", "keep"}), whole, Pixels("in.png"));
  ExpectParts(Rendered({"--roi", "5,3,20,10", "--outside", "clear"}), whole, nothing_);
  ExpectParts(Rendered({"--roi", "5,3,20,10", "--depth", "16", "--origin", "-7,9"}), Rendered({"--depth", "16"}),
              Pixels("in.png"));
}

TEST_F(Outside, AlsoInPlace) {
  const auto whole = Rendered({});
  const auto before = Pixels("in.png");
  ASSERT_EQ(Run({"render", "in.png", "in.png", "--blur", "12", "--overwrite", "--roi", "5,3,20,10"}).exit, 0);
  ExpectParts(Pixels("in.png"), whole, before);
}

TEST_F(Outside, ARegionThatReachesBeyondThePictureIsCut) {
  const auto whole = Rendered({});
  EXPECT_EQ(Rendered({"--roi", "-9,-9,500,500"}), whole);
  EXPECT_EQ(Rendered({"--roi", "100,100,5,5", "-q"}), Pixels("in.png"));
}

TEST_F(Outside, OtherSizesAreCleared) {
  const std::string job = R"({"input": {"file": "in.png"}, "output": {"file": "out.png", "width": 41, "height": 30},
                              "roi": [5, 3, 20, 10], "properties": {"Blur": 12})";
  folder_.Write("job.json", job + "}");
  ASSERT_EQ(Run({"job", "job.json"}).exit, 0);
  const auto pixels = Pixels("out.png");
  EXPECT_EQ(pixels[4 * (40 + 41 * 29)], 0);
  EXPECT_EQ(pixels[4 * (40 + 41 * 29) + 3], 0);
  folder_.Write("kept.json", job + R"(, "outside": "keep"})");
  const auto result = Run({"job", "kept.json", "--overwrite"});
  EXPECT_EQ(result.exit, 2);
  EXPECT_EQ(result.err, "vblur: outside: the input has not the size and the place of the output, expected clear\n");
}

TEST_F(Outside, TheInitialPictureStays) {
  const auto whole = Rendered({});
  MakePicture("initial.png", kWidth, kHeight);
  folder_.Write("job.json",
                R"({"input": {"file": "in.png"}, "output": {"file": "out.png", "initial": "initial.png"},
                    "roi": [5, 3, 20, 10], "properties": {"Blur": 12}})");
  ASSERT_EQ(Run({"job", "job.json", "--overwrite"}).exit, 0);
  ExpectParts(Pixels("out.png"), whole, Pixels("initial.png"));
}

// The rows of the other field within the region are those that a render of one field leaves.
TEST_F(Outside, OneFieldLeavesTheOtherWithinTheRegion) {
  ExpectParts(Rendered({"--roi", "5,3,20,10", "--field", "first"}),
              Rendered({"--roi", "5,3,20,10", "--field", "first", "--outside", "clear"}), Pixels("in.png"));
}

TEST_F(Outside, RefusesWordsThatItDoesNotKnow) {
  ExpectRefusal({"render", "in.png", "o.png", "--roi", "0,0,5,5", "--outside", "all"}, 2,
                "--outside: expected keep or clear, found \"all\"");
  ExpectRefusal({"render", "in.png", "o.png", "--outside", "keep"}, 2,
                "outside: there is no region to be outside of, expected roi too");
}

}  // namespace
}  // namespace vblur::cli
