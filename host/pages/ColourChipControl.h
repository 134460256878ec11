// The host's colour chip: an opaque patch of colour, to be picked anew.
#pragma once

#include <array>
#include <cstdint>

#include "host/pages/ControlText.h"
#include "host/pages/OwnControl.h"
#include "platform/PageControls.h"
#include "platform/RefCount.h"

namespace vblur::host {

class ColourChipControl final : public OwnControl, public IDSColourChip {
 public:
  static constexpr std::int32_t kMost = 255;

  // Opaque black. Without a dialog it is on no page.
  ColourChipControl(PageDialog* dialog, const ModuleControl& control, const ControlText& text);

  // Red, green, blue, alpha from 0 to 255.
  const std::array<std::int32_t, 4>& Colour() const { return colour_; }
  // The user takes a colour from a picker; alpha stays. False if the chip takes no input, and for a component beyond
  // 0 to 255; the page gets a message for another colour than before.
  bool PickColour(std::int32_t red, std::int32_t green, std::int32_t blue);

  // References are counted but do not keep the chip, which ends with its dialog, or its window on no page.
  HRESULT QueryInterface(const GUID& iid, void** result) override;
  std::uint32_t AddRef() override { return references_.Add(); }
  std::uint32_t Release() override { return references_.Drop(); }
  HRESULT SetColour(std::int32_t red, std::int32_t green, std::int32_t blue, std::int32_t alpha) override;
  HRESULT GetColour(std::int32_t* red, std::int32_t* green, std::int32_t* blue, std::int32_t* alpha) override;

 private:
  IUnknown* Interface() override { return static_cast<IDSColourChip*>(this); }
#ifdef _WIN32
  LRESULT Receive(UINT message, WPARAM wParam, LPARAM lParam) override;
  void Paint(::HDC__* dc) const override;
  // The system's picker of colours.
  void OpenPicker();
#endif

  RefCount references_;
  std::array<std::int32_t, 4> colour_{0, 0, 0, kMost};
};

}  // namespace vblur::host
