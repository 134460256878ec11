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

}  // namespace

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
  const std::int32_t depth = *job.depth;
  host::HostImage output, input, input2, mask;
  ToHostImage(frame.initial, depth, job.output, output);
  if (frame.input) ToHostImage(*frame.input, depth, *job.input, input);
  if (frame.input2) ToHostImage(*frame.input2, depth, *job.input2, input2);
  if (frame.mask) ToHostImage(*frame.mask, depth, *job.mask, mask);

  host::EffectHost effectHost(job.project);
  host::CoordMan coordMan(job.proxy);
  host::ExecuteContext context;
  host::HostedEffect hosted(MakeEffect());
  hosted.SetUp(job, coordMan, context);
  // Without Verify, which refuses frames that lack a picture.
  IDSImageEffect& effect = hosted.Effect();
  effect.SetEffectHost(&effectHost);
  effect.SetField(static_cast<std::int32_t>(job.field));
  effect.SetOutput(&output);
  effect.SetInput(frame.input ? &input : nullptr);
  effect.SetInput2(frame.input2 ? &input2 : nullptr);
  if (frame.mask) effect.SetPixelMask(&mask, job.mask->offset[0], job.mask->offset[1]);
  if (effect.RenderFrame(job.time) != kOk) throw std::runtime_error("the effect refused the frame");
  return FromHostImage(output);
}

}  // namespace vblur::differential
