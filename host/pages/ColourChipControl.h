// The host's colour chip: an opaque patch of colour, to be picked anew.
#pragma once

#include <array>
#include <cstdint>

#include "host/pages/ControlText.h"
#include "host/pages/PageWindow.h"
#include "platform/PageControls.h"
#include "platform/RefCount.h"

namespace vblur::host {

class ColourChipControl final : public PageWindow, public IDSColourChip {
 public:
  static constexpr std::int32_t kMost = 255;

  // Opaque black.
  ColourChipControl(PageDialog& dialog, const ModuleControl& control, const ControlText& text);

  // Red, green, blue, alpha from 0 to 255.
  const std::array<std::int32_t, 4>& Colour() const { return colour_; }
  // The user takes a colour from a picker; alpha stays. False if the chip takes no input, and for a component beyond
  // 0 to 255; the page gets a message for another colour than before.
  bool PickColour(std::int32_t red, std::int32_t green, std::int32_t blue);

#ifndef _WIN32
  HANDLE Prop(std::u16string_view name) override;
#endif

  // References are counted but do not keep the chip: its dialog owns it.
  HRESULT QueryInterface(const GUID& iid, void** result) override;
  std::uint32_t AddRef() override {
    return references_.Add();
  }
  std::uint32_t Release() override {
    return references_.Drop();
  }
  HRESULT SetColour(std::int32_t red, std::int32_t green, std::int32_t blue, std::int32_t alpha) override;
  HRESULT GetColour(std::int32_t* red, std::int32_t* green, std::int32_t* blue, std::int32_t* alpha) override;

 private:
#ifdef _WIN32
  void Attach(HWND handle) override;
  void Detach() override;
  LRESULT Receive(UINT message, WPARAM wParam, LPARAM lParam) override;
  void Paint(::HDC__* dc) const;
  // The system's picker of colours.
  void OpenPicker();
#endif

  RefCount references_;
  std::array<std::int32_t, 4> colour_{0, 0, 0, kMost};
};

}  // namespace vblur::host
