#include "host/pages/ListControl.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace vblur::host {

std::vector<std::u16string> ListControl::Entries() const {
  return entries_;
}

std::int32_t ListControl::Selected() const {
  return selected_;
}

std::int32_t ListControl::Count() const {
  return static_cast<std::int32_t>(entries_.size());
}

bool ListControl::Choose(std::int32_t index) {
  if (!TakesInput() || !Has(index)) return false;
  if (index == selected_) return true;
  const auto held = Hold();
  Select(index);
  TellCommand(CBN_SELCHANGE);
  return true;
}

LRESULT ListControl::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
  const auto* text = reinterpret_cast<const char16_t*>(lParam);
  switch (message) {
    case CB_ADDSTRING: return Add(text);
    case CB_GETCOUNT: return Count();
    case CB_GETCURSEL: return selected_;
    case CB_RESETCONTENT: return Clear();
    case CB_SETCURSEL: {
      const bool has = wParam < entries_.size();
      Select(has ? static_cast<std::int32_t>(wParam) : kNone);
      return has ? selected_ : CB_ERR;
    }
    case WM_SETTEXT: return SelectText(text);
    default: return PageWindow::Receive(message, wParam, lParam);
  }
}

LRESULT ListControl::Add(const char16_t* text) {
  if (text == nullptr) return CB_ERR;
  entries_.emplace_back(text);
  Changed();
  return Count() - 1;
}

LRESULT ListControl::Clear() {
  if (entries_.empty()) return 0;
  entries_.clear();
  if (selected_ == kNone) {
    Changed();
  } else {
    Select(kNone);
  }
  return 0;
}

LRESULT ListControl::SelectText(const char16_t* text) {
  if (text == nullptr) return CB_ERR;
  const auto found = std::ranges::find(entries_, std::u16string_view(text));
  if (found == entries_.end()) return CB_ERR;
  Select(static_cast<std::int32_t>(found - entries_.begin()));
  return 1;
}

void ListControl::Select(std::int32_t index) {
  if (std::exchange(selected_, index) == index) return;
  const std::u16string shown = Has(index) ? entries_[static_cast<std::size_t>(index)] : std::u16string();
  // Entries may have equal texts: the selection changes all the same.
  if (shown == Text()) return Changed();
  SetText(shown);
}

}  // namespace vblur::host
