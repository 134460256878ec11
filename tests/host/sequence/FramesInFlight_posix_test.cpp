// The number of files that may be open.
#include "host/sequence/FramesInFlight.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "host/sequence/Machine.h"

namespace vblur::host {
namespace {

TEST(FramesInFlight, CountsTheFilesThatAreOpen) {
  const std::int64_t before = FreeFiles();
  const int opened = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(FreeFiles(), before - 1);
  rlimit limit{};
  ::getrlimit(RLIMIT_NOFILE, &limit);
  const rlimit fewer{limit.rlim_cur - 7, limit.rlim_max};
  ::setrlimit(RLIMIT_NOFILE, &fewer);
  EXPECT_EQ(FreeFiles(), before - 8);
  ::setrlimit(RLIMIT_NOFILE, &limit);
  ::close(opened);
  EXPECT_EQ(FreeFiles(), before);
}

}  // namespace
}  // namespace vblur::host
