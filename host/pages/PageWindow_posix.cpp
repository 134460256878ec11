#include "host/pages/PageWindow.h"

#include <algorithm>
#include <utility>

#include "host/pages/PageDialog.h"
#include "platform/WindowStyles.h"

namespace vblur::host {

PageWindow::PageWindow(PageDialog* dialog, PageWindowKind kind, const ModuleControl& control, std::u16string text)
    : dialog_(dialog),
      kind_(kind),
      id_(control.id),
      style_(control.style),
      area_{control.x, control.y, control.width, control.height} {
  text_ = std::move(text);
  visible_ = kind != PageWindowKind::Dialog && (control.style & WS_VISIBLE) != 0;
}

PageWindow::~PageWindow() = default;

HWND PageWindow::Handle() const {
  // Whoever has the handle may change the window, as everywhere.
  return const_cast<PageWindow*>(this);
}

std::u16string PageWindow::Text() const {
  return text_;
}

bool PageWindow::IsEnabled() const {
  return enabled_;
}

bool PageWindow::IsVisible() const {
  return visible_;
}

void PageWindow::Show(bool visible) {
  if (std::exchange(visible_, visible) != visible) Changed();
}

void PageWindow::Invalidate() {
  Changed();
}

bool PageWindow::Enable(bool enable) {
  const bool before = std::exchange(enabled_, enable);
  if (before != enable) Changed();
  return !before;
}

LRESULT PageWindow::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_SETTEXT) {
    const auto* text = reinterpret_cast<const char16_t*>(lParam);
    SetText(text == nullptr ? std::u16string() : std::u16string(text));
    return 1;
  }
  if (message == WM_GETTEXT) {
    auto* buffer = reinterpret_cast<char16_t*>(lParam);
    if (buffer == nullptr || wParam == 0) return 0;
    const std::size_t length = std::min<std::size_t>(text_.size(), wParam - 1);
    std::copy_n(text_.begin(), length, buffer);
    buffer[length] = 0;
    return static_cast<LRESULT>(length);
  }
  return 0;
}

void PageWindow::SetText(std::u16string text) {
  if (text == text_) return;
  text_ = std::move(text);
  Changed();
}

LRESULT PageWindow::Tell(const char16_t* message, LPARAM lParam) const {
  if (id_ == ModuleControl::kNoId || kind_ == PageWindowKind::Dialog) return 0;
  return dialog_->SendToPage(RegisterWindowMessageW(message), static_cast<WPARAM>(id_), lParam);
}

LRESULT PageWindow::TellCommand(UINT what) const {
  if (id_ == ModuleControl::kNoId) return 0;
  const WPARAM id = static_cast<WPARAM>(id_) & 0xFFFF;
  return dialog_->SendToPage(WM_COMMAND, id | static_cast<WPARAM>(what) << 16, 0);
}

}  // namespace vblur::host
