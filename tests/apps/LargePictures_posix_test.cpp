// What large pictures take of memory.
#include <cstdlib>
#include <fstream>

#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class LargePictures : public ProgramTest {
 protected:
  void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "sanitizers take memory of their own";
#endif
    if (const char* const asked = std::getenv("VBLUR_LARGE_SIDE")) {
      side_ = std::atoi(asked);
      others_ = 0;
    }
    std::ofstream file(Path("in.ppm"), std::ios::binary);
    file << "P6\n" << side_ << ' ' << side_ << "\n255\n";
    std::string row(static_cast<std::size_t>(side_) * 3, '\0');
    for (int y = 0; y < side_; ++y) {
      row[static_cast<std::size_t>(y)] = static_cast<char>(y);
      file << row;
    }
  }

  void ExpectLittleMemory(std::vector<std::string> more) const {
    std::vector<std::string> all = {"render",        "in.ppm", "out.tif", "--overwrite", "--no-sync",
                                    "--compression", "none",   "--blur",  "24"};
    all.insert(all.end(), more.begin(), more.end());
    const ProcessResult result = Run(all);
    EXPECT_EQ(result.exit, 0) << result.err;
    const std::int64_t own = OwnBytes();
    EXPECT_LE(result.mostMemory, own * 22 / 10 + others_) << testing::PrintToString(more);
    // What was measured held the pictures.
    EXPECT_GT(result.mostMemory, own * 2);
  }

  // At most what --memory counts, whatever the bands hold.
  void ExpectCounted(std::vector<std::string> more) const {
    std::vector<std::string> all = {"in.ppm", "out.ppm", "--overwrite", "--no-sync"};
    all.insert(all.end(), more.begin(), more.end());
    const ProcessResult result = Run(all);
    EXPECT_EQ(result.exit, 0) << result.err;
    all.insert(all.end(), {"--memory", "1"});
    const std::string refusal = Run(all).err;
    const auto at = refusal.find("pixels needs ");
    ASSERT_NE(at, std::string::npos) << refusal;
    const std::string number = refusal.substr(at + 13);
    const bool isGibi = number.find('G') < number.find('M');
    const auto counted = static_cast<std::int64_t>(std::stod(number) * (isGibi ? 1 << 30 : 1 << 20));
    constexpr std::int64_t kLibraries = std::int64_t{160} << 20;
    EXPECT_LE(result.mostMemory, counted + kLibraries) << testing::PrintToString(more) << refusal;
  }

  std::int64_t OwnBytes() const {
    return pixelBytes_ * side_ * side_;
  }

  int side_ = 8400;
  std::int64_t pixelBytes_ = 4;  // at 8 bits
  // Libraries and lines, which do not grow with the picture: little beside the largest.
  std::int64_t others_ = std::int64_t{128} << 20;
};

// VBLUR_LARGE_SIDE sets the side in pixels.
TEST_F(LargePictures, TakeTwoTimesTheirBytes) {
  ExpectLittleMemory({});
  ExpectLittleMemory({"--channels", "luminance"});
  const std::string half = std::to_string(side_ / 2);
  ExpectLittleMemory({"--channels", "rgb", "--roi", half + "," + half + ",1000," + half});
}

class LargePicturesOfFloats : public LargePictures {
 protected:
  LargePicturesOfFloats() {
    side_ = 4400;
    pixelBytes_ = 16;
    others_ = std::int64_t{192} << 20;
  }
};

TEST_F(LargePicturesOfFloats, TakeTwoTimesTheirBytes) {
  for (const char* channels : {"rgba", "luminance", "grey"})
    ExpectLittleMemory({"--depth", "32", "--channels", channels});
}

TEST_F(LargePicturesOfFloats, TakeWhatIsCounted) {
  for (const char* channels : {"rgb", "chroma", "grey"})
    ExpectCounted({"--depth", "32", "--blur", "60", "--channels", channels});
}

TEST_F(LargePictures, TakeWhatIsCounted) {
  ExpectCounted({"--channels", "luminance"});
  if (std::getenv("VBLUR_LARGE_SIDE") == nullptr) return;
  ExpectCounted({"--blur", "24"});
  ExpectCounted({"--blur", "720"});
  ExpectCounted({"--blur", "720", "--channels", "u"});
  ExpectCounted({"--channels", "luminance", "--roi", "0,100,2048,60"});
  ExpectCounted({"--proxy", "10,10", "--blur", "400", "--channels", "grey"});
  ExpectCounted({"--blur", "24", "--cpu", "twin"});
  ExpectCounted({"--field", "both", "--blur", "100", "--channels", "rgb"});
  ExpectCounted({"--blank-cropped", "on", "--blur", "24"});
}

}  // namespace
}  // namespace vblur::cli
