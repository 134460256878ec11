// Which server the stand-in for COM asks for an object. On Windows the system chooses.
#include <gtest/gtest.h>

#include "host/hosted/EffectServer.h"
#include "platform/ComPtr.h"
#include "platform/IDSImageEffect.h"
#include "sdk/effects/Catalogue.h"
#include "sdk/effects/ClassObjects.h"

namespace vblur::host {
namespace {

constexpr GUID kBlurClass = MakeGuid("{9D2E2FA1-AE89-11D5-9414-0800690F2F3F}");

HRESULT CreateEffectByClass(ComPtr<IDSImageEffect>& effect, std::uint32_t context = CLSCTX_INPROC_SERVER) {
  return CoCreateInstance(kBlurClass, nullptr, context, IDSImageEffect::kIid, effect.Receive());
}

// Claims the class; asked only when newer servers lack it.
HRESULT FailingServer(const GUID& clsid, const GUID&, void** result) {
  *result = nullptr;
  return clsid == kBlurClass ? kOutOfMemory : kNoSuchClass;
}

TEST(EffectServerClasses, OffersItsClassesToTheProcessWhileItIsLoaded) {
  Catalogue catalogue;
  UseCatalogue(&catalogue);
  ComPtr<IDSImageEffect> effect;
  AddServer(&FailingServer);
  EXPECT_EQ(CreateEffectByClass(effect), kOutOfMemory);
  {
    const EffectServer server(DefaultServerFile());
    { const EffectServer again(DefaultServerFile()); }
    EXPECT_EQ(CreateEffectByClass(effect), kOk);
    ASSERT_TRUE(effect);
    EXPECT_EQ(effect->IsFormatSupported(MFIF_RGBA_S2_14), kOk);
    effect.reset();
    EXPECT_EQ(CreateEffectByClass(effect, 4), kNoSuchClass);
    EXPECT_FALSE(effect);
    EXPECT_EQ(CoCreateInstance(kBlurClass, nullptr, CLSCTX_INPROC_SERVER, IClassFactory::kIid, effect.Receive()),
              kNoInterface);
    EXPECT_EQ(CoCreateInstance(GUID{}, nullptr, CLSCTX_INPROC_SERVER, IUnknown::kIid, effect.Receive()), kNoSuchClass);
    EXPECT_EQ(CoCreateInstance(kBlurClass, nullptr, CLSCTX_INPROC_SERVER, IUnknown::kIid, nullptr), kNullPointer);
  }
  EXPECT_EQ(CreateEffectByClass(effect), kOutOfMemory);
  RemoveServer(&FailingServer);
  UseCatalogue(nullptr);
}

TEST(EffectServerClasses, OfTwoThatKnowAClassTheNewerIsAsked) {
  const EffectServer server(DefaultServerFile());
  ComPtr<IDSImageEffect> effect;
  AddServer(&FailingServer);
  EXPECT_EQ(CreateEffectByClass(effect), kOutOfMemory);
  RemoveServer(&FailingServer);
  EXPECT_EQ(CreateEffectByClass(effect), kOk);
}

}  // namespace
}  // namespace vblur::host
