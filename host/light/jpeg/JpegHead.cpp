#include "host/light/jpeg/JpegHead.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "host/base/NameMatch.h"
#include "host/formats/ExifBlock.h"
#include "host/light/ExifEncoding.h"
#include "host/light/IptcTexts.h"
#include "host/light/LightMetadata.h"

namespace vblur::host {

namespace {

// Of the other names with a group some become XMP data.
bool IsKnownGroup(std::string_view name) {
  constexpr std::string_view kGroups[] = {"Exif", "GPS", "oiio", "smpte", "dpx"};
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos || std::ranges::find(kGroups, name.substr(0, colon)) != std::end(kGroups);
}

bool IsKnown(const LightAttributes& attributes) {
  // Segments hold some 60,000 bytes, and texts go into several of them.
  constexpr std::size_t kMostText = 7000;
  std::size_t length = 0;
  for (const PictureAttribute& each : attributes.All()) {
    if (each.IsText()) length += each.value.size();
    const bool isKeywords = EqualIgnoringCase(each.name, "Keywords");
    if ((!IsKnownGroup(each.name) && !IsIptcText(each.name)) || isKeywords) return false;
  }
  return length <= kMostText;
}

std::uint16_t Stored(float number) {
  return static_cast<std::uint16_t>(std::clamp(number + 0.5f, 1.0f, 65535.0f));
}

// The shape of a pixel is believed before the second number, and alone goes with 72 pixels by no unit. Numbers below 1
// are not known here.
bool TakeScale(const LightAttributes& attributes, JpegHead& head) {
  constexpr float kUsual = 72.0f;
  const auto isKnown = [](float number) { return number == 0.0f || number >= 1.0f; };
  float x = attributes.Number("XResolution", 0.0f);
  float y = attributes.Number("YResolution", 0.0f);
  if (!isKnown(x) || !isKnown(y)) return false;
  if (attributes.Find("PixelAspectRatio") == nullptr) {
    const float either = std::max({1.0f, x, y});
    if (x == 0.0f) x = either;
    if (y == 0.0f) y = either;
  } else {
    const float aspect = attributes.Number("PixelAspectRatio", 0.0f);
    if (!(aspect > 0.0f)) return false;
    if (x > 0.0f) {
      y = x / aspect;
    } else if (y > 0.0f) {
      x = y * aspect;
    } else {
      x = kUsual * std::min(aspect, 1.0f);
      y = kUsual * std::max(aspect, 1.0f);
    }
  }
  constexpr float kMost = 1e9f;
  if (x > kMost || y > kMost) return false;
  head.x = Stored(x);
  head.y = Stored(y);
  const auto* const unit = std::ranges::find(kResolutionUnits, attributes.Text("ResolutionUnit"));
  if (unit != kResolutionUnits.end()) head.unit = static_cast<std::uint8_t>(unit - kResolutionUnits.begin());
  return true;
}

// Of the output's size, and with the colour space that it is declared to have.
LightAttributes OfOutput(const LightAttributes& attributes, const HostImage& image) {
  constexpr std::int32_t kSrgb = 1;
  LightAttributes own;
  for (const PictureAttribute& each : attributes.All()) {
    if (each.name == "Exif:PixelXDimension") {
      own.AddWhole(each.name, image.Width());
    } else if (each.name == "Exif:PixelYDimension") {
      own.AddWhole(each.name, image.Height());
    } else {
      own.Add(each.name, each.type, each.value);
    }
  }
  const bool isTold = own.Find("Exif:ColorSpace") != nullptr;
  if (own.Text("oiio:ColorSpace") == "sRGB" && !isTold) own.AddWhole("Exif:ColorSpace", kSrgb);
  return own;
}

bool PassesExif(const PictureToWrite& picture) {
  return picture.metadata != nullptr && picture.metadata->info.PassesExifTo("jpeg");
}

std::optional<std::string> ExifOf(const PictureToWrite& picture, const LightAttributes& attributes) {
  if (PassesExif(picture))
    return ExifForOutput(picture.metadata->info.exif, picture.image.Width(), picture.image.Height());
  return EncodedExif(OfOutput(attributes, picture.image));
}

}  // namespace

std::optional<JpegHead> JpegHeadOf(const PictureToWrite& picture, PixelLayout pixels) {
  const LightAttributes attributes = PassedAttributes(picture.metadata, pixels, "jpeg");
  JpegHead head;
  if (!IsKnown(attributes) || !TakeScale(attributes, head)) return std::nullopt;
  auto exif = ExifOf(picture, attributes);
  if (!exif) return std::nullopt;
  head.exif = *std::move(exif);
  head.isSourcesExif = PassesExif(picture);
  head.iptc = IptcSegmentOf(attributes);
  head.profile = attributes.Profile();
  if (const std::string text = attributes.Text("ImageDescription"); !text.empty()) head.comment = text + '\0';
  return head;
}

}  // namespace vblur::host
