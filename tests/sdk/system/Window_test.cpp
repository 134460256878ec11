#include "platform/Window.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace vblur {
namespace {

// Notes what reaches it.
class NotingWindow : public IHostWindow {
 public:
  std::string calls;
  IHostWindow* item = nullptr;
  bool wasDisabled = false;
  int kept = 0;

  void Invalidate() override { calls += "invalidate "; }
  IHostWindow* Item(std::int32_t id) override {
    calls += "item " + std::to_string(id) + " ";
    return item;
  }
  bool Enable(bool enable) override {
    calls += enable ? "enable " : "disable ";
    return wasDisabled;
  }
  LRESULT Receive(UINT message, WPARAM wParam, LPARAM lParam) override {
    calls += std::to_string(message) + " " + std::to_string(wParam) + " " + std::to_string(lParam) + " ";
    return -7;
  }
  HANDLE Prop(std::u16string_view name) override { return name == u"kept" ? &kept : nullptr; }
};

TEST(Window, PassesCallsToWhatIsBehindTheHandle) {
  NotingWindow item;
  NotingWindow window;
  window.item = &item;
  EXPECT_EQ(GetDlgItem(&window, -5), &item);
  EXPECT_FALSE(EnableWindow(&window, true));
  window.wasDisabled = true;
  EXPECT_TRUE(EnableWindow(&window, false));
  EXPECT_EQ(SendMessageW(&window, 12, 34, -56), -7);
  EXPECT_TRUE(InvalidateRect(&window, nullptr, false));
  EXPECT_EQ(window.calls, "item -5 enable disable 12 34 -56 invalidate ");
  EXPECT_EQ(GetPropW(&window, u"kept"), &window.kept);
  EXPECT_EQ(GetPropW(&window, u"lost"), nullptr);
  EXPECT_EQ(GetPropW(&window, nullptr), nullptr);
  EXPECT_EQ(item.calls, "");
}

TEST(Window, DoesNothingWithoutOne) {
  EXPECT_EQ(GetDlgItem(nullptr, 1), nullptr);
  EXPECT_FALSE(EnableWindow(nullptr, true));
  EXPECT_EQ(SendMessageW(nullptr, 12, 34, 56), 0);
  EXPECT_EQ(GetPropW(nullptr, u"kept"), nullptr);
  EXPECT_FALSE(InvalidateRect(nullptr, nullptr, true));
}

TEST(Window, HasNothingUnlessItOverridesIt) {
  IHostWindow window;
  EXPECT_EQ(GetDlgItem(&window, 1), nullptr);
  EXPECT_FALSE(EnableWindow(&window, true));
  EXPECT_EQ(SendMessageW(&window, 12, 34, 56), 0);
  EXPECT_EQ(GetPropW(&window, u"kept"), nullptr);
  EXPECT_TRUE(InvalidateRect(&window, nullptr, true));
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
  EXPECT_EQ(second, first + 1);
  const std::u16string sameName = u"first of the test";
  EXPECT_EQ(RegisterWindowMessageW(sameName.c_str()), first);
  EXPECT_EQ(RegisterWindowMessageW(u""), 0u);
  EXPECT_EQ(RegisterWindowMessageW(nullptr), 0u);
}

}  // namespace
}  // namespace vblur
