#include "tests/differential/EffectRun.h"

#include <stdexcept>

#include "host/hosted/CoordMan.h"
#include "host/hosted/EffectHost.h"
#include "host/hosted/ExecuteContext.h"
#include "tests/support/TestServer.h"

namespace vblur::differential {
namespace {

template <class Component>
void Store(const DrawnPicture& picture, host::HostImage& image) {
  auto* to = static_cast<Component*>(image.FirstPixel());
  for (const std::int32_t value : picture.values)
    *to++ = static_cast<Component>(value);
}

template <class Component>
void Load(const host::HostImage& image, DrawnPicture& picture) {
  const auto* from = reinterpret_cast<const Component*>(image.Row(0));
  picture.values.assign(from, from + picture.width * picture.height * picture.components);
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
  if (depth == 8) {
    Store<std::uint8_t>(picture, image);
  } else {
    Store<std::int16_t>(picture, image);
  }
}

DrawnPicture FromHostImage(const host::HostImage& image) {
  DrawnPicture picture{image.Width(), image.Height(), image.Components(), {}};
  if (image.Depth() == 8) {
    Load<std::uint8_t>(image, picture);
  } else {
    Load<std::int16_t>(image, picture);
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
