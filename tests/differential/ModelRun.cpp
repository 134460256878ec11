#include "tests/differential/ModelRun.h"

#include "tests/model/frame.h"

namespace vblur::differential {
namespace {

model::Picture ToModel(const DrawnPicture& drawn) {
  model::Picture picture = model::Blank(drawn.width, drawn.height);
  const auto components = static_cast<std::size_t>(drawn.components);
  for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
    for (std::size_t c = 0; c < components; ++c)
      picture.pixels[i][c] = drawn.values[i * components + c];
  }
  return picture;
}

DrawnPicture FromModel(const model::Picture& picture) {
  DrawnPicture drawn{picture.x.size, picture.y.size, 4, {}};
  for (const model::Pixel& pixel : picture.pixels)
    drawn.values.insert(drawn.values.end(), pixel.begin(), pixel.end());
  return drawn;
}

model::FrameImage ToModel(const DrawnPicture& drawn, const host::ImageRecord& record) {
  model::FrameImage image;
  image.picture = ToModel(drawn);
  image.origin = {record.origin[0], record.origin[1]};
  image.position = record.position.value_or(
      std::array<double, 2>{static_cast<double>(record.origin[0]), static_cast<double>(record.origin[1])});
  image.size =
      record.size.value_or(std::array<double, 2>{static_cast<double>(drawn.width), static_cast<double>(drawn.height)});
  return image;
}

model::Properties PropertiesAt(const host::PropertyStore& store, double time) {
  using enum PropertyId;
  const auto number = [&](PropertyId id) { return store.ValueAt(PropertyOf(id).guid, time); };
  const auto whole = [&](PropertyId id) { return static_cast<int>(number(id)); };
  return {.blur = number(PropertyId::Blur),
          .aspect = number(Aspect),
          .channels = whole(Channels),
          .method = whole(Method),
          .mixBack = whole(MixBack),
          .blend = number(Blend),
          .effectGain = number(EffectGain),
          .sourceGain = number(SourceGain),
          .hideOverlayControls = whole(HideOverlayControls),
          .maskRed = whole(MaskRed),
          .maskGreen = whole(MaskGreen),
          .maskBlue = whole(MaskBlue),
          .maskAlpha = whole(MaskAlpha),
          .cropLeft = number(CropLeft),
          .cropRight = number(CropRight),
          .cropBottom = number(CropBottom),
          .cropTop = number(CropTop),
          .xEdgeMethod = whole(XEdgeMethod),
          .yEdgeMethod = whole(YEdgeMethod),
          .cropColourR = number(CropColourR),
          .cropColourG = number(CropColourG),
          .cropColourB = number(CropColourB),
          .cropColourA = number(CropColourA),
          .displayCropped = whole(DisplayCropped),
          .blankCropped = whole(BlankCropped),
          .finishFadingOut = number(FinishFadingOutFirstClip),
          .startFadingIn = number(StartFadingInSecondClip),
          .transitionRamping = whole(TransitionRamping),
          .effectScaling = whole(EffectScaling)};
}

model::Depth ToModel(std::int32_t depth) {
  switch (depth) {
    case 8: return model::Depth::Eight;
    case 16: return model::Depth::Sixteen;
    default: return model::Depth::Float;
  }
}

}  // namespace

DrawnPicture RenderByModel(const DrawnFrame& frame) {
  const host::Job& job = frame.job;
  model::FrameJob model;
  model.depth = ToModel(*job.depth);
  model.kind = static_cast<int>(*job.kind);
  model.field = static_cast<int>(job.field);
  if (job.roi) model.region = model::Region{job.roi->x, job.roi->y, job.roi->width, job.roi->height};
  model.time = job.time;
  model.duration = *job.duration;
  if (!job.projectUnreadable) model.project = model::Project{job.project->user, job.project->world};
  model.proxy = job.proxy;
  model.properties = PropertiesAt(job.properties, job.time);
  if (frame.input) model.input = ToModel(*frame.input, *job.input);
  if (frame.input2) model.input2 = ToModel(*frame.input2, *job.input2);
  if (frame.mask) {
    model.mask = ToModel(*frame.mask);
    model.maskOffset = {job.mask->offset[0], job.mask->offset[1]};
  }
  model.output = ToModel(frame.initial, job.output);
  return FromModel(model::RenderFrame(model));
}

}  // namespace vblur::differential
