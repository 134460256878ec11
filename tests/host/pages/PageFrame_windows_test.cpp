// The window with the pages, as it is on the screen.
#include "host/pages/PageFrame.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

#include "resources/Numbers.h"
#include "tests/host/pages/PickerUser_windows.h"
#include "tests/host/pages/SystemWindows_windows.h"
#include "tests/host/pages/WindowPicture_windows.h"
// After the system's header.
#include <commctrl.h>

namespace vblur::host {
namespace {

// A BMP file, for docs/.
void Write(const Picture& picture, const std::string& file) {
  const auto size = static_cast<DWORD>(picture.pixels.size() * 4);
  BITMAPFILEHEADER head{0x4D42, 0, 0, 0, sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER)};
  head.bfSize = head.bfOffBits + size;
  const BITMAPINFOHEADER info{sizeof(BITMAPINFOHEADER), picture.width, picture.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  std::ofstream out(file, std::ios::binary);
  out.write(reinterpret_cast<const char*>(&head), sizeof(head));
  out.write(reinterpret_cast<const char*>(&info), sizeof(info));
  out.write(reinterpret_cast<const char*>(picture.pixels.data()), size);
}

TEST(PageFrame, ShowsEachPage) {
  for (const EffectKind kind : {EffectKind::Filter, EffectKind::Transition}) {
    PagedEffect user(kind);
    for (const std::string_view name : user.session.Pages().Listed()) {
      SCOPED_TRACE(name);
      user.session.Pages().Show(name);
      PageFrame frame(user.session.Pages(), user.History());
      ASSERT_TRUE(frame.IsOpen());
      Pump();
      EXPECT_EQ(user.Front().name, name);
      EXPECT_TRUE(::IsWindowVisible(user.Front().dialog->Handle()));
      const Picture picture = PictureOf(frame.Handle());
      // Texts, edges, bars: more than a background.
      EXPECT_GT(std::set<std::uint32_t>(picture.pixels.begin(), picture.pixels.end()).size(), 8u);
      if (const char* const folder = std::getenv("VBLUR_PAGE_PICTURES"); folder != nullptr) {
        Write(picture, std::string(folder) + "/" + std::string(name) + ".bmp");
      }
    }
  }
}

TEST(PageFrame, KeepsTheDialogsWhenItIsClosed) {
  PagedEffect user;
  user.Do("show crop\nset \"Crop Left\" 20");
  {
    PageFrame frame(user.session.Pages(), user.History());
    EXPECT_EQ(user.Front().name, "crop");
    ::SendMessageW(frame.Handle(), WM_CLOSE, 0, 0);
    EXPECT_FALSE(frame.IsOpen());
    frame.Run(ExecuteContext());
  }
  EXPECT_EQ(user.Number("Crop Left"), 20.0);
  user.Do("set \"Crop Left\" 30");
  EXPECT_EQ(user.ValueAt("Crop Left"), 30.0);
}

// A frame under a user's keys.
struct OnScreen {
  explicit OnScreen(const std::string& script = "show FullBlurPPG") {
    user.Do(script);
    frame.emplace(user.session.Pages(), user.History());
    Pump();
  }
  // A key that comes to a window while others are held.
  void Press(HWND window, WPARAM key, const std::vector<int>& held = {}) {
    std::array<BYTE, 256> before{};
    ::GetKeyboardState(before.data());
    auto keys = before;
    for (const int each : held)
      keys[static_cast<std::size_t>(each)] = 0x80;
    ::SetKeyboardState(keys.data());
    Dispatch(window, WM_KEYDOWN, key);
    ::SetKeyboardState(before.data());
  }
  void Dispatch(HWND window, UINT message, WPARAM wParam = 0) {
    MSG sent{};
    sent.hwnd = window;
    sent.message = message;
    sent.wParam = wParam;
    sent.lParam = 1;
    frame->Dispatch(sent);
  }
  HWND Window(std::int32_t id) { return WindowOf(user.Front(), id); }

