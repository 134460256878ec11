#include "host/pages/PageDialog.h"

namespace vblur::host {

std::shared_ptr<PageDialog> PageDialog::Make(const ModuleDialog& dialog, IDSPropertyPage& page, HMODULE module) {
  auto made = std::shared_ptr<PageDialog>(new PageDialog(dialog, page, module));
  for (const ModuleControl& control : dialog.controls)
    made->items_.push_back(MakeItem(*made, control));
  return made;
}

std::shared_ptr<PageDialog> PageDialog::Make(HMODULE module, std::int32_t number, IDSPropertyPage& page) {
  const ModuleDialog* const found = FindDialog(module, number);
  return found == nullptr ? nullptr : Make(*found, page, module);
}

PageDialog::~PageDialog() = default;

}  // namespace vblur::host
