#include "host/light/LightMetadata.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "host/base/NameMatch.h"
#include "host/files/AttributeNames.h"
#include "host/files/ColourProfile.h"
#include "host/light/ExifLosses.h"

namespace vblur::host {

namespace {

template <typename Value>
Value ValueAt(const std::string& bytes, std::size_t place) {
  Value value;
  std::memcpy(&value, bytes.data() + place * sizeof value, sizeof value);
  return value;
}

// One number; nothing for a text and for several.
std::optional<float> NumberOf(const PictureAttribute& attribute) {
  if (attribute.type == "float") return ValueAt<float>(attribute.value, 0);
  if (attribute.type == "int") return static_cast<float>(ValueAt<std::int32_t>(attribute.value, 0));
  if (attribute.type == "uint" || attribute.type == "uint16") return static_cast<float>(ValueBits(attribute));
  return std::nullopt;
}

// As the full library prints numbers.
std::string Printed(float number) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", static_cast<double>(number));
  return text;
}

template <typename Number, typename Print>
std::string ListOf(const std::string& bytes, const Print& print) {
  std::string list;
  for (std::size_t i = 0; i < bytes.size() / sizeof(Number); ++i)
    list += (i == 0 ? "" : ", ") + print(ValueAt<Number>(bytes, i));
  return list;
}

std::string ShownFraction(const std::string& bytes) {
  return std::to_string(ValueAt<std::int32_t>(bytes, 0)) + '/' + std::to_string(ValueAt<std::int32_t>(bytes, 1));
}

bool IsOfFloats(std::string_view type) {
  return type.starts_with("float") || type.starts_with("matrix") || type == "vector";
}

// Of the numbers in a list, such as "float[3]"; else 1.
std::size_t CountOf(const std::string& type) {
  const std::size_t bracket = type.find('[');
  return bracket == std::string::npos ? 1 : static_cast<std::size_t>(std::stoul(type.substr(bracket + 1)));
}

std::string Shown(const PictureAttribute& attribute) {
  constexpr std::size_t kMostShown = 64;
  if (attribute.IsText()) return attribute.value;
  if (CountOf(attribute.type) > kMostShown) return std::to_string(attribute.value.size()) + " bytes";
  if (attribute.type == "rational") return ShownFraction(attribute.value);
  if (attribute.type == "timecode") return ShownTimeCode(ValueAt<std::uint32_t>(attribute.value, 0));
  if (IsOfFloats(attribute.type)) return ListOf<float>(attribute.value, Printed);
  if (attribute.type.starts_with("uint16"))
    return ListOf<std::uint16_t>(attribute.value, [](std::uint16_t number) { return std::to_string(number); });
  if (attribute.type == "uint" || attribute.type.starts_with("uint["))
    return ListOf<std::uint32_t>(attribute.value, [](std::uint32_t number) { return std::to_string(number); });
  if (attribute.type.starts_with("int") || attribute.type == "keycode")
    return ListOf<std::int32_t>(attribute.value, [](std::int32_t number) { return std::to_string(number); });
  return ListOf<std::uint8_t>(attribute.value, [](std::uint8_t number) { return std::to_string(number); });
}

std::optional<MetadataGroup> GroupOf(const PictureAttribute& attribute) {
  return GroupOfAttribute(attribute.name, NumberOf(attribute));
}

PartsLacking PartsLackingIn(const OutputFormat& format, const PictureMetadata& metadata) {
  PartsLacking parts;
  const LightAttributes passed = PassedAttributes(&metadata, PixelLayout::Rgb, format.name);
  for (const PictureAttribute& attribute : passed.All()) {
    const bool isOther = attribute.IsText() && GroupOf(attribute) == MetadataGroup::Other;
    if (isOther && KeepsOtherText(format.name, attribute.name)) parts.keptOthers.push_back(attribute.name);
  }
  parts.exifFields = ExifFieldsLost(metadata.info, passed, format);
  // What holds no texts is told to lose them all.
  if (format.metadata.Has(MetadataGroup::Text) && !metadata.info.PassesExifTo(format.name))
    parts.furtherTexts = metadata.info.furtherTexts;
  return parts;
}

}  // namespace

std::uint32_t ValueBits(const PictureAttribute& attribute) {
  if (attribute.type == "uint16") return ValueAt<std::uint16_t>(attribute.value, 0);
  return ValueAt<std::uint32_t>(attribute.value, 0);
}

