#include "host/viewer/LiveView.h"

#include <gtest/gtest.h>

#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

TEST(LiveView, IsRefusedWithoutWindows) {
  EXPECT_EQ(UsageFailureOf([] { RequireLiveView("--window"); }),
            "--window: expected Windows, a view has no window here");
}

}  // namespace
}  // namespace vblur::host
