// The server library through its four entry points.
#include <cstdio>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ComPtr.h"
#include "platform/IDSImageEffect.h"
#include "platform/IDSProperties.h"
#include "platform/Viewer.h"
#include "sdk/effects/Catalogue.h"
#include "tests/support/SharedLibrary.h"

namespace vblur {
namespace {

constexpr GUID kBlurClass = MakeGuid("{9D2E2FA1-AE89-11D5-9414-0800690F2F3F}");
constexpr GUID kViewerToolClass = MakeGuid("{0DDF6A46-E387-49E6-A334-827E9F4CB919}");
// In the order of registration, with the string ids of their descriptions.
struct Entry {
  GUID clsid;
  std::int32_t description;
  std::u16string text;
};
const std::vector<Entry> kClasses = {
    {kBlurClass, 2, u"Halvern's Blur and Sharpen Effect"},
    {MakeGuid("{7F572B51-C942-43E9-8352-562610995E73}"), 4, u"V_Blur's main PPG"},
    {MakeGuid("{65F6258C-4AB1-4D6F-BE90-C874FD7A1049}"), 6, u"V_Blur's main PPG"},
    {MakeGuid("{273EAE83-672E-4EDD-9552-00EDDE574A63}"), 5499, u"Transition PPG for Halvern DS Transitions"},
    {MakeGuid("{0DDF6A46-E387-49E6-A334-827E9F4CB919}"), 1071, u""},
    {MakeGuid("{4D8CFEBD-D799-406D-B30D-C882AFDB9B51}"), 8, u"Help and Copyright Property Page for V_Blur"},
    {MakeGuid("{9AF03A9A-ED25-4C86-AB7F-8CB19CFC6294}"), 4997, u"V_Wibble's main PPG (with edge methods)"},
};

// Records the calls and fails for the classes in `failing`.
class RecordingCatalogue : public host::Catalogue {
 public:
  HRESULT AddClass(const GUID& clsid, HMODULE module, std::int32_t description) override {
    calls.push_back(clsid);
    descriptions.push_back(description);
    if (failing.contains(clsid)) return resultOf(clsid);
    return Catalogue::AddClass(clsid, module, description);
  }
  HRESULT RemoveClass(const GUID& clsid) override {
    calls.push_back(clsid);
    return failing.contains(clsid) ? resultOf(clsid) : kOk;
  }
  HRESULT AddFamilies(const host::RegisteredFamilies& entry) override {
    ++familyCalls;
    return failFamilies ? kFamiliesFailed : Catalogue::AddFamilies(entry);
  }
  HRESULT RemoveFamilies(const GUID&) override {
    ++familyCalls;
    return failFamilies ? kFamiliesFailed : kOk;
  }

  // A distinct failure per class, by its place in the table.
  static HRESULT resultOf(const GUID& clsid) {
    for (std::size_t i = 0; i < kClasses.size(); ++i) {
      if (kClasses[i].clsid == clsid) return -100 - static_cast<HRESULT>(i);
    }
    return -1;
  }
  static constexpr HRESULT kFamiliesFailed = -200;

  std::vector<GUID> calls;
  std::vector<std::int32_t> descriptions;
  std::set<GUID> failing;
  bool failFamilies = false;
  int familyCalls = 0;
};

class ServerEntryPoints : public testing::Test {
 protected:
  ServerEntryPoints() {
    getClassObject = Find<DllGetClassObjectFunction>("DllGetClassObject");
    canUnload = Find<DllCanUnloadNowFunction>("DllCanUnloadNow");
    enter = Find<DllRegisterServerFunction>("DllRegisterServer");
    leave = Find<DllUnregisterServerFunction>("DllUnregisterServer");
    host::UseCatalogue(&catalogue);
  }
  ~ServerEntryPoints() override {
    host::UseCatalogue(nullptr);
    EXPECT_EQ(canUnload(), kOk) << "something is still alive";
  }

  template <class Function>
  Function* Find(const char* name) const {
    auto* const found = library_.Find<Function>(name);
    EXPECT_NE(found, nullptr) << name;
    return found;
  }

  ComPtr<IClassFactory> Factory() const {
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(getClassObject(kBlurClass, IClassFactory::kIid, factory.Receive()), kOk);
    return factory;
  }

