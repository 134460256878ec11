// The base of the tests of "-": pictures from the standard input and to the standard output.
#pragma once

#include <iterator>
#include <sstream>

#include "tests/apps/ProgramTest.h"

namespace vblur::cli {

class StreamTest : public ProgramTest {
 protected:
  StreamTest() { MakePicture("in.png"); }

  // A setup: the standard input is this file.
  Process::Setup From(const std::string& name) const { return InputFrom(Path(name)); }

  // The same through a pipe, which cannot be read twice.
  ProcessResult Pipe(const std::string& name, const std::string& rest) const {
    Process::Setup setup = From(name);
    setup.isPiped = true;
    std::istringstream words(rest);
    return Run({std::istream_iterator<std::string>(words), {}}, setup);
  }

  void ExpectOneLine(const ProcessResult& result, int exit, const std::string& line) const {
    EXPECT_EQ(result.exit, exit);
    EXPECT_EQ(result.err, "vblur: " + line + "\n");
    EXPECT_EQ(result.out, "");
  }

  std::string Rendered(std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"render", "in.png", "out.png", "--blur", "5", "--overwrite"});
    EXPECT_EQ(Run(options).exit, 0);
    std::string bytes = host::Bytes(Path("out.png"));
    std::filesystem::remove(Path("out.png"));
    return bytes;
  }
};

}  // namespace vblur::cli
