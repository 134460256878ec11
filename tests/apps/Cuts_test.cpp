#include <functional>

#include "tests/apps/PlatformTexts.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

// Whatever a sequence is cut into, its files are the same.
class Cuts : public ProgramTest {
 protected:
  static constexpr int kFirst = 5;
  static constexpr int kLast = 24;

  void SetUp() override {
    for (int frame = kFirst; frame <= kLast; ++frame) {
      MakePicture("a." + std::to_string(frame) + ".png", 16, 12);
      MakePicture("bb." + std::to_string(frame) + ".png", 16, 12);
    }
  }

  static std::string FramesText(int first, int last) { return std::to_string(first) + "-" + std::to_string(last); }

  // Renders the frames in parts of this length.
  void RenderInParts(int length, const std::function<std::vector<std::string>(const std::string& frames)>& command) {
    for (int first = kFirst; first <= kLast; first += length) {
      const auto result = Run(command(FramesText(first, std::min(first + length - 1, kLast))));
      ASSERT_EQ(result.exit, 0) << result.err;
    }
  }

  // The outputs, and takes them away.
  std::vector<std::string> TakeOutputs() {
    std::vector<std::string> all;
    for (int frame = kFirst; frame <= kLast; ++frame) {
      const auto file = Path("out." + std::to_string(frame) + extension_);
      all.push_back(host::Bytes(file));
      std::filesystem::remove(file);
    }
    return all;
  }

  void ExpectTheSameInParts(const std::function<std::vector<std::string>(const std::string& frames)>& command) {
    RenderInParts(100, command);
    const auto whole = TakeOutputs();
    EXPECT_TRUE(whole.front() != whole.back());
    for (const int length : lengths_) {
      RenderInParts(length, command);
      EXPECT_TRUE(TakeOutputs() == whole) << "in parts of " << length;
    }
  }

  void ExpectTheSameOfJob(const std::string& text) {
    folder_.Write("job.json", text);
    const auto job = [](const std::string& frames) {
      return std::vector<std::string>{"job", "job.json", "--frames", frames};
    };
    EXPECT_EQ(Run({"job", "job.json"}).exit, 0);
    const auto withoutFrames = TakeOutputs();
    ExpectTheSameInParts(job);
    EXPECT_EQ(Run(job(FramesText(kFirst, kLast))).exit, 0);
    EXPECT_TRUE(TakeOutputs() == withoutFrames);
  }

  std::string extension_ = ".png";
  std::vector<int> lengths_ = kShortRuns ? std::vector<int>{10, 1} : std::vector<int>{10};
};

TEST_F(Cuts, AnAnimationIsTheSameInParts) {
  ExpectTheSameOfJob(R"({"input": {"file": "a.%d.png"}, "output": {"file": "out.%d.png"}, "frames": [5, 24],
                         "properties": {"Blur": {"keys": [[0, 0], [19, 8]]}}})");
}

// Their headers could tell when they were made, or of what run.
TEST_F(Cuts, FormatsWithMuchMetadataAreTheSameInParts) {
  lengths_ = {10};
  for (const std::string& extension : kExtensionsWithMetadata) {
    SCOPED_TRACE(extension);
    extension_ = extension;
    ExpectTheSameOfJob(R"({"input": {"file": "a.%d.png"}, "output": {"file": "out.%d)" + extension +
                       R"("}, "frames": [5, 24], "properties": {"Blur": {"keys": [[0, 0], [19, 8]]}}})");
  }
}

TEST_F(Cuts, ATransitionIsTheSameInParts) {
  ExpectTheSameOfJob(R"({"input": {"file": "a.%d.png"}, "input2": {"file": "bb.%d.png"},
                         "output": {"file": "out.%d.png"}, "frames": [5, 24], "properties": {"Blur": 8}})");
}

TEST_F(Cuts, AStartOfItsOwnHolds) {
  ExpectTheSameOfJob(R"({"input": {"file": "a.%d.png"}, "output": {"file": "out.%d.png"}, "frames": [5, 24],
                         "start": 10, "time": 3.5, "properties": {"Blur": {"keys": [[0, 0], [19, 8]]}}})");
}

TEST_F(Cuts, RenderIsTheSameInPartsThatNameTheStart) {
  ExpectTheSameInParts([](const std::string& frames) {
    return std::vector<std::string>{"render",  "a.%d.png", "out.%d.png", "--to", "bb.%d.png", "--frames", frames,
                                    "--start", "5",        "--duration", "20",   "--blur",    "0:0,19:8"};
  });
}

TEST_F(Cuts, ATransitionWithoutALengthIsRefused) {
  folder_.Write("job.json", R"({"input": {"file": "a.%d.png"}, "input2": {"file": "bb.%d.png"},
                                "output": {"file": "out.%d.png"}})");
  ExpectRefusal({"job", "job.json", "--frames", "5-24"}, 2,
                "duration: missing, expected the length of the transition, since the job has no frames to take it "
                "from");
}

TEST_F(Cuts, AViewShowsTheFrameAtItsTime) {
  folder_.Write("job.json", R"({"input": {"file": "a.%d.png"}, "output": {"file": "out.%d.png"}, "frames": [5, 24],
                                "start": 4, "properties": {"Blur": {"keys": [[0, 0], [19, 8]]}}})");
  ASSERT_EQ(Run({"job", "job.json"}).exit, 0);
  for (const char* frame : {"5", "17", "24"}) {
    const auto result = Run({"view", "job.json", "view.png", "--frame", frame, "--hide-controls", "--overwrite"});
    ASSERT_EQ(result.exit, 0) << result.err;
    auto rendered = Pixels(std::string("out.") + frame + ".png");
    for (std::size_t alpha = 3; alpha < rendered.size(); alpha += 4)
      rendered[alpha] = 255;
    EXPECT_EQ(Pixels("view.png"), rendered) << "frame " << frame;
  }
}

}  // namespace
}  // namespace vblur::cli
