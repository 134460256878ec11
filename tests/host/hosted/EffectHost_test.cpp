#include "host/hosted/EffectHost.h"

#include <gtest/gtest.h>

#include "platform/Content.h"
#include "sdk/effects/Content.h"

namespace vblur::host {
namespace {

constexpr const char* kKeys[] = {kProjectUserSizeX, kProjectUserSizeY, kProjectWorldSizeX, kProjectWorldSizeY};

TEST(EffectHost, ReturnsTheProjectSizes) {
  const EffectHost host(ProjectSizes{{720, 486}, {4, 3}});
  const double expected[] = {720, 486, 4, 3};
  for (std::size_t i = 0; i < std::size(kKeys); ++i) {
    double value = -1.0;
    EXPECT_EQ(host.ContentProperty(kKeys[i], value), kOk);
    EXPECT_EQ(value, expected[i]) << kKeys[i];
  }
}

TEST(EffectHost, FailsForUnreadableAndUnknownKeys) {
  double value = -1.0;
  for (const char* key : kKeys)
    EXPECT_EQ(EffectHost(std::nullopt).ContentProperty(key, value), kFailed);
  const EffectHost host(ProjectSizes{{720, 486}, {4, 3}});
  EXPECT_EQ(host.ContentProperty("Project Frame Rate", value), kWrongArgument);
  EXPECT_EQ(host.ContentProperty(nullptr, value), kNullPointer);
  EXPECT_EQ(value, -1.0);
}

TEST(EffectHost, GivesTheContentOfTheOpenProject) {
  const EffectHost first(ProjectSizes{{720, 486}, {720, 480}});
  const EffectHost second(ProjectSizes{{1920, 1080}, {1920, 1080}});
  const EffectHost unreadable(std::nullopt);
  double value = -1.0;
  EXPECT_EQ(DSContentGetProperty(kProjectUserSizeY, value), kFailed);
  {
    const OpenContent open(first);
    EXPECT_EQ(DSContentGetProperty(kProjectUserSizeY, value), kOk);
    EXPECT_EQ(value, 486.0);
    {
      const OpenContent other(second);
      EXPECT_EQ(DSContentGetProperty(kProjectWorldSizeX, value), kOk);
      EXPECT_EQ(value, 1920.0);
    }
    EXPECT_EQ(DSContentGetProperty(kProjectWorldSizeY, value), kOk);
    EXPECT_EQ(value, 480.0);
    EXPECT_EQ(DSContentGetProperty("Something else", value), kWrongArgument);
    EXPECT_EQ(DSContentGetProperty(nullptr, value), kNullPointer);
    UseContent(&unreadable);
    EXPECT_EQ(DSContentGetProperty(kProjectWorldSizeY, value), kFailed);
  }
  EXPECT_EQ(DSContentGetProperty(kProjectUserSizeY, value), kFailed);
  EXPECT_EQ(value, 480.0);
}

}  // namespace
}  // namespace vblur::host
