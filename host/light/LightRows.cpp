#include "host/light/LightRows.h"

#include <optional>
#include <utility>

#include "host/base/StandardStream.h"
#include "host/light/LightMetadata.h"

namespace vblur::host {

namespace {

std::vector<int> ComponentsOf(PixelLayout layout) {
  std::vector<int> components{0};
  if (!IsGrey(layout)) components.insert(components.end(), {1, 2});
  if (HasAlpha(layout)) components.push_back(3);
  return components;
}

}  // namespace

bool IsOfLightRows(const PictureToWrite& picture) {
  if (picture.metadata == nullptr) return true;
  const PictureInfo& source = picture.metadata->info;
  return picture.metadata->Light() != nullptr && source.data == source.display;
}

LightRows::LightRows(const PictureToWrite& picture)
    : picture_(picture),
      pixels_(ChooseOutputPixels(picture, DescribeSource(picture))),
      components_(ComponentsOf(pixels_.layout)),
      window_{0, 0, picture.image.Width(), picture.image.Height()},
      rows_(picture, picture.metadata != nullptr ? &picture.metadata->info : nullptr, window_, window_, PixelBytes()) {}

void LightRows::Make(std::int32_t row, std::byte* samples, BeyondRange& beyond) const {
  for (const int component : components_) {
    const ComponentChannel channel{component, pixels_.type};
    rows_.Put(channel, row, samples);
    rows_.AddBeyond(channel, row, beyond);
    samples += SampleBytes(pixels_.type);
  }
}

std::vector<std::string> LightRows::Notes(const std::string& held) {
  NoteLosses(picture_, DescribeSource(picture_), pixels_);
  const std::string clipped = FormatBeyond(beyond_, held.empty() ? LimitsOf(pixels_.type) : held);
  if (!clipped.empty()) pixels_.notes.push_back(OutputName(picture_.target) + ": " + clipped);
  return std::move(pixels_.notes);
}

}  // namespace vblur::host
