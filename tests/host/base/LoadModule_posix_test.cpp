#include "host/base/LoadModule.h"

#include <gtest/gtest.h>

#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

template <class Call>
std::string RefusalOf(Call call) {
  const auto failure = CaughtFailure(call);
  return failure ? failure->what() : "";
}

TEST(LoadModule, RefusesAModuleOfAnotherVersion) {
  const LoadedModule ours(VBLUR_PICTURES_MODULE, "pictures");
  ours.RequireOurVersion();
  const LoadedModule old(VBLUR_OLD_MODULE, "pictures");
  EXPECT_EQ(RefusalOf([&] { old.RequireOurVersion(); }),
            VBLUR_OLD_MODULE ": cannot load pictures: its version is 0.0.1, expected " VBLUR_VERSION);
  const LoadedModule other(VBLUR_FOREIGN_MODULE, "pictures");
  EXPECT_EQ(RefusalOf([&] { other.RequireOurVersion(); }),
            VBLUR_FOREIGN_MODULE ": cannot load pictures: its version is none, expected " VBLUR_VERSION);
}

TEST(LoadModule, TellsWhatIsMissing) {
  EXPECT_EQ(RefusalOf([] { const LoadedModule none("/none/a.so", "pictures"); }),
            "/none/a.so: cannot load pictures: no such file");
  const LoadedModule old(VBLUR_OLD_MODULE, "pictures");
  EXPECT_EQ(old.Find<void()>("VBlurNone"), nullptr);
  EXPECT_NE(RefusalOf([&] { old.Get<void()>("VBlurNone"); }).find("undefined symbol: VBlurNone"), std::string::npos);
}

}  // namespace
}  // namespace vblur::host
