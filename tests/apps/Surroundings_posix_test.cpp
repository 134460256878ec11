// What the program finds when it is started: threads, streams, links, folders, limits, languages.
#include <cstdlib>

#include "tests/apps/ProgramTest.h"
#include "tests/support/process/Process_posix.h"

namespace vblur::cli {
namespace {

class Surroundings : public ProgramTest {
 protected:
  void SetUp() override { MakePicture("in.png", 300, 200); }

  void ExpectWholeOutput(const std::string& name = "out.png") const {
    EXPECT_EQ(Pixels(name), Pixels("in.png"));
    std::filesystem::remove(Path(name));
  }

  static std::vector<std::string> Copy() { return {"render", "in.png", "out.png", "--blur", "0"}; }
  // With the library of other formats.
  static std::vector<std::string> Full() {
    return {"render", "in.png", "out.png", "--blur", "0", "--pictures", "full"};
  }
};

TEST_F(Surroundings, ThreadsThatCannotStartEndInOneLine) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer has to be loaded first";
#endif
  const Environment preload("LD_PRELOAD", VBLUR_THREADS_FAIL);
  for (int failing = 1; failing <= 6; ++failing) {
    const Environment number("FAILING_THREAD", std::to_string(failing));
    // Plain PNG files alone take no threads.
    const auto result = Run(Full());
    EXPECT_EQ(result.exit, 1) << failing;
    EXPECT_TRUE(
        result.err.starts_with("vblur: the system starts no more threads (Resource temporarily unavailable), "
                               "the picture library needs "))
        << result.err;
    EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
    EXPECT_EQ(host::NamesIn(folder_.path()), std::set<std::string>{"in.png"});
  }
}

// They are packed by the calling thread then.
TEST_F(Surroundings, LargePngFilesNeedNoThreads) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer has to be loaded first";
#endif
  ASSERT_EQ(Run({"chart", "large.png", "--size", "900x700"}).exit, 0);
  ASSERT_EQ(Run({"render", "large.png", "whole.png", "--blur", "3"}).exit, 0);
  const Environment preload("LD_PRELOAD", VBLUR_THREADS_FAIL);
  for (int failing = 1; failing <= 6; ++failing) {
    const Environment number("FAILING_THREAD", std::to_string(failing));
    const auto result = Run({"render", "large.png", "out.png", "--blur", "3", "--overwrite"});
    EXPECT_EQ(result.exit, 0) << failing << ' ' << result.err;
    EXPECT_EQ(Pixels("out.png"), Pixels("whole.png")) << failing;
  }
}

TEST_F(Surroundings, ClosedStreamsHinderNothing) {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    EXPECT_EQ(Run(Copy(), Without(stream)).exit, 0) << stream;
    ExpectWholeOutput();
  }
  const auto none = [] {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
      ::close(stream);
  };
  EXPECT_EQ(Run(Copy(), none).exit, 0);
  ExpectWholeOutput();
}

TEST_F(Surroundings, OutputThatCannotBeWrittenIsAFailure) {
  for (const auto& arguments :
       {std::vector<std::string>{"properties"}, {"properties", "--json"}, {"--help"}, {"--version"}}) {
    const auto full = Run(arguments, Into(STDOUT_FILENO, "/dev/full"));
    EXPECT_EQ(full.exit, 4);
    EXPECT_EQ(full.err, "vblur: cannot write to the standard output: No space left on device\n");
    const auto closed = Run(arguments, Without(STDOUT_FILENO));
    EXPECT_EQ(closed.exit, 4);
    EXPECT_EQ(closed.err, "vblur: cannot write to the standard output: Bad file descriptor\n");
  }
  // Nothing is written there.
  EXPECT_EQ(Run(Copy(), Into(STDOUT_FILENO, "/dev/full")).exit, 0);
}

