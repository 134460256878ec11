#include "host/wic/FileMetadata.h"

#include "host/files/ColourProfile.h"
#include "host/wic/CodecTraits.h"

namespace vblur::host {

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
  const std::string& format = metadata.header.format;
  const bool isTiff = format == "tiff";
  add(!metadata.info.exif.empty() || extras.hasExif, MetadataGroup::Exif);
  add(extras.hasGps, MetadataGroup::Gps);
  add(extras.hasIptc, MetadataGroup::Iptc, isTiff);
  add(!metadata.extras.profile.empty(), MetadataGroup::Profile);
  // That of a block of Exif data goes with it.
  add(metadata.info.exif.empty() && extras.orientation != 1, MetadataGroup::Orientation, isTiff);
  add(extras.pixelsPerInchX > 0.0, MetadataGroup::Resolution);
  add(extras.hasPixelAspect, MetadataGroup::PixelAspect);
  add(extras.hasOther, MetadataGroup::Other);
  add(extras.hasTexts, MetadataGroup::Text, isTiff || format == "png");
  for (const OutputFormat& output : OutputFormats())
    report.lacking.emplace(output.name, LackingOf(output));
  return report;
}

}  // namespace vblur::host
