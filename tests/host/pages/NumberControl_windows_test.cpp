// A number control as a user's keys and mouse find it.
#include "host/pages/NumberControl.h"

#include "resources/Numbers.h"
#include "tests/host/pages/RecordingPage.h"
#include "tests/host/pages/SystemWindows_windows.h"

namespace vblur::host {
namespace {

struct OnPage {
  OnPage() {
    user.Do("show FullBlurPPG");
    number = WindowOf(user.Front(), resources::full_blur::kBlur);
  }
  double Blur() const { return user.ValueAt("Blur"); }
  HWND Field() const { return ::GetWindow(number, GW_CHILD); }

  PagedEffect user;
  HWND number = nullptr;
};

TEST(NumberControl, TakesWhatIsTypedIntoItsWindow) {
  OnPage page;
  TypeInto(page.number, "24.5");
  EXPECT_EQ(page.Blur(), 24.5);
  EXPECT_EQ(page.Field(), nullptr) << "the field goes";
  TypeInto(page.number, "*=2");
  EXPECT_EQ(page.Blur(), 49.0);
  TypeInto(page.number, "(1+2)*3");
  EXPECT_EQ(page.Blur(), 9.0);
  TypeInto(page.number, "50%");
  EXPECT_EQ(page.Blur(), 360.0);
  TypeInto(page.number, "9999");
  EXPECT_EQ(page.Blur(), 720.0);
  EXPECT_EQ(page.user.History().UndoDepth(), 5u);
}

TEST(NumberControl, ForgetsWhatIsTypedAtEscape) {
  OnPage page;
  TypeInto(page.number, "77", VK_ESCAPE);
  EXPECT_EQ(page.Blur(), 10.0);
  EXPECT_EQ(page.Field(), nullptr);
  ::SendMessageW(page.number, WM_CHAR, 'q', 1);
  EXPECT_EQ(page.Field(), nullptr) << "no letter begins a number";
}

TEST(NumberControl, KeepsTheFieldOpenOverATextThatIsNone) {
  OnPage page;
  TypeInto(page.number, "1,5");
  EXPECT_EQ(page.Blur(), 10.0);
  ASSERT_NE(page.Field(), nullptr);
  EXPECT_EQ(TitleOf(page.Field()), "1,5");
  ::SendMessageW(page.Field(), WM_KILLFOCUS, 0, 0);
  EXPECT_EQ(page.Field(), nullptr);
  EXPECT_EQ(page.Blur(), 10.0);
}

TEST(NumberControl, KeepsEachBitOfAValueThatIsNotTypedOver) {
  OnPage page;
  page.user.Put("Blur", 12.123456789012345);
  PressKey(page.number, VK_RETURN);
  ASSERT_NE(page.Field(), nullptr);
  EXPECT_EQ(TitleOf(page.Field()), "12.1235");
  PressKey(page.Field(), VK_RETURN);
  EXPECT_EQ(page.Field(), nullptr);
  EXPECT_EQ(page.Blur(), 12.123456789012345);
  ::SendMessageW(page.number, WM_LBUTTONDBLCLK, MK_LBUTTON, 0);
  EXPECT_NE(page.Field(), nullptr) << "a double click opens it";
}

TEST(NumberControl, TakesWhatWasTypedWhenTheFocusGoes) {
  OnPage page;
  TypeInto(page.number, "31", VK_SHIFT);
  ASSERT_NE(page.Field(), nullptr);
  ::SendMessageW(page.Field(), WM_KILLFOCUS, 0, 0);
  EXPECT_EQ(page.Blur(), 31.0);
}

TEST(NumberControl, IsScrubbedByTheMouseInOneStep) {
  OnPage page;
  MoveMouse(page.number, WM_LBUTTONDOWN, 20);
  EXPECT_EQ(::GetCapture(), page.number);
  MoveMouse(page.number, WM_MOUSEMOVE, 25);
  EXPECT_EQ(page.Blur(), 15.0);
  MoveMouse(page.number, WM_MOUSEMOVE, 23);
  EXPECT_EQ(page.Blur(), 13.0);
  MoveMouse(page.number, WM_MOUSEMOVE, 26, MK_LBUTTON | MK_SHIFT);
  EXPECT_EQ(page.Blur(), 43.0) << "coarse";
  MoveMouse(page.number, WM_MOUSEMOVE, 25, MK_LBUTTON | MK_CONTROL);
  EXPECT_EQ(page.Blur(), 42.9) << "fine";
  MoveMouse(page.number, WM_LBUTTONUP, 25, 0);
  EXPECT_EQ(::GetCapture(), nullptr);
  MoveMouse(page.number, WM_MOUSEMOVE, 90, 0);
  EXPECT_EQ(page.Blur(), 42.9);
  EXPECT_EQ(page.user.History().UndoDepth(), 1u);
}

TEST(NumberControl, CancelsAScrubAtEscape) {
  OnPage page;
  MoveMouse(page.number, WM_LBUTTONDOWN, 0);
  MoveMouse(page.number, WM_MOUSEMOVE, 9);
  EXPECT_EQ(page.Blur(), 19.0);
  PressKey(page.number, VK_ESCAPE);
  EXPECT_EQ(page.Blur(), 10.0);
  EXPECT_EQ(::GetCapture(), nullptr);
  EXPECT_FALSE(page.user.History().CanUndo());
}

TEST(NumberControl, EndsAScrubWhenAnotherWindowTakesTheMouse) {
  OnPage page;
  MoveMouse(page.number, WM_LBUTTONDOWN, 0);
  MoveMouse(page.number, WM_MOUSEMOVE, 4);
  ::SetCapture(::GetParent(page.number));
  Pump();
  ::ReleaseCapture();
  MoveMouse(page.number, WM_MOUSEMOVE, 40);
  EXPECT_EQ(page.Blur(), 14.0);
  EXPECT_FALSE(page.user.History().IsStepOpen());
  EXPECT_TRUE(page.user.History().Undo());
}

TEST(NumberControl, StepsByTheKeysOfItsWindow) {
  OnPage page;
  const std::array<std::pair<WPARAM, double>, 6> keys{
      {{VK_UP, 11.0}, {VK_DOWN, 10.0}, {VK_PRIOR, 20.0}, {VK_NEXT, 10.0}, {VK_END, 720.0}, {VK_HOME, 0.0}}};
  for (const auto& [key, value] : keys) {
    PressKey(page.number, key);
    EXPECT_EQ(page.Blur(), value) << key;
  }
}

TEST(NumberControl, DropsItsFieldWhenItIsDisabled) {
  OneControl<NumberControl> one(ModuleControlKind::Static, ";class=dsnewnumberctrl;min=0;max=9");
  ::SendMessageW(one.control.Handle(), WM_CHAR, '5', 1);
  ASSERT_NE(::GetWindow(one.control.Handle(), GW_CHILD), nullptr);
  one.control.Enable(false);
  EXPECT_EQ(::GetWindow(one.control.Handle(), GW_CHILD), nullptr);
  EXPECT_EQ(one.control.Value(), 0.0);
}

TEST(NumberControl, StepsByEachPixelHoweverFarItIsDragged) {
  OneControl<NumberControl> one(ModuleControlKind::Static, ";class=dsnewnumberctrl;min=-100000;max=100000");
  const HWND number = one.control.Handle();
  MoveMouse(number, WM_LBUTTONDOWN, 0);
  for (const int place : {7999, 8001, 8002, 32767, -32768}) {
    MoveMouse(number, WM_MOUSEMOVE, place);
    EXPECT_EQ(one.control.Value(), place);
  }
  MoveMouse(number, WM_LBUTTONUP, -32768, 0);
  // Scripts drag as far as they like.
  one.control.BeginScrub();
  one.control.Scrub(50000);
  one.control.Scrub(32768);
  one.control.EndScrub();
  EXPECT_EQ(one.control.Value(), 50000.0);
}

}  // namespace
}  // namespace vblur::host
