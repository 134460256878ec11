#include "host/wic/FileMetadata.h"

#include "host/files/ColourProfile.h"

namespace vblur::host {

PictureReport DescribePicture(const PictureMetadata& metadata) {
  const FileExtras& extras = metadata.extras;
  PictureReport report;
  report.info = metadata.info;
  report.compression = metadata.header.compression;
  report.associatedAlpha = metadata.associatedAlpha;
  report.profileFits = LayoutsOfProfile(metadata.extras.profile);
  const auto add = [&](bool has, MetadataGroup group) {
    if (has) report.metadata.Add(group);
  };
  add(!metadata.info.exif.empty() || extras.hasExif, MetadataGroup::Exif);
  add(extras.hasGps, MetadataGroup::Gps);
  add(extras.hasIptc, MetadataGroup::Iptc);
  add(!metadata.extras.profile.empty(), MetadataGroup::Profile);
  // That of a block of Exif data goes with it.
  add(metadata.info.exif.empty() && extras.orientation != 1, MetadataGroup::Orientation);
  add(extras.pixelsPerInchX > 0.0, MetadataGroup::Resolution);
  add(extras.hasPixelAspect, MetadataGroup::PixelAspect);
  add(extras.hasOther, MetadataGroup::Other);
  // Those of PNG files are passed on to PNG files as they are.
  report.beyondText = report.metadata;
  add(extras.hasTexts, MetadataGroup::Text);
  if (extras.hasTexts && metadata.header.format != "png") report.beyondText.Add(MetadataGroup::Text);
  return report;
}

}  // namespace vblur::host
