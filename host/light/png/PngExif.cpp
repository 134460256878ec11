#include "host/light/png/PngExif.h"

#include <utility>

#include "host/files/AttributeNames.h"
#include "host/formats/ExifBlock.h"
#include "host/formats/PngHead.h"
#include "host/light/ExifEncoding.h"

namespace vblur::host {

namespace {

bool BelongsToExif(const LightAttributes& attributes, const PictureAttribute& attribute) {
  const auto group = GroupOfAttribute(attribute.name, attributes.Number(attribute.name, 0.0f));
  return group == MetadataGroup::Exif || group == MetadataGroup::Gps || group == MetadataGroup::Orientation;
}

}  // namespace

std::optional<PngExif> TakePngExif(const PictureToWrite& picture, const LightAttributes& attributes) {
  const bool passes = picture.metadata != nullptr && picture.metadata->info.PassesExifTo("png");
  PngExif taken;
  LightAttributes fields;
  for (const PictureAttribute& each : attributes.All()) {
    const bool belongs = BelongsToExif(attributes, each);
    if (belongs) fields.Add(each.name, each.type, each.value);
    // What a block cannot hold is a text.
    const bool isHeld = belongs && (passes || IsEncodedInExif(each));
    if (!isHeld) taken.others.Add(each.name, each.type, each.value);
  }
  if (passes) {
    const HostImage& image = picture.image;
    taken.chunk = PngChunk("eXIf", ExifForOutput(picture.metadata->info.exif, image.Width(), image.Height()));
  } else if (!fields.All().empty()) {
    auto block = EncodedExif(fields);
    if (!block) return std::nullopt;
    taken.chunk = PngChunk("eXIf", *block);
  }
  return taken;
}

}  // namespace vblur::host
