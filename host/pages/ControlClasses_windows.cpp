#include "host/pages/ControlClasses.h"

#include <string>
#include <type_traits>

#include "host/base/Utf8.h"
#include "host/pages/ColourChipControl.h"
#include "host/pages/ControlText.h"
#include "host/pages/KeptFailure.h"
#include "host/pages/NumberControl.h"
#include "sdk/system/SystemTypes_windows.h"

namespace vblur::host {

namespace {

constexpr int kFontPlace = 0;
constexpr int kControlPlace = sizeof(LONG_PTR);

using Kept = std::shared_ptr<OwnControl>;

Kept* KeptBy(HWND window) {
  return reinterpret_cast<Kept*>(GetWindowLongPtrW(window, kControlPlace));
}

}  // namespace

// What the system calls for windows of the classes. Messages come to the control first.
struct ControlClass {
  template <class Control>
  static LRESULT CALLBACK Run(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
      case WM_NCCREATE: {
        const LRESULT made = DefWindowProcW(window, message, wParam, lParam);
        if (made == FALSE) return made;
        return AnswerOrKeep([&] { return Begin<Control>(window, *reinterpret_cast<const CREATESTRUCTW*>(lParam)); });
      }
      case WM_NCDESTROY: End(window); break;
      // The font is kept as the system's own controls do.
      case WM_GETFONT: return GetWindowLongPtrW(window, kFontPlace);
      case WM_SETFONT:
        SetWindowLongPtrW(window, kFontPlace, static_cast<LONG_PTR>(wParam));
        if (LOWORD(lParam) != 0) ::InvalidateRect(window, nullptr, TRUE);
        return 0;
      default: break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
  }

  static bool Is(HWND window) {
    const auto procedure = GetClassLongPtrW(window, GCLP_WNDPROC);
    return procedure == reinterpret_cast<ULONG_PTR>(&Run<NumberControl>) ||
           procedure == reinterpret_cast<ULONG_PTR>(&Run<ColourChipControl>);
  }

 private:
  template <class Control>
  static LRESULT Begin(HWND window, const CREATESTRUCTW& made) {
    constexpr auto kKind = std::is_same_v<Control, NumberControl> ? PageWindowKind::Number : PageWindowKind::ColourChip;
    std::wstring given(static_cast<std::size_t>(GetWindowTextLengthW(window)), L'\0');
    GetWindowTextW(window, given.data(), static_cast<int>(given.size()) + 1);
    const std::string text = Utf8Of(std::u16string(given.begin(), given.end()));
    const ControlText read = ReadControlText(text, kKind);
    if (read.caption != text) SetWindowTextW(window, SystemText(Utf16Of(read.caption).c_str()));
    ModuleControl control;
    // Of others it is the menu.
    if ((made.style & static_cast<LONG>(WS_CHILD)) != 0) control.id = GetDlgCtrlID(window);
    control.style = static_cast<std::uint32_t>(made.style);
    auto kept = std::make_unique<Kept>(std::make_shared<Control>(nullptr, control, read));
    OwnControl& own = **kept;
    own.Attach(window);
    if (!own.isThere_) return FALSE;
    SetWindowLongPtrW(window, kControlPlace, reinterpret_cast<LONG_PTR>(kept.release()));
    return TRUE;
  }
  static void End(HWND window) {
    const std::unique_ptr<Kept> kept(KeptBy(window));
    SetWindowLongPtrW(window, kControlPlace, 0);
  }
};

namespace {

void Register(const wchar_t* name, const wchar_t* cursor, WNDPROC procedure) {
  WNDCLASSEXW made{};
  made.cbSize = sizeof(made);
  // Found by dialogs of every module.
  made.style = CS_GLOBALCLASS | CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
  made.lpfnWndProc = procedure;
  made.cbWndExtra = 2 * sizeof(LONG_PTR);
  made.hInstance = OwnModule();
  made.hCursor = LoadCursorW(nullptr, cursor);
  made.lpszClassName = name;
  RegisterClassExW(&made);
}

}  // namespace

void RegisterControlClasses() {
  static const bool kDone = [] {
    Register(L"dsnewnumberctrl", IDC_SIZEWE, &ControlClass::Run<NumberControl>);
    Register(L"dsnewcolorchipctrl", IDC_HAND, &ControlClass::Run<ColourChipControl>);
    return true;
  }();
  static_cast<void>(kDone);
}

std::shared_ptr<OwnControl> ControlMadeBy(HWND window) {
  const Kept* const kept = ControlClass::Is(window) ? KeptBy(window) : nullptr;
  return kept == nullptr ? nullptr : *kept;
}

::HINSTANCE__* OwnModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const wchar_t*>(&RegisterControlClasses), &module);
  return module;
}

WindowFont::WindowFont(HDC dc, HWND window) : dc_(dc), before_(nullptr) {
  auto* font = reinterpret_cast<HFONT>(::SendMessageW(window, WM_GETFONT, 0, 0));
  if (font == nullptr) font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
  before_ = ::SelectObject(dc_, font);
}

WindowFont::~WindowFont() {
  ::SelectObject(dc_, before_);
}

}  // namespace vblur::host
