// Sees what tools read and write of the operator that they are linked to, for somebody who follows the calls.
#pragma once

#include "platform/DsTypes.h"

namespace vblur::host {

class ToolObserver {
 public:
  virtual ~ToolObserver() = default;

  // After the call. `time` as the tool gave it, -1.0 for the viewer's.
  virtual void OnGetAnimatedProperty(const GUID& property, double value, double time, HRESULT result) = 0;
  virtual void OnSetAnimatedProperty(const GUID& property, double value, double time, HRESULT result) = 0;
};

// Borrowed: null before it goes, as at the beginning. Belongs to the user-interface thread.
void UseToolObserver(ToolObserver* observer);

}  // namespace vblur::host
