// What the pages' Reset buttons write.
#pragma once

#include "pages/ValueControl.h"

namespace vblur {

// The default of the control's property.
template <class Value>
void SetDefault(ValueControl<Value>& control, const ControlRow& row) {
  control.Set(static_cast<Value>(row.Of().defaultValue));
}

}  // namespace vblur
