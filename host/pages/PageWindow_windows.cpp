#include "host/pages/PageWindow.h"

#include <algorithm>
#include <utility>

#include "host/pages/KeptFailure.h"
#include "host/pages/PageDialog.h"
#include "platform/PageControls.h"
#include "sdk/system/SystemTypes_windows.h"
// After the system's header.
#include <commctrl.h>

namespace vblur::host {

// What the system calls with each message to a window of a page.
struct PageWindow::Procedure {
  static constexpr UINT_PTR kId = 1;

  static LRESULT CALLBACK Run(HWND handle, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR reference) {
    auto& window = *reinterpret_cast<PageWindow*>(reference);
    if (message == WM_NCDESTROY) {
      RemoveWindowSubclass(handle, &Run, kId);
      window.Detach();
      return DefSubclassProc(handle, message, wParam, lParam);
    }
    return AnswerOrKeep([&] {
      // The page may drop the dialog.
      const auto held = window.Hold();
      return window.Receive(message, wParam, lParam);
    });
  }
};

// Its text is in the template that the system makes it of.
PageWindow::PageWindow(PageDialog* dialog, PageWindowKind kind, const ModuleControl& control, std::u16string)
    : dialog_(dialog),
      kind_(kind),
      id_(control.id),
      style_(control.style),
      area_{control.x, control.y, control.width, control.height} {}

PageWindow::~PageWindow() {
  if (isThere_) RemoveWindowSubclass(handle_, &Procedure::Run, Procedure::kId);
}

void PageWindow::Join(PageDialog& dialog, const ModuleControl& control) {
  dialog_ = &dialog;
  id_ = control.id;
  style_ = control.style;
  area_ = {control.x, control.y, control.width, control.height};
}

HWND PageWindow::Handle() const {
  return handle_;
}

void PageWindow::Attach(HWND handle) {
  handle_ = handle;
  isThere_ = SetWindowSubclass(handle, &Procedure::Run, Procedure::kId, reinterpret_cast<DWORD_PTR>(this)) != FALSE;
  SeesChange();
}

void PageWindow::Detach() {
  isThere_ = false;
}

std::u16string PageWindow::Text() const {
  const auto length = static_cast<std::size_t>(Send(WM_GETTEXTLENGTH));
  std::u16string text(length, u'\0');
  if (length == 0) return text;
  // The system writes the end, too.
  const LRESULT copied = Send(WM_GETTEXT, length + 1, reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(std::max<LRESULT>(copied, 0)));
  return text;
}

bool PageWindow::IsEnabled() const {
  return isThere_ && IsWindowEnabled(handle_) != FALSE;
}

// Whether or not its parents are.
bool PageWindow::IsVisible() const {
  return isThere_ && (GetWindowLongW(handle_, GWL_STYLE) & static_cast<LONG>(WS_VISIBLE)) != 0;
}

void PageWindow::Show(bool visible) {
  if (!isThere_ || IsVisible() == visible) return;
  ShowWindow(handle_, visible ? SW_SHOWNA : SW_HIDE);
  ThrowKeptFailure();
  Changed();
}

void PageWindow::Invalidate() {
  if (isThere_) ::InvalidateRect(handle_, nullptr, TRUE);
  Changed();
}

bool PageWindow::Enable(bool enable) {
  if (!isThere_) return false;
  const bool wasDisabled = ::EnableWindow(handle_, enable ? TRUE : FALSE) != FALSE;
  ThrowKeptFailure();
  return wasDisabled;
}

LRESULT PageWindow::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_GETTEXT && (wParam == 0 || lParam == 0)) return 0;
  const LRESULT result = Pass(message, wParam, lParam);
  if (message == WM_SETTEXT) Look();
  if (message == WM_ENABLE) Changed();
  return result;
}

LRESULT PageWindow::Pass(UINT message, WPARAM wParam, LPARAM lParam) const {
  return DefSubclassProc(handle_, message, wParam, lParam);
}

LRESULT PageWindow::SendTo(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT result = ::SendMessageW(window, message, wParam, lParam);
  ThrowKeptFailure();
  return result;
}

LRESULT PageWindow::Send(UINT message, WPARAM wParam, LPARAM lParam) const {
  return isThere_ ? SendTo(handle_, message, wParam, lParam) : 0;
}

void PageWindow::Look() {
  if (SeesChange()) Changed();
}

bool PageWindow::SeesChange() {
  std::u16string text = Text();
  const bool changed = text != seenText_;
  seenText_ = std::move(text);
  return changed;
}

LRESULT PageWindow::Tell(const char16_t* message, LPARAM lParam) const {
  if (id_ == ModuleControl::kNoId || kind_ == PageWindowKind::Dialog || !isThere_) return 0;
  return SendTo(GetParent(handle_), RegisterWindowMessageW(message), static_cast<WPARAM>(id_), lParam);
}

}  // namespace vblur::host
