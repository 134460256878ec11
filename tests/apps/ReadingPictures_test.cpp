// What is taken of a file, and what is told of it.
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class ReadingPictures : public ProgramTest {};

TEST_F(ReadingPictures, LayersAndChannelsAreChosenByName) {
  MakePicture("in.png");
  MakePicture("mask.png");
  ExpectRefusal({"render", "in.png", "out.png", "--layer", "diffuse"}, 3,
                "in.png: cannot read: it has no layer \"diffuse\", and no other");
  ExpectRefusal({"render", "in.png", "out.png", "--mask", "mask.png", "--mask-channel", "Z"}, 3,
                "mask.png: cannot read: it has no channel \"Z\", expected one of these: R, G, B, A");
  ExpectRefusal({"render", "in.png", "out.png", "--mask-channel", "A"}, 2,
                "--mask-channel: there is no mask, expected --mask FILE too");
  const std::vector<std::string> render{"render", "in.png", "red.png", "--mask", "mask.png", "--blur", "20"};
  EXPECT_EQ(Run(render).exit, 0);
  auto alpha = render;
  alpha[2] = "alpha.png";
  alpha.insert(alpha.end(), {"--mask-channel", "alpha"});
  EXPECT_EQ(Run(alpha).exit, 0);
  EXPECT_NE(Pixels("red.png"), Pixels("alpha.png"));
}

TEST_F(ReadingPictures, TheNumberOfPixelsHasALimit) {
  MakePicture("in.png", 40, 30);
  ExpectRefusal({"render", "in.png", "out.png", "--max-pixels", "1K"}, 3,
                "in.png: cannot read: 40 x 30 pixels, 1200 in all, expected at most 1000; give --max-pixels to allow "
                "more");
  ExpectRefusal({"render", "in.png", "out.png", "--max-pixels", "many"}, 2,
                "--max-pixels: expected a number of pixels such as 500M or 1G, found \"many\"");
  EXPECT_EQ(Run({"render", "in.png", "out.png", "--max-pixels", "0.0012M"}).exit, 0);
}

TEST_F(ReadingPictures, EveryFrameBeyondALimitGetsTheAdvice) {
  MakePicture("in.1.png", 4, 2);
  MakePicture("in.2.png", 40, 30);
  const std::vector<std::string> render{"render", "in.%d.png", "out.%d.png", "--frames", "1-2", "--overwrite"};
  const auto run = [&](const std::string& option, const std::string& value) {
    auto limited = render;
    limited.insert(limited.end(), {option, value});
    return Run(limited).err;
  };
  EXPECT_EQ(run("--max-pixels", "1K"),
            "vblur: in.2.png: cannot read: 40 x 30 pixels, 1200 in all, expected at most 1000 (frame 2); give "
            "--max-pixels to allow more\n");
  EXPECT_EQ(run("--memory", "5K"),
            "vblur: out.2.png: a frame of 40 x 30 pixels needs 15K of memory, 5K are allowed (frame 2); give --memory "
            "to allow more\n");
}

}  // namespace
}  // namespace vblur::cli
