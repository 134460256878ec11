#include "tests/differential/EffectRun.h"

#include <cstring>
#include <stdexcept>

#include "host/hosted/CoordMan.h"
#include "host/hosted/EffectHost.h"
#include "host/hosted/ExecuteContext.h"
#include "tests/support/TestServer.h"

namespace vblur::differential {
namespace {

template <class Component>
void Store(const DrawnPicture& picture, host::HostImage& image) {
  std::byte* to = image.Row(0);
  for (const std::int32_t value : picture.values) {
    const auto component = static_cast<Component>(value);
    std::memcpy(to, &component, sizeof component);
    to += sizeof component;
  }
}

template <class Component>
void Load(const host::HostImage& image, DrawnPicture& picture) {
  for (std::size_t at = 0; at < image.ByteCount(); at += sizeof(Component)) {
    Component component;
    std::memcpy(&component, image.Row(0) + at, sizeof component);
    picture.values.push_back(component);
  }
}

template <class Record>
void Fill(std::optional<host::HostImage>& image, const std::optional<DrawnPicture>& picture, std::int32_t depth,
          const std::optional<Record>& record) {
  if (picture) ToHostImage(*picture, depth, *record, image.emplace());
}

}  // namespace

HostedPictures::HostedPictures(const DrawnFrame& frame) {
  const host::Job& job = frame.job;
  ToHostImage(frame.initial, *job.depth, job.output, output);
  Fill(input, frame.input, *job.depth, job.input);
  Fill(input2, frame.input2, *job.depth, job.input2);
  Fill(mask, frame.mask, *job.depth, job.mask);
  if (mask) maskOffset = job.mask->offset;
}

host::FramePictures HostedPictures::Borrowed() {
  return {&output, input ? &*input : nullptr, input2 ? &*input2 : nullptr, mask ? &*mask : nullptr, maskOffset};
}

void ToHostImage(const DrawnPicture& picture, std::int32_t depth, const host::ImageRecord& record,
                 host::HostImage& image) {
  image.Reset(depth, picture.components, picture.width, picture.height);
  image.Place(record);
  switch (depth) {
    case 8: return Store<std::uint8_t>(picture, image);
    case 16: return Store<std::int16_t>(picture, image);
    default: return Store<std::int32_t>(picture, image);
  }
}

DrawnPicture FromHostImage(const host::HostImage& image) {
  DrawnPicture picture{image.Width(), image.Height(), image.Components(), {}};
  switch (image.Depth()) {
    case 8: Load<std::uint8_t>(image, picture); break;
    case 16: Load<std::int16_t>(image, picture); break;
    default: Load<std::int32_t>(image, picture);
  }
  return picture;
}

DrawnPicture RenderByEffect(const DrawnFrame& frame) {
  const host::Job& job = frame.job;
  HostedPictures held(frame);

  host::EffectHost effectHost(job.project);
  host::CoordMan coordMan(job.proxy);
  host::ExecuteContext context;
  host::HostedEffect hosted(MakeEffect());
  hosted.SetUp(job, coordMan, context);
  // Without Verify, which refuses frames that lack a picture.
  IDSImageEffect& effect = hosted.Effect();
  effect.SetEffectHost(&effectHost);
  effect.SetField(static_cast<std::int32_t>(job.field));
  effect.SetOutput(&held.output);
  effect.SetInput(held.input ? &*held.input : nullptr);
  effect.SetInput2(held.input2 ? &*held.input2 : nullptr);
  if (held.mask) effect.SetPixelMask(&*held.mask, held.maskOffset[0], held.maskOffset[1]);
  if (effect.RenderFrame(job.time) != kOk) throw std::runtime_error("the effect refused the frame");
  return FromHostImage(held.output);
}

}  // namespace vblur::differential
