// Short forms and spellings.
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class Conveniences : public ProgramTest {
 protected:
  void SetUp() override { MakePicture("in.png"); }
};

TEST_F(Conveniences, TwoFilesAreRendered) {
  EXPECT_EQ(Run({"in.png", "short.png", "--blur", "4"}).exit, 0);
  EXPECT_EQ(Run({"render", "in.png", "long.png", "--blur", "4"}).exit, 0);
  EXPECT_EQ(Pixels("short.png"), Pixels("long.png"));
  ExpectRefusal({"gone.png", "out.png"}, 3, "gone.png: cannot read: no such file");
}

TEST_F(Conveniences, OptionsMayStandBeforeTheFiles) {
  ASSERT_EQ(Run({"render", "in.png", "long.png", "--blur", "4"}).exit, 0);
  for (const std::vector<std::string>& before :
       std::vector<std::vector<std::string>>{{"-q"},
                                             {"-v"},
                                             {"-qvv"},
                                             {"--threads", "1"},
                                             {"--threads=1"},
                                             {"--cpu", "twin", "-q"},
                                             {"--overwrite", "--method", "Blur"}}) {
    std::vector<std::string> command = before;
    command.insert(command.end(), {"in.png", "short.png", "--blur", "4"});
    const auto result = Run(command);
    EXPECT_EQ(result.exit, 0) << before.front() << ": " << result.err;
    ASSERT_TRUE(Exists("short.png")) << before.front();
    EXPECT_EQ(Pixels("short.png"), Pixels("long.png")) << before.front();
    std::filesystem::remove(Path("short.png"));
  }
  EXPECT_EQ(Run({"-q", "help", "render"}).out, Run({"render", "--help"}).out);
  ExpectRefusal({"-q", "rendr", "in.png"}, 2, "unknown command \"rendr\"; did you mean \"render\"?; see vblur --help");
  ExpectRefusal({"--thread", "1", "in.png", "o.png"}, 2,
                "unknown option \"--thread\"; did you mean \"--threads\"?; see vblur --help");
}

TEST_F(Conveniences, TwoDashesEndTheOptions) {
  std::filesystem::rename(Path("in.png"), Path("-in.png"));
  for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
           {"render", "--blur", "4", "--", "-in.png", "-out.png"}, {"--blur", "4", "--", "-in.png", "-out.png"}}) {
    const auto result = Run(command);
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_TRUE(std::filesystem::remove(Path("-out.png")));
  }
  ExpectRefusal({"--"}, 2, "unknown option \"--\"; see vblur --help");
}

TEST_F(Conveniences, HelpAndVersionHaveShortForms) {
  EXPECT_EQ(Run({"help"}).out, Run({"--help"}).out);
  EXPECT_EQ(Run({"help", "render"}).out, Run({"render", "--help"}).out);
  EXPECT_NE(Run({"help", "render"}).out, Run({"help"}).out);
  EXPECT_EQ(Run({"help", "render", "--help"}).out, Run({"render", "--help"}).out);
  EXPECT_EQ(Run({"-V"}).out, Run({"--version"}).out);
  ExpectRefusal({"help", "rendr"}, 2, "unknown command \"rendr\"; did you mean \"render\"?; see vblur --help");
  ExpectRefusal({"help", "in.png"}, 2, "unknown command \"in.png\"; see vblur --help");
  ExpectRefusal({"help", "--foo"}, 2, "unknown option \"--foo\"; see vblur --help");
  ExpectRefusal({"help", "job", "extra"}, 2, "unexpected argument \"extra\"; see vblur --help");
}

