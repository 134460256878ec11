// A small real effect for tests of the renderer: the output becomes the input with a number added to
// every component, and it keeps what it was told.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "effect/PropertyTable.h"
#include "platform/IDSImageEffect.h"
#include "tests/host_files/Pictures.h"

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
};

class TestEffect : public IDSImageEffect {
 public:
  // `log` collects the frames; `during` runs in each render and may interrupt it.
  explicit TestEffect(std::vector<RenderedFrame>& log, std::function<void(std::size_t)> during = {},
                      HRESULT result = kOk)
      : log_(log), during_(std::move(during)), result_(result) {}

  void SetOutput(IDSImage* image) override { output_ = image; }
  void SetInput(IDSImage* image) override { input_ = image; }
  void SetInput2(IDSImage* image) override { input2_ = image; }
  void SetPixelMask(IDSImage* image, std::int32_t, std::int32_t) override { mask_ = image; }
  void SetROI(std::int32_t, std::int32_t, std::int32_t, std::int32_t) override {}
  void ClearROI() override {}
  void SetField(std::int32_t field) override { field_ = field; }
  void SetDuration(double) override {}
  void SetCoordMan(IDSCoordMan* coordMan) override { coordMan_ = coordMan; }
  void SetExecuteContext(IDSExecuteContext* context) override { context_ = context; }
  void SetEffectHost(IDSEffectHost* host) override { host_ = host; }
  void SetEffectKind(std::int32_t) override {}
  HRESULT PutProperty(const GUID& property, double value) override {
    plain_[property] = value;
    return kOk;
  }
  HRESULT GetProperty(const GUID& property, double& value) const override {
    value = plain_.at(property);
    return kOk;
  }
  HRESULT IsFormatSupported(const GUID&) const override { return kOk; }

  HRESULT RenderFrame(double time) override {
    Note(time);
    if (during_) during_(log_.size() - 1);
    if (context_ && !context_->MayContinue()) return kOk;
    AddOne();
    return result_;
  }

 private:
  void Note(double time) {
    RenderedFrame frame;
    frame.time = time;
    frame.field = field_;
    frame.blur = plain_[PropertyOf(PropertyId::Blur).guid];
    host_->AnimatedValue(PropertyOf(PropertyId::Blur).guid, time, frame.blur);
    frame.outputSize = output_->Size();
    host_->ContentProperty(kProjectUserSizeY, frame.userHeight);
    frame.hasInput2 = input2_ != nullptr;
    if (input_) {
      frame.inputOrigin = coordMan_->PixelOrigin(*input_);
      frame.inputPosition = input_->WorldPosition();
      frame.inputSize = input_->WorldSize();
    }
    if (mask_) frame.firstMaskAmount = *static_cast<const std::uint8_t*>(mask_->FirstPixel());
    log_.push_back(frame);
  }

  // A whole frame, or the rows of one field; the output keeps what no field has touched.
  void AddOne() {
    const auto width = static_cast<std::size_t>(output_->Size().x) * 4;
    auto* to = static_cast<std::uint8_t*>(output_->FirstPixel());
    const auto* from = input_ ? static_cast<const std::uint8_t*>(input_->FirstPixel()) : to;
    for (std::int32_t y = 0; y < output_->Size().y; ++y) {
      if (field_ != 0 && y % 2 != field_ - 1) continue;
      const std::size_t row = static_cast<std::size_t>(y) * width;
      for (std::size_t x = row; x < row + width; ++x)
        to[x] = static_cast<std::uint8_t>(from[x] + 1);
    }
  }

  std::vector<RenderedFrame>& log_;
  std::function<void(std::size_t)> during_;
  HRESULT result_;
  std::map<GUID, double> plain_;
  IDSImage* output_ = nullptr;
  IDSImage* input_ = nullptr;
  IDSImage* input2_ = nullptr;
  IDSImage* mask_ = nullptr;
  IDSCoordMan* coordMan_ = nullptr;
  IDSExecuteContext* context_ = nullptr;
  IDSEffectHost* host_ = nullptr;
  std::int32_t field_ = 0;
};

}  // namespace vblur::host
