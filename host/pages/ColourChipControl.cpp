#include "host/pages/ColourChipControl.h"

#include <algorithm>

namespace vblur::host {

ColourChipControl::ColourChipControl(PageDialog* dialog, const ModuleControl& control, const ControlText& text)
    : OwnControl(dialog, PageWindowKind::ColourChip, control, Widened(text.caption)) {}

bool ColourChipControl::PickColour(std::int32_t red, std::int32_t green, std::int32_t blue) {
  if (!TakesInput()) return false;
  const auto held = Hold();
  const auto before = colour_;
  if (SetColour(red, green, blue, colour_[3]) != kOk) return false;
  if (colour_ != before) Tell(kControlNotify);
  return true;
}

HRESULT ColourChipControl::QueryInterface(const GUID& iid, void** result) {
  if (result == nullptr) return kNullPointer;
  *result = iid == IUnknown::kIid || iid == IDSColourChip::kIid ? static_cast<IDSColourChip*>(this) : nullptr;
  if (*result == nullptr) return kNoInterface;
  AddRef();
  return kOk;
}

HRESULT ColourChipControl::SetColour(std::int32_t red, std::int32_t green, std::int32_t blue, std::int32_t alpha) {
  const std::array<std::int32_t, 4> colour{red, green, blue, alpha};
  if (std::ranges::any_of(colour, [](std::int32_t part) { return part < 0 || part > kMost; })) return kWrongArgument;
  if (colour == colour_) return kOk;
  colour_ = colour;
  Changed();
  return kOk;
}

HRESULT ColourChipControl::GetColour(std::int32_t* red, std::int32_t* green, std::int32_t* blue, std::int32_t* alpha) {
  const std::array<std::int32_t*, 4> parts{red, green, blue, alpha};
  if (std::ranges::find(parts, nullptr) != parts.end()) return kNullPointer;
  for (std::size_t i = 0; i < parts.size(); ++i)
    *parts[i] = colour_[i];
  return kOk;
}

}  // namespace vblur::host