TEST_F(Conveniences, SpellingsMeanTheSame) {
  std::vector<std::array<std::string, 3>> spellings{{"--channels", "Grey", "gray"},
                                                    {"--channels", "Luminance", "luma"},
                                                    {"--mix-back", "Colour", "color"},
                                                    {"--mix-back", "Add Over", "add-over"},
                                                    {"--mix-back", "HardLight", "hard light"},
                                                    {"--transition-ramping", "Ramp In and Out", "ramp-in-out"},
                                                    {"--effect-scaling", "Don't Scale Effect", "dont-scale"},
                                                    {"--cpu", "twin", "TWIN"},
                                                    {"--memory", "2048M", "2.0g"},
                                                    {"--memory", "2.5G", "2.5GB"},
                                                    {"--memory", "512M", "512MiB"},
                                                    {"--memory", "536870912", "536870912b"}};
  if (__builtin_cpu_supports("avx2") != 0) spellings.push_back({"--cpu", "AVX2", "avx2"});
  for (const auto& [option, own, other] : spellings) {
    ASSERT_EQ(Run({"in.png", "own.png", "--blur", "4", option, own, "--overwrite"}).exit, 0) << own;
    const auto result = Run({"in.png", "other.png", "--blur", "4", option, other, "--overwrite"});
    ASSERT_EQ(result.exit, 0) << result.err;
    EXPECT_EQ(Pixels("own.png"), Pixels("other.png"));
  }
  for (const std::string memory : {"2T", "2GG", "2iB", "2GiBs", "G", "B"})
    EXPECT_EQ(Run({"in.png", "none.png", "--memory", memory}).exit, 2) << memory;
}

TEST_F(Conveniences, NamesOfPropertiesAreSpelledEitherWay) {
  const std::vector<std::string> crop{"--crop-left", "20", "--display-cropped", "on", "--x-edge-method", "Colour"};
  const auto render = [&](const std::string& output, std::vector<std::string> more) {
    more.insert(more.begin(), crop.begin(), crop.end());
    more.insert(more.begin(), {"in.png", output, "--blur", "4"});
    const auto result = Run(more);
    EXPECT_EQ(result.exit, 0) << result.err;
    return result.exit == 0 ? Pixels(output) : std::vector<std::int32_t>{};
  };
  const auto plain = render("plain.png", {});
  const auto own = render("own.png", {"--crop-colour-r", "100"});
  EXPECT_NE(plain, own);
  EXPECT_EQ(render("other.png", {"--crop-color-r", "100"}), own);
  EXPECT_EQ(render("joined.png", {"--crop-color-r=100"}), own);
  folder_.Write("job.json", R"({"input": {"file": "in.png"}, "output": {"file": "job.png"}, "properties":
      {"Blur": 4, "Crop Left": 20, "Display Cropped": true, "X Edge Method": "Colour", "Crop Color R": 100}})");
  ASSERT_EQ(Run({"job", "job.json"}).exit, 0);
  EXPECT_EQ(Pixels("job.png"), own);
  ASSERT_EQ(Run({"job", "job.json", "--overwrite", "--set", "Crop Color R=0"}).exit, 0);
  EXPECT_EQ(Pixels("job.png"), plain);
}

TEST_F(Conveniences, AJobComesFromTheStandardInput) {
  const auto job = folder_.Write("job.json", R"({"input": {"file": "in.png"}, "output": {"file": "out.png"}})");
  const auto result = Run({"job", "-", "--set", "Blur=4"}, InputFrom(job));
  EXPECT_EQ(result.exit, 0) << result.err;
  EXPECT_TRUE(Exists("out.png"));
}

TEST_F(Conveniences, SettingsMayStandBeforeTheJob) {
  folder_.Write("job.json", R"({"input": {"file": "in.png"}, "output": {"file": "out.png"}})");
  const auto result = Run({"job", "--set", "Blur=4", "job.json", "--set", "Blend=50"});
  ASSERT_EQ(result.exit, 0) << result.err;
  ASSERT_EQ(Run({"in.png", "same.png", "--blur", "4", "--blend", "50"}).exit, 0);
  EXPECT_EQ(Pixels("out.png"), Pixels("same.png"));
}

TEST_F(Conveniences, AViewChangesProperties) {
  folder_.Write("job.json", R"({"input": {"file": "in.png"}, "output": {"file": "out.png"}})");
  const std::vector<std::string> plain = {"view", "job.json", "view.png", "--hide-controls", "--overwrite"};
  std::vector<std::string> changed = plain;
  changed.insert(changed.end(), {"--set", "Blur=0"});
  ASSERT_EQ(Run(plain).exit, 0);
  const auto before = Pixels("view.png");
  ASSERT_EQ(Run(changed).exit, 0);
  EXPECT_NE(Pixels("view.png"), before);
  ASSERT_EQ(Run({"view", "job.json", "--set", "Blur=0", "first.png", "--hide-controls"}).exit, 0);
  EXPECT_EQ(Pixels("first.png"), Pixels("view.png")) << "one value belongs to the option";
  changed.back() = "Blurr=0";
  EXPECT_EQ(Run(changed).exit, 2);
}

}  // namespace
}  // namespace vblur::cli
