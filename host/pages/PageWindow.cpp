#include "host/pages/PageWindow.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/pages/PageDialog.h"
#include "platform/PageControls.h"
#include "platform/WindowStyles.h"

namespace vblur::host {

std::u16string Widened(std::string_view text) {
  const std::string_view whole = text.substr(0, text.find('\0'));
  std::u16string wide(whole.size(), u' ');
  std::ranges::transform(whole, wide.begin(),
                         [](char c) { return static_cast<char16_t>(static_cast<unsigned char>(c)); });
  return wide;
}

PageWindow::PageWindow(PageDialog& dialog, PageWindowKind kind, const ModuleControl& control, std::u16string text)
    : dialog_(dialog),
      kind_(kind),
      id_(control.id),
      style_(control.style),
      area_{control.x, control.y, control.width, control.height},
      text_(std::move(text)),
      visible_(kind != PageWindowKind::Dialog && (control.style & WS_VISIBLE) != 0) {}

std::string_view PageWindow::ClassName() const {
  switch (kind_) {
    case PageWindowKind::Dialog: return "Dialog";
    case PageWindowKind::Label:
    case PageWindowKind::Picture: return "Static";
    case PageWindowKind::Group:
    case PageWindowKind::Button:
    case PageWindowKind::CheckBox: return "Button";
    case PageWindowKind::List: return "ComboBox";
    case PageWindowKind::Number: return "dsnewnumberctrl";
    case PageWindowKind::ColourChip: return "dsnewcolorchipctrl";
  }
  return {};
}

std::u16string PageWindow::ToolTip() {
  std::array<char16_t, 1024> buffer{};
  DSToolTipText text{buffer.data(), static_cast<std::int32_t>(buffer.size())};
  Tell(kControlToolTip, reinterpret_cast<LPARAM>(&text));
  return {buffer.begin(), std::find(buffer.begin(), buffer.end(), u'\0')};
}

void PageWindow::Show(bool visible) {
  if (std::exchange(visible_, visible) != visible) Changed();
}

bool PageWindow::TakesInput() const {
  const PageWindow& dialog = dialog_;
  return enabled_ && visible_ && dialog.enabled_ && dialog.visible_ && dialog_.IsOpen();
}

bool PageWindow::IsTabStop() const {
  return kind_ != PageWindowKind::Dialog && (style_ & WS_TABSTOP) != 0;
}

void PageWindow::AddObserver(PageObserver& observer) {
  if (std::ranges::find(observers_, &observer) == observers_.end()) observers_.push_back(&observer);
}

void PageWindow::RemoveObserver(PageObserver& observer) {
  if (telling_ == 0) {
    std::erase(observers_, &observer);
  } else {
    std::ranges::replace(observers_, &observer, static_cast<PageObserver*>(nullptr));
  }
}

void PageWindow::TellObservers(PageWindow& changed) {
  ++telling_;
  // By index up to the present count: an observer may add others, which are told of the next change.
  const std::size_t count = observers_.size();
  for (std::size_t i = 0; i < count; ++i) {
    if (observers_[i] != nullptr) observers_[i]->OnWindowChanged(changed);
  }
  if (--telling_ == 0) std::erase(observers_, nullptr);
}

void PageWindow::Changed() {
  TellObservers(*this);
  PageWindow& dialog = dialog_;
  if (&dialog != this) dialog.TellObservers(*this);
}

PageWindow* PageWindow::Item(std::int32_t) {
  return nullptr;
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

std::shared_ptr<PageDialog> PageWindow::Hold() const {
  return dialog_.weak_from_this().lock();
}

LRESULT PageWindow::Tell(const char16_t* message, LPARAM lParam) const {
  if (id_ == ModuleControl::kNoId || kind_ == PageWindowKind::Dialog) return 0;
  return dialog_.SendToPage(RegisterWindowMessageW(message), static_cast<WPARAM>(id_), lParam);
}

LRESULT PageWindow::TellCommand(UINT what) const {
  if (id_ == ModuleControl::kNoId) return 0;
  const WPARAM id = static_cast<WPARAM>(id_) & 0xFFFF;
  return dialog_.SendToPage(WM_COMMAND, id | static_cast<WPARAM>(what) << 16, 0);
}

}  // namespace vblur::host