  PagedEffect user;
  std::optional<PageFrame> frame;
};

TEST(PageFrame, UndoesAndChangesPagesByKeys) {
  OnScreen screen("show FullBlurPPG\nset Blur 40");
  PagedEffect& user = screen.user;
  const auto& listed = user.session.Pages().Listed();
  const HWND window = screen.frame->Handle();
  screen.Press(window, 'Z', {VK_CONTROL});
  EXPECT_EQ(user.ValueAt("Blur"), 10.0);
  screen.Press(window, 'Y', {VK_CONTROL});
  EXPECT_EQ(user.ValueAt("Blur"), 40.0);
  screen.Press(window, VK_TAB, {VK_CONTROL});
  EXPECT_EQ(user.Front().name, listed.at(1));
  EXPECT_EQ(::GetParent(user.Front().dialog->Handle()), window);
  screen.Press(window, VK_TAB, {VK_CONTROL, VK_SHIFT});
  EXPECT_EQ(user.Front().name, listed.at(0));
  screen.Press(window, VK_TAB, {VK_CONTROL, VK_SHIFT});
  EXPECT_EQ(user.Front().name, listed.back()) << "around the end";
}

TEST(PageFrame, LeavesTheCharactersOfAltGrAlone) {
  OnScreen screen("show FullBlurPPG\nset Blur 40\nset Blur 50");
  screen.Press(screen.frame->Handle(), 'Z', {VK_CONTROL, VK_MENU});
  EXPECT_EQ(screen.user.ValueAt("Blur"), 50.0);
  screen.user.History().Undo();
  screen.Press(screen.frame->Handle(), 'Y', {VK_CONTROL, VK_MENU});
  EXPECT_EQ(screen.user.ValueAt("Blur"), 40.0);
}

TEST(PageFrame, ChangesPagesFromAFieldWhoseTextCounts) {
  OnScreen screen;
  const HWND blur = screen.Window(resources::full_blur::kBlur);
  ::SetFocus(blur);
  TypeInto(blur, "33", VK_SHIFT);
  const HWND field = ::GetWindow(blur, GW_CHILD);
  ASSERT_NE(field, nullptr);
  screen.Press(field, 'Z', {VK_CONTROL});
  EXPECT_EQ(::GetWindow(blur, GW_CHILD), field) << "its own undo";
  EXPECT_EQ(screen.user.ValueAt("Blur"), 10.0);
  ::SetWindowTextA(field, "33");
  ::SendMessageW(field, EM_SETMODIFY, TRUE, 0);
  screen.Press(field, VK_TAB, {VK_CONTROL});
  EXPECT_EQ(screen.user.Front().name, screen.user.session.Pages().Listed().at(1));
  EXPECT_EQ(screen.user.ValueAt("Blur"), 33.0);
}

// What a window of another program does, and the system's own dialogs.
class OtherWindow {
 public:
  OtherWindow()
      : window_(::CreateWindowExW(0, L"Static", L"other", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr,
                                  ::GetModuleHandleW(nullptr), nullptr)) {
    ::SetActiveWindow(window_);
  }
  ~OtherWindow() { ::DestroyWindow(window_); }
  OtherWindow(const OtherWindow&) = delete;
  OtherWindow& operator=(const OtherWindow&) = delete;

 private:
  HWND window_;
};

TEST(PageFrame, GivesTheFocusBackToWhatHadIt) {
  OnScreen screen;
  const HWND aspect = screen.Window(resources::full_blur::kAspect);
  ::SetFocus(aspect);
  {
    const OtherWindow other;
    ASSERT_NE(::GetFocus(), aspect);
    ::SetActiveWindow(screen.frame->Handle());
    EXPECT_EQ(::GetFocus(), aspect);
  }
  TypeInto(aspect, "25", VK_SHIFT);
  ASSERT_NE(::GetFocus(), aspect) << "its field has it";
  {
    const OtherWindow other;
    EXPECT_EQ(screen.user.ValueAt("Aspect"), 25.0) << "what was typed counts";
    ::SetActiveWindow(screen.frame->Handle());
    EXPECT_EQ(::GetFocus(), aspect);
  }
}

TEST(PageFrame, GivesTheFocusBackToTheChipBehindThePicker) {
  OnScreen screen("show crop");
  const HWND chip = ChipOf(screen.user.Front()).Handle();
  ::SetFocus(chip);
  const PickerUser picker;
  screen.Press(chip, VK_SPACE);
  Pump();
  EXPECT_EQ(picker.Opened(), 1);
  EXPECT_EQ(::GetFocus(), chip);
}

// A list of the page in front, dropped.
struct DroppedList : OnScreen {
  explicit DroppedList(std::int32_t id) : list(Window(id)) {
    ::SetFocus(list);
    ::SendMessageW(list, CB_SHOWDROPDOWN, TRUE, 0);
    EXPECT_TRUE(IsDropped());
  }
  bool IsDropped() const { return ::SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0) != FALSE; }
  LRESULT Shown() const { return ::SendMessageW(list, CB_GETCURSEL, 0, 0); }

