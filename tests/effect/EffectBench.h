// An effect with images, project and execute context, for tests of whole frames.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>

#include <gtest/gtest.h>

#include "effect/Blur.h"
#include "host/hosted/CoordMan.h"
#include "host/hosted/EffectHost.h"
#include "host/hosted/ExecuteContext.h"
#include "host/hosted/HostImage.h"
#include "host/hosted/HostedEffect.h"
#include "properties/PropertyTable.h"

namespace vblur {

using Pixel8 = std::array<std::uint8_t, 4>;
using Pixel16 = std::array<std::int16_t, 4>;

template <class Pixel>
inline constexpr std::int32_t kDepthOf = 2 * static_cast<std::int32_t>(sizeof(Pixel));

// Records of where a picture lies: pixel origin; world position and size.
inline host::ImageRecord AtOrigin(std::int32_t x, std::int32_t y) {
  host::ImageRecord record;
  record.origin = {x, y};
  return record;
}
inline host::ImageRecord InWorld(std::array<double, 2> position, std::array<double, 2> size) {
  host::ImageRecord record;
  record.position = position;
  record.size = size;
  return record;
}

// Fills a picture of four components by a function of x and y, row 0 at the bottom.
template <class Pixel>
void Paint(host::HostImage& image, std::int32_t width, std::int32_t height,
           const std::function<Pixel(std::int32_t, std::int32_t)>& colour,
           std::array<std::int32_t, 2> origin = {0, 0}) {
  image.Reset(kDepthOf<Pixel>, 4, width, height);
  image.Place(AtOrigin(origin[0], origin[1]));
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x)
      reinterpret_cast<Pixel*>(image.Row(y))[x] = colour(x, y);
  }
}

template <class Pixel>
Pixel At(const host::HostImage& image, std::int32_t x, std::int32_t y) {
  return reinterpret_cast<const Pixel*>(image.Row(y))[x];
}

// An image with pixels whose usability test fails.
class UnusableImage : public IDSImage, public host::IHostOrigin {
 public:
  explicit UnusableImage(const host::HostImage& image, HRESULT why = kFailed) : image_(image), why_(why) {}

  HRESULT IsUsable() const override { return why_; }
  GUID Format() const override { return image_.Format(); }
  DSPixelPair Size() const override { return image_.Size(); }
  void* FirstPixel() const override { return image_.FirstPixel(); }
  DSWorldPair WorldPosition() const override { return image_.WorldPosition(); }
  DSWorldPair WorldSize() const override { return image_.WorldSize(); }
  DSPixelPair HostOrigin() const override { return image_.HostOrigin(); }

 private:
  const host::HostImage& image_;
  HRESULT why_;
};

inline ComPtr<Blur> NewBlur() {
  return ComPtr<Blur>::Own(new Blur());
}

// Sets the kind through GetImageEffectInfo, as a host does.
inline void UseAs(Blur& effect, host::EffectKind kind) {
  tagDSImgFxInfo use;
  use.record = kDSImgFxInfoRecord;
  use.family = host::FamilyOf(kind);
  effect.GetImageEffectInfo(&use);
}

// One input, one output, properties at their defaults, a project of the given size.
class EffectBench {
 public:
  explicit EffectBench(double projectWidth = 32.0, double projectHeight = 32.0)
      : project(host::ProjectSizes{{projectWidth, projectHeight}, {projectWidth, projectHeight}}) {}

  template <class Pixel>
  void PaintClips(std::int32_t width, std::int32_t height, const Pixel& first, const Pixel& second) {
    Paint<Pixel>(input, width, height, [&](std::int32_t, std::int32_t) { return first; });
    Paint<Pixel>(input2, width, height, [&](std::int32_t, std::int32_t) { return second; });
    Paint<Pixel>(output, width, height, [](std::int32_t, std::int32_t) { return Pixel{9, 9, 9, 9}; });
    hasInput2 = true;
  }

  void Set(PropertyId id, double value) { properties.Set(PropertyOf(id).guid, value); }
  void Animate(PropertyId id, host::Curve curve) { properties.Set(PropertyOf(id).guid, std::move(curve)); }

  HRESULT Render(double time = 0.0) {
    effectHost_.emplace(project);
    coordMan_.emplace(proxy);
    host::HostedEffect(effect.As<IDSImageEffect>()).PutProperties(properties);
    effect->SetEffectHost(&*effectHost_);
    effect->SetCoordMan(&*coordMan_);
    effect->SetExecuteContext(contextInUse);
    effect->SetOutput(hasOutput ? &output : nullptr);
    effect->SetInput(hasInput ? &input : nullptr);
    effect->SetInput2(hasInput2 ? &input2 : nullptr);
    effect->SetPixelMask(hasMask ? &mask : nullptr, 0, 0);
    return effect->RenderFrame(time);
  }

  // Input overscan after a frame: horizontal, vertical.
  std::array<double, 2> Overscan(double time = 0.0) {
    std::array<double, 2> size{};
    double right = 0.0;
    double top = 0.0;
    EXPECT_EQ(effect->GetInputOverscan(time, &size[0], &right, &size[1], &top), kOk);
    EXPECT_EQ(right, size[0]);
    EXPECT_EQ(top, size[1]);
    return size;
  }

  ComPtr<Blur> effect = NewBlur();
  host::HostImage output, input, input2, mask;
  bool hasOutput = true;
  bool hasInput = true;
  bool hasInput2 = false;
  bool hasMask = false;
  host::PropertyStore properties;
  std::optional<host::ProjectSizes> project;
  std::array<double, 2> proxy{1.0, 1.0};
  host::ExecuteContext context;
  IDSExecuteContext* contextInUse = &context;

 private:
  // Borrowed by the effect beyond the render.
  std::optional<host::EffectHost> effectHost_;
  std::optional<host::CoordMan> coordMan_;
};

}  // namespace vblur
