#include "host/pages/PageFrame.h"

#include <algorithm>

#include "host/base/Utf8.h"
#include "host/pages/ControlClasses.h"
#include "host/pages/KeptFailure.h"
#include "sdk/system/SystemTypes_windows.h"
// After the system's header.
#include <commctrl.h>

namespace vblur::host {

namespace {

constexpr const wchar_t* kClassName = L"vblur page frame";
// How long the end of the context may go unnoticed, in milliseconds.
constexpr DWORD kPatience = 100;
constexpr DWORD kStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;

}  // namespace

struct PageFrame::Procedure {
  static LRESULT CALLBACK Run(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
      const auto* const made = reinterpret_cast<const CREATESTRUCTW*>(lParam);
      SetWindowLongPtrW(handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made->lpCreateParams));
    }
    auto* const frame = reinterpret_cast<PageFrame*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
    if (frame == nullptr || frame->handle_ == nullptr) return DefWindowProcW(handle, message, wParam, lParam);
    return AnswerOrKeep([&] { return frame->Receive(message, wParam, lParam); });
  }
};

HWND PageFrame::Hidden() {
  thread_local HWND hidden = nullptr;
  if (hidden == nullptr || !IsWindow(hidden)) {
    hidden = CreateWindowExW(0, L"Static", nullptr, WS_POPUP, 0, 0, 800, 800, nullptr, nullptr, OwnModule(), nullptr);
  }
  return hidden;
}

PageFrame::PageFrame(EffectPages& pages, UndoHistory& history) : pages_(pages), history_(history) {
  for (const std::string_view name : pages_.Listed())
    names_.emplace_back(name);
  if (!Create()) return;
  try {
    Fill();
  } catch (...) {
    GiveDialogsBack();
    throw;
  }
}

PageFrame::~PageFrame() {
  GiveDialogsBack();
}

void PageFrame::Fill() {
  isOpen_ = true;
  MakeTabs();
  HoldFront();
  ShowWindow(handle_, SW_SHOWNORMAL);
  UpdateWindow(handle_);
  ThrowKeptFailure();
}

void PageFrame::GiveDialogsBack() {
  for (const auto& each : held_) {
    if (const auto dialog = each.lock(); dialog != nullptr && IsWindow(dialog->Handle())) {
      SetParent(dialog->Handle(), Hidden());
    }
  }
  if (handle_ != nullptr && IsWindow(handle_)) DestroyWindow(handle_);
}

bool PageFrame::Create() {
  static const bool kRegistered = [] {
    WNDCLASSEXW made{};
    made.cbSize = sizeof(made);
    made.lpfnWndProc = &Procedure::Run;
    made.hInstance = OwnModule();
    made.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    made.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    made.lpszClassName = kClassName;
    const INITCOMMONCONTROLSEX classes{sizeof(INITCOMMONCONTROLSEX), ICC_TAB_CLASSES};
    return RegisterClassExW(&made) != 0 && InitCommonControlsEx(&classes) != FALSE;
  }();
  if (!kRegistered) return false;
  handle_ = CreateWindowExW(WS_EX_CONTROLPARENT, kClassName, L"V_Blur", kStyle, CW_USEDEFAULT, CW_USEDEFAULT, 400, 400,
                            nullptr, nullptr, OwnModule(), this);
  return handle_ != nullptr;
}

