// The server when memory runs out while an object is created.
#include <functional>

#include <gtest/gtest.h>

#include "platform/ComPtr.h"
#include "platform/IDSImageEffect.h"
#include "platform/IDSProperties.h"
#include "tests/support/SharedLibrary.h"
#include "tests/support/memory/RefusedMemory.h"

namespace vblur {
namespace {

class ServerMemory : public testing::Test {
 protected:
  static constexpr GUID kEffect = MakeGuid("{9D2E2FA1-AE89-11D5-9414-0800690F2F3F}");
  static constexpr GUID kTool = MakeGuid("{0DDF6A46-E387-49E6-A334-827E9F4CB919}");

  ServerMemory() {
    getClassObject = library_.Find<DllGetClassObjectFunction>("DllGetClassObject");
    canUnload = library_.Find<DllCanUnloadNowFunction>("DllCanUnloadNow");
  }

  ComPtr<IClassFactory> Factory(const GUID& clsid) const {
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(getClassObject(clsid, IClassFactory::kIid, factory.Receive()), kOk);
    return factory;
  }

  // Repeats the call with each of its allocations refused in turn; returns how many there were.
  static int RefuseEach(const std::function<HRESULT(void**)>& make) {
    for (int granted = 0;; ++granted) {
      ComPtr<IUnknown> object;
      HRESULT result = kOk;
      bool refused = false;
      {
        const RefusedMemory refusal(granted);
        result = make(object.Receive());
        refused = RefusedMemory::HasRefused();
      }
      if (!refused) {
        EXPECT_EQ(result, kOk);
        return granted;
      }
      EXPECT_EQ(result, kOutOfMemory) << granted;
      EXPECT_FALSE(object) << granted;
    }
  }

  test::SharedLibrary library_{VBLUR_SERVER};
  DllGetClassObjectFunction* getClassObject = nullptr;
  DllCanUnloadNowFunction* canUnload = nullptr;
};

TEST_F(ServerMemory, LeavesNoFactoryBehind) {
  Factory(kEffect);
  EXPECT_EQ(RefuseEach([&](void** result) { return getClassObject(kEffect, IUnknown::kIid, result); }), 1);
  EXPECT_EQ(canUnload(), kOk);
}

TEST_F(ServerMemory, LeavesNoEffectBehind) {
  auto factory = Factory(kEffect);
  EXPECT_GE(RefuseEach([&](void** result) { return factory->CreateInstance(nullptr, IUnknown::kIid, result); }), 1);
  factory.reset();
  EXPECT_EQ(canUnload(), kOk);
}

TEST_F(ServerMemory, LeavesNoCloneBehind) {
  auto factory = Factory(kEffect);
  ComPtr<IDSImageEffect> effect;
  ASSERT_EQ(factory->CreateInstance(nullptr, IDSImageEffect::kIid, effect.Receive()), kOk);
  factory.reset();
  // A curve to copy, so that a clone has more to allocate than itself.
  DSCurve curve{{{0.0, 1.0}, {10.0, 2.0}}, DSInterpolation::Linear};
  ASSERT_EQ(effect.As<IDSProperties>()->PutCurve(MakeGuid("{9D2E3005-AE89-11D5-9414-0800690F2F3F}"), curve), kOk);
  EXPECT_GE(RefuseEach([&](void** result) { return effect->Clone(IUnknown::kIid, result); }), 3);
  effect.reset();
  EXPECT_EQ(canUnload(), kOk);
}

TEST_F(ServerMemory, LeavesNoViewerToolBehind) {
  auto factory = Factory(kTool);
  EXPECT_GE(RefuseEach([&](void** result) { return factory->CreateInstance(nullptr, IUnknown::kIid, result); }), 2);
  factory.reset();
  EXPECT_EQ(canUnload(), kOk);
}

}  // namespace
}  // namespace vblur
