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

  // At 8 bits, for which the picture has 4 bytes a pixel.
  void ExpectLittleMemory(std::vector<std::string> more) const {
    std::vector<std::string> all = {"render",        "in.ppm", "out.tif", "--overwrite", "--no-sync",
                                    "--compression", "none",   "--blur",  "24"};
    all.insert(all.end(), more.begin(), more.end());
    const ProcessResult result = Run(all);
    EXPECT_EQ(result.exit, 0) << result.err;
    const std::int64_t own = std::int64_t{4} * side_ * side_;
    EXPECT_LE(result.mostMemory, own * 22 / 10 + others_) << testing::PrintToString(more);
    // What was measured held the pictures.
    EXPECT_GT(result.mostMemory, own * 2);
  }

  int side_ = 8400;
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

}  // namespace
}  // namespace vblur::cli
