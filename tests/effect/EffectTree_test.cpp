// The effect's bases, and the order of its operations and members.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/IDSEffectRoles.h"
#include "server/CDsClassFactory.h"
#include "tests/effect/EffectBench.h"
#include "tests/support/VirtualSlot.h"

namespace vblur {
namespace {

template <class Base, class Derived>
constexpr bool kIsBase = std::is_base_of_v<Base, Derived>;

static_assert(kIsBase<HvDsEffect, Blur> && kIsBase<CDSImageMIEffect, Blur>);
static_assert(kIsBase<CDSImageEffectEx, CDSImageMIEffect> && kIsBase<IDSImageMIEffect, CDSImageMIEffect>);
static_assert(kIsBase<CDSImageEffect, CDSImageEffectEx> && kIsBase<IDSGraphDataAliases, CDSImageEffectEx> &&
              kIsBase<IDSTimeDependency, CDSImageEffectEx>);
static_assert(kIsBase<CDSPlugInEffect, CDSImageEffect> && kIsBase<IDSImageEffect, CDSImageEffect> &&
              kIsBase<IDSHWEffects, CDSImageEffect> && kIsBase<IDSChildPropertyOwner, CDSImageEffect>);
static_assert(kIsBase<CDSAliasedPropertyContainer, CDSPlugInEffect> &&
              kIsBase<CDSPropertyContainer, CDSAliasedPropertyContainer> &&
              kIsBase<CDSBasePropertyContainer, CDSPropertyContainer> &&
              kIsBase<IDSProperties, CDSBasePropertyContainer>);

static_assert(offsetof(MaskParameters, red) < offsetof(MaskParameters, blue) &&
              offsetof(MaskParameters, blue) < offsetof(MaskParameters, green) &&
              offsetof(MaskParameters, green) < offsetof(MaskParameters, alpha));

template <class... Operations>
std::vector<std::size_t> PlacesOf(Operations... operations) {
  return {test::virtualSlot(operations)...};
}

// Where slots are unknown all are 0.
std::vector<std::size_t> Counting(std::size_t from, std::size_t count) {
  std::vector<std::size_t> places(count, 0);
  if (test::kSlotsAreKnown) std::iota(places.begin(), places.end(), from);
  return places;
}

TEST(EffectTree, TheFamilysBaseComesFirstAndTheHostsBehindIt) {
  const ComPtr<Blur> effect = NewBlur();
  const auto place = [](const auto* part) { return reinterpret_cast<std::uintptr_t>(part); };
  const std::uintptr_t host = place(static_cast<CDSImageMIEffect*>(effect.get()));
  EXPECT_EQ(place(static_cast<HvDsEffect*>(effect.get())), place(effect.get()));
  EXPECT_GT(host, place(effect.get()));
  for (const std::uintptr_t other :
       {place(static_cast<IVBlurFacts*>(effect.get())), place(static_cast<ProcessSettings*>(effect.get()))})
    EXPECT_LT(host, other);
}

TEST(EffectTree, TheHostsBasesLieInTheirOrder) {
  const ComPtr<Blur> made = NewBlur();
  CDSImageMIEffect* const effect = made.get();
  const auto place = [](const auto* part) { return reinterpret_cast<std::uintptr_t>(part); };
  for (const std::uintptr_t first :
       {place(static_cast<CDSImageEffectEx*>(effect)), place(static_cast<CDSImageEffect*>(effect)),
        place(static_cast<CDSPlugInEffect*>(effect)), place(static_cast<IDSProperties*>(effect))})
    EXPECT_EQ(first, place(effect));
  const std::array<std::uintptr_t, 7> order = {
      place(effect),
      place(static_cast<IDSImageEffect*>(effect)),
      place(static_cast<IDSHWEffects*>(effect)),
      place(static_cast<IDSChildPropertyOwner*>(effect)),
      place(static_cast<IDSGraphDataAliases*>(effect)),
      place(static_cast<IDSTimeDependency*>(effect)),
      place(static_cast<IDSImageMIEffect*>(effect)),
  };
  EXPECT_TRUE(std::ranges::is_sorted(order));
  EXPECT_EQ(std::ranges::adjacent_find(order), order.end());
}

TEST(EffectTree, TheEffectsOwnOperationsComeFirstInTheirOrder) {
  EXPECT_EQ(PlacesOf(&HvDsEffect::GetBlurSize, &HvDsEffect::AttachOverlay, &HvDsEffect::PageShown,
                     &HvDsEffect::UpdateOverlayPlacement, &HvDsEffect::QueryAggregation, &HvDsEffect::VerifyEffect),
            Counting(0, 6));
}

TEST(EffectTree, TheHostsOperationsHaveTheirOrder) {
  using I = IDSImageEffect;
  EXPECT_EQ(PlacesOf(&I::GetInfo, &I::GetImageEffectInfo, &I::IsFormatSupported, &I::SetDefaults, &I::GetInputOverscan,
                     &I::Verify, &I::RenderFrame, &I::Clone),
            Counting(3, 8));
  EXPECT_EQ(PlacesOf(&I::SetSampleRate, &I::Setup, &I::Cleanup, &I::GetInputBbox, &I::GetOutputOverscan, &I::SetInput,
                     &I::SetOutput, &I::SetChannelMask, &I::SetPixelMask, &I::SetROI, &I::SetQuality, &I::SetInput2,
                     &I::SetInput2Offset, &I::CloneAtTime, &I::SetDirection, &I::SetPressure, &I::SetOriginalImage,
                     &I::SetTransfo4, &I::SetProcessingMode, &I::GetProcessingMode, &I::SetExecuteContext,
                     &I::SetEffectHost, &I::SetCoordMan, &I::GetCoordMan, &I::BeginFrameRange, &I::EndFrameRange,
                     &I::BeginFrame, &I::EndFrame, &I::ClearROI, &I::SetField, &I::SetDuration, &I::PrepareData),
            Counting(11, 32));
}

TEST(EffectTree, FactoryOperationsHaveTheirOrder) {
  using Factory = CDsClassFactory<Blur, 0, 0>;
  EXPECT_EQ(PlacesOf(&Factory::QueryInterface, &Factory::AddRef, &Factory::Release, &Factory::CreateInstance,
                     &Factory::LockServer),
            Counting(0, 5));
}

TEST(EffectTree, GivesEveryPartThatItPlays) {
  const auto effect = ComPtr<Blur>::Own(new Blur());
  EXPECT_TRUE(effect.As<IDSImageMIEffect>() && effect.As<IDSGraphDataAliases>() && effect.As<IDSTimeDependency>() &&
              effect.As<IDSHWEffects>() && effect.As<IDSChildPropertyOwner>());
  EXPECT_EQ(effect.As<IDSHWEffects>().As<IUnknown>().get(), effect.As<IUnknown>().get());
}

TEST(EffectTree, TheBaseKeepsWhatTheEffectDoesNotUse) {
  EffectBench bench;
  IDSImageEffect& effect = *bench.effect;
  EXPECT_EQ(effect.SetSampleRate(25.0), kOk);
  EXPECT_EQ(effect.SetChannelMask(7), kOk);
  EXPECT_EQ(effect.SetQuality(1), kOk);
  EXPECT_EQ(effect.SetInput2Offset(3, 4), kOk);
  EXPECT_EQ(effect.SetDirection(1), kOk);
  EXPECT_EQ(effect.SetPressure(0.5), kOk);
  EXPECT_EQ(effect.SetOriginalImage(nullptr), kOk);
  EXPECT_EQ(effect.SetTransfo4(DSTransfo4{}), kOk);
  std::int32_t mode = -1;
  EXPECT_EQ(effect.GetProcessingMode(&mode), kOk);
  EXPECT_EQ(mode, 0);
  EXPECT_EQ(effect.SetProcessingMode(2), kOk);
  EXPECT_EQ(effect.GetProcessingMode(&mode), kOk);
  EXPECT_EQ(mode, 2);
  EXPECT_EQ(effect.GetProcessingMode(nullptr), kNullPointer);

  double sides[4] = {1.0, 1.0, 1.0, 1.0};
  EXPECT_EQ(effect.GetOutputOverscan(0.0, &sides[0], &sides[1], &sides[2], &sides[3]), kOk);
  for (const double side : sides)
    EXPECT_EQ(side, 0.0);
  EXPECT_EQ(effect.GetOutputOverscan(0.0, nullptr, &sides[1], &sides[2], &sides[3]), kNullPointer);

  DSPixelBox box;
  EXPECT_EQ(effect.GetInputBbox(0.0, &box), kNullPointer) << "no input";
  Paint<Pixel8>(bench.input, 5, 3, [](std::int32_t, std::int32_t) { return Pixel8{}; }, {7, -2});
  effect.SetInput(&bench.input);
  EXPECT_EQ(effect.GetInputBbox(0.0, nullptr), kNullPointer);
  EXPECT_EQ(effect.GetInputBbox(0.0, &box), kOk);
  EXPECT_EQ(box.size.x, 5);
  EXPECT_EQ(box.size.y, 3);
  EXPECT_EQ(box.origin.x, 0) << "no coordinates";
  host::CoordMan coordMan({1.0, 1.0});
  effect.SetCoordMan(&coordMan);
  EXPECT_EQ(effect.GetInputBbox(0.0, &box), kOk);
  EXPECT_EQ(box.origin.x, 7);
  EXPECT_EQ(box.origin.y, -2);

  ComPtr<IDSImageEffect> clone;
  EXPECT_EQ(effect.CloneAtTime(3.0, IDSImageEffect::kIid, clone.Receive()), kOk);
  ASSERT_TRUE(clone);
  EXPECT_EQ(clone->GetProcessingMode(&mode), kOk);
  EXPECT_EQ(mode, 2) << "a clone has what the source was given";
}

TEST(EffectTree, TheFactorysDestructorStandsBeforeWhatMakesObjects) {
  class Derived : public CDsClassFactory<Blur, 0, 0> {
   public:
    using CDsClassFactory::CDsClassFactory;
    static std::size_t PlaceOfCreateObject() { return test::virtualSlot(&Derived::CreateObject); }
  };
  // Destructors take two places: one destroys, one deletes as well.
  EXPECT_EQ(Derived::PlaceOfCreateObject(), test::kSlotsAreKnown ? 7u : 0u);
}

}  // namespace
}  // namespace vblur
