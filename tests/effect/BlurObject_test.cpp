// The effect as an object of its host: what it says of itself, how it is used, cloned and counted.
#include <array>
#include <atomic>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "effect/ClassIds.h"
#include "resources/Bitmaps.h"
#include "resources/Strings.h"
#include "tests/effect/EffectBench.h"

namespace vblur {
namespace {

constexpr GUID kNoId = MakeGuid("{00000000-0000-0000-0000-0000000000FF}");

ComPtr<Blur> NewBlur() {
  return ComPtr<Blur>::Own(new Blur());
}

tagDSImgFxInfo InfoFor(Blur& effect, const GUID& family, HRESULT expected = kOk) {
  tagDSImgFxInfo info;
  info.record = kDSImgFxInfoRecord;
  info.family = family;
  info.words.fill(-1);
  EXPECT_EQ(effect.GetImageEffectInfo(&info), expected);
  return info;
}

std::vector<GUID> PagesOf(Blur& effect) {
  std::int32_t count = -1;
  EXPECT_EQ(effect.GetPageCount(&count), kOk);
  std::vector<GUID> pages(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i)
    EXPECT_EQ(effect.GetPage(i, &pages[static_cast<std::size_t>(i)]), kOk);
  GUID none;
  EXPECT_EQ(effect.GetPage(count, &none), kWrongArgument);
  EXPECT_EQ(effect.GetPage(-1, &none), kWrongArgument);
  return pages;
}

// The module's texts and pictures, as the server gives them to the class.
class WithModule : public testing::Test {
 protected:
  WithModule() { Blur::module = &module_; }
  ~WithModule() override { Blur::module = nullptr; }

