// A colour chip as a user's mouse and keys find it, and the system's picker behind it.
#include "host/pages/ColourChipControl.h"

#include "tests/host/pages/PickerUser_windows.h"
#include "tests/host/pages/SystemWindows_windows.h"

namespace vblur::host {
namespace {

using Colour = std::array<std::int32_t, 4>;

struct OnCropPage {
  OnCropPage() {
    user.Do("show crop\npick 10,20,30");
    chip = ChipOf(user.Front()).Handle();
  }
  void Click() const {
    MoveMouse(chip, WM_LBUTTONDOWN, 5);
    MoveMouse(chip, WM_LBUTTONUP, 5, 0);
  }

  PagedEffect user;
  HWND chip = nullptr;
};

TEST(ColourChipControl, TakesThePickersColourAtOk) {
  OnCropPage page;
  const std::size_t before = page.user.History().UndoDepth();
  const PickerUser picker(IDOK, 200);
  page.Click();
  EXPECT_EQ(picker.Opened(), 1);
  EXPECT_EQ(page.user.Chip(), (Colour{200, 20, 30, 255}));
  EXPECT_NEAR(page.user.ValueAt("Crop Colour R"), 200.0 / 2.55, 0.01);
  EXPECT_EQ(page.user.History().UndoDepth(), before + 1);
}

TEST(ColourChipControl, KeepsItsColourAtCancel) {
  OnCropPage page;
  const std::size_t before = page.user.History().UndoDepth();
  const PickerUser picker(IDCANCEL, 200);
  page.Click();
  PressKey(page.chip, VK_SPACE);
  EXPECT_EQ(picker.Opened(), 2);
  EXPECT_EQ(page.user.Chip(), (Colour{10, 20, 30, 255}));
  EXPECT_EQ(page.user.History().UndoDepth(), before);
}

TEST(ColourChipControl, IsClickedByAPressAndAReleaseOnIt) {
  OnCropPage page;
  const PickerUser picker;
  ::SetFocus(page.chip);
  MoveMouse(page.chip, WM_LBUTTONUP, 5, 0);
  EXPECT_EQ(picker.Opened(), 0) << "pressed elsewhere";
  for (const int place : {-1, 2000}) {
    MoveMouse(page.chip, WM_LBUTTONDOWN, 5);
    EXPECT_EQ(::GetCapture(), page.chip);
    MoveMouse(page.chip, WM_LBUTTONUP, place, 0);
    EXPECT_EQ(picker.Opened(), 0) << "released elsewhere";
    EXPECT_EQ(::GetCapture(), nullptr);
  }
  MoveMouse(page.chip, WM_LBUTTONDOWN, 5);
  ::ReleaseCapture();
  MoveMouse(page.chip, WM_LBUTTONUP, 5, 0);
  EXPECT_EQ(picker.Opened(), 0) << "another window took the mouse";
  ::EnableWindow(page.chip, FALSE);
  page.Click();
  EXPECT_EQ(picker.Opened(), 0);
  ::EnableWindow(page.chip, TRUE);
  page.Click();
  EXPECT_EQ(picker.Opened(), 1);
}

}  // namespace
}  // namespace vblur::host
