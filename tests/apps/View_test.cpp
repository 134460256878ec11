// vblur view, as a person calls it.
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class ViewProgram : public ProgramTest {
 protected:
  ViewProgram() {
    MakePicture("in.png", 64, 48);
    folder_.Write("job.json", R"({"version": 1, "input": {"file": "in.png"}, "output": {"file": "out.png"},
                                  "frames": [0, 0], "properties": {"Blur": 10}})");
  }
};

TEST_F(ViewProgram, RefusesWhatItCannotDoBeforeAnythingIsWritten) {
  const auto refuse = [&](std::vector<std::string> more, int exit, const std::string& line) {
    more.insert(more.begin(), {"view", "job.json", "view.png"});
    ExpectRefusal(more, exit, line);
  };
  refuse({"--zoom", "0"}, 2, "--zoom: expected 1/64 to 64, found 0");
  refuse({"--zoom", "65"}, 2, "--zoom: expected 1/64 to 64, found 65");
  refuse({"--size", "0x4"}, 2, "--size: expected at least 1x1, found 0x4");
  refuse({"--frame", "1"}, 2, "frame 1 is not in the job: expected 0 to 0");
  refuse({"--pen", "none.pen"}, 3, "none.pen: cannot read the pen script: No such file or directory");
  refuse({"--save-job", "none/job.json"}, 4, "none/job.json: cannot write: there is no folder \"none\"");
  folder_.Write("a.pen", "snap a.png\nmove 1\n");
  refuse({"--pen", "a.pen"}, 2, "a.pen:2: expected \"move X Y\", found \"move 1\"");
  folder_.Write("b.pen", "snap view.png\n");
  refuse({"--pen", "b.pen"}, 2, "b.pen:1: expected another name, \"view.png\" is written by this run already");
  folder_.Write("c.pen", "snap in.png\n");
  refuse({"--save-job", "job.json"}, 4, "job.json: exists; --overwrite replaces it");
  refuse({"--pen", "c.pen"}, 4, "in.png: exists; --overwrite replaces it");
  ExpectRefusal({"view", "none.json", "view.png"}, 3, "none.json: cannot read the job file: No such file or directory");
}

}  // namespace
}  // namespace vblur::cli
