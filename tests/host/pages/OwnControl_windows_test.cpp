// What the controls of the host's own show.
#include "host/pages/OwnControl.h"

#include <cmath>

#include "host/pages/PageFrame.h"
#include "host/pages/StaticControls.h"
#include "resources/Numbers.h"
#include "tests/host/pages/RecordingPage.h"
#include "tests/host/pages/SystemWindows_windows.h"
#include "tests/host/pages/WindowPicture_windows.h"

namespace vblur::host {
namespace {

constexpr LONG kEdge = 2;
constexpr LONG kBarHeight = 3;

struct OneNumber : OneControl<NumberControl> {
  OneNumber() : OneControl(ModuleControlKind::Static, "Blur;class=dsnewnumberctrl;min=0;max=200") {}
  HWND Window() const { return control.Handle(); }
  Picture ShownAt(double value) {
    control.SetValue(DSVariant::Of(value));
    return PrintOf(Window());
  }
};

// The place of the bar that shows how far along its range a number is.
RECT BarOf(const Picture& picture) {
  return {kEdge, picture.height - kEdge - kBarHeight, picture.width - kEdge, picture.height - kEdge};
}

// What is above the bar, without the edge.
RECT FieldOf(const Picture& picture) {
  return {kEdge, kEdge, picture.width - kEdge, picture.height - kEdge - kBarHeight};
}

TEST(OwnControl, ShowsHowFarANumberIsAlongItsRange) {
  OneNumber number;
  for (const double part : {0.0, 0.25, 0.5, 1.0, 1.5}) {
    const Picture picture = number.ShownAt(200.0 * part);
    const RECT bar = BarOf(picture);
    const LONG length = std::lround(std::min(part, 1.0) * (bar.right - bar.left));
    EXPECT_EQ(picture.Count(::GetSysColor(COLOR_HIGHLIGHT), bar), length * kBarHeight) << part;
    for (LONG x = bar.left; x < bar.left + length; ++x)
      ASSERT_EQ(picture.At(x, bar.top), ::GetSysColor(COLOR_HIGHLIGHT)) << part << " at " << x;
  }
}

TEST(OwnControl, ShowsTheValueOfANumberInTheMiddle) {
  OneNumber number;
  const auto* const font = reinterpret_cast<HFONT>(::SendMessageW(number.Window(), WM_GETFONT, 0, 0));
  ASSERT_NE(font, nullptr) << "that of the dialog";
  for (const auto& [value, text] : {std::pair{24.5, L"24.5"}, std::pair{0.0, L"0"}, std::pair{-3.0, L"-3"}}) {
    const Picture shown = number.ShownAt(value);
    RECT inner{kEdge, kEdge, shown.width - kEdge, shown.height - kEdge - 2};
    const Picture expected = PictureDrawn(shown.width, shown.height, [&, what = text](HDC dc) {
      const HGDIOBJ before = ::SelectObject(dc, const_cast<HFONT__*>(font));
      ::DrawTextW(dc, what, -1, &inner, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
      ::SelectObject(dc, before);
    });
    const RECT field = FieldOf(shown);
    LONG dark = 0;
    for (LONG y = field.top; y < field.bottom; ++y) {
      for (LONG x = field.left; x < field.right; ++x) {
        ASSERT_EQ(shown.At(x, y), expected.At(x, y)) << value << " at " << x << ", " << y;
        dark += shown.At(x, y) == ::GetSysColor(COLOR_WINDOW) ? 0 : 1;
      }
    }
    EXPECT_GT(dark, 3) << value;
  }
}

TEST(OwnControl, MarksANumberThatIsAnimated) {
  OneNumber number;
  const auto shown = [&](DSAnimationMark mark) {
    number.control.SetAnimationMark(mark);
    return number.ShownAt(0.0);
  };
  const Picture none = shown(DSAnimationMark::None);
  const LONG half = (none.height - 2 * kEdge) / 4;
  const LONG x = kEdge + half + 2;
  const LONG y = none.height / 2;
  const RECT place{kEdge, kEdge, x + half + 1, FieldOf(none).bottom};
  EXPECT_EQ(none.Count(::GetSysColor(COLOR_WINDOW), place), (place.right - place.left) * (place.bottom - place.top));
  const Picture animated = shown(DSAnimationMark::Animated);
  EXPECT_EQ(animated.At(x - half, y), RGB(0, 0, 0));
  EXPECT_EQ(animated.At(x, y), ::GetSysColor(COLOR_WINDOW)) << "hollow";
  const Picture key = shown(DSAnimationMark::Key);
  EXPECT_EQ(key.At(x - half, y), RGB(0, 0, 0));
  EXPECT_EQ(key.At(x, y), ::GetSysColor(COLOR_WINDOWTEXT)) << "filled";
}

TEST(OwnControl, IsGreyWhileItIsDisabled) {
  OneNumber number;
  const Picture enabled = number.ShownAt(100.0);
  number.control.Enable(false);
  const Picture disabled = number.ShownAt(100.0);
  EXPECT_EQ(disabled.Count(::GetSysColor(COLOR_HIGHLIGHT), AreaOf(number.Window())), 0) << "no bar";
  EXPECT_EQ(enabled.At(kEdge, kEdge), ::GetSysColor(COLOR_WINDOW));
  EXPECT_EQ(disabled.At(kEdge, kEdge), ::GetSysColor(COLOR_BTNFACE));
  EXPECT_EQ(disabled.Count(::GetSysColor(COLOR_WINDOWTEXT), FieldOf(disabled)), 0);
  EXPECT_GT(disabled.Count(::GetSysColor(COLOR_GRAYTEXT), FieldOf(disabled)), 0);
}

TEST(OwnControl, ShowsTheColourOfAChip) {
  OneControl<ColourChipControl> one(ModuleControlKind::Static, ";class=dsnewcolorchipctrl");
  one.control.SetColour(200, 40, 10, 255);
  const HWND window = one.control.Handle();
  const Picture shown = PrintOf(window);
  const RECT inner{kEdge, kEdge, shown.width - kEdge, shown.height - kEdge};
  EXPECT_EQ(shown.Count(RGB(200, 40, 10), inner), (inner.right - inner.left) * (inner.bottom - inner.top));
  one.control.Enable(false);
  EXPECT_EQ(PrintOf(window).At(shown.width / 2, shown.height / 2), ::GetSysColor(COLOR_BTNFACE));
}

TEST(OwnControl, ShowsAtOnceWhatAPageOrAUserChanges) {
  PagedEffect user;
  user.Do("show crop\npick 1,200,3\nset \"Crop Left\" 50");
  PageFrame frame(user.session.Pages(), user.History());
  auto& chip = ChipOf(user.Front());
  auto& left = ControlOf<NumberControl>(user.Front(), "Crop Left");
  for (const HWND window : {chip.Handle(), left.Handle()}) {
    const Picture shown = PictureOf(window);
    EXPECT_EQ(shown.pixels, PrintOf(window).pixels);
    EXPECT_FALSE(::GetUpdateRect(window, nullptr, FALSE));
  }
  const auto isToBePainted = [](HWND window) {
    const bool isIt = ::GetUpdateRect(window, nullptr, FALSE) != FALSE;
    ::UpdateWindow(window);
    return isIt;
  };
  EXPECT_EQ(chip.SetColour(9, 8, 7, 255), kOk);
  EXPECT_TRUE(isToBePainted(chip.Handle()));
  EXPECT_EQ(left.SetValue(DSVariant::Of(51.0)), kOk);
  EXPECT_TRUE(isToBePainted(left.Handle()));
  EXPECT_EQ(left.SetAnimationMark(DSAnimationMark::Key), kOk);
  EXPECT_TRUE(isToBePainted(left.Handle()));
  PressKey(left.Handle(), VK_UP);
  EXPECT_TRUE(isToBePainted(left.Handle()));
  left.Enable(false);
  EXPECT_TRUE(isToBePainted(left.Handle()));
}

TEST(OwnControl, LeavesTheLogoOfTheHelpPageToTheSystem) {
  PagedEffect user;
  user.Do("show HelpPPG");
  PageFrame frame(user.session.Pages(), user.History());
  const auto& items = user.Front().dialog->Items();
  const auto found =
      std::ranges::find_if(items, [](const auto& item) { return item->Kind() == PageWindowKind::Picture; });
  ASSERT_NE(found, items.end());
  const Picture shown = PictureOf((*found)->Handle());
  const HBITMAP logo = ::LoadBitmapW(::GetModuleHandleW(L"V_Blur.dll"), MAKEINTRESOURCEW(resources::bitmaps::kLogo));
  ASSERT_NE(logo, nullptr);
  BITMAP size{};
  ::GetObjectW(logo, sizeof(size), &size);
  const Picture expected = PictureDrawn(size.bmWidth, size.bmHeight, [&](HDC dc) {
    const HDC from = ::CreateCompatibleDC(dc);
    const HGDIOBJ before = ::SelectObject(from, logo);
    ::BitBlt(dc, 0, 0, size.bmWidth, size.bmHeight, from, 0, 0, SRCCOPY);
    ::SelectObject(from, before);
    ::DeleteDC(from);
  });
  ::DeleteObject(logo);
  EXPECT_EQ(shown.width, expected.width);
  EXPECT_EQ(shown.pixels, expected.pixels);
}

}  // namespace
}  // namespace vblur::host
