// Hosts that do what they should not: the effect answers, and neither crashes nor renders memory that is not there.
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ComPtr.h"
#include "platform/IDSImage.h"
#include "platform/IDSImageEffect.h"
#include "platform/IDSProperties.h"
#include "platform/IVBlurFacts.h"
#include "properties/PropertyTable.h"
#include "tests/support/SharedLibrary.h"

namespace vblur {
namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr GUID kUnknown = MakeGuid("{9D2E3005-AE89-11D5-9414-0800690F2FFF}");

struct Picture : IDSImage {
  HRESULT usable = kOk;
  GUID format = MFIF_RGBA_RAW_32;
  DSPixelPair size{64, 64};
  bool hasMemory = true;
  DSWorldPair position;
  DSWorldPair worldSize{64.0, 64.0};
  std::vector<unsigned char> pixels = std::vector<unsigned char>(64 * 64 * 4, 100);

  HRESULT IsUsable() const override { return usable; }
  GUID Format() const override { return format; }
  DSPixelPair Size() const override { return size; }
  void* FirstPixel() const override { return hasMemory ? const_cast<unsigned char*>(pixels.data()) : nullptr; }
  DSWorldPair WorldPosition() const override { return position; }
  DSWorldPair WorldSize() const override { return worldSize; }
};

class ServerMisuse : public testing::Test {
 protected:
  static constexpr GUID kEffect = MakeGuid("{9D2E2FA1-AE89-11D5-9414-0800690F2F3F}");

  ServerMisuse() {
    getClassObject = library_.Find<DllGetClassObjectFunction>("DllGetClassObject");
    EXPECT_EQ(getClassObject(kEffect, IClassFactory::kIid, factory.Receive()), kOk);
    EXPECT_EQ(factory->CreateInstance(nullptr, IDSImageEffect::kIid, effect.Receive()), kOk);
    properties = effect.As<IDSProperties>();
    tagDSImgFxInfo use;
    use.record = kDSImgFxInfoRecord;
    use.family = families::kFilter;
    EXPECT_EQ(effect->GetImageEffectInfo(&use), kOk);
    Set(PropertyId::Blur, 12.0);
  }
  ~ServerMisuse() override {
    properties.reset();
    effect.reset();
    factory.reset();
  }

  HRESULT Set(PropertyId id, double value) { return properties->PutValue(PropertyOf(id).guid, DSVariant::Of(value)); }

  // Renders and says why not; empty when it was rendered.
  std::string Render(double time = 0.0) {
    effect->SetInput(&input);
    effect->SetOutput(&output);
    effect->Verify();
    EXPECT_EQ(effect->RenderFrame(time), kOk);
    const FrameRefusal refusal = effect.As<IVBlurFacts>()->WhyNotRendered();
    if (refusal.reason == nullptr) return "";
    return (refusal.picture == nullptr ? "" : refusal.picture + std::string(" ")) + refusal.reason;
  }

