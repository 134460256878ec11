#include "pages/ColourChip.h"

#include <cmath>
#include <limits>

#include "tests/pages/PlainPage.h"

namespace vblur {
namespace {

using namespace plain_page;
using host::Calls;
using host::ColourChipControl;
using host::NumberControl;

using Colour = std::array<std::int32_t, 4>;

class ColourChipTest : public PageTest<PlainPage> {
 protected:
  Colour Shown() { return Of<ColourChipControl>(kChip).Colour(); }
  std::optional<std::array<double, 4>> Changed(PropertyId id, const DSVariant* value = nullptr) {
    const PlainPage::Change change(*page, PropertyOf(id).guid, value);
    return page->chip.ReadIfAffected();
  }
};

TEST_F(ColourChipTest, ShowsPercentagesTruncated) {
  Open();
  page->chip.Show(100.0, 0.0, 50.0);
  EXPECT_EQ(Shown(), (Colour{254, 0, 127, 255}));
  page->chip.Show(0.4, 99.9, 40.0);
  EXPECT_EQ(Shown(), (Colour{1, 254, 102, 255}));
  page->chip.Show(0.39, 100.1, 20.0);
  EXPECT_EQ(Shown(), (Colour{0, 255, 51, 255}));
}

TEST_F(ColourChipTest, ClampsWhatItShows) {
  Open();
  const double infinity = std::numeric_limits<double>::infinity();
  page->chip.Show(101.0, -1.0, 1e300);
  EXPECT_EQ(Shown(), (Colour{255, 0, 255, 255}));
  page->chip.Show(infinity, -infinity, std::nan(""));
  EXPECT_EQ(Shown(), (Colour{255, 0, 0, 255}));
}

TEST_F(ColourChipTest, ShowsAnOpaqueColour) {
  Open();
  Of<ColourChipControl>(kChip).SetColour(9, 9, 9, 7);
  page->chip.Show(0.0, 0.0, 0.0);
  EXPECT_EQ(Shown(), (Colour{0, 0, 0, 255}));
}

TEST_F(ColourChipTest, ShowsNothingWithoutPageOrChip) {
  page->chip.Show(10.0, 10.0, 10.0);
  Open();
  page->chip.chipId = kSize;
  page->chip.Show(10.0, 10.0, 10.0);
  page->chip.chipId = kAbsent;
  page->chip.Show(10.0, 10.0, 10.0);
  page->chip.ReadChip();
  ColourChip bare;
  bare.chipId = kChip;
  bare.Show(10.0, 10.0, 10.0);
  bare.ReadChip();
  bare.Update();
  bare.SetAll(1.0f, 2.0f, 3.0f, 4.0f);
  EXPECT_EQ(bare.ReadIfAffected(), std::nullopt);
  EXPECT_EQ(Shown(), (Colour{0, 0, 0, 255}));
  EXPECT_EQ(site.Taken(), Calls{});
}

TEST_F(ColourChipTest, GivesTheInterfaceOfTheChipBack) {
  Open();
  auto& chip = Of<ColourChipControl>(kChip);
  const std::uint32_t before = chip.AddRef();
  page->chip.Show(1.0, 2.0, 3.0);
  page->chip.ReadChip();
  EXPECT_EQ(chip.AddRef(), before + 1);
}

TEST_F(ColourChipTest, ShowsTheNumberControls) {
  Open();
  page->chip.red.value = 100.0;
  page->chip.green.value = 20.0;
  page->chip.blue.value = 40.0;
  page->chip.Update();
  EXPECT_EQ(Shown(), (Colour{254, 51, 102, 255}));
  EXPECT_EQ(site.Taken(), Calls{}) << "what is kept";
}

// The colour that is picked stays: 254 would be read back for 255.
TEST_F(ColourChipTest, APickWritesThreePropertiesOnce) {
  Open();
  Put(PropertyId::CropColourA, 33.0);
  site.Taken();
  std::uint32_t suspended = 0;
  struct Watch : IDSPropertyNotify {
    explicit Watch(std::function<void()> then) : seen(std::move(then)) {}
    void OnPropertyChanged(const GUID&, const DSVariant*, std::uint32_t) override { seen(); }
    std::function<void()> seen;
  } watch([&] {
    suspended += page->suspended;
    page->chip.Update();
  });
  effect->Advise(&watch);
  EXPECT_TRUE(Of<ColourChipControl>(kChip).PickColour(255, 128, 51));
  effect->Unadvise(&watch);
  EXPECT_EQ(site.TakenChanges(), (Calls{"begin \"\"", "begin", "end", "SetAnimatedProperty Crop Colour R 100", "begin",
                                        "end", "SetAnimatedProperty Crop Colour G 50.19607843137255", "begin", "end",
                                        "SetAnimatedProperty Crop Colour B 20", "end"}));
  EXPECT_EQ(suspended, 3u);
  EXPECT_FALSE(page->IsSuspended());
  EXPECT_EQ(Shown(), (Colour{255, 128, 51, 255}));
  EXPECT_EQ(Get(PropertyId::CropColourG), 128.0 * 100.0 / 255.0);
  EXPECT_EQ(Get(PropertyId::CropColourA), 33.0);
  EXPECT_EQ(Of<NumberControl>(kRed).Value(), 100.0);
  EXPECT_EQ(history.UndoDepth(), 2u) << "one more than alpha's";
}

TEST_F(ColourChipTest, ReadsTheEndsOfTheRange) {
  Open();
  Of<ColourChipControl>(kChip).SetColour(0, 255, 1, 255);
  page->chip.ReadChip();
  EXPECT_EQ(page->chip.red.value, 0.0);
  EXPECT_EQ(page->chip.green.value, 100.0);
  EXPECT_EQ(page->chip.blue.value, 100.0 / 255.0);
}

TEST_F(ColourChipTest, SetsAllClampedInOrder) {
  Open();
  page->chip.SetAll(150.0f, -5.0f, 20.0f, 101.0f);
  EXPECT_EQ(site.TakenChanges(),
            (Calls{"begin", "end", "SetAnimatedProperty Crop Colour R 100", "begin", "end",
                   "SetAnimatedProperty Crop Colour G 0", "begin", "end", "SetAnimatedProperty Crop Colour B 20",
                   "begin", "end", "SetAnimatedProperty Crop Colour A 100"}));
  EXPECT_EQ(Shown(), (Colour{254, 0, 51, 255}));
}

TEST_F(ColourChipTest, LeavesAlphaOutWithoutItsFlag) {
  Open();
  Put(PropertyId::CropColourA, 33.0);
  page->chip.flags = 2;
  page->chip.SetAll(1.0f, 2.0f, 3.0f, 4.0f);
  EXPECT_EQ(Get(PropertyId::CropColourB), 3.0);
  EXPECT_EQ(Get(PropertyId::CropColourA), 33.0);
  EXPECT_EQ(Changed(PropertyId::CropColourA), std::nullopt);
  EXPECT_TRUE(Changed(PropertyId::CropColourR));
}

TEST_F(ColourChipTest, ReadsAllFourWhenOneChanges) {
  Open();
  Put(PropertyId::CropColourR, 1.0);
  Put(PropertyId::CropColourG, 2.0);
  Put(PropertyId::CropColourB, 3.0);
  Put(PropertyId::CropColourA, 4.0);
  const DSVariant ninety = DSVariant::Of(90.0);
  EXPECT_EQ(Changed(PropertyId::CropColourR, &ninety), (std::array{90.0, 2.0, 3.0, 4.0}));
  EXPECT_EQ(Changed(PropertyId::CropColourG, &ninety), (std::array{1.0, 90.0, 3.0, 4.0}));
  EXPECT_EQ(Changed(PropertyId::CropColourB, &ninety), (std::array{1.0, 2.0, 90.0, 4.0}));
  EXPECT_EQ(Changed(PropertyId::CropColourA, &ninety), (std::array{1.0, 2.0, 3.0, 90.0}));
  EXPECT_EQ(Changed(PropertyId::CropColourB), (std::array{1.0, 2.0, 3.0, 4.0}));
  EXPECT_EQ(Changed(PropertyId::Blur, &ninety), std::nullopt);
  EXPECT_EQ(page->chip.ReadIfAffected(), std::nullopt) << "no change";
}

}  // namespace
}  // namespace vblur