  Module module_{resources::Strings(), resources::Bitmaps()};
};

TEST_F(WithModule, TellsNameDescriptionAndPicture) {
  const auto effect = NewBlur();
  std::array<char16_t, 260> text{};
  EXPECT_EQ(effect->GetName(text.data(), 260), kOk);
  EXPECT_EQ(std::u16string(text.data()), u"V_Blur");
  EXPECT_EQ(effect->GetName(text.data(), 4), kOk);
  EXPECT_EQ(std::u16string(text.data()), u"V_B") << "cut to the buffer";
  EXPECT_EQ(effect->GetDescription(text.data(), 260), kOk);
  EXPECT_EQ(std::u16string(text.data()), u"Halvern's Blur and Sharpen Effect");
  const ModuleBitmap* picture = nullptr;
  EXPECT_EQ(effect->GetPicture(&picture), kOk);
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(picture->id, 102);
  EXPECT_EQ(picture->pixels.size(), static_cast<std::size_t>(picture->width * picture->height * 4));
  EXPECT_EQ(effect->GetName(nullptr, 260), kNullPointer);
  EXPECT_EQ(effect->GetDescription(nullptr, 260), kNullPointer);
  EXPECT_EQ(effect->GetPicture(nullptr), kNullPointer);
}

TEST_F(WithModule, HasATextForEveryNameHintAndEntry) {
  for (const Property& property : kProperties) {
    std::array<char16_t, 260> text{};
    EXPECT_GT(LoadStringW(&module_, property.nameString, text.data(), 260), 0) << property.name;
    EXPECT_EQ(std::u16string(text.data()), std::u16string(property.shownName.begin(), property.shownName.end()));
    EXPECT_GT(LoadStringW(&module_, property.hintString, text.data(), 260), 0) << property.name;
  }
  // The first and the last entry of lists, by the numbers that pages know them under.
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
    LoadStringW(&module_, id, text.data(), 260);
    EXPECT_EQ(std::u16string(text.data()), expected) << id;
  }
}

TEST(BlurObject, FailsForMissingTextsAndPictures) {
  const auto effect = NewBlur();
  std::array<char16_t, 8> text{};
  const ModuleBitmap* picture = nullptr;
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

TEST(BlurObject, TellsWhatItIs) {
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

TEST(BlurObject, KnowsTwoFormats) {
  const auto effect = NewBlur();
  EXPECT_EQ(effect->IsFormatSupported(MFIF_RGBA_RAW_32), 0);
  EXPECT_EQ(effect->IsFormatSupported(MFIF_RGBA_S2_14), 0);
  EXPECT_EQ(effect->IsFormatSupported(MFIF_MASK_8), 1);
  EXPECT_EQ(effect->IsFormatSupported(kNoId), 1);
}

using Words = std::array<std::int32_t, 10>;

TEST(BlurObject, TheFamilyDecidesWhatTheHostIsToGive) {
  const auto filter = Words{0, 0, 8, 1, 0, 0, 0, 0, 0, 778};
  const auto generator = Words{0, 0, 2, 1, 0, 0, 0, 0, 0, 778};
  const auto paint = Words{0, 96, 8, 1, 0, 1, 0, 1, 0, 778};
  const auto transition = Words{0, 0, 2, 1, 1, 0, 0, 0, 0, 794};
  const std::pair<GUID, Words> cases[] = {
      {MakeGuid("{AE0D7C31-95AA-11D0-B685-00A024191AE0}"), filter},
      {MakeGuid("{28610EB3-AECA-11D1-BFAD-0800368E7203}"), filter},
      {MakeGuid("{95F7E8A0-8B84-11D1-94A3-00A0C911C625}"), filter},
      {MakeGuid("{AE0D7C33-95AA-11D0-B685-00A024191AE0}"), filter},
      {MakeGuid("{61054A81-9662-11D0-B685-00A024191AE0}"), generator},
      {MakeGuid("{AE0D7C40-95AA-11D0-B685-00A024191AE0}"), paint},
      {MakeGuid("{61054A80-9662-11D0-B685-00A024191AE0}"), transition},
      {MakeGuid("{AE0D7C34-95AA-11D0-B685-00A024191AE0}"), filter},
  };
  for (const auto& [family, words] : cases)
    EXPECT_EQ(InfoFor(*NewBlur(), family).words, words);
}

TEST(BlurObject, AnUnknownFamilyChangesNothing) {
  const auto effect = NewBlur();
  InfoFor(*effect, families::kTransition);
  EXPECT_EQ(InfoFor(*effect, kNoId).words[4], 1) << "still a transition";
  tagDSImgFxInfo wrong;
  wrong.family = families::kFilter;
  wrong.words.fill(-1);
  EXPECT_EQ(effect->GetImageEffectInfo(&wrong), kWrongArgument);
  EXPECT_EQ(wrong.words[0], -1);
  EXPECT_EQ(InfoFor(*effect, kNoId).words[4], 1) << "a wrong record leaves the kind alone";
  EXPECT_EQ(effect->GetImageEffectInfo(nullptr), kNullPointer);
}

TEST(BlurObject, PagesAreThoseOfTheFirstUse) {
  using namespace classes;
  const std::pair<GUID, std::vector<GUID>> cases[] = {
      {families::kFilter, {kFullBlurPPG, kFullCropPPG, kHelpPPG}},
      {families::kPaint, {kFullBlurPPG, kHelpPPG}},
      {families::kTransition, {kTransitionBlurPPG, kHvTransitionPPG, kFullCropPPG, kHelpPPG}},
      {families::kSource, {}},
      {families::kGenerator, {}},
      {families::kOther, {}},
      {kNoId, {}},
  };
  for (const auto& [family, pages] : cases) {
    const auto effect = NewBlur();
    EXPECT_TRUE(PagesOf(*effect).empty());
    InfoFor(*effect, family);
    EXPECT_EQ(PagesOf(*effect), pages);
    InfoFor(*effect, families::kTransition);
    EXPECT_EQ(PagesOf(*effect), pages) << "added once";
  }
}

TEST(BlurObject, ACloneTakesItsPagesFromItsOwnFirstUse) {
  using namespace classes;
  const auto source = NewBlur();
  InfoFor(*source, families::kFilter);
  for (const GUID& family : {families::kFilter, families::kPaint}) {
    ComPtr<Blur> clone;
    ASSERT_EQ(source->Clone(kBlurObject, clone.Receive()), kOk);
    EXPECT_TRUE(PagesOf(*clone).empty());
    InfoFor(*clone, family);
    const bool isPaint = family == families::kPaint;
    EXPECT_EQ(PagesOf(*clone), isPaint ? (std::vector<GUID>{kFullBlurPPG, kHelpPPG})
                                       : (std::vector<GUID>{kFullBlurPPG, kFullCropPPG, kHelpPPG}));
  }
}

TEST(BlurObject, VerifyAsksForThePicturesOfTheUse) {
  struct Case {
    GUID family;
    bool input, input2, mask;
  };
  const Case cases[] = {
      {families::kFilter, true, false, false},     {families::kSource, true, false, false},
      {families::kGenerator, false, false, false}, {families::kPaint, true, false, true},
      {families::kTransition, true, true, false},  {families::kOther, false, false, false},
  };
  host::HostImage picture;
  for (const Case& c : cases) {
    for (int given = 0; given < 16; ++given) {
      const auto effect = NewBlur();
      InfoFor(*effect, c.family);
      const bool output = given & 1, input = given & 2, input2 = given & 4, mask = given & 8;
      effect->SetOutput(output ? &picture : nullptr);
      effect->SetInput(input ? &picture : nullptr);
      effect->SetInput2(input2 ? &picture : nullptr);
      effect->SetPixelMask(mask ? &picture : nullptr, 0, 0);
      const bool enough = output && (input || !c.input) && (input2 || !c.input2) && (mask || !c.mask);
      EXPECT_EQ(effect->Verify(), enough ? kOk : kNullPointer) << given;
    }
  }
}

TEST(BlurObject, AsksForAsMuchSourceAsItBlurs) {
  EffectBench bench(720.0, 576.0);
  bench.Set(PropertyId::Blur, 12.0);
  bench.Set(PropertyId::Aspect, 25.0);
  bench.hasOutput = bench.hasInput = false;
  bench.Render();
  host::EffectHost project(host::ProjectSizes{{720.0, 576.0}, {720.0, 576.0}});
  host::CoordMan coordMan({1.0, 1.0});
  bench.effect->SetEffectHost(&project);
  bench.effect->SetCoordMan(&coordMan);
  double left = 0, right = 0, bottom = 0, top = 0;
  EXPECT_EQ(bench.effect->GetInputOverscan(0.0, &left, &right, &bottom, &top), kOk);
  EXPECT_EQ(left, 12.0);
  EXPECT_EQ(right, 12.0);
  EXPECT_EQ(bottom, 9.0);
  EXPECT_EQ(top, 9.0);
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

// What every effect of the family starts from, before it has its own constants and defaults.
struct FamilyEffect : HvDsEffect {
  using HvDsEffectState::effectKind;
  using HvDsEffectState::transition;
  using HvDsEffectState::transitionMixesInputs;
};

TEST(BlurObject, TheFamilyStartsWithLinearCrossFades) {
  const FamilyEffect effect;
  EXPECT_EQ(effect.effectKind, 0);
  EXPECT_EQ(effect.transition.ramping, 0);
  EXPECT_EQ(effect.transition.scaling, 2);
  EXPECT_EQ(effect.transition.finishFadingOutFirstClip, 100.0);
  EXPECT_EQ(effect.transition.startFadingInSecondClip, 0.0);
  EXPECT_EQ(effect.transitionMixesInputs, 0);
}

TEST(BlurObject, ANewEffectLiesOverTheProject) {
  const auto effect = NewBlur();
  for (const PlaceRecord* place : {&effect->OutputPlace(), &effect->InputPlace(), &effect->Input2Place()}) {
    // Nobody tells the project's size yet.
    EXPECT_EQ(place->sizeX, 1.0f);
    EXPECT_EQ(place->sizeY, 1.0f);
    EXPECT_EQ(place->positionX, 0.0f);
    EXPECT_EQ(place->positionY, 0.0f);
  }
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
  EXPECT_EQ(std::memcmp(again.Row(0), bench.output.Row(0), again.byteCount()), 0);
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
  // The first input's, on purpose.
  EXPECT_EQ(source->Input2Place().positionX, 10.0f);
  EXPECT_EQ(source->Input2Place().sizeX, 120.0f);
}

}  // namespace
}  // namespace vblur
