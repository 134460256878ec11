#include "host/files/ColourProfile.h"

#include <cstdint>

namespace vblur::host {

// Some writers refuse the whole picture for a damaged one.
SetOf<PixelLayout> LayoutsOfProfile(std::string_view bytes) {
  constexpr std::size_t kHeader = 132;
  if (bytes.size() < kHeader) return {};
  const auto number = [&](std::size_t at) {
    std::uint64_t value = 0;
    for (std::size_t i = at; i < at + 4; ++i)
      value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
  };
  const bool isWhole = number(0) == bytes.size() && kHeader + 12 * number(128) <= bytes.size();
  if (!isWhole || bytes.substr(36, 4) != "acsp") return {};
  using Layouts = SetOf<PixelLayout>;
  if (bytes.substr(16, 4) == "GRAY") return Layouts::These(PixelLayout::Grey, PixelLayout::GreyAlpha);
  return bytes.substr(16, 4) == "RGB " ? Layouts::These(PixelLayout::Rgb, PixelLayout::Rgba) : Layouts{};
}

}  // namespace vblur::host
