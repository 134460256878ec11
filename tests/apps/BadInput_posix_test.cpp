// Formats and rights that Windows does not have.
#include <unistd.h>

#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class BadInputHere : public ProgramTest {
 protected:
  BadInputHere() { MakePicture("in.png"); }

  void ExpectUnreadable(const std::string& file, const std::string& why) const {
    ExpectRefusal({"render", file, "out.png"}, 3, file + ": cannot read: " + why);
  }
};

TEST_F(BadInputHere, PicturesWithoutPixelsOrWithTooMany) {
  folder_.Write("huge.ppm", "P6\n60000 60000\n255\n");
  ExpectUnreadable(
      "huge.ppm",
      "60000 x 60000 pixels, 3600000000 in all, expected at most 1000000000; give --max-pixels to allow more");
  std::string targa(18, '\0');
  targa[2] = 2;
  targa[16] = 32;
  folder_.Write("none.tga", targa);
  ExpectUnreadable("none.tga", "it has no pixels (0 x 0 pixels)");
}

TEST_F(BadInputHere, NoRightToWrite) {
  if (::geteuid() == 0) {
    // root may write anywhere, except where the kernel refuses.
    const auto result = Run({"render", "in.png", "/proc/out.png"});
    EXPECT_EQ(result.exit, 4);
    EXPECT_EQ(result.err.rfind("vblur: /proc/out.png: cannot write: ", 0), 0u) << result.err;
    return;
  }
  std::filesystem::create_directory(Path("locked"));
  std::filesystem::permissions(Path("locked"), std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
  ExpectRefusal({"render", "in.png", "locked/out.png"}, 4, "locked/out.png: cannot write: Permission denied");
}

}  // namespace
}  // namespace vblur::cli
