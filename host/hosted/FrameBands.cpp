#include "host/hosted/FrameBands.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "host/jobs/JobCheck.h"
#include "properties/PropertyTable.h"

namespace vblur::host {

bool LieAlike(const HostImage& input, const HostImage& output) {
  const DSPixelPair in = input.HostOrigin();
  const DSPixelPair out = output.HostOrigin();
  return input.Width() == output.Width() && input.Height() == output.Height() && in.x == out.x && in.y == out.y;
}

bool BandsServe(const Job& job) {
  const auto value = [&](PropertyId id) { return job.properties.ValueAt(PropertyOf(id).guid, job.time); };
  // The other choices write beyond the region, and a mix of two clips takes whole pictures in any case.
  constexpr std::string_view kServed[] = {"RGBA", "Red", "Green", "Blue", "Alpha"};
  const auto channels = static_cast<std::size_t>(value(PropertyId::Channels));
  const auto& names = PropertyOf(PropertyId::Channels).entries;
  const bool served = channels < names.size() && std::ranges::find(kServed, names[channels]) != std::end(kServed);
  return served && !job.roi && value(PropertyId::BlankCropped) == 0.0 && ResolveKind(job) != EffectKind::Transition;
}

bool BandsServe(const Job& job, const FramePictures& pictures) {
  return BandsServe(job) && (pictures.input == nullptr || LieAlike(*pictures.input, *pictures.output));
}

std::int32_t BandRows(std::int64_t pictureBytes, std::int32_t height) {
  // Smaller pictures render faster whole.
  constexpr std::int64_t kLargeBytes = std::int64_t{256} << 20;
  constexpr std::int32_t kBands = 16;
  if (pictureBytes < kLargeBytes) return height;
  // An even number: every band has as many rows of each field.
  return std::max(height / kBands / 2 * 2, 2) + 2;
}

HRESULT RenderInBands(HostedEffect& effect, const FramePictures& pictures, IDSEffectHost& host, double time,
                      std::int32_t field, std::int32_t rows, const std::function<bool()>& afterBand) {
  const HostImage& output = *pictures.output;
  if (rows >= output.Height()) {
    const HRESULT result = effect.RenderFrame(pictures, host, time, field);
    afterBand();
    return result;
  }
  // Regions count from the input's lower left corner where there is one.
  const DSPixelPair from = pictures.input != nullptr ? pictures.input->HostOrigin() : output.HostOrigin();
  const DSPixelPair to = output.HostOrigin();
  HRESULT result = kOk;
  for (std::int32_t y = 0; y < output.Height(); y += rows) {
    effect.PutRegion(Region{to.x - from.x, to.y - from.y + y, output.Width(), std::min(rows, output.Height() - y)});
    result = effect.RenderFrame(pictures, host, time, field);
    if (!afterBand() || result != kOk) break;
  }
  return result;
}

}  // namespace vblur::host
