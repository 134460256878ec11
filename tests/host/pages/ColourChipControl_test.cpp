#include "host/pages/ColourChipControl.h"

#include "platform/ComPtr.h"
#include "tests/host/pages/RecordingPage.h"

namespace vblur::host {
namespace {

using Colour = std::array<std::int32_t, 4>;

struct Chip : OneControl<ColourChipControl> {
  Chip() : OneControl(ModuleControlKind::Static, ";class=dsnewcolorchipctrl;auto=1") {}
};

// As pages find it.
ComPtr<IDSColourChip> ChipOf(HWND window) {
  const ComPtr<IUnknown> kept(static_cast<IUnknown*>(GetPropW(window, kControlInterface)));
  return kept.As<IDSColourChip>();
}

TEST(ColourChipControl, IsFoundAsAColourChipByItsWindow) {
  Chip chip;
  const auto found = ChipOf(chip.control.Handle());
  ASSERT_TRUE(found);
  void* number = &chip;
  EXPECT_EQ(found->QueryInterface(IDSNumberControl::kIid, &number), kNoInterface);
  EXPECT_EQ(number, nullptr);
  EXPECT_EQ(found->QueryInterface(IDSColourChip::kIid, nullptr), kNullPointer);
  EXPECT_EQ(GetPropW(chip.control.Handle(), u"DSCTLIFAC"), nullptr);
}

TEST(ColourChipControl, IsOwnedByItsDialog) {
  Chip chip;
  auto* const found = static_cast<IUnknown*>(GetPropW(chip.control.Handle(), kControlInterface));
  void* counted = nullptr;
  EXPECT_EQ(found->QueryInterface(IDSColourChip::kIid, &counted), kOk);
  EXPECT_EQ(found->Release(), 1u);
  EXPECT_EQ(found->AddRef(), 2u) << "the window's property is borrowed";
  EXPECT_EQ(found->Release(), 1u);
  EXPECT_EQ(found->Release(), 0u);
  EXPECT_TRUE(chip.control.PickColour(1, 2, 3)) << "still there";
}

TEST(ColourChipControl, ShowsThePagesColourWithoutAMessage) {
  Chip chip;
  const auto found = ChipOf(chip.control.Handle());
  EXPECT_EQ(chip.control.Colour(), (Colour{0, 0, 0, 255}));
  EXPECT_EQ(found->SetColour(254, 127, 0, 12), kOk);
  EXPECT_EQ(chip.Changes(), 1u);
  EXPECT_EQ(found->SetColour(254, 127, 0, 12), kOk);
  EXPECT_EQ(chip.Changes(), 0u);
  Colour read{};
  EXPECT_EQ(found->GetColour(&read[0], &read[1], &read[2], &read[3]), kOk);
  EXPECT_EQ(read, (Colour{254, 127, 0, 12}));
  EXPECT_EQ(chip.page.Taken(), Messages{});
}

TEST(ColourChipControl, RefusesOtherComponents) {
  Chip chip;
  chip.control.SetColour(1, 2, 3, 4);
  for (std::size_t i = 0; i < 4; ++i) {
    for (const std::int32_t wrong : {-1, 256}) {
      Colour colour{9, 9, 9, 9};
      colour[i] = wrong;
      EXPECT_EQ(chip.control.SetColour(colour[0], colour[1], colour[2], colour[3]), kWrongArgument) << i;
    }
    Colour read{9, 9, 9, 9};
    std::array<std::int32_t*, 4> parts{&read[0], &read[1], &read[2], &read[3]};
    parts[i] = nullptr;
    EXPECT_EQ(chip.control.GetColour(parts[0], parts[1], parts[2], parts[3]), kNullPointer) << i;
    EXPECT_EQ(read, (Colour{9, 9, 9, 9}));
  }
  EXPECT_EQ(chip.control.Colour(), (Colour{1, 2, 3, 4}));
}

TEST(ColourChipControl, TellsThePageWhatAUserPicks) {
  Chip chip;
  chip.control.SetColour(1, 2, 3, 4);
  EXPECT_TRUE(chip.control.PickColour(255, 0, 7));
  EXPECT_EQ(chip.control.Colour(), (Colour{255, 0, 7, 4}));
  EXPECT_EQ(chip.page.Taken(), (Messages{"notify 5"}));
  EXPECT_TRUE(chip.control.PickColour(255, 0, 7));
  EXPECT_FALSE(chip.control.PickColour(256, 0, 7));
  EXPECT_FALSE(chip.control.PickColour(255, 0, -7));
  EXPECT_EQ(chip.control.Colour(), (Colour{255, 0, 7, 4}));
  EXPECT_EQ(chip.page.Taken(), Messages{});
}

TEST(ColourChipControl, TakesNoInputWhileDisabledOrHidden) {
  Chip chip;
  chip.control.Enable(false);
  EXPECT_FALSE(chip.control.PickColour(1, 2, 3));
  chip.control.Enable(true);
  chip.control.Show(false);
  EXPECT_FALSE(chip.control.PickColour(1, 2, 3));
  EXPECT_EQ(chip.control.Colour(), (Colour{0, 0, 0, 255}));
  EXPECT_EQ(chip.page.Taken(), Messages{});
}

}  // namespace
}  // namespace vblur::host
