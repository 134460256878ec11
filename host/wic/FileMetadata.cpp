#include "host/wic/FileMetadata.h"

#include <algorithm>
#include <array>

#include "host/files/ColourProfile.h"
#include "host/formats/ExifBlock.h"
#include "host/formats/JpegSegments.h"
#include "host/wic/CodecTraits.h"

namespace vblur::host {

namespace {

// With their names and places, roughly.
std::size_t BytesOf(const PictureTexts& texts) {
  constexpr std::size_t kEntry = 16;
  std::size_t bytes = 0;
  for (const auto& [tag, text] : texts)
    bytes += text.size() + kEntry;
  return bytes;
}

// Whether a block has more than what is told and kept by itself: texts, the orientation, the resolution.
bool HasExifFields(const std::string& exif) {
  constexpr std::array<std::size_t, 4> kOthers{0x0112, 0x011a, 0x011b, 0x0128};
  return std::ranges::any_of(FieldsOfExif(exif), [&](const ExifField& field) {
    const bool isKnown =
        std::ranges::find(kOthers, field.tag) != kOthers.end() || IsPictureText(static_cast<std::uint16_t>(field.tag));
    return !field.isGps && !isKnown;
  });
}

void AddLong(const PictureMetadata& metadata, PartsLacking& lacking) {
  if (!JpegHoldsExif(metadata)) lacking.longTexts.emplace_back("Exif data");
  if (!JpegHoldsIptc(metadata)) lacking.longTexts.emplace_back("IPTC data");
  if (JpegHoldsTexts(metadata)) return;
  for (const auto& [tag, text] : metadata.extras.texts)
    lacking.longTexts.push_back(NameOfText(tag));
}

// Those of a TIFF file pass whole to another, those of Exif data with these.
void AddFurther(const PictureMetadata& metadata, PictureReport& report) {
  for (const OutputFormat& output : OutputFormats()) {
    const bool passes = (output.name == "tiff") == (metadata.info.format == "tiff");
    if (!passes && output.metadata.Has(MetadataGroup::Text))
      report.lacking[std::string(output.name)].furtherTexts = metadata.extras.furtherTexts;
  }
}

}  // namespace

bool JpegHoldsExif(const PictureMetadata& metadata) {
  return metadata.info.exif.size() <= kMostInSegment;
}

bool JpegHoldsTexts(const PictureMetadata& metadata) {
  // Those of JPEG files stand in segments of their own.
  return metadata.info.format == "jpeg" ||
         (JpegHoldsExif(metadata) ? metadata.info.exif.size() : 0) + BytesOf(metadata.extras.texts) <= kMostInSegment;
}

bool JpegHoldsIptc(const PictureMetadata& metadata) {
  return metadata.extras.iptc.size() <= kMostInSegment;
}

PictureReport DescribePicture(const PictureMetadata& metadata) {
  const FileExtras& extras = metadata.extras;
  PictureReport report;
  report.info = metadata.info;
  report.compression = metadata.header.compression;
  report.associatedAlpha = metadata.associatedAlpha;
  report.profileFits = LayoutsOfProfile(metadata.extras.profile);
  // What passes goes to files of the same format as it is.
  const auto add = [&](bool has, MetadataGroup group, bool passes = false) {
    if (has) report.metadata.Add(group);
    if (has && !passes) report.beyondText.Add(group);
  };
  add(HasExifFields(metadata.info.exif) || extras.hasCamera, MetadataGroup::Exif, true);
  add(extras.hasGps, MetadataGroup::Gps);
  add(!extras.iptc.empty(), MetadataGroup::Iptc);
  add(!extras.profile.empty(), MetadataGroup::Profile);
  add(extras.orientation != 1, MetadataGroup::Orientation);
  add(extras.pixelsPerInchX > 0.0, MetadataGroup::Resolution);
  add(extras.hasPixelAspect, MetadataGroup::PixelAspect, metadata.info.format != "jpeg");
  add(!extras.own.empty(), MetadataGroup::Other, true);
  report.others.assign(extras.own.begin(), extras.own.end());
  add(!extras.texts.empty() || !extras.exifTexts.empty(), MetadataGroup::Text);
  for (const OutputFormat& output : OutputFormats())
    report.lacking.emplace(output.name, LackingOf(output));
  AddLong(metadata, report.lacking["jpeg"]);
  AddFurther(metadata, report);
  return report;
}

}  // namespace vblur::host