  test::SharedLibrary library_{VBLUR_SERVER};
  DllGetClassObjectFunction* getClassObject = nullptr;
  ComPtr<IClassFactory> factory;
  ComPtr<IDSImageEffect> effect;
  ComPtr<IDSProperties> properties;
  Picture input, output;
};

TEST_F(ServerMisuse, FramesWithoutTheirPicturesAreRefused) {
  EXPECT_EQ(effect->RenderFrame(0.0), kNullPointer);
  effect->SetInput(&input);
  EXPECT_EQ(effect->RenderFrame(0.0), kNullPointer);
  effect->SetInput(nullptr);
  effect->SetOutput(&output);
  EXPECT_LT(effect->Verify(), 0);
  EXPECT_EQ(effect->RenderFrame(0.0), kOk);
  EXPECT_EQ(std::string(effect.As<IVBlurFacts>()->WhyNotRendered().reason), "is missing");
}

TEST_F(ServerMisuse, PicturesThatAreNoneAreTold) {
  const auto with = [this](const std::function<void()>& spoil) {
    input = Picture();
    output = Picture();
    spoil();
    return Render();
  };
  EXPECT_EQ(with([] {}), "");
  EXPECT_EQ(with([this] { input.size.x = 0; }), "input has no pixels");
  EXPECT_EQ(with([this] { input.size.x = -5; }), "input has no pixels");
  EXPECT_EQ(with([this] { input.hasMemory = false; }), "input has no memory");
  EXPECT_EQ(with([this] { output.hasMemory = false; }), "output has no memory");
  EXPECT_EQ(with([this] { input.format = kUnknown; }), "input has an unknown format");
  EXPECT_EQ(with([this] { output.format = kUnknown; }), "output has an unknown format");
  EXPECT_EQ(with([this] { input.usable = kFailed; }), "input cannot be used");
  EXPECT_EQ(with([this] { output.size = {kLeast, kLeast}; }), "output has no pixels");
  EXPECT_EQ(with([this] { input.size = {kMost, kMost}; }), "input lies beyond the pixels that count");
  // The memory is that of 8 bits.
  EXPECT_EQ(with([this] { output.format = MFIF_RGBA_S2_14; }), "input has another format than the output");
  EXPECT_EQ(with([this] { input.format = MFIF_MASK_8; }), "input has another format than the output");
}

TEST_F(ServerMisuse, SizesMayDifferAndPicturesMayBeTheSame) {
  output.size = {32, 64};
  EXPECT_EQ(Render(), "");
  output.size = {200, 100};
  output.pixels.resize(200 * 100 * 4);
  EXPECT_EQ(Render(), "");
  effect->SetOutput(&input);
  EXPECT_EQ(effect->RenderFrame(0.0), kOk);
}

TEST_F(ServerMisuse, PlacesInTheWorldMayBeAnything) {
  for (const double number : {0.0, -1.0, 1e300, -1e300, 5e-324, std::nan(""), HUGE_VAL}) {
    input = Picture();
    input.worldSize = {number, number};
    EXPECT_EQ(Render(), "");
    input.position = {number, -number};
    EXPECT_EQ(Render(), "");
  }
}

TEST_F(ServerMisuse, ValuesMayBeAnything) {
  for (const Property& property : kProperties) {
    for (const double number : {1e308, -1e308, 5e-324, 4294967296.0, -2147483649.0, std::nan(""), HUGE_VAL}) {
      properties->PutValue(property.guid, DSVariant::Of(number));
      Render();
      properties->PutValue(property.guid, DSVariant::Of(kLeast));
      Render();
    }
    properties->PutValue(property.guid, DSVariant::Of(property.defaultValue));
  }
  EXPECT_EQ(Render(), "");
  EXPECT_NE(properties->PutValue(kUnknown, DSVariant::Of(1.0)), kOk);
  EXPECT_NE(properties->GetValue(PropertyOf(PropertyId::Blur).guid, nullptr), kOk);
  const DSCurve empty;
  properties->PutCurve(PropertyOf(PropertyId::Blur).guid, empty);
  Render();
}

TEST_F(ServerMisuse, TimesMayBeAnything) {
  for (const double time : {1e308, -1e308, std::nan(""), HUGE_VAL}) {
    effect->SetDuration(time);
    Render(time);
    Render(0.0);
  }
}

TEST_F(ServerMisuse, RegionsMayBeAnything) {
  for (const auto& [x, y, width, height] : std::vector<std::array<std::int32_t, 4>>{{0, 0, 0, 0},
                                                                                    {-100, -100, 100000, 100000},
                                                                                    {kMost, kMost, kMost, kMost},
                                                                                    {kLeast, kLeast, kMost, kMost},
                                                                                    {0, 0, -5, -5},
                                                                                    {kLeast, 0, kLeast, 1}}) {
    effect->SetROI(x, y, width, height);
    for (const double shown : {0.0, 1.0}) {
      Set(PropertyId::DisplayCropped, shown);
      Set(PropertyId::BlankCropped, 1.0);
      EXPECT_EQ(Render(), "");
    }
  }
}

TEST_F(ServerMisuse, MasksMayLieAnywhere) {
  Picture mask;
  mask.format = MFIF_MASK_8;
  for (const auto& [x, y] : std::vector<std::array<std::int32_t, 2>>{{kMost, kLeast}, {kLeast, 0}, {0, kMost}}) {
    effect->SetPixelMask(&mask, x, y);
    EXPECT_EQ(Render(), "mask lies beyond the pixels that count");
  }
  effect->SetPixelMask(nullptr, 0, 0);
}

TEST_F(ServerMisuse, NothingToPutAnAnswerIntoIsRefused) {
  EXPECT_EQ(effect->GetInfo(nullptr), kNullPointer);
  EXPECT_EQ(effect->GetInputOverscan(0.0, nullptr, nullptr, nullptr, nullptr), kNullPointer);
  EXPECT_EQ(effect->Clone(IDSImageEffect::kIid, nullptr), kNullPointer);
  ComPtr<IUnknown> none;
  EXPECT_LT(effect->Clone(kUnknown, none.Receive()), 0);
  EXPECT_FALSE(none);
  void* untouched = this;
  EXPECT_LT(factory->CreateInstance(nullptr, kUnknown, &untouched), 0);
  EXPECT_EQ(untouched, nullptr);
  EXPECT_LT(getClassObject(kUnknown, IClassFactory::kIid, &untouched), 0);
  EXPECT_LT(getClassObject(kEffect, IClassFactory::kIid, nullptr), 0);
}

TEST_F(ServerMisuse, ClonesMayComeAndGoOnAnyThread) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([this] {
      ComPtr<IDSImageEffect> clone;
      ASSERT_EQ(effect->Clone(IDSImageEffect::kIid, clone.Receive()), kOk);
      Picture from, to;
      clone->SetInput(&from);
      clone->SetOutput(&to);
      for (int frame = 0; frame < 20; ++frame)
        EXPECT_EQ(clone->RenderFrame(frame), kOk);
      clone->SetInput(nullptr);
      clone->SetOutput(nullptr);
    });
  }
  for (std::thread& thread : threads)
    thread.join();
}

TEST_F(ServerMisuse, PicturesMayStayWithAnEffectThatEnds) {
  EXPECT_EQ(Render(), "");
  properties.reset();
  effect.reset();
}

}  // namespace
}  // namespace vblur