void PageFrame::MakeTabs() {
  // Titles come with the pages.
  const std::string front = pages_.Front() == nullptr ? std::string() : pages_.Front()->name;
  tabs_ = CreateWindowExW(0, WC_TABCONTROLW, nullptr, WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, 0, 0, 400, 24, handle_,
                          nullptr, OwnModule(), nullptr);
  ::SendMessageW(tabs_, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
  for (std::size_t i = 0; i < names_.size(); ++i) {
    std::u16string title = Utf16Of(pages_.Show(names_[i]).Title());
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = SystemText(title.data());
    ::SendMessageW(tabs_, TCM_INSERTITEMW, i, reinterpret_cast<LPARAM>(&item));
  }
  if (!front.empty()) pages_.Show(front);
}

void PageFrame::HoldFront() {
  OpenedPage* const front = pages_.Front();
  if (front == nullptr) return;
  const std::shared_ptr<PageDialog> dialog = front->dialog;
  if (GetParent(dialog->Handle()) != handle_) {
    SetParent(dialog->Handle(), handle_);
    held_.push_back(dialog);
  }
  const auto at = std::ranges::find(names_, front->name);
  ::SendMessageW(tabs_, TCM_SETCURSEL, static_cast<WPARAM>(at - names_.begin()), 0);
  RECT tab{};
  ::SendMessageW(tabs_, TCM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&tab));
  const int above = tab.bottom + 3;
  RECT page{};
  GetClientRect(dialog->Handle(), &page);
  // The last line of a dialog may end at its edge.
  constexpr int kMargin = 8;
  RECT whole{0, 0, page.right, above + page.bottom + kMargin};
  AdjustWindowRect(&whole, kStyle, FALSE);
  SetWindowPos(handle_, nullptr, 0, 0, whole.right - whole.left, whole.bottom - whole.top,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  SetWindowPos(tabs_, nullptr, 0, 0, page.right, above, SWP_NOZORDER | SWP_NOACTIVATE);
  SetWindowPos(dialog->Handle(), HWND_TOP, 0, above, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE);
  focused_ = nullptr;
  GiveFocus();
}

void PageFrame::ShowTab(std::int32_t index) {
  if (index < 0 || index >= static_cast<std::int32_t>(names_.size())) return;
  // What is being typed counts, while its page still takes it.
  if (Focused() != nullptr) SetFocus(handle_);
  pages_.Show(names_[static_cast<std::size_t>(index)]);
  HoldFront();
}

PageWindow* PageFrame::Focused() const {
  const OpenedPage* const front = pages_.Front();
  const HWND focus = GetFocus();
  if (front == nullptr || focus == nullptr) return nullptr;
  const auto& items = front->dialog->Items();
  const auto found = std::ranges::find_if(items, [focus](const auto& item) {
    // Itself, or the field that it has opened.
    return item->Handle() == focus || IsChild(item->Handle(), focus) != FALSE;
  });
  return found == items.end() ? nullptr : found->get();
}

void PageFrame::GiveFocus() {
  const OpenedPage* const front = pages_.Front();
  if (front == nullptr) return;
  const auto& items = front->dialog->Items();
  const auto last = std::ranges::find_if(items, [this](const auto& item) { return item->Handle() == focused_; });
  PageWindow* to = focused_ == nullptr || last == items.end() ? nullptr : last->get();
  if (to == nullptr || !to->TakesInput()) to = front->dialog->NextStop(to);
  focused_ = to == nullptr ? nullptr : to->Handle();
  SetFocus(to == nullptr ? handle_ : focused_);
}

void PageFrame::KeepFocus() {
  if (GetActiveWindow() != handle_) return;
  if (const PageWindow* const focused = Focused(); focused != nullptr) {
    focused_ = focused->Handle();
    if (focused->TakesInput()) return;
  }
  const HWND focus = GetFocus();
  if (focus != handle_ && focus != tabs_) GiveFocus();
}

LRESULT PageFrame::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_NOTIFY:
      if (reinterpret_cast<const NMHDR*>(lParam)->code == TCN_SELCHANGE) {
        ShowTab(static_cast<std::int32_t>(::SendMessageW(tabs_, TCM_GETCURSEL, 0, 0)));
      }
      return 0;
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_INACTIVE) {
        if (const PageWindow* const focused = Focused(); focused != nullptr) focused_ = focused->Handle();
        break;
      }
      // Minimized, or without a page.
      if (HIWORD(wParam) != 0 || pages_.Front() == nullptr) break;
      GiveFocus();
      return 0;
    case WM_CLOSE: Close(); return 0;
    default: break;
  }
  return DefWindowProcW(handle_, message, wParam, lParam);
}

bool PageFrame::OnKey(WPARAM key) {
  // AltGr, which writes characters, holds both.
  if (GetKeyState(VK_CONTROL) >= 0 || GetKeyState(VK_MENU) < 0) return false;
  if (key == 'Z') history_.Undo();
  if (key == 'Y') history_.Redo();
  if (key == VK_TAB && !names_.empty()) {
    const auto count = static_cast<std::int32_t>(names_.size());
    const std::int32_t step = GetKeyState(VK_SHIFT) < 0 ? count - 1 : 1;
    ShowTab((static_cast<std::int32_t>(::SendMessageW(tabs_, TCM_GETCURSEL, 0, 0)) + step) % count);
  }
  return key == 'Z' || key == 'Y' || key == VK_TAB;
}

void PageFrame::HandOut(MSG& message) {
  // Undo and redo of a field in which the user types are its own.
  std::array<wchar_t, 8> name{};
  GetClassNameW(message.hwnd, name.data(), static_cast<int>(name.size()));
  const bool isFields = std::wstring_view(name.data()) == L"Edit" && message.wParam != VK_TAB;
  if (message.message == WM_KEYDOWN && !isFields && OnKey(message.wParam)) return;
  const OpenedPage* const front = pages_.Front();
  if (front != nullptr && IsDialogMessageW(front->dialog->Handle(), &message)) return;
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

void PageFrame::Dispatch(MSG& message) {
  HandOut(message);
  KeepFocus();
  ThrowKeptFailure();
}

void PageFrame::Close() {
  isOpen_ = false;
  ShowWindow(handle_, SW_HIDE);
}

void PageFrame::Run(const ExecuteContext& context) {
  const auto goesOn = [&] { return isOpen_ && !context.Stopped(); };
  try {
    while (goesOn()) {
      MsgWaitForMultipleObjectsEx(0, nullptr, kPatience, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
      MSG message{};
      while (goesOn() && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        if (message.message == WM_QUIT) {
          Close();
        } else {
          Dispatch(message);
        }
      }
    }
  } catch (...) {
    Close();
    throw;
  }
  Close();
  ThrowKeptFailure();
}

}  // namespace vblur::host
