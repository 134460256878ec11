#include "pages/ColourChip.h"

#include <algorithm>

#include "pages/HvDsPPG.h"

namespace vblur {

namespace {

constexpr std::int32_t kOpaque = 255;

ComPtr<IDSColourChip> ChipOf(const HvDsPPG* page, std::uint32_t id) {
  ComPtr<IDSColourChip> chip;
  const HWND window = page == nullptr ? nullptr : GetDlgItem(page->GetDialog(), static_cast<std::int32_t>(id));
  auto* const unknown = static_cast<IUnknown*>(GetPropW(window, kControlInterface));
  if (unknown != nullptr) unknown->QueryInterface(IDSColourChip::kIid, chip.Receive());
  return chip;
}

std::int32_t ChipComponent(double percent) {
  // Clamped before the conversion, which is not defined for every double. NaN gives 0.
  const double scaled = percent * 2.55;
  if (!(scaled > 0.0)) return 0;
  return static_cast<std::int32_t>(std::min(scaled, 255.0));
}

double PercentOf(std::int32_t component) {
  return static_cast<double>(component) * 100.0 / 255.0;
}

double Clamped(float percent) {
  return static_cast<double>(std::clamp(percent, 0.0f, 100.0f));
}

}  // namespace

void ColourChip::Show(double redPercent, double greenPercent, double bluePercent) {
  // While the page is suspended the chip already shows what is being written.
  if (page == nullptr || page->IsSuspended()) return;
  if (const auto chip = ChipOf(page, chipId); chip) {
    chip->SetColour(ChipComponent(redPercent), ChipComponent(greenPercent), ChipComponent(bluePercent), kOpaque);
  }
}

void ColourChip::Update() {
  Show(red.Get(), green.Get(), blue.Get());
}

void ColourChip::ReadChip() {
  if (page == nullptr) return;
  const HvDsPPG::Suspension suspension(*page);
  std::array<std::int32_t, 4> colour{};
  const auto chip = ChipOf(page, chipId);
  if (!chip || chip->GetColour(&colour[0], &colour[1], &colour[2], &colour[3]) != kOk) return;
  red.Set(PercentOf(colour[0]));
  green.Set(PercentOf(colour[1]));
  blue.Set(PercentOf(colour[2]));
}

void ColourChip::SetAll(float redPercent, float greenPercent, float bluePercent, float alphaPercent) {
  red.Set(Clamped(redPercent));
  green.Set(Clamped(greenPercent));
  blue.Set(Clamped(bluePercent));
  if ((flags & kHasAlpha) != 0) alpha.Set(Clamped(alphaPercent));
  Show(red.Get(), green.Get(), blue.Get());
}

std::optional<std::array<double, 4>> ColourChip::ReadIfAffected() const {
  if (page == nullptr) return std::nullopt;
  const bool hasAlpha = (flags & kHasAlpha) != 0;
  const std::array changed = {page->ReadIfAffected(red), page->ReadIfAffected(green), page->ReadIfAffected(blue),
                              hasAlpha ? page->ReadIfAffected(alpha) : std::nullopt};
  if (std::ranges::none_of(changed, [](const auto& value) { return value.has_value(); })) return std::nullopt;
  const auto of = [&](std::size_t i, const ValueControl<double>& control) {
    return changed[i] ? *changed[i] : control.Get();
  };
  return std::array{of(0, red), of(1, green), of(2, blue), of(3, alpha)};
}

}  // namespace vblur
