// An effect with the host's calls on it, in their order.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>

#include "host/hosted/CallTrace.h"
#include "host/hosted/CoordMan.h"
#include "host/hosted/EffectHost.h"
#include "host/hosted/ExecuteContext.h"
#include "host/hosted/HostImage.h"
#include "host/jobs/Job.h"
#include "platform/ComPtr.h"
#include "platform/IDSImageEffect.h"
#include "platform/IDSProperties.h"
#include "platform/IVBlurFacts.h"

namespace vblur::host {

// How much of the source a frame needs beyond the output, in pixels.
struct InputOverscan {
  double left = 0.0;
  double right = 0.0;
  double bottom = 0.0;
  double top = 0.0;

  friend bool operator==(const InputOverscan&, const InputOverscan&) = default;
};

// The pictures of one frame; null for none.
struct FramePictures {
  HostImage* output = nullptr;
  const HostImage* input = nullptr;
  const HostImage* input2 = nullptr;
  const HostImage* mask = nullptr;
  std::array<std::int32_t, 2> maskOffset{0, 0};
  // Whether the output's colours are encoded after the render, and are premultiplied then.
  bool encodesColours = false;
  bool hasPremultipliedColours = false;
};

// Belongs to one thread at a time.
class HostedEffect {
 public:
  // `name` and `trace` are for the trace of calls; without a trace nothing is written. The trace is
  // borrowed. Throws Failure (wrong usage) for an object that is no image effect with properties.
  explicit HostedEffect(ComPtr<IDSImageEffect> effect, CallTrace* trace = nullptr, std::string name = "effect");

  // An effect for frames beside this one's; this one must outlive it. Throws std::bad_alloc, or Failure
  // (some frames failed) when the effect cannot be cloned.
  HostedEffect Clone(const std::string& name) const;

  // Sets what is the same for all frames of a job: the use, the properties, duration and region. Coordinates and
  // context are borrowed. Throws Failure (wrong usage) when the effect refuses something.
  void SetUp(const Job& job, IDSCoordMan& coordMan, IDSExecuteContext& context);
  // Every property of the table as the job has it: a curve, a plain value or the default.
  void PutProperties(const PropertyStore& properties);
  // One of them; null for its default.
  void PutProperty(const Property& property, const PropertyStore::Setting* setting);
  // The region of the frames from here on; nothing for the whole picture. Unchanged ones make no call.
  void PutRegion(const std::optional<Region>& region);
  // Every property of the table as the effect now has it.
  PropertyStore Properties() const;
  // Around all frames of a sequence, with the times of the first and the last.
  void BeginFrameRange(double first, double last);
  void EndFrameRange();
  // Renders one frame: the whole order of calls from the pictures to EndFrame. Borrows the pictures for
  // the call. Throws std::bad_alloc when the effect had no memory. The result is the first call's that
  // was not 0, or that of the render.
  HRESULT RenderFrame(const FramePictures& pictures, IDSEffectHost& host, double time, std::int32_t field);

  // Of the frame rendered last.
  const InputOverscan& Overscan() const { return overscan_; }
  // Of a frame with these pictures, before it is rendered. Borrows them for the call.
  InputOverscan MeasureOverscan(const FramePictures& pictures, IDSEffectHost& host, double time, std::int32_t field);
  // Defaults for an effect without facts.
  FrameMemoryFacts FrameMemory() const { return facts_ ? facts_->DescribeFrameMemory() : FrameMemoryFacts{}; }
  // Why RenderFrame, whose result was 0, rendered nothing; empty when it did, and for an effect without facts.
  std::string WhyNotRendered() const;
  BlurSizeFacts DescribeBlurSize(double blur) const;
  // How many threads every render of the process uses.
  void SetRenderThreads(std::int32_t count);
  // Which code renders, for the whole process. Throws Failure (wrong usage) with the levels that there are.
  void SetCpuLevel(const std::string& level);
  // Whether vector code renders; for an effect without levels: that it does.
  bool UsesVectors() const;

  IDSImageEffect& Effect() const { return *effect_; }
  IDSProperties& PropertyAccess() const { return *properties_; }

 private:
  void UseAs(EffectKind kind);
  void SetRegion(const std::optional<Region>& region);
  void BorrowPictures(const FramePictures& pictures, IDSEffectHost* host, std::int32_t field);
  void AskOverscan(double time);
  HRESULT RenderBorrowed(const FramePictures& pictures, double time);

  // Makes a call and notes it. `call` returns an HRESULT.
  template <typename Call>
  HRESULT Made(const char* name, const std::string& arguments, Call call) const;

  ComPtr<IDSImageEffect> effect_;
  ComPtr<IDSProperties> properties_;
  ComPtr<IVBlurFacts> facts_;
  CallTrace* trace_;
  std::string name_;
  InputOverscan overscan_;
  std::optional<Region> region_;
};

// The family under which the host uses an effect as this kind.
const GUID& FamilyOf(EffectKind kind);

}  // namespace vblur::host
