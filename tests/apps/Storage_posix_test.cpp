#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class StorageOfFloats : public ProgramTest {};

TEST_F(StorageOfFloats, IsWhatAJobOrAnOptionAsksFor) {
  MakePicture("in.png");
  folder_.Write("job.json", R"({"input": {"file": "in.png"},
                                "output": {"file": "b.exr", "type": "float", "compression": "zip"}})");
  EXPECT_EQ(Run({"job", "job.json", "--no-sync"}).exit, 0);
  EXPECT_EQ(host::ReadPictureInfo(Path("b.exr")).stored.bytes, 4);
  EXPECT_EQ(Run({"job", "job.json", "--overwrite", "--type", "half"}).exit, 0);
  EXPECT_EQ(host::ReadPictureInfo(Path("b.exr")).stored.bytes, 2);
}

}  // namespace
}  // namespace vblur::cli