std::string ShownTimeCode(std::uint32_t code) {
  const auto part = [&](int shift, std::uint32_t mask) {
    const std::uint32_t digits = code >> shift & mask;
    return 10 * (digits >> 4) + (digits & 0xfu);
  };
  char text[48];
  std::snprintf(text, sizeof text, "%02u:%02u:%02u:%02u", part(24, 0x3f), part(16, 0x7f), part(8, 0x7f), part(0, 0x3f));
  return text;
}

void LightAttributes::AddText(std::string name, std::string text) {
  Add(std::move(name), "string", std::move(text));
}

void LightAttributes::AddFloat(std::string name, float number) {
  Add(std::move(name), "float", BytesOf(number));
}

void LightAttributes::AddWhole(std::string name, std::int32_t number) {
  Add(std::move(name), "int", BytesOf(number));
}

void LightAttributes::AddBytes(std::string name, std::string bytes) {
  const std::string type = "uint8[" + std::to_string(bytes.size()) + "]";
  Add(std::move(name), type, std::move(bytes));
}

void LightAttributes::Add(std::string name, std::string type, std::string value) {
  all_.push_back({std::move(name), std::move(type), std::move(value)});
}

void LightAttributes::Set(const std::string& name, const std::string& type, const std::string& value) {
  for (PictureAttribute& each : all_) {
    if (!EqualIgnoringCase(each.name, name)) continue;
    each.type = type;
    each.value = value;
    return;
  }
  Add(name, type, value);
}

void LightAttributes::Merge(const LightAttributes& others) {
  for (const PictureAttribute& each : others.All()) {
    if (Find(each.name) == nullptr) all_.push_back(each);
  }
}

const PictureAttribute* LightAttributes::Find(std::string_view name) const {
  const auto found = std::ranges::find_if(all_, [&](const auto& each) { return EqualIgnoringCase(each.name, name); });
  return found == all_.end() ? nullptr : &*found;
}

std::string LightAttributes::Text(std::string_view name) const {
  const PictureAttribute* const found = Find(name);
  return found != nullptr && found->IsText() ? found->value : "";
}

float LightAttributes::Number(std::string_view name, float otherwise) const {
  const PictureAttribute* const found = Find(name);
  return found != nullptr ? NumberOf(*found).value_or(otherwise) : otherwise;
}

std::string LightAttributes::Profile() const {
  const PictureAttribute* const found = Find("ICCProfile");
  return found != nullptr ? found->value : "";
}

LightAttributes PassedAttributes(const PictureMetadata* metadata, PixelLayout pixels, std::string_view format) {
  LightAttributes passed;
  if (metadata == nullptr) return passed;
  const bool sameFormat = metadata->info.format == format;
  for (const PictureAttribute& attribute : *metadata->Light()) {
    if (!IsPassedAttribute(attribute.name, sameFormat, format)) continue;
    if (attribute.IsText() && IsEmptyText(attribute.value)) continue;
    // About windows, in every OpenEXR file: other formats do not have it.
    if (attribute.name.starts_with("screenWindow") && format != "openexr") continue;
    if (attribute.name == "ICCProfile" && !LayoutsOfProfile(attribute.value).Has(pixels)) continue;
    passed.Add(attribute.name, attribute.type, attribute.value);
  }
  return passed;
}

PictureReport DescribePicture(const PictureMetadata& metadata) {
  PictureReport report;
  report.info = metadata.info;
  report.associatedAlpha = metadata.associatedAlpha;
  for (const PictureAttribute& attribute : *metadata.Light()) {
    if (attribute.name == "compression") report.compression = attribute.value;
    const auto group = GroupOf(attribute);
    if (!group) continue;
    report.metadata.Add(*group);
    if (group == MetadataGroup::Other) report.others.push_back(attribute.name);
    if (metadata.info.format != "png" || !attribute.IsText()) report.beyondText.Add(*group);
    if (group == MetadataGroup::Profile) report.profileFits = LayoutsOfProfile(attribute.value);
    report.attributes.emplace_back(attribute.name, Shown(attribute));
  }
  report.AddGroupsOfUnreadExif();
  for (const OutputFormat& format : OutputFormats()) {
    PartsLacking parts = PartsLackingIn(format, metadata);
    if (!parts.keptOthers.empty() || !parts.exifFields.empty() || !parts.furtherTexts.empty())
      report.lacking.emplace(std::string(format.name), std::move(parts));
  }
  return report;
}

std::optional<PictureReport> DescribeSource(const PictureToWrite& picture) {
  return picture.metadata != nullptr ? std::optional(DescribePicture(*picture.metadata)) : std::nullopt;
}

}  // namespace vblur::host
