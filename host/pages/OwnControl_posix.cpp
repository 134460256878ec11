#include "host/pages/OwnControl.h"

#include "platform/PageControls.h"

namespace vblur::host {

HANDLE OwnControl::Prop(std::u16string_view name) {
  return name == kControlInterface ? Interface() : nullptr;
}

}  // namespace vblur::host
