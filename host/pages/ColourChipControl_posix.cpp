#include "host/pages/ColourChipControl.h"

namespace vblur::host {

HANDLE ColourChipControl::Prop(std::u16string_view name) {
  return name == kControlInterface ? static_cast<IUnknown*>(this) : nullptr;
}

}  // namespace vblur::host
