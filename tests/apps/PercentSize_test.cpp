// --blur 10%: a part of the picture's width.
#include "host/jobs/JobFile.h"
#include "host/properties/PropertyFile.h"
#include "properties/PropertyTable.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class PercentSize : public ProgramTest {
 protected:
  PercentSize() { MakePicture("in.png", 50, 40); }

  // The blur in the job file that a render saves.
  host::PropertyStore::Setting SavedBlur(std::vector<std::string> options) const {
    options.insert(options.begin(), {"render", "in.png", "out.png", "--overwrite", "--save-job", "job.json"});
    const auto result = Run(options);
    EXPECT_EQ(result.exit, 0) << result.err;
    return *host::ReadJobFile(Path("job.json")).properties.Find(PropertyOf(PropertyId::Blur).guid);
  }

  void ExpectSame(const std::string& inPercent, const std::string& inPixels) const {
    ASSERT_EQ(Run({"in.png", "a.png", "--overwrite", "--blur", inPercent}).exit, 0);
    ASSERT_EQ(Run({"in.png", "b.png", "--overwrite", "--blur", inPixels}).exit, 0);
    EXPECT_EQ(Pixels("a.png"), Pixels("b.png")) << inPercent;
  }
};

TEST_F(PercentSize, CountsTheWidth) {
  ExpectSame("10%", "5");
  ExpectSame("12.5%", "6.25");
  ExpectSame("0%", "0");
  ExpectSame("0:4%,10:50%", "0:2,10:25");
  ExpectSame("smooth:0:4%, 10: 25", "smooth:0:2,10:25");
}

TEST_F(PercentSize, SavedFilesHoldPixels) {
  EXPECT_EQ(SavedBlur({"--blur", "10%"}), host::PropertyStore::Setting(5.0));
  // Of the picture at full resolution, which the size is scaled from.
  EXPECT_EQ(SavedBlur({"--blur", "20%", "--proxy", "0.5,0.5"}), host::PropertyStore::Setting(20.0));
  EXPECT_EQ(Run({"in.png", "out.png", "--overwrite", "--blur", "10%", "--save-properties", "look.json"}).exit, 0);
  EXPECT_EQ(*host::ReadPropertyFile(Path("look.json")).Find(PropertyOf(PropertyId::Blur).guid),
            host::PropertyStore::Setting(5.0));
}

TEST_F(PercentSize, EachPictureHasItsOwn) {
  MakePicture("wide.png", 100, 40);
  std::filesystem::create_directory(Path("to"));
  ASSERT_EQ(Run({"render", "in.png", "wide.png", "to", "--blur", "10%"}).exit, 0);
  ASSERT_EQ(Run({"in.png", "a.png", "--blur", "5"}).exit, 0);
  ASSERT_EQ(Run({"wide.png", "b.png", "--blur", "10"}).exit, 0);
  EXPECT_EQ(Pixels("to/in.png"), Pixels("a.png"));
  EXPECT_EQ(Pixels("to/wide.png"), Pixels("b.png"));
  ExpectRefusal({"render", "in.png", "wide.png", "to", "--overwrite", "--blur", "10%", "--save-properties", "l.json"},
                2, "--save-properties: the pictures have different widths, expected a Blur in pixels");
}

TEST_F(PercentSize, JobsAndStreamsTakeIt) {
  folder_.Write("job.json", R"({"input": {"file": "in.png"}, "output": {"file": "out.png"}})");
  ASSERT_EQ(Run({"job", "job.json", "--set", "Blur=10%"}).exit, 0);
  ASSERT_EQ(Run({"in.png", "a.png", "--blur", "5"}).exit, 0);
  EXPECT_EQ(Pixels("out.png"), Pixels("a.png"));
  const auto piped = Run({"-", "-", "--blur", "10%"}, InputFrom(Path("in.png")));
  EXPECT_TRUE(piped.out == host::Bytes(Path("a.png"))) << piped.err;
}

TEST_F(PercentSize, OtherTextsAreRefused) {
  for (const std::string text : {"%", "10%%", "-5%", "ten%", "10%5", "nan%", "inf%", "1:%", "%:10"}) {
    const auto result = Run({"render", "in.png", "out.png", "--blur", text});
    EXPECT_EQ(result.exit, 2) << text;
    EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
    EXPECT_TRUE(result.err.starts_with("vblur: Blur: ")) << result.err;
    EXPECT_FALSE(Exists("out.png"));
  }
  ExpectRefusal({"render", "in.png", "out.png", "--blur", "10%%"}, 2,
                "Blur: expected a percentage of 0 or more such as 10%, found \"10%%\"");
  ExpectRefusal({"render", "in.png", "out.png", "--blur", "2000%"}, 2,
                "Blur: expected 0 to 720, found 1000; 100% are 50 pixels, the picture's width");
  ExpectRefusal({"render", "in.png", "out.png", "--blend", "10%"}, 2,
                "Blend: expected a finite number or keys such as 0:10,24:50, found \"10%\"");
  const std::string why = ": render and --set alone take percent, expected pixels, found \"10%\"";
  ExpectRefusal({"sheet", "in.png", "out.png", "--of", "edges", "--blur", "10%"}, 2, "Blur" + why);
  ExpectRefusal({"kernel", "out.png", "--blur", "10%"}, 2, "--blur" + why);
  ExpectRefusal({"render", "none.png", "out.png", "--blur", "10%"}, 3, "none.png: cannot read: no such file");
}

}  // namespace
}  // namespace vblur::cli
