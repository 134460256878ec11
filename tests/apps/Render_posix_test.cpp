// Renders of EXR files, and with limits of the system.
#include <nlohmann/json.hpp>

#include "tests/apps/ProgramTest.h"
#include "tests/support/process/Process_posix.h"

namespace vblur::cli {
namespace {

class RenderHere : public ProgramTest {};

TEST_F(RenderHere, SixteenBitsComeBackFromFloats) {
  MakePicture("in.exr", 20, 10, 16);
  EXPECT_EQ(Run({"render", "in.exr", "out.exr", "--blur", "0"}).exit, 0);
  EXPECT_EQ(Pixels("out.exr", 16), Pixels("in.exr", 16));
}

// The reported loss is that of a picture of one colour.
TEST_F(RenderHere, TheReportedLossIsTrue) {
  host::HostImage flat;
  flat.Reset(16, 4, 600, 4);  // wider than the widest box
  for (std::size_t i = 0; i < host::ComponentCount(flat); ++i)
    host::SetComponent(flat, i, 16000);
  host::PictureWriter().Write(Path("flat.exr"), flat, nullptr, false);
  for (const char* size : {"24", "200", "701"}) {
    EXPECT_EQ(Run({"render", "flat.exr", "out.exr", "--overwrite", "-q", "--depth", "16", "--blur", size}).exit, 0);
    const auto facts = nlohmann::json::parse(Run({"properties", "Blur", "--json", "--size", size}).out);
    const double gain = facts["sizes"][0]["flatGain"];
    EXPECT_NEAR(Pixels("out.exr", 16)[40], 16000 * gain, 8) << size;
  }
}

TEST_F(RenderHere, AFullDiskLeavesTheOldFile) {
  MakePicture("in.png", 200, 200);
  const auto old = folder_.Write("out.png", "old");
  const auto result = Run({"render", "in.png", "out.png", "--overwrite"}, Limited(RLIMIT_FSIZE, 10000));
  EXPECT_EQ(result.exit, 4);
  EXPECT_EQ(result.err, "vblur: out.png: cannot write: File too large\n");
  EXPECT_EQ(host::Bytes(old), "old");
  EXPECT_EQ(host::NamesIn(folder_.path()), (std::set<std::string>{"in.png", "out.png"}));
}

}  // namespace
}  // namespace vblur::cli