  test::SharedLibrary library_{VBLUR_SERVER};
  DllGetClassObjectFunction* getClassObject = nullptr;
  DllCanUnloadNowFunction* canUnload = nullptr;
  DllRegisterServerFunction* enter = nullptr;
  DllUnregisterServerFunction* leave = nullptr;
  RecordingCatalogue catalogue;
};

#ifndef _WIN32
TEST_F(ServerEntryPoints, ExportsItsFourEntryPointsAndNothingElse) {
  std::FILE* const names = ::popen(VBLUR_NM " -D --defined-only " VBLUR_SERVER, "r");
  ASSERT_NE(names, nullptr);
  std::set<std::string> exported;
  char line[512];
  while (std::fgets(line, sizeof line, names) != nullptr) {
    const std::string text(line);
    exported.insert(text.substr(text.rfind(' ') + 1, text.size() - text.rfind(' ') - 2));
  }
  EXPECT_EQ(::pclose(names), 0);
  EXPECT_EQ(exported, (std::set<std::string>{"DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer",
                                             "DllUnregisterServer"}));
}
#endif

TEST_F(ServerEntryPoints, RefusesUnknownClasses) {
  int marker = 0;
  void* result = &marker;
  EXPECT_EQ(getClassObject(MakeGuid("{00000000-0000-0000-0000-000000000001}"), IClassFactory::kIid, &result),
            kNoSuchClass);
  EXPECT_EQ(result, nullptr);
  EXPECT_EQ(getClassObject(kBlurClass, IClassFactory::kIid, nullptr), kNullPointer);
}

TEST_F(ServerEntryPoints, MakesAnObjectOfEachClassAndCountsIt) {
  for (const auto& known : kClasses) {
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(getClassObject(known.clsid, IClassFactory::kIid, factory.Receive()), kOk) << known.description;
    ComPtr<IUnknown> object;
    ASSERT_EQ(factory->CreateInstance(nullptr, IUnknown::kIid, object.Receive()), kOk) << known.description;
    ComPtr<IUnknown> inner;
    EXPECT_EQ(factory->CreateInstance(object.get(), IUnknown::kIid, inner.Receive()), kNoAggregation);
    EXPECT_FALSE(inner);
    factory.reset();
    EXPECT_EQ(canUnload(), kFalse) << "the object alone keeps the server, class " << known.description;
    object.reset();
    EXPECT_EQ(canUnload(), kOk) << known.description;
  }
}

TEST_F(ServerEntryPoints, AFactoryAskedForAnUnknownInterfaceIsReleased) {
  int marker = 0;
  void* result = &marker;
  EXPECT_EQ(getClassObject(kBlurClass, IDSImageEffect::kIid, &result), kNoInterface);
  EXPECT_EQ(result, nullptr);
  EXPECT_EQ(canUnload(), kOk);
}

TEST_F(ServerEntryPoints, StaysLoadedWhileAFactoryALockOrAnEffectLives) {
  EXPECT_EQ(canUnload(), kOk);
  auto factory = Factory();
  EXPECT_EQ(canUnload(), kFalse);
  ComPtr<IDSImageEffect> effect;
  EXPECT_EQ(factory->CreateInstance(nullptr, IDSImageEffect::kIid, effect.Receive()), kOk);
  EXPECT_EQ(factory->LockServer(true), kOk);
  EXPECT_EQ(factory->LockServer(true), kOk);
  EXPECT_EQ(factory->LockServer(false), kOk);
  effect.reset();
  auto again = Factory();
  factory.reset();
  EXPECT_EQ(canUnload(), kFalse);
  EXPECT_EQ(again->LockServer(false), kOk);
  EXPECT_EQ(again->CreateInstance(nullptr, IDSImageEffect::kIid, effect.Receive()), kOk);
  again.reset();
  EXPECT_EQ(canUnload(), kFalse) << "an effect lives";
  effect.reset();
  EXPECT_EQ(canUnload(), kOk);
}

TEST_F(ServerEntryPoints, StaysLoadedWhileALockAloneLives) {
  auto factory = Factory();
  EXPECT_EQ(factory->LockServer(true), kOk);
  factory.reset();
  EXPECT_EQ(canUnload(), kFalse);
  factory = Factory();
  EXPECT_EQ(factory->LockServer(false), kOk);
  factory.reset();
  EXPECT_EQ(canUnload(), kOk);
}

TEST_F(ServerEntryPoints, StaysLoadedWhileAFactoryAloneLives) {
  auto factory = Factory();
  EXPECT_EQ(canUnload(), kFalse);
  factory.reset();
  EXPECT_EQ(canUnload(), kOk);
}

TEST_F(ServerEntryPoints, MakesTheViewerToolAndStaysLoadedWhileItLives) {
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(getClassObject(kViewerToolClass, IClassFactory::kIid, factory.Receive()), kOk);
  ComPtr<IViewerLayer> tool;
  EXPECT_EQ(factory->CreateInstance(nullptr, IViewerLayer::kIid, tool.Receive()), kOk);
  EXPECT_TRUE(tool.As<IViewerEventSink>());
  void* object = nullptr;
  EXPECT_EQ(tool->QueryInterface(kViewerToolClass, &object), kOk) << "the object itself";
  EXPECT_NE(object, nullptr);
  tool->Release();
  factory.reset();
  EXPECT_EQ(canUnload(), kFalse) << "the tool lives";
  tool.reset();
  EXPECT_EQ(canUnload(), kOk);
}

TEST_F(ServerEntryPoints, FactoriesAnswerForTheirInterfaces) {
  const auto factory = Factory();
  EXPECT_EQ(factory->QueryInterface(IUnknown::kIid, nullptr), kNullPointer);
  EXPECT_EQ(factory.As<IUnknown>().get(), static_cast<IUnknown*>(factory.get()));
  int marker = 0;
  void* result = &marker;
  EXPECT_EQ(factory->QueryInterface(IDSProperties::kIid, &result), kNoInterface);
  EXPECT_EQ(result, nullptr);
  EXPECT_EQ(factory->AddRef(), 2u);
  EXPECT_EQ(factory->Release(), 1u);
}

#ifndef _WIN32
// There the system has apartments: ServerComponents_windows_test.cpp.
TEST_F(ServerEntryPoints, FactoriesMayBeCalledFromAnyThread) {
  const auto factory = Factory();
  const auto marshal = factory.As<IMarshal>();
  ASSERT_TRUE(marshal);
  EXPECT_EQ(factory.As<IMarshal>().get(), marshal.get()) << "made once";
  ComPtr<IClassFactory> other;
  EXPECT_EQ(marshal->UnmarshalDirect(IClassFactory::kIid, other.Receive()), kOk);
  EXPECT_EQ(other.get(), factory.get());
}
#endif

TEST_F(ServerEntryPoints, NothingIsMadePartOfAnotherObject) {
  const auto factory = Factory();
  int marker = 0;
  void* result = &marker;
  EXPECT_EQ(factory->CreateInstance(factory.get(), IDSImageEffect::kIid, &result), kNoAggregation);
  EXPECT_EQ(result, nullptr);
  EXPECT_EQ(factory->CreateInstance(nullptr, IDSImageEffect::kIid, nullptr), kNullPointer);
  EXPECT_EQ(factory->CreateInstance(nullptr, IClassFactory::kIid, &result), kNoInterface);
  EXPECT_EQ(result, nullptr);
}

TEST_F(ServerEntryPoints, MakesEffectsForManyThreadsAtOnce) {
  const auto factory = Factory();
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 200; ++i) {
        ComPtr<IDSImageEffect> effect;
        ASSERT_EQ(factory->CreateInstance(nullptr, IDSImageEffect::kIid, effect.Receive()), kOk);
        ComPtr<IDSImageEffect> clone;
        ASSERT_EQ(effect->Clone(IDSImageEffect::kIid, clone.Receive()), kOk);
        ASSERT_TRUE(factory.As<IMarshal>());
        const auto own = Factory();
        ASSERT_TRUE(own);
        factory->LockServer(true);
        factory->LockServer(false);
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
}

// Threads ask for factories while others create tools.
TEST_F(ServerEntryPoints, MakesViewerToolsForManyThreadsAtOnce) {
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 50; ++i) {
        ComPtr<IClassFactory> factory;
        ASSERT_EQ(getClassObject(kViewerToolClass, IClassFactory::kIid, factory.Receive()), kOk);
        ComPtr<IViewerLayer> tool;
        ASSERT_EQ(factory->CreateInstance(nullptr, IViewerLayer::kIid, tool.Receive()), kOk);
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
}

TEST_F(ServerEntryPoints, RegistersItsClassesAndTheEffectsFamilies) {
  ASSERT_EQ(enter(), kOk);
  const auto classes = catalogue.Classes();
  ASSERT_EQ(classes.size(), kClasses.size());
  for (std::size_t i = 0; i < kClasses.size(); ++i) {
    EXPECT_EQ(catalogue.calls[i], kClasses[i].clsid) << i;
    EXPECT_EQ(catalogue.descriptions[i], kClasses[i].description) << i;
    EXPECT_EQ(classes[i].description, kClasses[i].text) << i;
  }
  const std::vector<GUID> families = {
      MakeGuid("{183E3834-D79D-11D0-A7AE-00A0C9068107}"), MakeGuid("{AE0D7C31-95AA-11D0-B685-00A024191AE0}"),
      MakeGuid("{61054A80-9662-11D0-B685-00A024191AE0}"), MakeGuid("{AE0D7C40-95AA-11D0-B685-00A024191AE0}"),
      MakeGuid("{95F7E8A0-8B84-11D1-94A3-00A0C911C625}")};
  for (const GUID& family : families) {
    const auto effects = catalogue.EffectsOf(family);
    ASSERT_EQ(effects.size(), 1u);
    EXPECT_EQ(effects[0].clsid, kBlurClass);
    EXPECT_EQ(effects[0].families, families);
    EXPECT_EQ(effects[0].kind, 1);
    EXPECT_EQ(effects[0].name, u"V_Blur");
  }
  EXPECT_TRUE(catalogue.EffectsOf(MakeGuid("{28610EB3-AECA-11D1-BFAD-0800368E7203}")).empty());
}

TEST_F(ServerEntryPoints, ItsModuleHasTextsPicturesAndDialogs) {
  ASSERT_EQ(enter(), kOk);
  const HMODULE module = catalogue.Classes().at(0).module;
  char16_t text[64];
  EXPECT_EQ(LoadStringW(module, 5498, text, 64), 10);
  EXPECT_EQ(std::u16string(text), u"Transition");
  EXPECT_NE(LoadBitmapW(module, 102), nullptr);
#ifndef _WIN32
  for (const std::int32_t dialog : {1, 2, 3, 50, 52})
    EXPECT_NE(FindDialog(module, dialog), nullptr) << dialog;
  EXPECT_EQ(FindDialog(module, 51), nullptr);
#endif
}

TEST_F(ServerEntryPoints, RegistrationStopsAtTheFirstFailure) {
  catalogue.failing = {kClasses[3].clsid, kClasses[5].clsid};
  EXPECT_EQ(enter(), -103);
  EXPECT_EQ(catalogue.calls.size(), 4u);
  EXPECT_EQ(catalogue.familyCalls, 0);
  catalogue.failing.clear();
  catalogue.failFamilies = true;
  EXPECT_EQ(enter(), RecordingCatalogue::kFamiliesFailed);
}

TEST_F(ServerEntryPoints, UnregistrationContinuesAndReportsTheLastRegisteredFailure) {
  EXPECT_EQ(leave(), kOk);
  ASSERT_EQ(catalogue.calls.size(), kClasses.size());
  for (std::size_t i = 0; i < kClasses.size(); ++i)
    EXPECT_EQ(catalogue.calls[i], kClasses[i].clsid) << i;
  for (std::size_t i = 0; i < kClasses.size(); ++i) {
    // All earlier classes fail too: the last registered one is reported.
    catalogue.failing.insert(kClasses[i].clsid);
    catalogue.calls.clear();
    EXPECT_EQ(leave(), -100 - static_cast<HRESULT>(i));
    EXPECT_EQ(catalogue.calls.size(), kClasses.size()) << "a failure stops nothing";
  }
  catalogue.failFamilies = true;
  EXPECT_EQ(leave(), RecordingCatalogue::kFamiliesFailed);
  EXPECT_EQ(catalogue.familyCalls, 9);
}

}  // namespace
}  // namespace vblur
