// What a plain picture file holds beside its pixels, as the light library reads it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/files/PictureLibrary.h"
#include "host/files/PictureReport.h"
#include "host/light/PictureMetadata.h"

namespace vblur::host {

// The names of the units of a resolution, by the numbers that files have: from 0 on in the head of a JPEG file, from 1
// on in Exif data and TIFF files.
inline constexpr std::array<const char*, 3> kResolutionUnits = {"none", "in", "cm"};

// The bytes of a number, or of several, as an attribute has them.
template <typename Value>
std::string BytesOf(const Value& value) {
  static_assert(std::is_trivially_copyable_v<Value>);
  return {reinterpret_cast<const char*>(&value), sizeof value};
}

// The bits of an attribute of one number of up to four bytes.
std::uint32_t ValueBits(const PictureAttribute& attribute);

// "hours:minutes:seconds:frames" of an SMPTE time code, whose flags stand among the bits of its two digits each.
std::string ShownTimeCode(std::uint32_t code);

// In the order of the full library.
class LightAttributes {
 public:
  void AddText(std::string name, std::string text);
  void AddFloat(std::string name, float number);
  void AddWhole(std::string name, std::int32_t number);
  // Of bytes, such as a colour profile.
  void AddBytes(std::string name, std::string bytes);
  // Of any type; `value` holds the bytes of its numbers.
  void Add(std::string name, std::string type, std::string value);
  // In place of one that is there.
  void Set(const std::string& name, const std::string& type, const std::string& value);

  // Those of names that are not there.
  void Merge(const LightAttributes& others);

  const std::vector<PictureAttribute>& All() const { return all_; }
  // Null for none of this name, in upper or lower case.
  const PictureAttribute* Find(std::string_view name) const;
  // Empty for none, or where it is no text.
  std::string Text(std::string_view name) const;
  // `otherwise` for none, or where it is not one number.
  float Number(std::string_view name, float otherwise) const;
  // The bytes of a colour profile; empty for none.
  std::string Profile() const;

 private:
  std::vector<PictureAttribute> all_;
};

class LightMetadata final : public PictureMetadata {
 public:
  LightMetadata(PictureInfo described, LightAttributes attributes, bool isAssociated = false)
      : attributes_(std::move(attributes)) {
    info = std::move(described);
    associatedAlpha = isAssociated;
  }

  const std::vector<PictureAttribute>* Light() const override { return &attributes_.All(); }

 private:
  LightAttributes attributes_;
};

// What an output of the format may have of a picture's metadata, but for the texts that are empty: nothing where there
// is no metadata. Its profile only where it is for such pixels.
LightAttributes PassedAttributes(const PictureMetadata* metadata, PixelLayout pixels, std::string_view format);

// Of metadata that the light library has read.
PictureReport DescribePicture(const PictureMetadata& metadata);
// Of the file that a picture was read from; nothing for none.
std::optional<PictureReport> DescribeSource(const PictureToWrite& picture);

}  // namespace vblur::host
