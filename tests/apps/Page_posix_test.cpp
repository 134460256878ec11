#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class PageProgramOutput : public ProgramTest {};

TEST_F(PageProgramOutput, FailsWhereItsOutputGoesNowhere) {
  folder_.Write("job.json", R"({"version": 1, "input": {"file": "none.png"}, "output": {"file": "none/none.png"}})");
  const auto into = [&](const std::string& where) {
    return Process(folder_.path(), {"/bin/sh", "-c", std::string("'") + VBLUR_PROGRAM + "' page job.json " + where})
        .Wait();
  };
  const ProcessResult full = into("> /dev/full");
  EXPECT_EQ(full.exit, 4);
  EXPECT_EQ(full.err, "vblur: cannot write to the standard output: No space left on device\n");
  const ProcessResult closed = into(">&-");
  EXPECT_EQ(closed.exit, 4);
  EXPECT_EQ(closed.err, "vblur: cannot write to the standard output: Bad file descriptor\n");
}

}  // namespace
}  // namespace vblur::cli
