// A small effect for tests of the renderer: adds a number to every component of the input, and records its calls.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "platform/CDSImageMIEffect.h"
#include "properties/PropertyTable.h"
#include "tests/support/host/Pictures.h"

namespace vblur::host {

struct RenderedFrame {
  double time = 0.0;
  std::int32_t field = 0;
  double blur = 0.0;
  DSPixelPair outputSize;
  DSPixelPair inputOrigin;
  DSWorldPair inputPosition;
  DSWorldPair inputSize;
  double userHeight = -1.0;
  bool hasInput2 = false;
  std::int32_t firstMaskAmount = -1;
  DSPixelPair maskOffset;
  DSPixelPair regionCorner;
};

class TestEffect : public CDSImageMIEffect {
 public:
  // `log` collects the frames; `during` runs in each render and may interrupt it.
  explicit TestEffect(std::vector<RenderedFrame>& log, std::function<void(std::size_t)> during = {},
                      HRESULT result = kOk)
      : log_(log), during_(std::move(during)), result_(result) {}

  HRESULT GetStaticPropertiesMap(const CDSPropertiesMap** map) override {
    static const auto entries = [] {
      std::vector<CDSPropertiesMapEntry> all;
      for (const Property& property : kProperties) {
        all.push_back({{.id = property.guid,
                        .capability = static_cast<std::int32_t>(property.capability),
                        .type = DSValueType::Float64},
                       // Only the value of `Blur` is stored.
                       property.id == PropertyId::Blur ? &TestEffect::BlurMember : &TestEffect::OtherMember});
      }
      return all;
    }();
    static const CDSPropertiesMap own{nullptr, entries};
    *map = &own;
    return kOk;
  }

  HRESULT IsFormatSupported(const GUID&) override { return kOk; }
  HRESULT Clone(const GUID& iid, void** result) override {
    auto* clone = new TestEffect(*this);
    clone->CopyAnimation(*this);
    const HRESULT answer = clone->QueryInterface(iid, result);
    clone->Release();
    return answer;
  }

  HRESULT RenderFrame(double time) override {
    const std::size_t number = Note(time);
    if (during_) during_(number);
    if (executeContext && !executeContext->MayContinue()) return kOk;
    AddOne();
    return result_;
  }

 private:
  static void* BlurMember(CDSBasePropertyContainer& effect) { return &static_cast<TestEffect&>(effect).blur_; }
  static void* OtherMember(CDSBasePropertyContainer& effect) { return &static_cast<TestEffect&>(effect).other_; }

  // Appends a frame to the log, which clones share; returns the number of earlier ones.
  std::size_t Note(double time) {
    RenderedFrame frame;
    frame.time = time;
    frame.field = hostField;
    frame.blur = GetValueDirect(PropertyOf(PropertyId::Blur).guid, blur_, time);
    frame.outputSize = outputImage->Size();
    if (effectHost) effectHost->ContentProperty(kProjectUserSizeY, frame.userHeight);
    frame.hasInput2 = input2Image != nullptr;
    if (inputImage) {
      frame.inputOrigin = coordMan->PixelOrigin(*inputImage);
      frame.inputPosition = inputImage->WorldPosition();
      frame.inputSize = inputImage->WorldSize();
    }
    frame.maskOffset = {maskOffsetX, maskOffsetY};
    if (roiSet != 0) frame.regionCorner = {roiX, roiY};
    if (maskImage) frame.firstMaskAmount = *static_cast<const std::uint8_t*>(maskImage->FirstPixel());
    static std::mutex lock;
    const std::lock_guard hold(lock);
    log_.push_back(frame);
    return log_.size() - 1;
  }

  // Writes a whole frame, or the rows of one field.
  void AddOne() {
    const auto width = static_cast<std::size_t>(outputImage->Size().x) * 4;
    auto* to = static_cast<std::uint8_t*>(outputImage->FirstPixel());
    const auto* from = inputImage ? static_cast<const std::uint8_t*>(inputImage->FirstPixel()) : to;
    for (std::int32_t y = 0; y < outputImage->Size().y; ++y) {
      if (hostField != 0 && y % 2 != hostField - 1) continue;
      const std::size_t row = static_cast<std::size_t>(y) * width;
      for (std::size_t x = row; x < row + width; ++x)
        to[x] = static_cast<std::uint8_t>(from[x] + 1);
    }
  }

  std::vector<RenderedFrame>& log_;
  std::function<void(std::size_t)> during_;
  HRESULT result_;
  double blur_ = 0.0;
  double other_ = 0.0;
};

}  // namespace vblur::host