// A pipe without a reader.
void BreakPipe(int stream) {
  int ends[2];
  if (::pipe(ends) != 0) return;
  ::dup2(ends[1], stream);
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST_F(Surroundings, ABrokenPipeEndsItQuietly) {
  const auto result = Run({"properties"}, [] { BreakPipe(STDOUT_FILENO); });
  EXPECT_EQ(result.signal, SIGPIPE);
  EXPECT_EQ(result.err, "");
  const auto ignoring = Run({"properties"}, [] {
    ::signal(SIGPIPE, SIG_IGN);
    BreakPipe(STDOUT_FILENO);
  });
  EXPECT_EQ(ignoring.exit, 128 + SIGPIPE);
  EXPECT_EQ(ignoring.err, "");
}

TEST_F(Surroundings, ABrokenPipeOfProgressLeavesNoPart) {
  const auto result = Run({"render", "in.png", "out.%04d.png", "--frames", "1-300", "--progress", "json"},
                          [] { BreakPipe(STDERR_FILENO); });
  EXPECT_EQ(result.exit, 128 + SIGPIPE);
  EXPECT_FALSE(Exists("out.0300.png"));
  for (const std::string& name : host::NamesIn(folder_.path()))
    EXPECT_EQ(name.find(".part"), std::string::npos) << name;
}

TEST_F(Surroundings, ALinkIsWrittenThrough) {
  std::filesystem::create_directory(Path("elsewhere"));
  std::filesystem::create_symlink("elsewhere/first.png", Path("link.png"));
  std::filesystem::create_symlink("second.png", Path("elsewhere/first.png"));
  EXPECT_EQ(Run({"render", "in.png", "link.png", "--blur", "0"}).exit, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(Path("link.png")));
  EXPECT_TRUE(std::filesystem::is_symlink(Path("elsewhere/first.png")));
  EXPECT_FALSE(std::filesystem::is_symlink(Path("elsewhere/second.png")));
  EXPECT_EQ(Pixels("elsewhere/second.png"), Pixels("in.png"));
}

TEST_F(Surroundings, ALinkThatLeadsNowhereIsRefused) {
  std::filesystem::create_symlink("gone/file.png", Path("link.png"));
  ExpectRefusal({"render", "in.png", "link.png"}, 4, "link.png: cannot write: the folder gone does not exist");
  std::filesystem::create_symlink("b.png", Path("a.png"));
  std::filesystem::create_symlink("a.png", Path("b.png"));
  ExpectRefusal({"render", "in.png", "a.png"}, 4, "a.png: cannot write: its links lead in a circle");
}

TEST_F(Surroundings, AFolderThatTakesNoFilesIsTold) {
  // Nobody may make files there, whoever runs this.
  const auto result = Run({"render", "in.png", "/proc/out.png"});
  EXPECT_EQ(result.exit, 4);
  EXPECT_TRUE(result.err.starts_with("vblur: /proc/out.png: cannot write: ")) << result.err;
  EXPECT_EQ(result.err.find('\n'), result.err.size() - 1);
}

// Where the tests run as root, who may write everywhere, the program runs as nobody.
TEST_F(Surroundings, AFolderThatMayNotBeWrittenIsTold) {
  using std::filesystem::perms;
  const auto all = perms::owner_read | perms::owner_exec | perms::group_read | perms::group_exec | perms::others_read |
                   perms::others_exec;
  std::filesystem::create_directory(Path("closed"));
  for (const char* folder : {".", "closed"})
    std::filesystem::permissions(Path(folder), all);
  const auto result = Run({"render", "in.png", "closed/out.png"}, [] {
    constexpr uid_t kNobody = 65534;
    if (::getuid() == 0 && ::setuid(kNobody) != 0) ::_exit(126);
  });
  std::filesystem::permissions(Path("."), perms::owner_all);
  if (result.exit == 126 || result.exit == 127) GTEST_SKIP() << "nobody may run the program here";
  EXPECT_EQ(result.exit, 4);
  EXPECT_EQ(result.err, "vblur: closed/out.png: cannot write: Permission denied\n");
  EXPECT_TRUE(host::NamesIn(Path("closed")).empty());
}

TEST_F(Surroundings, NeedsNoFolderForTemporaryFiles) {
  const auto result = Run(Copy(), [] { ::setenv("TMPDIR", "/nowhere/at/all", 1); });
  EXPECT_EQ(result.exit, 0) << result.err;
  ExpectWholeOutput();
}

// As many frames are in flight as the open files allow.
TEST_F(Surroundings, EightOpenFilesSuffice) {
  constexpr int kFrames = 12;
  const auto numbered = [](const std::string& name, int frame) { return name + std::to_string(frame) + ".exr"; };
  for (int frame = 1; frame <= kFrames; ++frame)
    MakePicture(numbered("in.", frame), 64, 48, 16);
  // Those that this process has inherited are no business of the program.
  const auto few = [limit = Limited(RLIMIT_NOFILE, 8)] {
    for (int file = 3; file < 256; ++file)
      ::close(file);
    limit.inChild();
  };
  for (const char* asked : {"auto", "1", "12"}) {
    std::vector<std::string> arguments = {"render", "in.%d.exr", "out.%d.exr", "--blur", "0", "--frames", "1-12"};
    if (std::string(asked) != "auto") arguments.insert(arguments.end(), {"--frames-in-flight", asked});
    const auto result = Run(arguments, few);
    EXPECT_EQ(result.exit, 0) << asked << ": " << result.err;
    for (int frame = 1; frame <= kFrames && result.exit == 0; ++frame) {
      EXPECT_EQ(Pixels(numbered("out.", frame), 16), Pixels(numbered("in.", frame), 16)) << frame;
      std::filesystem::remove(Path(numbered("out.", frame)));
    }
  }
}

TEST_F(Surroundings, LittleMemoryEndsInOneLine) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer takes more address space than that";
#endif
  // More for every thread.
  const rlim_t enough = 600 + 100 * std::thread::hardware_concurrency();
  for (const rlim_t mebi : std::vector<rlim_t>{100, 200, 300, 400, 430, 450, 500, 520, 540, 600, enough}) {
    const auto result = Run(Full(), Limited(RLIMIT_AS, mebi << 20));
    if (mebi == 400) {
      EXPECT_EQ(result.err, "vblur: not enough address space, the picture library needs 480 MiB of it\n");
    }
    EXPECT_TRUE(mebi != enough || result.exit == 0) << result.err;
    if (result.exit == 0) {
      ExpectWholeOutput();
      continue;
    }
    // Too little to load libraries or to render with, to read with, to write with.
    EXPECT_TRUE(result.exit == 1 || result.exit == 3 || result.exit == 4) << mebi << " MiB: " << result.exit;
    EXPECT_TRUE(result.err.starts_with("vblur: ")) << result.err;
    EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
    EXPECT_EQ(host::NamesIn(folder_.path()), std::set<std::string>{"in.png"});
  }
}

// Where the system can make it: a language that writes one half as 0,5.
TEST_F(Surroundings, NumbersHavePointsInEveryLanguage) {
  const std::string make = "localedef -i de_DE -f UTF-8 " + Path("de_DE.UTF-8").string() + " >/dev/null 2>&1";
  if (std::system(make.c_str()) != 0) GTEST_SKIP() << "the language cannot be made here";
  const auto points = Run({"properties", "Blur", "--json", "--size", "12.5"});
  const Environment folder("LOCPATH", folder_.path().string());
  const Environment language("LC_ALL", "de_DE.UTF-8");
  const auto result = Run({"properties", "Blur", "--json", "--size", "12.5"});
  EXPECT_EQ(result.out, points.out);
  EXPECT_NE(result.out.find("12.5"), std::string::npos);
  EXPECT_EQ(Run({"render", "in.png", "out.png", "--blur", "2.5", "--save-job", "job.json"}).exit, 0);
  EXPECT_NE(host::Bytes(Path("job.json")).find("2.5"), std::string::npos);
  EXPECT_EQ(Run({"job", "job.json", "--overwrite", "--set", "Blur=0:0.5,4:1.5"}).exit, 0);
}

}  // namespace
}  // namespace vblur::cli
