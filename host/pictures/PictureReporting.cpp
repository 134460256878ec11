#include "host/pictures/PictureReporting.h"

#include "host/pictures/PictureFileOpen.h"

namespace vblur::host {

PictureReport DescribeFile(const std::filesystem::path& path, const ReadChoice& choice) {
  const OpenPicture opened = OpenPictureFile(path, choice);
  return DescribePicture(CollectMetadata(opened.file->spec(), opened.info));
}

PictureReport DescribePicture(const PictureMetadata& metadata) {
  PictureReport report;
  report.info = metadata.info;
  report.compression = metadata.input.get_string_attribute("compression");
  report.associatedAlpha = metadata.associatedAlpha;
  for (const auto& attribute : metadata.input.extra_attribs) {
    const auto group = GroupOf(attribute);
    if (!group) continue;
    report.metadata.Add(*group);
    if (!IsTextOf(attribute, metadata.info.format)) report.beyondText.Add(*group);
    if (group == MetadataGroup::Profile) report.profileFits = LayoutsOfProfile(attribute);
    constexpr int kMostValues = 64;
    const bool isLong = attribute.type().numelements() > kMostValues;
    const std::string value = isLong ? std::to_string(attribute.datasize()) + " bytes" : attribute.get_string();
    report.attributes.emplace_back(attribute.name().string(), value);
  }
  return report;
}

}  // namespace vblur::host
