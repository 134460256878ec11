// The windows of the system's that hold the dialogs of pages. Windows only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/hosted/ExecuteContext.h"
#include "host/pages/EffectPages.h"
#include "host/pages/UndoHistory.h"
#include "platform/Window.h"

struct tagMSG;  // the system's

namespace vblur::host {

// A window with a tab for each page that the effect lists, and the page in front below.
class PageFrame {
 public:
  // Shows the window. Both are borrowed; one page is in front. Throws what the pages throw.
  PageFrame(EffectPages& pages, UndoHistory& history);
  ~PageFrame();
  PageFrame(const PageFrame&) = delete;
  PageFrame& operator=(const PageFrame&) = delete;

  // Holds dialogs that nobody sees; one for each thread, until the thread's end.
  static HWND Hidden();

  HWND Handle() const { return handle_; }
  // Until the user closes it.
  bool IsOpen() const { return isOpen_; }
  // Hands out what the user does, until the window is closed or the context is stopped. What pages and history throw
  // closes the window, and is thrown again.
  void Run(const ExecuteContext& context);
  // Hands out one message. Throws likewise, but the window stays.
  void Dispatch(::tagMSG& message);

 private:
  struct Procedure;

  bool Create();
  void Fill();
  void MakeTabs();
  // The dialogs stay, for those who print them.
  void Close();
  void GiveDialogsBack();
  // Shows the page in front, as large as its dialog is.
  void HoldFront();
  void ShowTab(std::int32_t index);
  // The control of the page in front that the user types into; null for none.
  PageWindow* Focused() const;
  // Gives the focus to the control that had it last, or to the next one that takes it.
  void GiveFocus();
  // Notes who has the focus; one that takes no keys any more loses it.
  void KeepFocus();
  // What the keys of the window itself do; false for others.
  bool OnKey(std::uintptr_t key);
  void HandOut(::tagMSG& message);
  std::intptr_t Receive(UINT message, WPARAM wParam, LPARAM lParam);

  EffectPages& pages_;
  UndoHistory& history_;
  std::vector<std::string> names_;
  std::vector<std::weak_ptr<PageDialog>> held_;
  HWND handle_ = nullptr;
  HWND tabs_ = nullptr;
  HWND focused_ = nullptr;  // last, among the controls of the page in front
  bool isOpen_ = false;
};

}  // namespace vblur::host
