// The window classes of the host's own controls in dialogs that are no pages.
#include "host/pages/ControlClasses.h"

#include "host/pages/DialogTemplate.h"
#include "host/pages/OwnControl.h"
#include "host/pages/PageFrame.h"
#include "tests/host/pages/RecordingPage.h"
#include "tests/host/pages/SystemWindows_windows.h"

namespace vblur::host {
namespace {

constexpr std::int32_t kNumber = 7;
constexpr std::int32_t kChip = 8;

// A dialog of the system's alone, which notes the controls' messages.
class PlainDialog {
 public:
  PlainDialog() {
    RegisterControlClasses();
    const std::vector<ModuleControl> controls{
        ShownControl(kNumber, ModuleControlKind::Static, "Blur;class=dsnewnumberctrl;min=-10;max=720"),
        ShownControl(kChip, ModuleControlKind::Static, "Colour;class=dsnewcolorchipctrl")};
    const ModuleDialog resources{kDialogNumber, 190, 160, "Arial", 11, WS_CHILD, controls};
    const auto bytes = WriteDialogTemplate(resources, TemplateClasses::HostsOwn);
    window =
        ::CreateDialogIndirectParamW(::GetModuleHandleW(nullptr), reinterpret_cast<const DLGTEMPLATE*>(bytes.data()),
                                     PageFrame::Hidden(), &Run, reinterpret_cast<LPARAM>(&page));
  }
  ~PlainDialog() { ::DestroyWindow(window); }
  PlainDialog(const PlainDialog&) = delete;
  PlainDialog& operator=(const PlainDialog&) = delete;

  HWND Control(std::int32_t id) const { return ::GetDlgItem(window, id); }

  RecordingPage page;
  HWND window = nullptr;

 private:
  static INT_PTR CALLBACK Run(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) ::SetWindowLongPtrW(dialog, GWLP_USERDATA, lParam);
    auto* const page = reinterpret_cast<RecordingPage*>(::GetWindowLongPtrW(dialog, GWLP_USERDATA));
    if (page != nullptr && message >= 0xC000) page->OnDialogMessage(message, wParam, lParam);
    return FALSE;
  }
};

template <class Interface>
ComPtr<Interface> InterfaceOf(HWND window) {
  ComPtr<Interface> found;
  auto* const kept = static_cast<IUnknown*>(::GetPropW(window, L"DSCTLIFACE"));
  EXPECT_EQ(kept == nullptr ? kNoInterface : kept->QueryInterface(Interface::kIid, found.Receive()), kOk);
  return found;
}

TEST(ControlClasses, MakeControlsThatAnswerInAnyDialog) {
  PlainDialog dialog;
  const HWND window = dialog.Control(kNumber);
  EXPECT_EQ(ClassOf(window), "dsnewnumberctrl");
  EXPECT_EQ(TitleOf(window), "Blur");
  const auto number = InterfaceOf<IDSNumberControl>(window);
  ASSERT_TRUE(number);
  DSVariant least;
  DSVariant most;
  EXPECT_EQ(number->GetRange(&least, &most), kOk);
  EXPECT_EQ(least.AsNumber(), -10.0);
  EXPECT_EQ(most.AsNumber(), 720.0);
  EXPECT_EQ(number->SetValue(DSVariant::Of(24.5)), kOk);
  DSVariant value;
  EXPECT_EQ(number->GetValue(&value), kOk);
  EXPECT_EQ(value.AsNumber(), 24.5);
  EXPECT_EQ(dialog.page.Taken(), Messages{}) << "of its own doings the dialog hears nothing";
  const auto chip = InterfaceOf<IDSColourChip>(dialog.Control(kChip));
  ASSERT_TRUE(chip);
  EXPECT_EQ(chip->SetColour(1, 2, 3, 4), kOk);
  std::array<std::int32_t, 4> colour{};
  EXPECT_EQ(chip->GetColour(colour.data(), &colour[1], &colour[2], &colour[3]), kOk);
  EXPECT_EQ(colour, (std::array<std::int32_t, 4>{1, 2, 3, 4}));
}

TEST(ControlClasses, TellTheParentWhatAUserDoes) {
  PlainDialog dialog;
  const HWND window = dialog.Control(kNumber);
  PressKey(window, VK_UP);
  EXPECT_EQ(dialog.page.Taken(), (Messages{"notify 7", "complete 7"}));
  TypeInto(window, "50%");
  EXPECT_EQ(dialog.page.Taken(), (Messages{"notify 7", "complete 7"}));
  MoveMouse(window, WM_LBUTTONDOWN, 0);
  MoveMouse(window, WM_MOUSEMOVE, 5);
  MoveMouse(window, WM_LBUTTONUP, 5, 0);
  EXPECT_EQ(dialog.page.Taken(), (Messages{"scrub 7 1", "notify 7", "complete 7", "scrub 7 0"}));
  DSVariant value;
  InterfaceOf<IDSNumberControl>(window)->GetValue(&value);
  EXPECT_EQ(value.AsNumber(), 360.0);
  ::EnableWindow(window, FALSE);
  PressKey(window, VK_UP);
  EXPECT_EQ(dialog.page.Taken(), Messages{});
}

TEST(ControlClasses, EndTheControlWithItsWindow) {
  RegisterControlClasses();
  const HWND window = ::CreateWindowExW(0, L"dsnewnumberctrl", L"alone;min=2;max=9", WS_POPUP, 0, 0, 9, 9, nullptr,
                                        nullptr, ::GetModuleHandleW(nullptr), nullptr);
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(TitleOf(window), "alone");
  std::weak_ptr<OwnControl> made = ControlMadeBy(window);
  ASSERT_FALSE(made.expired());
  DSVariant value;
  EXPECT_EQ(InterfaceOf<IDSNumberControl>(window)->GetValue(&value), kOk);
  EXPECT_EQ(value.AsNumber(), 2.0);
  ::DestroyWindow(window);
  EXPECT_TRUE(made.expired());
  EXPECT_EQ(::GetPropW(window, L"DSCTLIFACE"), nullptr);
  EXPECT_EQ(ControlMadeBy(::GetDesktopWindow()), nullptr);
}

TEST(ControlClasses, LetADialogEndAControlThatTellsIt) {
  PlainDialog dialog;
  const HWND window = dialog.Control(kNumber);
  dialog.page.onMessage = [&](const std::string& text) {
    if (text == "scrub 7 1") ::DestroyWindow(window);
  };
  MoveMouse(window, WM_LBUTTONDOWN, 0);
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_EQ(dialog.page.Taken(), (Messages{"scrub 7 1"}));
}

// The pages' dialogs have the controls that their windows have made.
TEST(ControlClasses, GiveTheirControlsToPages) {
  RecordingPage page;
  const auto dialog = ShownDialog(
      page, {ShownControl(kNumber, ModuleControlKind::Static, "Blur;class=dsnewnumberctrl;max=5", {3, 4, 50, 12})});
  const auto& item = dialog->Items().at(0);
  EXPECT_EQ(item, ControlMadeBy(item->Handle()));
  EXPECT_EQ(&item->Dialog(), dialog.get());
  EXPECT_EQ(item->Id(), kNumber);
  EXPECT_EQ(item->Area(), (DialogRectangle{3, 4, 50, 12}));
  PressKey(item->Handle(), VK_END);
  EXPECT_EQ(page.Taken(), (Messages{"notify 7", "complete 7"}));
}

}  // namespace
}  // namespace vblur::host
