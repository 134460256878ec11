// The dialog of a property page, made of its module's resources with all its controls. Their messages go to the page,
// which may change any of them, or drop the dialog, before it returns.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/hosted/CallTrace.h"
#include "host/pages/PageWindow.h"
#include "platform/CDSPropertyPage.h"

namespace vblur::host {

class PageDialog final : public PageWindow {
 public:
  // Hidden at first. The resources are copied. Module and page are borrowed: the page until Close, the module, which
  // holds the bitmaps, as long as the dialog; without one its pictures are empty.
  // On Windows null when the system does not make it with all its controls, and the thread that makes it is the one to
  // use it.
  static std::shared_ptr<PageDialog> Make(const ModuleDialog& dialog, IDSPropertyPage& page, HMODULE module = nullptr);
  // Of the module's resources; null if it has no dialog of this number.
  static std::shared_ptr<PageDialog> Make(HMODULE module, std::int32_t number, IDSPropertyPage& page);
  ~PageDialog() override;

  HMODULE ResourceModule() const { return module_; }
  const std::string& FontName() const { return fontName_; }
  std::int32_t FontPoints() const { return fontPoints_; }

  // In the order of the resources, which is that of the tabulator key.
  const std::vector<std::shared_ptr<PageWindow>>& Items() const { return items_; }
  // The first control with the id; null for none, and for ModuleControl::kNoId.
  PageWindow* Item(std::int32_t id) override;

  // The tab stop after or before a window, from the other end after the last; of null the first or the last. Null if
  // none takes input.
  PageWindow* NextStop(const PageWindow* from) const { return Stop(from, 1); }
  PageWindow* PreviousStop(const PageWindow* from) const { return Stop(from, -1); }

  // The page goes: from now on nothing is sent to it, and the controls take no input.
  void Close();
  bool IsOpen() const { return page_ != nullptr; }
  // Notes each message to the page from now on, under the page's name. Borrowed; null for none.
  void UseTrace(CallTrace* trace, std::string pageName);
  // The page keeps itself for the length of the call. 0 once closed.
  LRESULT SendToPage(UINT message, WPARAM wParam, LPARAM lParam) const;

 private:
  PageDialog(const ModuleDialog& dialog, IDSPropertyPage& page, HMODULE module);
  static std::shared_ptr<PageWindow> MakeItem(PageDialog& dialog, const ModuleControl& control);
  PageWindow* Stop(const PageWindow* from, std::ptrdiff_t step) const;
#ifdef _WIN32
  struct Procedure;

  bool Create(const ModuleDialog& dialog);
  // Ties each window to its own. False if one is missing, or cannot be tied.
  bool AttachAll(HWND handle, const ModuleDialog& resources);
  void Detach() override;
  LRESULT Receive(UINT message, WPARAM wParam, LPARAM lParam) override;
  LRESULT OnCommand(WPARAM wParam, LPARAM lParam);
  // Gives the system the text of a tool tip.
  void TellToolTip(LPARAM lParam);
  void MakeToolTips();

  HWND toolTips_ = nullptr;
  std::u16string toolTip_;  // while it shows
#endif

  IDSPropertyPage* page_;
  const HMODULE module_;
  const std::string fontName_;
  const std::int32_t fontPoints_;
  std::vector<std::shared_ptr<PageWindow>> items_;
  CallTrace* trace_ = nullptr;
  std::string pageName_;
};

}  // namespace vblur::host
