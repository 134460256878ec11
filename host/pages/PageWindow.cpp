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

bool PageWindow::TakesInput() const {
  if (!IsEnabled() || !IsVisible()) return false;
  if (dialog_ == nullptr) return true;
  const PageWindow& dialog = *dialog_;
  return dialog.IsEnabled() && dialog.IsVisible() && dialog_->IsOpen();
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
  PageWindow* const dialog = dialog_;
  if (dialog != nullptr && dialog != this) dialog->TellObservers(*this);
}

PageWindow* PageWindow::Item(std::int32_t) {
  return nullptr;
}

std::shared_ptr<const PageWindow> PageWindow::Hold() const {
  const PageWindow* const keeper = dialog_ == nullptr ? this : dialog_;
  return keeper->weak_from_this().lock();
}

}  // namespace vblur::host
