#include "host/pages/PageDialog.h"

#include <algorithm>
#include <span>
#include <utility>

#include "host/pages/ControlClasses.h"
#include "host/pages/DialogTemplate.h"
#include "host/pages/KeptFailure.h"
#include "host/pages/ListControl.h"
#include "host/pages/OwnControl.h"
#include "host/pages/PageFrame.h"
#include "platform/PageControls.h"
#include "sdk/system/SystemTypes_windows.h"
// After the system's header.
#include <commctrl.h>

namespace vblur::host {

namespace {

bool IsControlMessage(UINT message) {
  static const std::array<UINT, 4> kMessages{
      RegisterWindowMessageW(kControlNotify), RegisterWindowMessageW(kControlNotifyComplete),
      RegisterWindowMessageW(kControlScrub), RegisterWindowMessageW(kControlToolTip)};
  return std::ranges::find(kMessages, message) != kMessages.end();
}

}  // namespace

// The system calls it while it makes the dialog, whose windows get their messages themselves from then on.
struct PageDialog::Procedure {
  PageDialog& dialog;
  const ModuleDialog& resources;
  bool isWhole = false;

  static INT_PTR CALLBACK Run(HWND handle, UINT message, WPARAM, LPARAM lParam) {
    if (message != WM_INITDIALOG) return FALSE;
    // The focus stays where it is.
    return AnswerOrKeep([&] {
      auto& making = *reinterpret_cast<Procedure*>(lParam);
      making.isWhole = making.dialog.AttachAll(handle, making.resources);
      return FALSE;
    });
  }
};

std::shared_ptr<PageDialog> PageDialog::Make(const ModuleDialog& dialog, IDSPropertyPage& page, HMODULE module) {
  auto made = std::shared_ptr<PageDialog>(new PageDialog(dialog, page, module));
  return made->Create(dialog) ? made : nullptr;
}

std::shared_ptr<PageDialog> PageDialog::Make(HMODULE module, std::int32_t number, IDSPropertyPage& page) {
  if (module == nullptr) return nullptr;
  const HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(static_cast<WORD>(number)), MAKEINTRESOURCEW(5));
  if (found == nullptr) return nullptr;
  const auto* const bytes = static_cast<const std::byte*>(LockResource(LoadResource(module, found)));
  if (bytes == nullptr) return nullptr;
  auto read = ReadDialog::Of(number, std::span(bytes, SizeofResource(module, found)));
  return read ? Make(read->Record(), page, module) : nullptr;
}

PageDialog::~PageDialog() {
  if (isThere_) DestroyWindow(handle_);
  for (const auto& item : items_)
    item->dialog_ = nullptr;
}

bool PageDialog::Create(const ModuleDialog& dialog) {
  RegisterControlClasses();
  const std::vector<std::byte> bytes = WriteDialogTemplate(dialog, TemplateClasses::HostsOwn);
  Procedure making{*this, dialog};
  const HWND made = CreateDialogIndirectParamW(module_, reinterpret_cast<const DLGTEMPLATE*>(bytes.data()),
                                               PageFrame::Hidden(), &Procedure::Run, reinterpret_cast<LPARAM>(&making));
  if (made != nullptr && !making.isWhole) DestroyWindow(made);
  ThrowKeptFailure();
  return made != nullptr && making.isWhole;
}

// Tool tips belong to the window that holds the dialog, and would stay with it.
void PageDialog::Detach() {
  if (const HWND toolTips = std::exchange(toolTips_, nullptr); toolTips != nullptr) DestroyWindow(toolTips);
  PageWindow::Detach();
}

bool PageDialog::AttachAll(HWND handle, const ModuleDialog& resources) {
  Attach(handle);
  // In the order of the template.
  HWND child = GetWindow(handle, GW_CHILD);
  for (const ModuleControl& control : resources.controls) {
    if (child == nullptr) return false;
    if (const auto made = ControlMadeBy(child); made != nullptr) {
      made->Join(*this, control);
      items_.push_back(made);
    } else {
      items_.push_back(MakeItem(*this, control));
      items_.back()->Attach(child);
    }
    child = GetWindow(child, GW_HWNDNEXT);
  }
  MakeToolTips();
  return isThere_ && std::ranges::all_of(items_, [](const auto& item) { return item->isThere_; });
}

LRESULT PageDialog::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_COMMAND) return OnCommand(wParam, lParam);
  if (IsControlMessage(message)) return SendToPage(message, wParam, lParam);
  if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == TTN_GETDISPINFOW) {
    TellToolTip(lParam);
    return 0;
  }
  return PageWindow::Receive(message, wParam, lParam);
}

// The page hears of what a user has done, not of what happens to a list on the way there.
LRESULT PageDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
  auto* const from = reinterpret_cast<HWND>(lParam);
  const auto found = std::ranges::find_if(items_, [&](const auto& item) { return item->Handle() == from; });
  if (from == nullptr || found == items_.end()) return 0;
  PageWindow& item = **found;
  const UINT what = HIWORD(wParam);
  const bool isPressed =
      (item.Kind() == PageWindowKind::Button || item.Kind() == PageWindowKind::CheckBox) && what == BN_CLICKED;
  auto* const list = dynamic_cast<ListControl*>(&item);
  const bool isChosen = list != nullptr && list->IsChosenBy(what);
  if (!isPressed && !isChosen) return 0;
  item.Look();
  if (item.Id() == ModuleControl::kNoId) return 0;
  return SendToPage(WM_COMMAND, MAKEWPARAM(LOWORD(wParam), isChosen ? CBN_SELCHANGE : what), lParam);
}

void PageDialog::MakeToolTips() {
  static const bool kLoaded = [] {
    const INITCOMMONCONTROLSEX classes{sizeof(INITCOMMONCONTROLSEX), ICC_WIN95_CLASSES};
    return InitCommonControlsEx(&classes) != FALSE;
  }();
  if (!kLoaded) return;
  toolTips_ = CreateWindowExW(0, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, CW_USEDEFAULT,
                              CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, handle_, nullptr, OwnModule(), nullptr);
  if (toolTips_ == nullptr) return;
  for (const auto& item : items_) {
    if (item->Id() == ModuleControl::kNoId || !item->isThere_) continue;
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = handle_;
    tool.uId = reinterpret_cast<UINT_PTR>(item->Handle());
    tool.lpszText = LPSTR_TEXTCALLBACKW;
    ::SendMessageW(toolTips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  }
}

void PageDialog::TellToolTip(LPARAM lParam) {
  auto& asked = *reinterpret_cast<NMTTDISPINFOW*>(lParam);
  const auto found = std::ranges::find_if(
      items_, [&](const auto& item) { return reinterpret_cast<UINT_PTR>(item->Handle()) == asked.hdr.idFrom; });
  toolTip_ = found == items_.end() ? std::u16string() : (*found)->ToolTip();
  asked.lpszText = SystemText(toolTip_.data());
}

}  // namespace vblur::host
