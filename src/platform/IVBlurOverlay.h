// The effect's controls over the viewer, for programs without property pages.
#pragma once

#include "Com.h"

namespace vblur {

class IVBlurOverlay : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A823}");

  // Opens a page over a viewer. The first call creates the viewer tool. kNullPointer without a viewer; kOk for paint
  // effects, which have no controls.
  virtual HRESULT ConnectOverlay(IUnknown* viewer) = 0;
  // Closes a page. The last call releases the tool.
  virtual HRESULT DisconnectOverlay() = 0;
  // Which page is in front, by its name in properties/PageNames.h: it shows the circle, the crop box or neither.
  // Nothing while no page is open.
  virtual HRESULT ShowPage(const char* name) = 0;
  // Hides all controls, so that they neither paint nor take the pen, or shows them again.
  virtual HRESULT HideControls(bool hide) = 0;

 protected:
  ~IVBlurOverlay() = default;
};

}  // namespace vblur
