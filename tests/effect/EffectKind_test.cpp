// The kind by the host's family, and what follows: info words, pages and required images.
#include <array>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "properties/ClassIds.h"
#include "tests/effect/EffectBench.h"
#include "tests/effect/OpenBlur.h"

namespace vblur {
namespace {

constexpr GUID kNoFamily = MakeGuid("{00000000-0000-0000-0000-0000000000FF}");

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

using Words = std::array<std::int32_t, 10>;

TEST(EffectKind, TheFamilyDecidesWhatTheHostIsToGive) {
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

TEST(EffectKind, AnUnknownFamilyChangesNothing) {
  const auto effect = NewBlur();
  InfoFor(*effect, families::kTransition);
  EXPECT_EQ(InfoFor(*effect, kNoFamily).words[4], 1) << "still a transition";
  tagDSImgFxInfo wrong;
  wrong.family = families::kFilter;
  wrong.words.fill(-1);
  EXPECT_EQ(effect->GetImageEffectInfo(&wrong), kWrongArgument);
  EXPECT_EQ(wrong.words[0], -1);
  EXPECT_EQ(InfoFor(*effect, kNoFamily).words[4], 1) << "a wrong record leaves the kind alone";
  EXPECT_EQ(effect->GetImageEffectInfo(nullptr), kNullPointer);
}

TEST(EffectKind, PagesAreThoseOfTheFirstUse) {
  using namespace classes;
  const std::pair<GUID, std::vector<GUID>> cases[] = {
      {families::kFilter, {kFullBlurPPG, kFullCropPPG, kHelpPPG}},
      {families::kPaint, {kFullBlurPPG, kHelpPPG}},
      {families::kTransition, {kTransitionBlurPPG, kHvTransitionPPG, kFullCropPPG, kHelpPPG}},
      {families::kSource, {}},
      {families::kGenerator, {}},
      {families::kOther, {}},
      {kNoFamily, {}},
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

TEST(EffectKind, ACloneTakesItsPagesFromItsOwnFirstUse) {
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

TEST(EffectKind, VerifyAsksForThePicturesOfTheUse) {
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

TEST(EffectKind, OnlyATransitionReportsTwoClips) {
  const GUID others[] = {families::kFilter,    families::kFilterSecond, families::kFilterThird, families::kSource,
                         families::kGenerator, families::kPaint,        families::kOther,       kNoFamily};
  const auto effect = ComPtr<OpenBlur>::Own(new OpenBlur());
  for (const GUID& family : others) {
    InfoFor(*effect, family);
    EXPECT_EQ(effect->imageEffectFlags, 0);
  }
  effect->imageEffectFlags = 5;
  InfoFor(*effect, families::kTransition);
  EXPECT_EQ(effect->imageEffectFlags, 21) << "bit 16 beside what is set";
}

TEST(EffectKind, TheWordsFollowTheFlags) {
  const auto words = [](std::int32_t flags, const GUID& family, std::int32_t fieldMode = 1) {
    const auto effect = ComPtr<OpenBlur>::Own(new OpenBlur());
    EXPECT_EQ(effect->effectFlags, 79);
    EXPECT_EQ(effect->fieldMode, 1);
    effect->effectFlags = flags;
    effect->fieldMode = fieldMode;
    const Words result = InfoFor(*effect, family).words;
    EXPECT_EQ(effect->imageEffectFlags, result[9] & 16);
    return result;
  };
  EXPECT_EQ(words(0, families::kFilter), (Words{0, 0, 2, 0, 0, 0, 0, 0, 0, 770}));
  EXPECT_EQ(words(0, families::kPaint), (Words{0, 96, 8, 0, 0, 1, 0, 1, 0, 770}));
  EXPECT_EQ(words(0, families::kTransition), (Words{0, 0, 2, 0, 1, 0, 0, 0, 0, 786}));
  EXPECT_EQ(words(1, families::kFilter), (Words{0, 0, 2, 1, 0, 0, 0, 0, 0, 770}));
  EXPECT_EQ(words(2, families::kFilter), (Words{0, 0, 2, 0, 0, 0, 0, 0, 0, 778}));
  EXPECT_EQ(words(4, families::kFilter), (Words{0, 0, 8, 0, 0, 0, 0, 0, 0, 770}));
  EXPECT_EQ(words(4, families::kGenerator), (Words{0, 0, 2, 0, 0, 0, 0, 0, 0, 770}));
  EXPECT_EQ(words(16, families::kFilter), (Words{0, 0, 2, 0, 0, 0, 0, 0, 0, 786}));
  EXPECT_EQ(words(32, families::kFilter), (Words{0, 0, 2, 0, 1, 0, 0, 0, 0, 770}));
  EXPECT_EQ(words(0, families::kFilter, 0), (Words{0, 0, 2, 0, 0, 0, 0, 0, 0, 778}));
  EXPECT_EQ(words(0, families::kFilter, 2), (Words{0, 0, 2, 0, 0, 0, 0, 0, 0, 770}));
}

// No family selects it.
TEST(EffectKind, TheUnusedKindNeedsAnInput) {
  host::HostImage picture;
  const auto effect = ComPtr<OpenBlur>::Own(new OpenBlur());
  effect->effectKind = 6;
  effect->SetOutput(&picture);
  EXPECT_EQ(effect->Verify(), kNullPointer);
  effect->SetInput(&picture);
  EXPECT_EQ(effect->Verify(), kOk);
}

TEST(EffectKind, ANewEffectNeedsNoInput) {
  host::HostImage picture;
  const auto effect = NewBlur();
  EXPECT_EQ(effect->Verify(), kNullPointer);
  effect->SetOutput(&picture);
  EXPECT_EQ(effect->Verify(), kOk);
}

struct FailingBlur : Blur {
  HRESULT VerifyEffect() override { return kFailed; }
};

TEST(EffectKind, VerifyPassesOnWhatTheEffectItselfSays) {
  host::HostImage picture;
  const auto effect = ComPtr<Blur>::Own(new FailingBlur());
  effect->SetOutput(&picture);
  EXPECT_EQ(effect->Verify(), kFailed);
}

}  // namespace
}  // namespace vblur
