// Windows that are the objects behind their handles.
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

TEST(Window, HasNothingUnlessItOverridesIt) {
  IHostWindow window;
  EXPECT_EQ(GetDlgItem(&window, 1), nullptr);
  EXPECT_FALSE(EnableWindow(&window, true));
  EXPECT_EQ(SendMessageW(&window, 12, 34, 56), 0);
  EXPECT_EQ(GetPropW(&window, u"kept"), nullptr);
  EXPECT_TRUE(InvalidateRect(&window, nullptr, true));
}

}  // namespace
}  // namespace vblur
