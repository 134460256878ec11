// A pipeline where the system starts fewer threads than it asks for.
#include "host/sequence/FramePipeline.h"

#include <atomic>
#include <fstream>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/host/sequence/IdleStages.h"

namespace vblur::host {
namespace {

// Without address space for the stacks of threads.
TEST(FramePipeline, WorksWithTheThreadsThatTheSystemStarts) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "sanitizers end a process without memory";
#endif
  constexpr std::size_t kSlots = 64;
  for (const std::size_t stackMebi : {8u, 1024u}) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      pthread_attr_t attributes;
      ::pthread_attr_init(&attributes);
      ::pthread_attr_setstacksize(&attributes, stackMebi << 20);
      ::pthread_setattr_default_np(&attributes);
      std::size_t pages = 0;
      std::ifstream("/proc/self/statm") >> pages;
      const rlim_t most = pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) + (64u << 20);
      const rlimit limit{most, most};
      ::setrlimit(RLIMIT_AS, &limit);
      std::atomic<int> written = 0;
      FrameStages stages = IdleStages();
      stages.write = [&](std::size_t, std::int64_t) { ++written; };
      RunFramePipeline(2, kSlots, 50, stages);
      ::_exit(written == 50 ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << stackMebi << " MiB: " << status;
  }
}

}  // namespace
}  // namespace vblur::host
