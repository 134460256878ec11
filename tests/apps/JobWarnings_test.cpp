// Warnings about valid but unlikely jobs.
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class JobWarnings : public ProgramTest {
 protected:
  JobWarnings() {
    MakePicture("in.png");
    folder_.Write("job.json", R"({"input": {"file": "in.png"}, "output": {"file": "out.png"},
                                  "properties": {"Blur": {"keys": [[0, 10], [9, -4]]}, "Blend": 500}})");
  }
};

TEST_F(JobWarnings, ValuesOfFilesBeyondTheirRangeAreToldAndRendered) {
  const std::string lines =
      "vblur: properties/Blur: -4 is outside 0 to 720; rendered as it is\n"
      "vblur: properties/Blend: 500 is outside 0 to 100; rendered as it is\n";
  auto result = Run({"job", "job.json"});
  EXPECT_EQ(result.exit, 0);
  EXPECT_EQ(result.err, lines);
  EXPECT_TRUE(Exists("out.png"));
  result = Run({"job", "job.json", "--overwrite", "-q"});
  EXPECT_EQ(result.exit, 0);
  EXPECT_EQ(result.err, "");
  result = Run({"job", "job.json", "--overwrite", "--progress", "json"});
  EXPECT_EQ(result.err.rfind(R"({"event":"warning","message":"properties/Blur: -4 is outside)", 0), 0u) << result.err;
  result = Run({"view", "job.json", "view.png"});
  EXPECT_EQ(result.exit, 0);
  EXPECT_EQ(result.err, lines);
  folder_.Write("look.json", R"({"properties": {"Blend": 500}})");
  result = Run({"render", "in.png", "look.png", "--load-properties", "look.json"});
  EXPECT_EQ(result.exit, 0);
  EXPECT_EQ(result.err, "vblur: properties/Blend: 500 is outside 0 to 100; rendered as it is\n");
}

TEST_F(JobWarnings, AnEffectWithoutLengthIsTold) {
  folder_.Write("short.json", R"({"input": {"file": "in.png"}, "output": {"file": "out.png"}, "duration": 0})");
  const auto result = Run({"job", "short.json"});
  EXPECT_EQ(result.exit, 0);
  EXPECT_EQ(result.err, "vblur: duration: 0 is no length, expected more; rendered as it is\n");
  folder_.Write("back.json", R"({"input": {"file": "in.png"}, "output": {"file": "o.png"}, "duration": -1})");
  ExpectRefusal({"job", "back.json"}, 2, "duration: expected 0 or more, found -1");
}

TEST_F(JobWarnings, ARegionOutsideThePictureIsTold) {
  const std::string line = "vblur: roi: the region lies outside the picture of 40 x 30 pixels; nothing is rendered\n";
  const auto errors = [&](const std::string& roi) {
    const auto result = Run({"render", "in.png", "out.png", "--overwrite", "--roi", roi, "--origin", "100,-7"});
    EXPECT_EQ(result.exit, 0);
    return result.err;
  };
  for (const std::string outside : {"40,0,5,5", "0,30,5,5", "-5,0,5,5", "0,-5,5,5", "9000,9000,1,1"})
    EXPECT_EQ(errors(outside), line) << outside;
  for (const std::string inside : {"39,29,5,5", "-4,-4,5,5"})
    EXPECT_EQ(errors(inside), "") << inside;
}

TEST_F(JobWarnings, AMaskOutsideThePictureIsTold) {
  MakePicture("mask.png", 8, 6);
  const std::string line = "vblur: mask: it lies outside the picture of 40 x 30 pixels; nothing is rendered\n";
  const auto errors = [&](const std::string& offset) {
    const auto result = Run({"render", "in.png", "out.png", "--overwrite", "--mask", "mask.png", "--mask-offset",
                             offset, "--origin", "100,-7"});
    EXPECT_EQ(result.exit, 0);
    return result.err;
  };
  for (const std::string outside : {"40,0", "0,30", "-8,0", "0,-6", "500,0"})
    EXPECT_EQ(errors(outside), line) << outside;
  for (const std::string inside : {"39,29", "-7,-5"})
    EXPECT_EQ(errors(inside).find("nothing is rendered"), std::string::npos) << inside;
}

}  // namespace
}  // namespace vblur::cli
