// Windows of the system, by its functions' names.
#include "platform/Window.h"

#include <gtest/gtest.h>
// After those of the project, whose names its macros would replace.
#include <windows.h>

namespace vblur {
namespace {

// A dialog's window with an edit control of id 7. Nothing of it shows.
class WindowOfTheSystem : public testing::Test {
 protected:
  ~WindowOfTheSystem() override { ::DestroyWindow(dialog); }

  static HWND Make(const wchar_t* kind, HWND parent, std::intptr_t id) {
    return ::CreateWindowExW(0, kind, L"", parent == nullptr ? WS_POPUP : WS_CHILD, 0, 0, 80, 20, parent,
                             reinterpret_cast<HMENU>(id), nullptr, nullptr);
  }

  HWND dialog = Make(L"STATIC", nullptr, 0);
  HWND item = Make(L"EDIT", dialog, 7);
};

TEST_F(WindowOfTheSystem, GetsTheCalls) {
  EXPECT_EQ(vblur::GetDlgItem(dialog, 7), item);
  EXPECT_EQ(vblur::GetDlgItem(dialog, 8), nullptr);
  EXPECT_FALSE(vblur::EnableWindow(item, false));
  EXPECT_FALSE(::IsWindowEnabled(item));
  EXPECT_TRUE(vblur::EnableWindow(item, true)) << "it was disabled";
  EXPECT_TRUE(::IsWindowEnabled(item));
  const char16_t* const text = u"one two";
  EXPECT_EQ(vblur::SendMessageW(item, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)), 1);
  char16_t read[16] = {};
  EXPECT_EQ(vblur::SendMessageW(item, WM_GETTEXT, 16, reinterpret_cast<LPARAM>(read)), 7);
  EXPECT_EQ(std::u16string(read), text);
}

TEST_F(WindowOfTheSystem, KeepsHandlesUnderNames) {
  int kept = 0;
  ::SetPropW(dialog, L"kept", &kept);
  EXPECT_EQ(vblur::GetPropW(dialog, u"kept"), &kept);
  EXPECT_EQ(vblur::GetPropW(dialog, u"lost"), nullptr);
  EXPECT_EQ(vblur::GetPropW(dialog, nullptr), nullptr);
  ::RemovePropW(dialog, L"kept");
}

TEST_F(WindowOfTheSystem, IsInvalidOnceItShows) {
  EXPECT_TRUE(vblur::InvalidateRect(dialog, nullptr, false));
  EXPECT_FALSE(::GetUpdateRect(dialog, nullptr, FALSE)) << "nothing of it shows";
  ::ShowWindow(dialog, SW_SHOWNOACTIVATE);
  ::ValidateRect(dialog, nullptr);
  EXPECT_FALSE(::GetUpdateRect(dialog, nullptr, FALSE));
  EXPECT_TRUE(vblur::InvalidateRect(dialog, nullptr, false));
  EXPECT_TRUE(::GetUpdateRect(dialog, nullptr, FALSE));
  RECT part{};
  ::ValidateRect(dialog, nullptr);
  const RECT corner{0, 0, 4, 3};
  EXPECT_TRUE(vblur::InvalidateRect(dialog, &corner, false));
  EXPECT_TRUE(::GetUpdateRect(dialog, &part, FALSE));
  EXPECT_EQ(part.right, 4);
  EXPECT_EQ(part.bottom, 3);
}

TEST_F(WindowOfTheSystem, SharesRegisteredMessagesWithAll) {
  EXPECT_EQ(vblur::RegisterWindowMessageW(u"a message of the test"),
            ::RegisterWindowMessageW(L"a message of the test"));
}

}  // namespace
}  // namespace vblur