  HWND list;
};

TEST(PageFrame, TakesNothingFromAListThatIsLeft) {
  // By Escape, and for another control.
  for (const bool escapes : {true, false}) {
    SCOPED_TRACE(escapes);
    DroppedList dropped(resources::full_blur::kMixBack);
    PressKey(dropped.list, VK_DOWN);
    PressKey(dropped.list, VK_DOWN);
    EXPECT_EQ(dropped.Shown(), 2);
    EXPECT_EQ(dropped.user.ValueAt("Mix Back"), 0.0) << "not yet chosen";
    if (escapes) {
      PressKey(dropped.list, VK_ESCAPE);
    } else {
      ::SetFocus(dropped.Window(resources::full_blur::kBlur));
    }
    EXPECT_FALSE(dropped.IsDropped());
    EXPECT_EQ(dropped.Shown(), 0);
    EXPECT_EQ(dropped.user.Entry("Mix Back"), "None");
    EXPECT_EQ(dropped.user.ValueAt("Mix Back"), 0.0);
    EXPECT_FALSE(dropped.user.History().CanUndo());
    PressKey(dropped.list, VK_DOWN);
    EXPECT_EQ(dropped.user.ValueAt("Mix Back"), 1.0) << "closed, it takes each entry";
  }
}

TEST(PageFrame, TakesTheEntryOfADroppedListOnce) {
  DroppedList dropped(resources::full_blur::kMixBack);
  const auto expect = [&](double value, std::size_t steps) {
    EXPECT_FALSE(dropped.IsDropped());
    EXPECT_EQ(dropped.Shown(), value);
    EXPECT_EQ(dropped.user.ValueAt("Mix Back"), value);
    EXPECT_EQ(dropped.user.History().UndoDepth(), steps);
  };
  PressKey(dropped.list, VK_DOWN);
  PressKey(dropped.list, VK_DOWN);
  PressKey(dropped.list, VK_RETURN);
  expect(2.0, 1);
  // A click on the entry at the top.
  ::SendMessageW(dropped.list, CB_SHOWDROPDOWN, TRUE, 0);
  COMBOBOXINFO parts{};
  parts.cbSize = sizeof(parts);
  ASSERT_TRUE(::GetComboBoxInfo(dropped.list, &parts));
  ::SendMessageW(parts.hwndList, LB_SETTOPINDEX, 0, 0);
  for (const UINT message : {UINT{WM_LBUTTONDOWN}, UINT{WM_LBUTTONUP}})
    MoveMouse(parts.hwndList, message, 9);
  expect(0.0, 2);
  // What comes back by an undo may be chosen anew.
  EXPECT_TRUE(dropped.user.History().Undo());
  expect(2.0, 1);
  PressKey(dropped.list, VK_HOME);
  expect(0.0, 2);
}

TEST(PageFrame, GoesOnFromAControlThatThePageDisables) {
  OnScreen screen;
  auto& blur = ControlOf<NumberControl>(screen.user.Front(), "Blur");
  ::SetFocus(blur.Handle());
  screen.Dispatch(screen.frame->Handle(), WM_NULL);
  blur.Enable(false);
  screen.Dispatch(screen.frame->Handle(), WM_NULL);
  EXPECT_EQ(::GetFocus(), screen.user.Front().dialog->NextStop(&blur)->Handle());
}

TEST(PageFrame, TakesTheFocusFromAPageThatIsHidden) {
  OnScreen screen("show FullBlurPPG\nset Blur 40\nset Blur 50");
  const HWND blur = screen.Window(resources::full_blur::kBlur);
  screen.Press(blur, VK_TAB, {VK_CONTROL});
  const OpenedPage& front = screen.user.Front();
  ASSERT_NE(front.name, "FullBlurPPG");
  ::SetFocus(blur);
  screen.Press(blur, 'Z', {VK_CONTROL});
  EXPECT_EQ(screen.user.ValueAt("Blur"), 40.0) << "one step";
  EXPECT_EQ(&screen.user.Front(), &front);
  EXPECT_FALSE(::IsWindowVisible(blur));
  EXPECT_TRUE(::IsChild(front.dialog->Handle(), ::GetFocus()));
}

TEST(PageFrame, EndsWithItsContext) {
  OnScreen screen;
  ExecuteContext context;
  std::thread later([&] {
    ::Sleep(150);
    context.Stop();
  });
  screen.frame->Run(context);
  later.join();
  EXPECT_FALSE(screen.frame->IsOpen());
  EXPECT_FALSE(::IsWindowVisible(screen.frame->Handle()));
}

// A program's look at its windows, which fails.
struct FailingObserver : PageObserver {
  void OnWindowChanged(PageWindow&) override { throw std::runtime_error("from an observer"); }
};

TEST(PageFrame, LetsNothingBeThrownThroughTheSystem) {
  OnScreen screen;
  auto& blur = ControlOf<NumberControl>(screen.user.Front(), "Blur");
  TypeInto(blur.Handle(), "31", VK_SHIFT);
  const HWND field = ::GetWindow(blur.Handle(), GW_CHILD);
  ASSERT_NE(field, nullptr);
  FailingObserver failing;
  blur.AddObserver(failing);
  // Into the field, and into the control.
  for (const auto& [window, key] : {std::pair{field, VK_RETURN}, std::pair{blur.Handle(), VK_UP}}) {
    const auto send = [&, to = window, which = key] { ::SendMessageW(to, WM_KEYDOWN, static_cast<WPARAM>(which), 1); };
    EXPECT_NO_THROW(send()) << key;
    EXPECT_THROW(screen.Dispatch(screen.frame->Handle(), WM_NULL), std::runtime_error) << key;
  }
  EXPECT_EQ(::GetWindow(blur.Handle(), GW_CHILD), nullptr) << "the field goes";
  blur.RemoveObserver(failing);
}

TEST(PageFrame, ThrowsWhatAMessageThrowsAndStays) {
  OnScreen screen;
  auto& blur = ControlOf<NumberControl>(screen.user.Front(), "Blur");
  FailingObserver failing;
  blur.AddObserver(failing);
  EXPECT_THROW(screen.Press(blur.Handle(), VK_UP), std::runtime_error);
  blur.RemoveObserver(failing);
  EXPECT_TRUE(screen.frame->IsOpen());
  screen.Press(blur.Handle(), VK_UP);
  EXPECT_EQ(screen.user.ValueAt("Blur"), 12.0);
}

TEST(PageFrame, ClosesWithWhatAMessageThrows) {
  OnScreen screen;
  auto& blur = ControlOf<NumberControl>(screen.user.Front(), "Blur");
  FailingObserver failing;
  blur.AddObserver(failing);
  ::PostMessageW(blur.Handle(), WM_KEYDOWN, VK_UP, 1);
  EXPECT_THROW(screen.frame->Run(ExecuteContext()), std::runtime_error);
  blur.RemoveObserver(failing);
  EXPECT_FALSE(screen.frame->IsOpen());
  EXPECT_FALSE(::IsWindowVisible(screen.frame->Handle()));
  screen.frame.reset();
  screen.user.Do("set Blur 30");
  EXPECT_EQ(screen.user.ValueAt("Blur"), 30.0);
}

// The middle of a window in another one.
POINT MiddleOf(HWND window, HWND in) {
  RECT area{};
  ::GetWindowRect(window, &area);
  POINT middle{(area.left + area.right) / 2, (area.top + area.bottom) / 2};
  ::ScreenToClient(in, &middle);
  return middle;
}

// "PAGE/CONTROL: X Y" in the frame's window for what a user reaches of each page, and "tab PAGE: X Y".
void PrintPlaces(PagedEffect& user, HWND frame) {
  const HWND front = user.Front().dialog->Handle();
  const HWND tabs = ::FindWindowExW(frame, nullptr, L"SysTabControl32", nullptr);
  WPARAM tab = 0;
  for (const std::string_view name : user.session.Pages().Listed()) {
    const std::string page(name);
    RECT area{};
    ::SendMessageW(tabs, TCM_GETITEMRECT, tab++, reinterpret_cast<LPARAM>(&area));
    std::printf("tab %s: %ld %ld\n", page.c_str(), (area.left + area.right) / 2, (area.top + area.bottom) / 2);
    const OpenedPage& opened = user.Page(name);
    for (const auto& item : opened.dialog->Items()) {
      if (!item->IsTabStop() && item->Kind() != PageWindowKind::ColourChip) continue;
      // Every dialog has its place in the frame once it is in front.
      POINT middle = MiddleOf(item->Handle(), opened.dialog->Handle());
      ::MapWindowPoints(front, frame, &middle, 1);
      const bool isChip = item->Kind() == PageWindowKind::ColourChip;
      std::printf("%s/%s: %ld %ld\n", page.c_str(), isChip ? "chip" : opened.NameOf(*item).c_str(), middle.x, middle.y);
    }
  }
  std::fflush(stdout);
}

// For use_page_window.sh, whose mouse and keys are those of the screen.
TEST(PageFrame, DISABLED_ShowsWhatAUserDoes) {
  PagedEffect user;
  user.Do("show FullBlurPPG");
  PageFrame frame(user.session.Pages(), user.History());
  PrintPlaces(user, frame.Handle());
  frame.Run(ExecuteContext());
  for (const char* const name : {"Method", "Blur", "Aspect", "Mix Back", "Blend", "Display Cropped", "Crop Left",
                                 "Crop Right", "Crop Colour R", "Crop Colour G"})
    std::printf("%s=%g\n", name, user.ValueAt(name));
  std::printf("front=%s\n", user.Front().name.c_str());
  std::printf("steps=%d\n", static_cast<int>(user.History().UndoDepth()));
}

}  // namespace
}  // namespace vblur::host
