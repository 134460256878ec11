#include "host/hosted/EffectServer.h"

#include <gtest/gtest.h>

#include "host/hosted/HostedEffect.h"
#include "platform/Content.h"
#include "sdk/effects/Catalogue.h"
#include "sdk/effects/ClassObjects.h"
#include "sdk/effects/Content.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

TEST(EffectServer, IsLoadedMakesEffectsAndIsUnloaded) {
  Catalogue catalogue;
  UseCatalogue(&catalogue);
  {
    const EffectServer server(DefaultServerFile());
    EXPECT_EQ(catalogue.Classes().size(), 7u);
    const auto effect = server.CreateEffect();
    const auto second = server.Factory()();
    ASSERT_TRUE(effect);
    EXPECT_NE(effect.get(), second.get());
    EXPECT_EQ(effect->IsFormatSupported(MFIF_RGBA_S2_14), kOk);
    const EffectServer again(DefaultServerFile());
    EXPECT_TRUE(again.CreateEffect());
  }
  EXPECT_TRUE(catalogue.Classes().empty());
  EXPECT_TRUE(catalogue.EffectsOf(families::kFilter).empty());
  UseCatalogue(nullptr);
}

TEST(EffectServer, RefusesWhatIsNoServer) {
  const ScratchFolder folder;
  const auto refused = [](const std::filesystem::path& file) {
    const auto failure = CaughtFailure([&] { EffectServer{file}; });
    EXPECT_EQ(failure->Code(), ExitCode::CannotRead);
    return std::string(failure->what());
  };
  EXPECT_EQ(refused(folder.path() / "none.so"),
            (folder.path() / "none.so").string() + ": cannot load the effect: no such file");
  const auto text = folder.Write("text.so", "not a library");
  EXPECT_EQ(refused(text).rfind(text.string() + ": cannot load the effect: ", 0), 0u);
  // A library, but without the entry points.
  EXPECT_NE(refused(VBLUR_SDK_EFFECTS).find("it is no server: expected DllGetClassObject"), std::string::npos);
}

}  // namespace
}  // namespace vblur::host
