#include "host/pages/ListControl.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "sdk/system/SystemTypes_windows.h"

namespace vblur::host {

namespace {

// Entries that show at once when the list is dropped down.
constexpr LRESULT kEntriesShown = 12;

}  // namespace

std::vector<std::u16string> ListControl::Entries() const {
  std::vector<std::u16string> entries(static_cast<std::size_t>(Count()));
  for (std::size_t i = 0; i < entries.size(); ++i) {
    entries[i].resize(static_cast<std::size_t>(std::max<LRESULT>(Send(CB_GETLBTEXTLEN, i), 0)));
    Send(CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(entries[i].data()));
  }
  return entries;
}

std::int32_t ListControl::Selected() const {
  return isThere_ ? static_cast<std::int32_t>(Send(CB_GETCURSEL)) : kNone;
}

std::int32_t ListControl::Count() const {
  return static_cast<std::int32_t>(Send(CB_GETCOUNT));
}

bool ListControl::Choose(std::int32_t index) {
  if (!TakesInput() || !Has(index)) return false;
  const auto held = Hold();
  // Left as it was before it dropped.
  if (Send(CB_GETDROPPEDSTATE) != FALSE) Send(CB_SHOWDROPDOWN, FALSE);
  if (index == Selected()) return true;
  Send(CB_SETCURSEL, static_cast<WPARAM>(index));
  // As the list sends it to its dialog once the user has chosen.
  const auto id = static_cast<WORD>(Id());
  SendTo(GetParent(Handle()), WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE), reinterpret_cast<LPARAM>(Handle()));
  return true;
}

bool ListControl::IsChosenBy(UINT what) {
  const bool isDropped = Send(CB_GETDROPPEDSTATE) != FALSE;
  switch (what) {
    case CBN_DROPDOWN:
      beforeDrop_ = Selected();
      chosen_.reset();
      return false;
    case CBN_SELCHANGE: return !isDropped && std::exchange(chosen_, std::nullopt) != Selected();
    case CBN_SELENDOK:
      if (!isDropped || Selected() == beforeDrop_) return false;
      beforeDrop_ = Selected();
      chosen_ = beforeDrop_;
      return true;
    case CBN_SELENDCANCEL:
      if (isDropped && Selected() != beforeDrop_) Send(CB_SETCURSEL, static_cast<WPARAM>(beforeDrop_));
      return false;
    default: return false;
  }
}

// The resources give it room for itself, not for what drops down.
void ListControl::Attach(HWND handle) {
  PageWindow::Attach(handle);
  RECT place{};
  GetWindowRect(handle, &place);
  const LRESULT itself = Send(CB_GETITEMHEIGHT, static_cast<WPARAM>(-1)) + 2 * GetSystemMetrics(SM_CYEDGE) + 4;
  const LRESULT height = itself + kEntriesShown * Send(CB_GETITEMHEIGHT);
  SetWindowPos(handle, nullptr, 0, 0, place.right - place.left, static_cast<int>(height),
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT ListControl::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case CB_ADDSTRING: {
      if (lParam == 0) return CB_ERR;
      const LRESULT added = Pass(message, wParam, lParam);
      Look();
      return added;
    }
    case CB_RESETCONTENT:
      Pass(message, wParam, lParam);
      beforeDrop_ = kNone;
      Look();
      return 0;
    case CB_SETCURSEL: {
      const bool has = wParam < static_cast<WPARAM>(Count());
      const LRESULT selected = Pass(message, has ? wParam : static_cast<WPARAM>(-1), lParam);
      ::InvalidateRect(Handle(), nullptr, TRUE);
      beforeDrop_ = Selected();
      chosen_.reset();
      Look();
      return has ? selected : CB_ERR;
    }
    case WM_GETTEXT:
      // Some systems count the end of a text that is cut.
      return std::min(PageWindow::Receive(message, wParam, lParam), static_cast<LRESULT>(wParam == 0 ? 0 : wParam - 1));
    case WM_SETTEXT: return SelectText(reinterpret_cast<const char16_t*>(lParam));
    default: return PageWindow::Receive(message, wParam, lParam);
  }
}

// The system's lists without a field to type in take no text.
LRESULT ListControl::SelectText(const char16_t* text) {
  if (text == nullptr) return CB_ERR;
  const std::vector<std::u16string> entries = Entries();
  const auto found = std::ranges::find(entries, std::u16string_view(text));
  if (found == entries.end()) return CB_ERR;
  Send(CB_SETCURSEL, static_cast<WPARAM>(found - entries.begin()));
  return 1;
}

bool ListControl::SeesChange() {
  const bool isOther = std::exchange(seenSelected_, Selected()) != seenSelected_;
  const bool hasOthers = std::exchange(seenCount_, Count()) != seenCount_;
  // The text is that of the selected entry.
  return isOther || hasOthers;
}

}  // namespace vblur::host
