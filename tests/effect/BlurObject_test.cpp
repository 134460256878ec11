// The effect object: identity, interfaces, clones, and its share in the server's count.
#include <array>
#include <atomic>
#include <cstring>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/OwnFormats.h"
#include "properties/ClassIds.h"
#include "resources/Bitmaps.h"
#include "resources/Strings.h"
#include "tests/effect/EffectBench.h"
#include "tests/effect/OpenBlur.h"
#include "tests/support/TestModule.h"

namespace vblur {
namespace {

constexpr GUID kNoId = MakeGuid("{00000000-0000-0000-0000-0000000000FF}");

ComPtr<Blur> CloneOf(Blur& effect) {
  ComPtr<Blur> clone;
  EXPECT_EQ(effect.Clone(kBlurObject, clone.Receive()), kOk);
  return clone;
}

// Strings and bitmaps, set as the server sets them.
class BlurObjectTexts : public testing::Test {
 protected:
  BlurObjectTexts() { Blur::module = test::TestModule(); }
  ~BlurObjectTexts() override { Blur::module = nullptr; }
};

TEST_F(BlurObjectTexts, HasNameDescriptionAndPicture) {
  const auto effect = NewBlur();
  std::array<char16_t, 260> text{};
  EXPECT_EQ(effect->GetName(text.data(), 260), kOk);
  EXPECT_EQ(std::u16string(text.data()), u"V_Blur");
  EXPECT_EQ(effect->GetName(text.data(), 4), kOk);
  EXPECT_EQ(std::u16string(text.data()), u"V_B") << "cut to the buffer";
  EXPECT_EQ(effect->GetDescription(text.data(), 260), kOk);
  EXPECT_EQ(std::u16string(text.data()), u"Halvern's Blur and Sharpen Effect");
  HBITMAP picture = nullptr;
  EXPECT_EQ(effect->GetPicture(&picture), kOk);
  ASSERT_NE(picture, nullptr);
#ifndef _WIN32
  EXPECT_EQ(picture->id, 102);
  EXPECT_EQ(picture->pixels.size(), static_cast<std::size_t>(picture->width * picture->height * 4));
#endif
  EXPECT_EQ(effect->GetName(nullptr, 260), kNullPointer);
  EXPECT_EQ(effect->GetDescription(nullptr, 260), kNullPointer);
  EXPECT_EQ(effect->GetPicture(nullptr), kNullPointer);
}

TEST_F(BlurObjectTexts, HasATextForEveryNameHintAndEntry) {
  for (const Property& property : kProperties) {
    std::array<char16_t, 260> text{};
    EXPECT_GT(LoadStringW(test::TestModule(), property.nameString, text.data(), 260), 0) << property.name;
    EXPECT_EQ(std::u16string(text.data()), std::u16string(property.shownName.begin(), property.shownName.end()));
    EXPECT_GT(LoadStringW(test::TestModule(), property.hintString, text.data(), 260), 0) << property.name;
  }
  // First and last entries of the lists, by string id.
  const std::pair<std::int32_t, std::u16string> entries[] = {{1006, u"RGB"},
                                                             {1016, u"V"},
                                                             {1019, u"Blur"},
                                                             {1020, u"Sharpen"},
                                                             {1023, u"None"},
                                                             {1041, u"HardLight"},
                                                             {5010, u"Colour"},
                                                             {5019, u"Wrap"},
                                                             {5509, u"Ramp In and Out"},
                                                             {5514, u"Cross Fade Effect"}};
  for (const auto& [id, expected] : entries) {
    std::array<char16_t, 260> text{};
    LoadStringW(test::TestModule(), id, text.data(), 260);
    EXPECT_EQ(std::u16string(text.data()), expected) << id;
  }
}

TEST(BlurObject, FailsForMissingTextsAndPictures) {
  const auto effect = NewBlur();
  std::array<char16_t, 8> text{};
  HBITMAP picture = nullptr;
  EXPECT_EQ(effect->GetName(text.data(), 8), kFailed);
  EXPECT_EQ(effect->GetDescription(text.data(), 8), kFailed);
  EXPECT_EQ(effect->GetPicture(&picture), kFailed);
}

TEST(BlurObject, GivesItselfForItsPrivateIds) {
  const auto effect = NewBlur();
  for (const GUID& iid : {kBlurObject, kDsEffectObject}) {
    void* result = nullptr;
    EXPECT_EQ(effect->QueryInterface(iid, &result), kOk);
    EXPECT_EQ(result, static_cast<void*>(effect.get()));
    EXPECT_EQ(effect->Release(), 1u) << "a reference was added";
    EXPECT_EQ(effect->QueryInterface(iid, nullptr), kNullPointer);
  }
  int marker = 0;
  void* result = &marker;
  EXPECT_EQ(effect->QueryInterface(kNoId, &result), kNoInterface);
  EXPECT_EQ(result, nullptr);
  EXPECT_TRUE(effect.As<IDSProperties>() && effect.As<IDSImageEffect>() && effect.As<IDSGeneric>() &&
              effect.As<IDSPresetPersistStream>() && effect.As<IUnknown>());
  EXPECT_EQ(effect.As<IDSImageEffect>().As<IUnknown>().get(), effect.As<IDSProperties>().As<IUnknown>().get());
  EXPECT_EQ(effect->QueryAggregation(), kNoAggregation);
  EXPECT_EQ(effect->VerifyEffect(), kOk);
}

TEST(BlurObject, SupportsTwoFormats) {
  const auto effect = NewBlur();
  EXPECT_EQ(effect->IsFormatSupported(MFIF_RGBA_RAW_32), 0);
  EXPECT_EQ(effect->IsFormatSupported(MFIF_RGBA_S2_14), 0);
  EXPECT_EQ(effect->IsFormatSupported(kFormatRgbaFloat), 0);
  EXPECT_EQ(effect->IsFormatSupported(MFIF_MASK_8), 1);
  EXPECT_EQ(effect->IsFormatSupported(kFormatMaskFloat), 1);
  EXPECT_EQ(effect->IsFormatSupported(kNoId), 1);
}

TEST(BlurObject, IdentifiesItself) {
  const auto effect = NewBlur();
  tagDSFxInfo info;
  EXPECT_EQ(effect->GetInfo(&info), kWrongArgument);
  EXPECT_EQ(effect->GetInfo(nullptr), kNullPointer);
  info.record = MakeGuid("{5E3D73B1-D900-11CF-828E-00A0243F1013}");
  info.reserved1 = info.reserved2 = 7;
  EXPECT_EQ(effect->GetInfo(&info), kOk);
  EXPECT_EQ(info.category, MakeGuid("{0BC5A2F0-5C49-11CF-A04A-00A02418CFB9}"));
  EXPECT_EQ(info.type, MakeGuid("{0BC5A2F2-5C49-11CF-A04A-00A02418CFB9}"));
  EXPECT_EQ(info.effect, MakeGuid("{9D2E2FA1-AE89-11D5-9414-0800690F2F3F}"));
  EXPECT_EQ(info.reserved1, 0);
  EXPECT_EQ(info.reserved2, 0);
  GUID clsid;
  EXPECT_EQ(effect->GetClassID(&clsid), kOk);
  EXPECT_EQ(clsid, info.effect);
  EXPECT_EQ(effect->GetClassID(nullptr), kNullPointer);
}

TEST(BlurObject, AsksForAsMuchSourceAsItBlurs) {
  EffectBench bench(720.0, 576.0);
  bench.Set(PropertyId::Blur, 12.0);
  bench.Set(PropertyId::Aspect, 25.0);
  bench.hasOutput = bench.hasInput = false;
  bench.Render();
  EXPECT_EQ(bench.Overscan(), (std::array{12.0, 9.0}));
  double left = 0, right = 0, bottom = 0;
  EXPECT_EQ(bench.effect->GetInputOverscan(0.0, &left, &right, &bottom, nullptr), kNullPointer);
}

TEST(BlurObject, CountsItselfInItsServer) {
  std::atomic<std::int32_t> count = 0;
  Blur::liveObjects = &count;
  {
    const auto effect = NewBlur();
    EXPECT_EQ(count, 1);
    ComPtr<IUnknown> clone;
    EXPECT_EQ(effect->Clone(IUnknown::kIid, clone.Receive()), kOk);
    EXPECT_EQ(count, 2);
    void* result = nullptr;
    EXPECT_EQ(effect->Clone(kNoId, &result), kNoInterface);
    EXPECT_EQ(count, 2) << "a clone that nobody holds is gone";
  }
  EXPECT_EQ(count, 0);
  Blur::liveObjects = nullptr;
  auto uncounted = NewBlur();
  Blur::liveObjects = &count;
  uncounted.reset();
  EXPECT_EQ(count, 0) << "what was not counted at its beginning is not at its end";
  Blur::liveObjects = nullptr;
}

// The base's state before the effect sets its constants and defaults.
struct FamilyEffect : HvDsEffect {
  using HvDsEffectState::effectKind;
  using HvDsEffectState::transition;
  using HvDsEffectState::transitionMixesInputs;
};

TEST(BlurObject, TheBaseStartsWithLinearCrossFades) {
  const FamilyEffect effect;
  EXPECT_EQ(effect.effectKind, 0);
  EXPECT_EQ(effect.transition.ramping, 0);
  EXPECT_EQ(effect.transition.scaling, 2);
  EXPECT_EQ(effect.transition.finishFadingOutFirstClip, 100.0);
  EXPECT_EQ(effect.transition.startFadingInSecondClip, 0.0);
  EXPECT_EQ(effect.transitionMixesInputs, 0);
}

TEST(BlurObject, AClonesFrameIsItsSourcesFrame) {
  EffectBench bench;
  Paint<Pixel8>(bench.input, 32, 24, [](std::int32_t x, std::int32_t y) {
    return Pixel8{static_cast<std::uint8_t>(x * 7), static_cast<std::uint8_t>(y * 9), 128, 255};
  });
  Paint<Pixel8>(bench.output, 32, 24, [](std::int32_t, std::int32_t) { return Pixel8{}; });
  bench.Animate(PropertyId::Blur, host::Curve{{{0.0, 0.0}, {10.0, 20.0}}, {}});
  bench.Set(PropertyId::CropLeft, 20.0);
  bench.Set(PropertyId::MixBack, 1.0);
  bench.Set(PropertyId::MaskGreen, 0.0);
  UseAs(*bench.effect, host::EffectKind::Filter);
  ASSERT_EQ(bench.Render(5.0), kOk);

  ComPtr<IDSImageEffect> clone;
  ASSERT_EQ(bench.effect->Clone(IDSImageEffect::kIid, clone.Receive()), kOk);
  EXPECT_EQ(bench.effect->Clone(IDSImageEffect::kIid, nullptr), kNullPointer);
  host::HostImage again;
  Paint<Pixel8>(again, 32, 24, [](std::int32_t, std::int32_t) { return Pixel8{}; });
  host::EffectHost project(bench.project);
  host::CoordMan coordMan(bench.proxy);
  clone->SetEffectHost(&project);
  clone->SetCoordMan(&coordMan);
  clone->SetOutput(&again);
  EXPECT_EQ(clone->Verify(), kOk) << "the input and the kind come along";
  EXPECT_EQ(clone->RenderFrame(5.0), kOk);
  EXPECT_EQ(std::memcmp(again.Row(0), bench.output.Row(0), again.ByteCount()), 0);
}

TEST_F(BlurObjectTexts, AnEffectAndItsCloneKeepTheName) {
  const auto effect = NewBlur();
  EXPECT_EQ(std::u16string(OpenBlur::NameOf(*effect)), u"");
  std::array<char16_t, 3> text{};
  EXPECT_EQ(effect->GetDescription(text.data(), 3), kOk);
  EXPECT_EQ(std::u16string(OpenBlur::NameOf(*effect)), u"");
  EXPECT_EQ(effect->GetName(text.data(), 3), kOk);
  EXPECT_EQ(std::u16string(OpenBlur::NameOf(*effect)), u"V_Blur") << "whole, however short the buffer";
  const auto clone = CloneOf(*effect);
  EXPECT_EQ(std::u16string(OpenBlur::NameOf(*clone)), u"V_Blur");
}

TEST(BlurObject, ACloneHasEveryValueAndCurve) {
  const auto effect = NewBlur();
  double value = 40.0;
  for (const Property& property : kProperties) {
    effect->PutValue(property.guid, DSVariant::Of(value));
    if (property.IsAnimated()) effect->PutCurve(property.guid, host::Curve{{{0.0, value + 100.0}}, {}});
    value += 1.0;
  }
  const auto clone = CloneOf(*effect);
  effect->SetDefaults();
  value = 40.0;
  for (const Property& property : kProperties) {
    DSVariant plain;
    EXPECT_EQ(clone->GetValue(property.guid, &plain), kOk);
    EXPECT_EQ(plain.AsNumber(), value) << property.name;
    double now = 0.0;
    EXPECT_EQ(clone->GetValueAt(property.guid, 3.0, &now), kOk);
    EXPECT_EQ(now, property.IsAnimated() ? value + 100.0 : value) << property.name;
    value += 1.0;
  }
}

TEST(BlurObject, ACloneHasTheKindAndTheFrameOfItsSource) {
  EffectBench bench;
  bench.PaintClips<Pixel8>(8, 8, {}, {});
  bench.input.Place(AtOrigin(3, 4));
  bench.input2.Place(AtOrigin(5, 6));
  bench.output.Place(AtOrigin(7, 8));
  UseAs(*bench.effect, host::EffectKind::Transition);
  bench.effect->SetDuration(10.0);
  bench.effect->SetField(1);
  bench.Set(PropertyId::Blur, 12.0);
  bench.Set(PropertyId::TransitionRamping, 0.0);
  bench.Set(PropertyId::EffectScaling, 1.0);
  ASSERT_EQ(bench.Render(2.5), kOk);
  const auto clone = CloneOf(*bench.effect);
  const auto origin = [](const PlaceRecord& place) { return std::array{place.originX, place.originY}; };
  EXPECT_EQ(origin(clone->InputPlace()), (std::array{3, 4}));
  EXPECT_EQ(origin(clone->Input2Place()), (std::array{5, 6}));
  EXPECT_EQ(origin(clone->OutputPlace()), (std::array{7, 8}));
  EXPECT_EQ(clone->InputPlace().sizeX, 8.0f);
  const BlurSize size = clone->GetBlurSize(2.5);
  EXPECT_EQ(size.x, 6.0f) << "half the blur, as in the source's frame";
  EXPECT_EQ(size.y, 3.0f) << "of a field";
  bench.effect->SetInput2(nullptr);
  EXPECT_EQ(CloneOf(*bench.effect)->Verify(), kNullPointer) << "a transition wants its second clip";
}

TEST(BlurObject, ACloneHasNoListeners) {
  struct Deaf : IDSPropertyNotify {
    void OnPropertyChanged(const GUID&, const DSVariant*, std::uint32_t) override { ++notices; }
    int notices = 0;
  } deaf;
  const auto effect = NewBlur();
  effect->Advise(&deaf);
  const auto clone = CloneOf(*effect);
  clone->SetDefaults();
  EXPECT_EQ(deaf.notices, 0);
  effect->Unadvise(&deaf);
}

TEST(BlurObject, ACloneReportsItsPlacesToItsSource) {
  const auto source = NewBlur();
  ComPtr<IDSImageEffect> clone;
  ASSERT_EQ(source->Clone(IDSImageEffect::kIid, clone.Receive()), kOk);
  host::HostImage output, input, input2;
  host::ImageRecord record;
  const auto place = [&](host::HostImage& image, double x, double width) {
    image.Reset(8, 4, 4, 4);
    image.Clear();
    record.position = {x, x + 1.0};
    record.size = {width, width + 1.0};
    image.Place(record);
  };
  place(output, 3.0, 40.0);
  place(input, 5.0, 60.0);
  place(input2, 7.0, 80.0);
  host::EffectHost project(host::ProjectSizes{{100.0, 100.0}, {100.0, 50.0}});
  clone->SetEffectHost(&project);
  clone->SetOutput(&output);
  clone->SetInput(&input);
  clone->SetInput2(&input2);
  ASSERT_EQ(clone->RenderFrame(0.0), kOk);
  EXPECT_EQ(source->OutputPlace().positionX, 6.0f);
  EXPECT_EQ(source->OutputPlace().sizeY, 82.0f);
  EXPECT_EQ(source->InputPlace().positionX, 10.0f);
  EXPECT_EQ(source->InputPlace().positionY, 12.0f);
  EXPECT_EQ(source->InputPlace().sizeX, 120.0f);
  EXPECT_EQ(source->InputPlace().sizeY, 122.0f);
  // Input 2 reports the first input's place.
  EXPECT_EQ(source->Input2Place().positionX, 10.0f);
  EXPECT_EQ(source->Input2Place().sizeX, 120.0f);
}

// The next background frame's clone is made while an earlier one renders. For the thread sanitizer.
TEST(BlurObject, ACloneMayBeMadeWhileAnotherReports) {
  const auto source = NewBlur();
  const auto working = CloneOf(*source);
  host::HostImage output;
  output.Reset(8, 4, 4, 4);
  output.Clear();
  working->SetOutput(&output);
  std::thread rendering([&] {
    for (int frame = 0; frame < 50; ++frame)
      EXPECT_EQ(working->RenderFrame(frame), kOk);
  });
  for (int i = 0; i < 50; ++i)
    EXPECT_EQ(CloneOf(*source)->OutputPlace().originX, 0);
  rendering.join();
}

}  // namespace
}  // namespace vblur
