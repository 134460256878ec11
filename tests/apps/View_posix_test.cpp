#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class ViewProgramWithoutOpenGl : public ProgramTest {};

TEST_F(ViewProgramWithoutOpenGl, SaysWhatIsMissingWhereThereIsNoOpenGl) {
  MakePicture("in.png", 64, 48);
  folder_.Write("job.json", R"({"input": {"file": "in.png"}, "output": {"file": "out.png"}})");
  const Environment noDrivers("__EGL_VENDOR_LIBRARY_DIRS", folder_.path().string());
  const auto before = host::NamesIn(folder_.path());
  const ProcessResult result = Run({"view", "job.json", "view.png"});
  EXPECT_EQ(result.exit, 1);
  EXPECT_EQ(result.err.rfind("vblur: no OpenGL that paints without a window: no display without a surface, ", 0), 0u)
      << result.err;
  EXPECT_EQ(host::NamesIn(folder_.path()), before);
}

}  // namespace
}  // namespace vblur::cli
