// A colour chip with the number controls of its components, in percent.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "pages/ValueControl.h"

namespace vblur {

struct ColourChip {
  static constexpr std::uint32_t kHasAlpha = 1;  // of flags: alpha takes part

  HvDsPPG* page = nullptr;
  std::uint32_t chipId = 0;
  std::uint32_t groupId = 0;
  ValueControl<double> red;
  ValueControl<double> green;
  ValueControl<double> blue;
  ValueControl<double> alpha;
  std::uint32_t flags = 0;

  // Shows a colour, given in percent; the chip's alpha is 255. A component is v * 2.55 truncated: 100 gives 254.
  void Show(double redPercent, double greenPercent, double bluePercent);
  // Shows the colour of the number controls.
  void Update();
  // Writes the properties of red, green and blue from the chip's colour. Alpha stays.
  void ReadChip();
  // Writes the properties, each clamped to 0 to 100, and shows the colour.
  void SetAll(float redPercent, float greenPercent, float bluePercent, float alphaPercent);
  // Red, green, blue and alpha, if the change that is being reported is one of them.
  std::optional<std::array<double, 4>> ReadIfAffected() const;
};

}  // namespace vblur
