// Streams that are closed, lead nowhere, or have no reader.
#include "tests/apps/StreamTest.h"

namespace vblur::cli {
namespace {

class StandardStreamsOfWindows : public StreamTest {
 protected:
  static Process::Setup WithoutReader(int stream) {
    Process::Setup setup;
    setup.withoutReader = stream;
    return setup;
  }

  static constexpr int kBrokenPipe = 128 + 13;
};

TEST_F(StandardStreamsOfWindows, ClosedOnesHinderNothing) {
  for (const int stream : {0, 1, 2}) {
    EXPECT_EQ(Run({"render", "in.png", "out.png", "--blur", "0"}, Without(stream)).exit, 0) << stream;
    EXPECT_EQ(Pixels("out.png"), Pixels("in.png"));
    std::filesystem::remove(Path("out.png"));
  }
}

TEST_F(StandardStreamsOfWindows, OutputThatCannotBeWrittenIsAFailure) {
  ExpectOneLine(Run({"properties"}, Without(1)), 4, "cannot write to the standard output: Bad file descriptor");
  ExpectOneLine(Run({"in.png", "-"}, Without(1)), 4, "standard output: cannot write: Bad file descriptor");
  ExpectOneLine(Run({"-", "out.png"}, Without(0)), 3,
                "standard input: cannot read: it is closed, or not open for reading; a picture was expected");
}

TEST_F(StandardStreamsOfWindows, NothingIsAnEmptyInput) {
  ExpectOneLine(Run({"-", "out.png"}, InputFrom("NUL")), 3,
                "standard input: cannot read: it is empty, a picture was expected");
}

TEST_F(StandardStreamsOfWindows, AReaderWhoLeavesEndsIt) {
  const auto text = Run({"properties"}, WithoutReader(1));
  EXPECT_EQ(text.exit, kBrokenPipe);
  EXPECT_EQ(text.err, "");
  ExpectOneLine(Run({"in.png", "-"}, WithoutReader(1)), kBrokenPipe, "standard output: cannot write: Broken pipe");
}

TEST_F(StandardStreamsOfWindows, AReaderOfProgressWhoLeavesGetsNoParts) {
  const auto result =
      Run({"render", "in.png", "out.%04d.png", "--frames", "1-300", "--progress", "json"}, WithoutReader(2));
  EXPECT_EQ(result.exit, kBrokenPipe);
  EXPECT_FALSE(Exists("out.0300.png"));
  EXPECT_FALSE(HasParts());
}

TEST_F(StandardStreamsOfWindows, NeedAFolderForTemporaryFiles) {
  const Environment none("TMP", "C:\\nowhere\\at\\all");
  const auto input = Run({"-", "out.png"}, From("in.png"));
  EXPECT_EQ(input.exit, 3);
  EXPECT_EQ(input.err.find('\n'), input.err.size() - 1) << input.err;
  EXPECT_TRUE(input.err.starts_with("vblur: standard input: cannot read: there is no folder for temporary files"))
      << input.err;
  const auto output = Run({"in.png", "-"});
  EXPECT_EQ(output.exit, 4);
  EXPECT_TRUE(output.err.starts_with("vblur: standard output: cannot write: there is no folder for temporary files"))
      << output.err;
  // Files need none.
  EXPECT_EQ(Run({"in.png", "out.png"}).exit, 0);
}

}  // namespace
}  // namespace vblur::cli
