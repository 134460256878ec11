#include "pages/FullCropPPG.h"

#include "tests/pages/PageTest.h"

namespace vblur {
namespace {

using host::Calls;
using host::CheckBoxControl;
using host::ColourChipControl;
using host::ListControl;
using host::NumberControl;

using Colour = std::array<std::int32_t, 4>;

class FullCropPPGTest : public PageTest<FullCropPPG> {
 protected:
  Colour Chip() { return Of<ColourChipControl>(5006).Colour(); }
};

TEST_F(FullCropPPGTest, IsNamed) {
  ExpectNamed("crop", u"Cropping", 50);
}

TEST_F(FullCropPPGTest, MapsItsControls) {
  ExpectControlMap(*page, "Vessin4.3",
                   {
                       {PropertyId::DisplayCropped, 11, 5012, false, 0, 5031},
                       {PropertyId::CropLeft, 5, 5000, false, 1, 5001, 6000},
                       {PropertyId::CropRight, 5, 5001, false, 1, 5003, 6001},
                       {PropertyId::CropBottom, 5, 5002, false, 1, 5005, 6002},
                       {PropertyId::CropTop, 5, 5003, false, 1, 5007, 6003},
                       {PropertyId::XEdgeMethod, 3, 5004, false, 0, 5009, 6004},
                       {PropertyId::YEdgeMethod, 3, 5005, false, 0, 5015, 6005},
                       {std::nullopt, 0, 5006, true, 2, 5021},
                       {PropertyId::CropColourR, 5, 5008, true, 1, 5023, 6008},
                       {PropertyId::CropColourG, 5, 5009, true, 1, 5025, 6009},
                       {PropertyId::CropColourB, 5, 5010, true, 1, 5027, 6010},
                       {PropertyId::CropColourA, 5, 5011, true, 1, 5029, 6011},
                       {std::nullopt, 0, 5013, true, 2, 5035},
                       {PropertyId::BlankCropped, 11, 5020, false, 0, 5033},
                   },
                   5020);
  ExpectDialogHas(50, 5007, true);
  Open();
  ExpectVariablesFollow();
  EXPECT_EQ(site.dialog->Item(5006)->ToolTip(), u"Colour to use off edges.");
  EXPECT_EQ(site.dialog->Item(5013)->ToolTip(), u"Reset this page's values to their defaults.");
}

// The chip of its record: what its red is bound to is the chip's first control.
TEST_F(FullCropPPGTest, HasAChipWithAlphaAndAGroup) {
  const void* const red = page->GetControlMap()->Find(5008)->variable(*page);
  const auto& chip = *reinterpret_cast<const ColourChip*>(reinterpret_cast<const std::byte*>(&RecordOf<double>(red)) -
                                                          offsetof(ColourChip, red));
  EXPECT_EQ(chip.page, page.get());
  EXPECT_EQ(chip.chipId, 5006u);
  EXPECT_EQ(chip.groupId, 5007u);
  EXPECT_EQ(chip.flags, 1u);
  const CDSPPGControlMap& map = *page->GetControlMap();
  EXPECT_EQ(map.Find(5009)->variable(*page), &chip.green.value);
  EXPECT_EQ(map.Find(5010)->variable(*page), &chip.blue.value);
  EXPECT_EQ(map.Find(5011)->variable(*page), &chip.alpha.value);
}

TEST_F(FullCropPPGTest, AgreesOnRangesWithItsDialogAndItsProperties) {
  ExpectRangesAgree();
}

TEST_F(FullCropPPGTest, SetsItsRanges) {
  const ForeignRanges ranges;
  Activate();
  for (const std::int32_t id : {5000, 5001, 5002, 5003, 5008, 5009, 5010, 5011})
    ExpectRange(id, 0.0, 100.0);
}

// Nothing is read before the first notice.
TEST_F(FullCropPPGTest, ShowsTheDefaultsUntilItIsRefreshed) {
  Put(PropertyId::XEdgeMethod, 0.0);
  Put(PropertyId::YEdgeMethod, 3.0);
  Put(PropertyId::CropLeft, 12.0);
  Put(PropertyId::CropColourG, 40.0);
  EXPECT_EQ(Activate(), kOk);
  EXPECT_EQ(site.Taken(), Calls{"make dialog 50"});
  ExpectList(5004, 2, {u"Colour", u"Repeat", u"Reflect", u"Wrap"});
  ExpectList(5005, 2, {u"Colour", u"Repeat", u"Reflect", u"Wrap"});
  EXPECT_EQ(Of<NumberControl>(5000).Value(), 0.0);
  page->Refresh();
  EXPECT_EQ(Of<ListControl>(5004).Text(), u"Colour");
  EXPECT_EQ(Of<ListControl>(5005).Text(), u"Wrap");
  EXPECT_EQ(Of<NumberControl>(5000).Value(), 12.0);
  EXPECT_EQ(Chip(), (Colour{0, 102, 0, 255}));
}

TEST_F(FullCropPPGTest, LinksTheEffect) {
  ExpectLink();
}

TEST_F(FullCropPPGTest, LivesWithoutAnEffect) {
  ExpectToLiveWithoutEffect();
}

TEST_F(FullCropPPGTest, CountsInItsServer) {
  ExpectCounted();
}

TEST_F(FullCropPPGTest, TheChipFollowsItsNumbers) {
  Open();
  page->SetObjects(0, nullptr);  // no notices: the action alone
  Of<NumberControl>(5008).Type("100");
  EXPECT_EQ(Chip(), (Colour{254, 0, 0, 255}));
  Of<NumberControl>(5009).Type("20");
  EXPECT_EQ(Chip(), (Colour{254, 51, 0, 255}));
  Of<NumberControl>(5010).Type("40");
  EXPECT_EQ(Chip(), (Colour{254, 51, 102, 255}));
  Of<ColourChipControl>(5006).SetColour(1, 2, 3, 255);
  Of<NumberControl>(5011).Type("50");
  EXPECT_EQ(Chip(), (Colour{254, 51, 102, 255})) << "alpha shows the colour too, and is no part of it";
}

TEST_F(FullCropPPGTest, TheChipFollowsNotices) {
  Open();
  Put(PropertyId::CropColourR, 100.0);
  EXPECT_EQ(Chip(), (Colour{254, 0, 0, 255}));
  Put(PropertyId::CropColourG, 20.0);
  Put(PropertyId::CropColourB, 40.0);
  EXPECT_EQ(Chip(), (Colour{254, 51, 102, 255}));
  Of<ColourChipControl>(5006).SetColour(1, 2, 3, 255);
  Put(PropertyId::CropLeft, 5.0);
  EXPECT_EQ(Chip(), (Colour{1, 2, 3, 255})) << "another property";
  Put(PropertyId::CropColourA, 10.0);
  EXPECT_EQ(Chip(), (Colour{254, 51, 102, 255})) << "alpha";
  history.Undo();
  history.Undo();
  history.Undo();
  EXPECT_EQ(Chip(), (Colour{254, 51, 0, 255}));
  EXPECT_FALSE(page->IsChanging());
}

TEST_F(FullCropPPGTest, TheChipFollowsTheTime) {
  Open();
  Animate(PropertyId::CropColourR, 0.0, 80.0);
  Put(PropertyId::CropColourB, 20.0);
  EXPECT_EQ(Chip(), (Colour{0, 0, 51, 255}));
  site.time = 5.0;
  EXPECT_EQ(page->UpdateAnimatedControls(5.0), kOk);
  EXPECT_EQ(Of<NumberControl>(5008).Value(), 40.0);
  EXPECT_EQ(Chip(), (Colour{102, 0, 51, 255}));
  site.time = 10.0;
  page->UpdateAnimatedControls(10.0);
  EXPECT_EQ(Chip(), (Colour{204, 0, 51, 255}));
}

TEST_F(FullCropPPGTest, ANoticeIsOfTheSitesTime) {
  Open();
  site.time = 5.0;
  Animate(PropertyId::CropColourR, 0.0, 80.0);
  EXPECT_EQ(Chip(), (Colour{102, 0, 0, 255}));
}

TEST_F(FullCropPPGTest, APickWritesThreePropertiesAndStays) {
  Open();
  Put(PropertyId::CropColourA, 33.0);
  site.Taken();
  std::vector<Colour> shown;
  struct Watch : host::PageObserver {
    explicit Watch(std::function<void()> then) : seen(std::move(then)) {}
    void OnWindowChanged(host::PageWindow&) override { seen(); }
    std::function<void()> seen;
  } watch([&] { shown.push_back(Chip()); });
  auto& chip = Of<ColourChipControl>(5006);
  chip.AddObserver(watch);
  chip.PickColour(255, 128, 51);
  chip.RemoveObserver(watch);
  EXPECT_EQ(shown, std::vector{(Colour{255, 128, 51, 255})}) << "no second update";
  EXPECT_EQ(site.TakenChanges(), (Calls{"begin \"\"", "begin", "end", "SetAnimatedProperty Crop Colour R 100", "begin",
                                        "end", "SetAnimatedProperty Crop Colour G 50.19607843137255", "begin", "end",
                                        "SetAnimatedProperty Crop Colour B 20", "end"}));
  EXPECT_EQ(Get(PropertyId::CropColourA), 33.0);
  EXPECT_EQ(Of<NumberControl>(5011).Value(), 33.0);
  EXPECT_EQ(history.UndoDepth(), 2u);
  Put(PropertyId::CropColourB, 0.0);
  EXPECT_EQ(Chip(), (Colour{254, 127, 0, 255})) << "no longer suspended";
}

TEST_F(FullCropPPGTest, ResetsInOneStep) {
  Open();
  const std::pair<PropertyId, double> changed[] = {
      {PropertyId::CropLeft, 1.0},    {PropertyId::CropRight, 2.0},      {PropertyId::CropBottom, 3.0},
      {PropertyId::CropTop, 4.0},     {PropertyId::XEdgeMethod, 0.0},    {PropertyId::YEdgeMethod, 1.0},
      {PropertyId::CropColourR, 5.0}, {PropertyId::CropColourG, 6.0},    {PropertyId::CropColourB, 7.0},
      {PropertyId::CropColourA, 8.0}, {PropertyId::DisplayCropped, 1.0}, {PropertyId::BlankCropped, 1.0}};
  for (const auto& [id, value] : changed)
    Put(id, value);
  Of<ColourChipControl>(5006).SetColour(9, 9, 9, 9);
  const std::size_t before = history.UndoDepth();
  site.Taken();
  Press(5013);
  EXPECT_EQ(site.TakenChanges(), (Calls{"begin \"Reset\"", "begin \"Reset\"", "SetAnimatedProperty Crop Left 0",
                                        "SetAnimatedProperty Crop Right 100", "SetAnimatedProperty Crop Bottom 0",
                                        "SetAnimatedProperty Crop Top 100", "SetPlainProperty X Edge Method 2",
                                        "SetPlainProperty Y Edge Method 2", "SetAnimatedProperty Crop Colour R 0",
                                        "SetAnimatedProperty Crop Colour G 0", "SetAnimatedProperty Crop Colour B 0",
                                        "SetAnimatedProperty Crop Colour A 0", "SetPlainProperty Display Cropped 0",
                                        "SetPlainProperty Blank Cropped 0", "end", "end"}));
  EXPECT_EQ(Chip(), (Colour{0, 0, 0, 255}));
  EXPECT_FALSE(Of<CheckBoxControl>(5012).IsChecked());
  EXPECT_EQ(Of<ListControl>(5004).Text(), u"Reflect");
  EXPECT_EQ(Get(PropertyId::BlankCropped), 0.0);
  EXPECT_EQ(history.UndoDepth(), before + 1);
  history.Undo();
  for (const auto& [id, value] : changed)
    EXPECT_EQ(Get(id), value) << PropertyOf(id).name;
}

TEST_F(FullCropPPGTest, ResetShowsTheChipItself) {
  Open();
  page->SetObjects(0, nullptr);
  Of<ColourChipControl>(5006).SetColour(9, 9, 9, 9);
  Press(5013);
  EXPECT_EQ(Chip(), (Colour{0, 0, 0, 255})) << "without a notice";
}

}  // namespace
}  // namespace vblur
