#include <array>

#include "platform/CDSPropertyPage.h"

namespace vblur {

namespace {

// Lists send commands too.
bool IsOfButton(CDSBasePropertyPage& page, const DSControlNotification& notification) {
  const CDSPPGControlMap* const map = page.GetControlMap();
  if (notification.message != WM_COMMAND || map == nullptr) return false;
  const CDSPPGControlMapEntry* const entry = map->Find(notification.controlId);
  return entry != nullptr && (entry->flags & control_flags::kButton) != 0;
}

}  // namespace

HRESULT CDSUndoStyleMgr::Begin(const DSControlNotification& notification, UNDO_STYLE* style, std::int32_t) {
  if (style == nullptr) return kNullPointer;
  *style = kUndoBracket;
  ++depth_;
  std::array<char16_t, 256> name{};
  if (IsOfButton(page_, notification)) {
    SendMessageW(page_.GetHwndControl(notification.controlId), WM_GETTEXT, name.size(),
                 reinterpret_cast<LPARAM>(name.data()));
  }
  page_.BeginStep(name.data());
  return kOk;
}

HRESULT CDSUndoStyleMgr::End() {
  if (depth_ == 0) return kFalse;
  --depth_;
  page_.EndStep();
  return kOk;
}

}  // namespace vblur
