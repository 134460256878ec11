#include "host/pictures/PictureReporting.h"

#include "host/pictures/PictureFileMetadata.h"
#include "host/pictures/PictureFileOpen.h"

namespace vblur::host {

PictureReport DescribeFile(const std::filesystem::path& path) {
  const OpenPicture opened = OpenPictureFile(path, {});
  const OIIO::ImageSpec& spec = opened.file->spec();
  PictureReport report;
  report.info = opened.info;
  report.compression = spec.get_string_attribute("compression");
  report.associatedAlpha = CollectMetadata(spec, opened.info).associatedAlpha;
  for (const auto& attribute : spec.extra_attribs) {
    const auto group = GroupOf(attribute);
    if (!group) continue;
    report.metadata.bits |= 1u << static_cast<unsigned>(*group);
    constexpr int kMostValues = 64;
    const bool isLong = attribute.type().numelements() > kMostValues;
    const std::string value = isLong ? std::to_string(attribute.datasize()) + " bytes" : attribute.get_string();
    report.attributes.emplace_back(attribute.name().string(), value);
  }
  return report;
}

}  // namespace vblur::host
