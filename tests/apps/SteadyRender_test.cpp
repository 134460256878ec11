// --steady: floats inside, one rounding at the end.
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class SteadyRender : public ProgramTest {
 protected:
  void MakeFlat(const std::string& name, std::int32_t depth, std::int32_t value) const {
    host::HostImage image;
    image.Reset(depth, 4, 60, 40);
    for (std::size_t i = 0; i < host::ComponentCount(image); ++i)
      SetComponent(image, i, value);
    host::PictureWriter().Write(Path(name), image, nullptr, true);
  }
};

// The largest size of this picture, at which the weights of integers are far from one.
TEST_F(SteadyRender, KeepsFlatAreasAtEverySize) {
  MakeFlat("flat.png", 8, 200);
  for (const char* blur : {"1", "37.3", "150", "400"}) {
    const auto result = Run({"flat.png", "out.png", "--blur", blur, "--steady", "--overwrite"});
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_EQ(result.err.find("flat areas"), std::string::npos) << result.err;
    EXPECT_EQ(Pixels("out.png"), Pixels("flat.png")) << blur;
  }
  const auto plain = Run({"flat.png", "plain.png", "--blur", "400"});
  EXPECT_NE(plain.err.find("flat areas"), std::string::npos) << plain.err;
  EXPECT_NE(Pixels("plain.png"), Pixels("flat.png"));
}

// The output has the samples of the input, whatever is computed in between.
TEST_F(SteadyRender, IsTheRenderInFloatsAtEveryDepth) {
  MakePicture("in.png");
  ASSERT_EQ(Run({"in.png", "floats.png", "--blur", "7", "--depth", "32"}).exit, 0);
  for (const char* depth : {"8", "16", "32"}) {
    ASSERT_EQ(Run({"in.png", "out.png", "--blur", "7", "--steady", "--depth", depth, "--overwrite"}).exit, 0);
    EXPECT_EQ(host::Bytes(Path("out.png")), host::Bytes(Path("floats.png"))) << depth;
  }
  ASSERT_EQ(Run({"in.png", "whole.png", "--blur", "7"}).exit, 0);
  EXPECT_NE(Pixels("whole.png"), Pixels("floats.png"));
}

TEST_F(SteadyRender, JobsHaveIt) {
  MakePicture("in.png");
  ASSERT_EQ(Run({"in.png", "out.png", "--blur", "9", "--steady", "--save-job", "job.json"}).exit, 0);
  EXPECT_NE(host::Bytes(Path("job.json")).find("\"steady\": true"), std::string::npos);
  const auto expected = host::Bytes(Path("out.png"));
  std::filesystem::remove(Path("out.png"));
  ASSERT_EQ(Run({"job", "job.json"}).exit, 0);
  EXPECT_EQ(host::Bytes(Path("out.png")), expected);
  folder_.Write("wrong.json", R"({"input": {"file": "in.png"}, "output": {"file": "o.png"}, "steady": 1})");
  ExpectRefusal({"job", "wrong.json"}, 2, "wrong.json: steady: expected true or false, found 1");
}

// Colours that alpha hides are named where they are lost.
TEST_F(SteadyRender, HiddenColoursAreTold) {
  host::HostImage image;
  image.Reset(8, 4, 4, 4);
  for (std::size_t i = 0; i < 64; ++i)
    SetComponent(image, i, i % 4 == 3 && i > 3 ? 255 : i % 4 == 3 ? 0 : 90);
  host::PictureWriter().Write(Path("cut.png"), image, nullptr, true);
  const auto around = Run({"cut.png", "out.png", "--blur", "2", "--premultiply", "around"});
  EXPECT_EQ(around.exit, 0);
  EXPECT_NE(around.err.find("cut.png: colours under transparent pixels are lost by premultiply around\n"),
            std::string::npos)
      << around.err;
  EXPECT_EQ(Run({"cut.png", "plain.png", "--blur", "2"}).err.find("transparent"), std::string::npos);
  MakeFlat("full.png", 8, 255);
  EXPECT_EQ(Run({"full.png", "full-out.png", "--blur", "2", "--premultiply", "around"}).err.find("transparent"),
            std::string::npos);
}

}  // namespace
}  // namespace vblur::cli
