#include "host/hosted/FrameBands.h"

#include <algorithm>
#include <cmath>
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

namespace {

double ValueOf(const Job& job, PropertyId id) {
  return job.properties.ValueAt(PropertyOf(id).guid, job.time);
}

}  // namespace

std::string_view ChannelsOf(const Job& job) {
  const auto entry = static_cast<std::size_t>(ValueOf(job, PropertyId::Channels));
  const auto& names = PropertyOf(PropertyId::Channels).entries;
  return entry < names.size() ? std::string_view(names[entry]) : std::string_view();
}

bool BandsServe(const Job& job) {
  // The other choices write beyond the region, and a mix of two clips takes whole pictures in any case.
  constexpr std::string_view kServed[] = {"RGBA", "Red", "Green", "Blue", "Alpha"};
  const bool served = std::ranges::find(kServed, ChannelsOf(job)) != std::end(kServed);
  return served && !job.roi && ValueOf(job, PropertyId::BlankCropped) == 0.0 &&
         ResolveKind(job) != EffectKind::Transition;
}

bool BandsServe(const Job& job, const FramePictures& pictures) {
  return BandsServe(job) && (pictures.input == nullptr || LieAlike(*pictures.input, *pictures.output));
}

namespace {

// Bands overlap by what the filter reads beyond them: kept below half of its work.
std::int32_t RowsForReach(const InputOverscan& overscan, std::int32_t height) {
  const double reach = std::ceil(std::max({overscan.bottom, overscan.top, 0.0}));
  return static_cast<std::int32_t>(std::min(2.0 * reach, static_cast<double>(height))) / 2 * 2;
}

}  // namespace

std::int32_t BandRows(std::int64_t pictureBytes, std::int32_t height) {
  // Smaller pictures render faster whole.
  constexpr std::int64_t kLargeBytes = std::int64_t{256} << 20;
  constexpr std::int32_t kBands = 64;
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
  for (std::int32_t y = 0; y < output.Height();) {
    const std::int32_t count = std::min(rows, output.Height() - y);
    effect.PutRegion(Region{to.x - from.x, to.y - from.y + y, output.Width(), count});
    result = effect.RenderFrame(pictures, host, time, field);
    if (!afterBand() || result != kOk) break;
    y += count;
    rows = std::max(rows, RowsForReach(effect.Overscan(), output.Height()));
  }
  return result;
}

}  // namespace vblur::host
