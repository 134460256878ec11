// The effect's on-screen controls, for a program that shows them without a property page.
#pragma once

#include "Com.h"

namespace vblur {

class IVBlurOverlay : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A823}");

  // A page opens over a viewer: the first one makes the viewer tool. kNullPointer without a viewer; an effect
  // that is painted has no controls, and answers kOk.
  virtual HRESULT ConnectOverlay(IUnknown* viewer) = 0;
  // A page closes: with the last one the tool goes.
  virtual HRESULT DisconnectOverlay() = 0;
  // Which page is in front, by its name in properties/PageNames.h: it shows the circle, the crop box or neither.
  // Nothing while no page is open.
  virtual HRESULT ShowPage(const char* name) = 0;
  // Takes all controls out of the viewer, deaf to the pen, or brings them back.
  virtual HRESULT HideControls(bool hide) = 0;

 protected:
  ~IVBlurOverlay() = default;
};

}  // namespace vblur
