#include "platform/Window.h"

#include <string>

#include <gtest/gtest.h>

namespace vblur {
namespace {

TEST(Window, DoesNothingWithoutOne) {
  EXPECT_EQ(GetDlgItem(nullptr, 1), nullptr);
  EXPECT_FALSE(EnableWindow(nullptr, true));
  EXPECT_EQ(SendMessageW(nullptr, 12, 34, 56), 0);
  EXPECT_EQ(GetPropW(nullptr, u"kept"), nullptr);
  EXPECT_FALSE(InvalidateRect(nullptr, nullptr, true));
}

TEST(Window, HasTheSystemsNumbers) {
  EXPECT_EQ(WM_SETTEXT, 12u);
  EXPECT_EQ(WM_GETTEXT, 13u);
  EXPECT_EQ(WM_COMMAND, 273u);
  EXPECT_EQ(BM_GETCHECK, 240u);
  EXPECT_EQ(BM_SETCHECK, 241u);
  EXPECT_EQ(CB_ADDSTRING, 323u);
  EXPECT_EQ(CB_GETCOUNT, 326u);
  EXPECT_EQ(CB_GETCURSEL, 327u);
  EXPECT_EQ(CB_RESETCONTENT, 331u);
  EXPECT_EQ(CB_SETCURSEL, 334u);
  EXPECT_EQ(SW_HIDE, 0u);
  EXPECT_EQ(SW_SHOWNORMAL, 1u);
  EXPECT_EQ(SW_SHOW, 5u);
}

TEST(Window, NumbersRegisteredMessagesByTheirName) {
  const UINT first = RegisterWindowMessageW(u"first of the test");
  const UINT second = RegisterWindowMessageW(u"second of the test");
  EXPECT_GE(first, 0xC000u);
  EXPECT_NE(second, first);
  EXPECT_LE(second, 0xFFFFu);
  const std::u16string sameName = u"first of the test";
  EXPECT_EQ(RegisterWindowMessageW(sameName.c_str()), first);
  EXPECT_EQ(RegisterWindowMessageW(u""), 0u);
  EXPECT_EQ(RegisterWindowMessageW(nullptr), 0u);
}

}  // namespace
}  // namespace vblur
