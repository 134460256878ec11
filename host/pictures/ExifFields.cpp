#include "host/pictures/ExifFields.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include <OpenImageIO/tiffutils.h>

#include "host/formats/ExifBlock.h"
#include "host/formats/ExifTags.h"
#include "host/pictures/PictureFileMetadata.h"

namespace vblur::host {

namespace {

bool IsOfStorage(const ExifField& field) {
  return IsExifOfStorage(field.isGps ? ExifPart::Place : ExifPart::Picture, static_cast<std::uint16_t>(field.tag));
}

// Nothing for an attribute that is none of Exif data.
std::optional<ExifField> FieldOf(const OIIO::ParamValue& attribute) {
  for (const bool isGps : {false, true}) {
    if (const auto* known = OIIO::tag_lookup(isGps ? "GPS" : "Exif", attribute.name().string()))
      return ExifField{isGps, static_cast<std::size_t>(known->tifftag)};
  }
  return std::nullopt;
}

// Of the library's name for it.
ExifFieldName NameOf(const std::string& known) {
  const auto colon = known.find(':');
  const bool isGps = known.starts_with("GPS:");
  return {(isGps ? "GPS" : "") + (colon == std::string::npos ? known : known.substr(colon + 1)), isGps};
}

ExifFieldName NameOf(const ExifField& field) {
  const auto tag = static_cast<int>(field.tag);
  const auto* known = OIIO::tag_lookup(field.isGps ? "GPS" : "Exif", tag);
  if (known == nullptr && !field.isGps) known = OIIO::tag_lookup("TIFF", tag);
  if (known != nullptr) return NameOf(known->name);
  char number[16];
  std::snprintf(number, sizeof number, "0x%04x", static_cast<unsigned>(tag));
  return {(field.isGps ? "GPS " : "") + std::string(number), field.isGps};
}

bool IsExif(const OIIO::ParamValue& attribute) {
  const auto group = GroupOf(attribute);
  return group == MetadataGroup::Exif || group == MetadataGroup::Gps;
}

OIIO::ImageSpec Decoded(const OIIO::string_view& block) {
  OIIO::ImageSpec spec;
  OIIO::decode_exif(block, spec);
  return spec;
}

// As the library's writers take them.
bool IsWrittenToExr(const OIIO::ParamValue& attribute) {
  return attribute.type().numelements() == 1 || attribute.type().basetype == OIIO::TypeDesc::FLOAT;
}

bool IsWrittenToTiff(const OIIO::ParamValue& attribute) {
  int tag = 0;
  int type = 0;
  int count = 0;
  const bool isKnown = OIIO::exif_tag_lookup(attribute.name().string(), tag, type, count);
  if (!isKnown) return false;
  constexpr int kRefused[] = {OIIO::EXIF_SECURITYCLASSIFICATION, OIIO::EXIF_IMAGEHISTORY, OIIO::EXIF_ISOSPEEDRATINGS};
  if (std::ranges::find(kRefused, tag) != std::end(kRefused)) return false;
  switch (type) {
    case TIFF_ASCII: return attribute.type() == OIIO::TypeDesc::STRING;
    case TIFF_SHORT:
    case TIFF_LONG: return attribute.type() == OIIO::TypeDesc::INT;
    case TIFF_RATIONAL:
    case TIFF_SRATIONAL: return attribute.type() == OIIO::TypeDesc::FLOAT;
    default: return false;
  }
}

}  // namespace

std::vector<ExifFieldName> ExifFieldsUnread(const std::string& block) {
  const OIIO::ImageSpec decoded = Decoded(block);
  std::vector<ExifField> given;
  for (const auto& attribute : decoded.extra_attribs) {
    if (const auto field = FieldOf(attribute)) given.push_back(*field);
  }
  std::vector<ExifFieldName> unread;
  for (const ExifField& field : FieldsOfExif(block)) {
    const bool isTold = !field.isGps && field.tag == kMakerNote;
    if (isTold || IsOfStorage(field) || std::ranges::find(given, field) != given.end()) continue;
    unread.push_back(NameOf(field));
  }
  return unread;
}

std::vector<ExifFieldName> ExifFieldsUnwritten(const OIIO::ImageSpec& output, const OutputFormat& format) {
  OIIO::ImageSpec held;
  const bool isBlock = format.name == "jpeg" || format.name == "png";
  if (isBlock) {
    std::vector<char> block;
    // Its big-endian blocks are damaged.
    OIIO::encode_exif(output, block, OIIO::endian::little);
    held = Decoded({block.data(), block.size()});
  }
  const auto isWritten = [&](const OIIO::ParamValue& attribute) {
    // PNG files have texts that are no fields, too.
    const bool isText = format.name == "png" && attribute.type() == OIIO::TypeDesc::STRING;
    if (isBlock) return isText || held.find_attribute(attribute.name()) != nullptr;
    return format.name == "tiff" ? IsWrittenToTiff(attribute) : IsWrittenToExr(attribute);
  };
  std::vector<ExifFieldName> unwritten;
  for (const auto& attribute : output.extra_attribs) {
    if (!IsExif(attribute) || isWritten(attribute)) continue;
    const auto field = FieldOf(attribute);
    if (!field || !IsOfStorage(*field)) unwritten.push_back(NameOf(attribute.name().string()));
  }
  return unwritten;
}

}  // namespace vblur::host
