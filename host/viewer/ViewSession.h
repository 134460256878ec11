// One frame of a job in a viewer, with the effect's controls over it: rendered again when a property or the time has
// changed, and painted. Belongs to one thread.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "host/hosted/CoordMan.h"
#include "host/hosted/EffectHost.h"
#include "host/hosted/EffectServer.h"
#include "host/hosted/ExecuteContext.h"
#include "host/hosted/HostedEffect.h"
#include "host/jobs/Job.h"
#include "host/viewer/FrameSource.h"
#include "host/viewer/PenScript.h"
#include "host/viewer/Viewer.h"
#include "host/viewer/ViewerSurface.h"
#include "platform/IVBlurOverlay.h"
#include "sdk/effects/Content.h"

namespace vblur::host {

struct ViewOptions {
  double zoom = 1.0;                // pixels of the view for one of the frame
  std::array<double, 2> pan{0, 0};  // how far the view's middle lies from the frame's centre, in pixels of the frame
  // In pixels; absent: that of the frame.
  std::optional<std::array<std::int32_t, 2>> size;
};

class ViewSession {
 public:
  // Reads the frame's pictures; nothing is rendered yet. Job, context and trace are borrowed, the trace may be null.
  // Throws Failure for a job that cannot be rendered and pictures that cannot be read, wrong usage for a frame that
  // the job does not have.
  ViewSession(const Job& job, std::int32_t frame, const ViewOptions& options, const EffectFactory& makeEffect,
              ExecuteContext& context, CallTrace* trace);
  ~ViewSession();
  ViewSession(const ViewSession&) = delete;
  ViewSession& operator=(const ViewSession&) = delete;

  // Shows the controls of a property page, once. Throws Failure (wrong usage) for an effect without controls.
  void OpenPage(const std::string& page, bool hidesControls);
  // Carries out every kind of event but Snap. Throws Failure (wrong usage), with the event's place, for a property
  // that the effect does not take.
  void Apply(const PenEvent& event);
  // What the viewer now shows, as an opaque 8-bit picture of the view's size. Throws as SequenceRenderer does, and as
  // MakeOffScreenSurface.
  void Paint(HostImage& into);

  // The properties as they now are.
  PropertyStore Properties() const;
  const ViewGeometry& geometry() const { return *geometry_; }
  std::int32_t rendersDone() const { return rendersDone_; }

 private:
  class Watch;

  void RenderIfStale();
  tagVWPENEVENT PenOf(const PenEvent& event) const;

  const Job& job_;
  ExecuteContext& context_;
  CallTrace* trace_;
  std::int32_t rendersDone_ = 0;
  FrameSource source_;
  // From here on in the order in which each needs those before it.
  std::optional<EffectHost> effectHost_;
  std::optional<OpenContent> content_;
  CoordMan coordMan_;
  std::optional<ViewGeometry> geometry_;
  std::optional<HostedEffect> effect_;
  std::unique_ptr<Watch> watch_;
  ComPtr<Viewer> viewer_;
  ComPtr<IVBlurOverlay> overlay_;
  std::unique_ptr<ViewerSurface> surface_;
};

}  // namespace vblur::host
