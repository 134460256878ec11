// Observer of the property reads and writes of tools, for call traces.
#pragma once

#include "platform/DsTypes.h"

namespace vblur::host {

class ToolObserver {
 public:
  virtual ~ToolObserver() = default;

  // After the call. `time` is the tool's argument: -1.0 means the viewer's time.
  virtual void OnGetAnimatedProperty(const GUID& property, double value, double time, HRESULT result) = 0;
  virtual void OnSetAnimatedProperty(const GUID& property, double value, double time, HRESULT result) = 0;
};

// Borrowed: set null, the default, before it ends. User-interface thread only.
void UseToolObserver(ToolObserver* observer);

}  // namespace vblur::host
