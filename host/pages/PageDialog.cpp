#include "host/pages/PageDialog.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "host/base/Utf8.h"
#include "host/pages/ButtonControl.h"
#include "host/pages/CheckBoxControl.h"
#include "host/pages/ColourChipControl.h"
#include "host/pages/ControlText.h"
#include "host/pages/ListControl.h"
#include "host/pages/NumberControl.h"
#include "host/pages/StaticControls.h"

namespace vblur::host {

namespace {

std::shared_ptr<PageWindow> MakeStatic(PageDialog& dialog, const ModuleControl& control) {
  const ControlText text = ReadControlText(control.text);
  switch (text.kind) {
    case PageWindowKind::Number: return std::make_shared<NumberControl>(&dialog, control, text);
    case PageWindowKind::ColourChip: return std::make_shared<ColourChipControl>(&dialog, control, text);
    default: return std::make_shared<LabelControl>(dialog, control);
  }
}

ModuleControl WindowOf(const ModuleDialog& dialog) {
  ModuleControl window;
  window.id = dialog.id;
  window.width = dialog.width;
  window.height = dialog.height;
  window.style = dialog.style;
  return window;
}

std::string NameOfMessage(UINT message) {
  if (message == WM_COMMAND) return "WM_COMMAND";
  for (const char16_t* const name : {kControlNotify, kControlNotifyComplete, kControlScrub, kControlToolTip}) {
    if (message == RegisterWindowMessageW(name)) return Utf8Of(name);
  }
  return std::to_string(message);
}

}  // namespace

PageDialog::PageDialog(const ModuleDialog& dialog, IDSPropertyPage& page, HMODULE module)
    : PageWindow(this, PageWindowKind::Dialog, WindowOf(dialog), {}),
      page_(&page),
      module_(module),
      fontName_(dialog.font),
      fontPoints_(dialog.fontPoints) {}

std::shared_ptr<PageWindow> PageDialog::MakeItem(PageDialog& dialog, const ModuleControl& control) {
  switch (control.kind) {
    case ModuleControlKind::Static: return MakeStatic(dialog, control);
    case ModuleControlKind::Group: return std::make_shared<GroupControl>(dialog, control);
    case ModuleControlKind::PushButton: return std::make_shared<ButtonControl>(dialog, control);
    case ModuleControlKind::CheckBox: return std::make_shared<CheckBoxControl>(dialog, control);
    case ModuleControlKind::List: return std::make_shared<ListControl>(dialog, control);
    case ModuleControlKind::Picture: return std::make_shared<PictureControl>(dialog, control);
  }
  return std::make_shared<LabelControl>(dialog, control);
}

PageWindow* PageDialog::Item(std::int32_t id) {
  if (id == ModuleControl::kNoId) return nullptr;
  const auto found = std::ranges::find_if(items_, [&](const auto& item) { return item->Id() == id; });
  return found == items_.end() ? nullptr : found->get();
}

PageWindow* PageDialog::Stop(const PageWindow* from, std::ptrdiff_t step) const {
  const auto count = static_cast<std::ptrdiff_t>(items_.size());
  const auto at = std::ranges::find_if(items_, [&](const auto& item) { return item.get() == from; });
  std::ptrdiff_t index = at - items_.begin();
  if (index == count && step > 0) index = -1;
  for (std::ptrdiff_t tried = 0; tried < count; ++tried) {
    index = (index + step + count) % count;
    PageWindow& item = *items_[static_cast<std::size_t>(index)];
    if (item.IsTabStop() && item.TakesInput()) return &item;
  }
  return nullptr;
}

void PageDialog::Close() {
  page_ = nullptr;
}

void PageDialog::UseTrace(CallTrace* trace, std::string pageName) {
  trace_ = trace;
  pageName_ = std::move(pageName);
}

LRESULT PageDialog::SendToPage(UINT message, WPARAM wParam, LPARAM lParam) const {
  if (page_ == nullptr) return 0;
  // The page may drop the dialog.
  const std::string page = pageName_;
  CallTrace* const trace = trace_;
  LRESULT result = 0;
  // What happened to a control is in the upper half of a command; other messages pass addresses and flags as LPARAM.
  const auto text = [&] {
    return "OnDialogMessage(" + NameOfMessage(message) + ", " + std::to_string(wParam & 0xFFFF) + ")";
  };
  NotedCall(trace, page, text, [&] {
    result = page_->OnDialogMessage(message, wParam, lParam);
    return kOk;
  });
  return result;
}

}  // namespace vblur::host
