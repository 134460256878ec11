// "-" where it is a terminal, a folder, closed, or has no end.
#include "tests/apps/StreamTest.h"
#include "tests/support/process/Process_posix.h"

namespace vblur::cli {
namespace {

class StandardStreamsHere : public StreamTest {};

// Another controlling terminal's end on a stream.
Process::Setup Terminal(int stream) {
  return [stream] {
    const int main = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (main < 0 || ::grantpt(main) != 0 || ::unlockpt(main) != 0) ::_exit(99);
    ::dup2(::open(::ptsname(main), O_RDWR | O_NOCTTY), stream);
  };
}

TEST_F(StandardStreamsHere, AnInputThatCannotBeReadIsNamed) {
  const std::string cannot = "standard input: cannot read: ";
  for (const char* output : {"-", "out.png"}) {
    const std::vector<std::string> render{"render", "-", output};
    ExpectOneLine(Run(render, From(".")), 3, cannot + "Is a directory");
    ExpectOneLine(Run(render, Without(STDIN_FILENO)), 3,
                  cannot + "it is closed, or not open for reading; a picture was expected");
    ExpectOneLine(Run(render, Terminal(STDIN_FILENO)), 3, cannot + "it is a terminal, a picture was expected");
  }
  ExpectOneLine(Run({"job", "-"}, Without(STDIN_FILENO)), 3,
                "standard input: cannot read the job file: it is closed, or not open for reading");
  EXPECT_FALSE(Exists("out.png"));
}

TEST_F(StandardStreamsHere, AnInputWithoutAnEndIsRefused) {
  ExpectOneLine(Pipe("/dev/zero", "- - --memory 1M"), 3,
                "standard input: cannot read: "
                "more than the 1048576 bytes that are allowed; give --memory to allow more");
}

TEST_F(StandardStreamsHere, NeedAFolderForTemporaryFiles) {
  const Environment none("TMPDIR", "/nowhere/at/all");
  const std::string why = "there is no folder for temporary files (TMPDIR): No such file or directory";
  ExpectOneLine(Run({"-", "out.png"}, From("in.png")), 3, "standard input: cannot read: " + why);
  ExpectOneLine(Run({"in.png", "-"}), 4, "standard output: cannot write: " + why);
}

TEST_F(StandardStreamsHere, OutputsThatTakeNoPictureAreTold) {
  const std::string cannot = "standard output: cannot write: ";
  const auto terminal = Run({"in.png", "-"}, Terminal(STDOUT_FILENO));
  EXPECT_EQ(terminal.exit, 4);
  EXPECT_EQ(terminal.err, "vblur: " + cannot + "it is a terminal, a file or a pipe was expected\n");
  ExpectOneLine(Run({"in.png", "-"}, Into(STDOUT_FILENO, "/dev/full")), 4, cannot + "No space left on device");
  ExpectOneLine(Run({"in.png", "-"}, Without(STDOUT_FILENO)), 4, cannot + "Bad file descriptor");
}

TEST_F(StandardStreamsHere, AReaderWhoLeavesEndsItInOneLine) {
  MakePicture("in.png", 600, 400);
  const auto breakPipe = [] {
    int ends[2];
    if (::pipe(ends) != 0) return;
    ::dup2(ends[1], STDOUT_FILENO);
    ::close(ends[0]);
    ::close(ends[1]);
  };
  ExpectOneLine(Run({"in.png", "-"}, breakPipe), 128 + SIGPIPE, "standard output: cannot write: Broken pipe");
  const auto ignoring = [&] {
    ::signal(SIGPIPE, SIG_IGN);
    breakPipe();
  };
  ExpectOneLine(Run({"in.png", "-"}, ignoring), 4, "standard output: cannot write: Broken pipe");
}

// Nothing comes, nothing ends.
TEST_F(StandardStreamsHere, WaitingForTheInputCanBeInterrupted) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  Process program(folder_.path(), Command({"-", "out.png"}), [&] { ::dup2(ends[0], STDIN_FILENO); });
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  const auto start = std::chrono::steady_clock::now();
  program.Send(SIGINT);
  const auto result = program.Wait();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1000));
  EXPECT_EQ(result.exit, 130);
  EXPECT_EQ(result.err, "vblur: interrupted\n");
  ::close(ends[0]);
  ::close(ends[1]);
}

}  // namespace
}  // namespace vblur::cli
