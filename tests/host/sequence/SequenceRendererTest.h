// Sequences of small pictures, rendered by an effect that adds one to every component.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureFile.h"
#include "host/sequence/SequenceRenderer.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TestEffect.h"

namespace vblur::host {

class Collector : public RenderObserver {
 public:
  void OnStart(std::int64_t frames, std::int32_t framesInFlight) override {
    announced = frames;
    sideBySide = framesInFlight;
  }
  void OnWarning(std::int32_t frame, const std::string& text) override { warnings.emplace_back(frame, text); }
  void OnFrame(const FrameResult& result) override { results.push_back(result); }

  std::int64_t announced = -1;
  std::int32_t sideBySide = 0;
  std::vector<FrameResult> results;
  std::vector<std::pair<std::int32_t, std::string>> warnings;
};

class SequenceRenderer : public testing::Test {
 protected:
  SequenceRenderer() {
    job_.folder = folder_.path();
    job_.input.emplace().file = "in.%03d.png";
    job_.output.file = "out.%03d.png";
    job_.frames = FrameRange{1, 6, 1};
    options_.framesInFlight = 1;
  }

  // A picture whose components all are `value`.
  void Make(const std::string& name, std::int32_t value, std::int32_t width = 8, std::int32_t height = 6) {
    HostImage image;
    image.Reset(8, 4, width, height);
    for (std::size_t i = 0; i < ComponentCount(image); ++i)
      SetComponent(image, i, value);
    PictureWriter().Write(folder_.path() / name, image, nullptr, true);
  }

  void MakeInputs() {
    for (int frame = 1; frame <= 6; ++frame)
      Make("in.00" + std::to_string(frame) + ".png", 10 * frame);
  }

  std::int32_t ValueOf(const std::string& name) {
    HostImage image;
    PictureReader().ReadColour(folder_.path() / name, 8, image);
    return Component(image, 0);
  }

  RenderSummary Render(std::function<void(std::size_t)> during = {}, HRESULT result = kOk) {
    const auto make = [&] {
      return ComPtr<TestEffect>::Own(new TestEffect(log_, during, result)).As<IDSImageEffect>();
    };
    return RenderSequence(job_, make, options_, context_, seen_);
  }

  bool Exists(const std::string& name) const { return std::filesystem::exists(folder_.path() / name); }

  ScratchFolder folder_;
  Job job_;
  RenderOptions options_;
  ExecuteContext context_;
  Collector seen_;
  std::vector<RenderedFrame> log_;
};

}  // namespace vblur::host
