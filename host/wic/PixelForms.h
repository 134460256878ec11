// The kinds of pixels that the imaging component gives and takes, as channels in bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "host/files/OutputFormat.h"
#include "host/files/Sample.h"
#include "host/wic/ImagingFactory.h"

namespace vblur::host {

// Of packed ones a pixel is one number of 16 bits: 5 of each colour, or 6 of green.
enum class ColourModel : std::uint8_t { Grey, Rgb, Palette, Inks, Packed555, Packed565 };

struct PixelForm {
  const ::GUID* id = nullptr;
  ColourModel model = ColourModel::Rgb;
  std::int32_t bits = 8;    // of a channel
  std::int32_t stored = 3;  // channels of a pixel in memory, with those that mean nothing
  // The place of red, green, blue and alpha among them; -1: none. A grey pixel has its channel at all three colours.
  std::array<int, 4> places{};
  bool isAssociated = false;
  bool isFloat = false;

  bool IsPacked() const { return model == ColourModel::Packed555 || model == ColourModel::Packed565; }
  bool HasAlpha() const { return places[3] >= 0; }
  std::size_t SampleBytes() const { return static_cast<std::size_t>(bits / 8); }
  std::size_t PixelBytes() const { return static_cast<std::size_t>(stored) * SampleBytes(); }
  // Of a row without padding.
  std::size_t RowBytes(std::size_t width) const { return (width * static_cast<std::size_t>(stored * bits) + 7) / 8; }
};

// Null for kinds that are not read.
const PixelForm* FindPixelForm(const ::GUID& id);
// The kinds that a picture may be written in to a file of a format, the one that holds no more than it first.
std::span<const ::GUID* const> FormsFor(std::string_view format, PixelLayout layout, SampleType type);

}  // namespace vblur::host
