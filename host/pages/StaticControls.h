// The controls that a user only looks at: text, frame and picture.
#pragma once

#include "host/pages/PageDialog.h"
#include "host/pages/PageWindow.h"
#include "platform/Module.h"

namespace vblur::host {

class LabelControl final : public PageWindow {
 public:
  LabelControl(PageDialog& dialog, const ModuleControl& control)
      : PageWindow(&dialog, PageWindowKind::Label, control, Widened(control.text)) {}
};

// A frame around other controls, with a title.
class GroupControl final : public PageWindow {
 public:
  GroupControl(PageDialog& dialog, const ModuleControl& control)
      : PageWindow(&dialog, PageWindowKind::Group, control, Widened(control.text)) {}
};

class PictureControl final : public PageWindow {
 public:
  PictureControl(PageDialog& dialog, const ModuleControl& control)
      : PageWindow(&dialog, PageWindowKind::Picture, control, Widened(control.text)), bitmap_(control.bitmap) {}

  // Null if the module lacks it. Borrowed.
  HBITMAP Bitmap() const;

 private:
#ifdef _WIN32
  LRESULT Receive(UINT message, WPARAM wParam, LPARAM lParam) override;
#endif

  const std::int32_t bitmap_;
};

}  // namespace vblur::host
