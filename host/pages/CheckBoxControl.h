// A check box: on or off.
#pragma once

#include "host/pages/PageWindow.h"

namespace vblur::host {

class CheckBoxControl final : public PageWindow {
 public:
  CheckBoxControl(PageDialog& dialog, const ModuleControl& control);

  bool IsChecked() const;
  // The user clicks it. False if it takes no input.
  bool Toggle();

  // BM_GETCHECK is 0 or 1; BM_SETCHECK takes any number but 0 for on, and the page gets no message.
  LRESULT Receive(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
#ifdef _WIN32
  bool SeesChange() override;
#else
  void Check(bool checked);
#endif

  bool checked_ = false;  // on Windows as observers were told last
};

}  // namespace vblur::host
