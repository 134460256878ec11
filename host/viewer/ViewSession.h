// One frame of a job in a viewer with the effect's controls; renders again after changes of properties or time. Belongs
// to one thread.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/hosted/CoordMan.h"
#include "host/hosted/EffectHost.h"
#include "host/hosted/EffectServer.h"
#include "host/hosted/ExecuteContext.h"
#include "host/hosted/HostedEffect.h"
#include "host/jobs/Job.h"
#include "host/pages/EffectPages.h"
#include "host/pages/PagePlayer.h"
#include "host/pages/UndoHistory.h"
#include "host/sequence/JobPictures.h"
#include "host/viewer/PenScript.h"
#include "host/viewer/Viewer.h"
#include "host/viewer/ViewerSurface.h"
#include "sdk/effects/Content.h"

namespace vblur::host {

struct ViewOptions {
  double zoom = 1.0;                // view pixels per frame pixel
  std::array<double, 2> pan{0, 0};  // offset of the view's centre from the frame's, in frame pixels
  // In pixels; defaults to the frame's.
  std::optional<std::array<std::int32_t, 2>> size;
};

class ViewSession {
 public:
  // Reads the frame's pictures without rendering. Job, context and trace are borrowed; the trace may be null. Throws
  // Failure for a job that cannot be rendered and pictures that cannot be read; wrong usage for a frame outside the
  // job.
  ViewSession(const Job& job, std::int32_t frame, const ViewOptions& options, const EffectFactory& makeEffect,
              ExecuteContext& context, CallTrace* trace);
  ~ViewSession();
  ViewSession(const ViewSession&) = delete;
  ViewSession& operator=(const ViewSession&) = delete;

  // Opens a property page and shows its controls; hidden by the box of the help page, which is then open behind it.
  // Throws Failure (wrong usage) for the crop page where the job has none or its input has no extent in the project.
  void OpenPage(const std::string& page, bool hidesControls);
  // Carries out an event; Snap is the caller's. Throws Failure (wrong usage) with the event's place for a property that
  // the effect refuses, and as PagePlayer does.
  void Apply(const PenEvent& event);
  // Paints the current view into an opaque 8-bit picture of the view's size. Throws like SequenceRenderer and
  // MakeOffScreenSurface.
  void Paint(HostImage& into);

  // Another surface, of the view's size, to paint on from now on; the first is off-screen.
  void PaintOn(std::unique_ptr<ViewerSurface> surface);
  // Paints the current view on the surface and presents it. Throws likewise.
  void Show();
  // Whether Show would show something else than it did last.
  bool IsInvalid() const;
  // Another size of the view, at least 1 x 1 pixels. Throws like ViewerSurface::Resize.
  void Resize(std::int32_t width, std::int32_t height);
  // The viewer's.
  HWND Window() const { return viewer_->Window(); }
  bool IsStopped() const { return context_.Stopped(); }

  // Called with the text of the page in front when a script prints it.
  void OnPrint(std::function<void(const std::string& form)> print) { print_ = std::move(print); }
  EffectPages& Pages() { return *pages_; }
  UndoHistory& History() { return *history_; }

  // Warnings about the frame's pictures, a line each.
  std::vector<std::string> Warnings() const { return buffers_.Warnings(); }
  // The current properties.
  PropertyStore Properties() const;
  const ViewGeometry& Geometry() const { return *geometry_; }
  // For tests: the number of renders so far.
  std::int32_t RendersDone() const { return rendersDone_; }

 private:
  class Watch;

  bool IsStale() const;
  void RenderIfStale();
  void PaintSurface();
  void PutAsOneStep(const PenEvent& event);
  void PlayOnPage(const PageEvent& event);
  // Pages have the time of the viewer, which keeps its own until the end of a drag.
  void FollowTime();
  tagVWPENEVENT PenOf(const PenEvent& event) const;

  const Job& job_;
  ExecuteContext& context_;
  std::int32_t rendersDone_ = 0;
  JobPictures pictures_;
  FrameBuffers buffers_;
  std::int32_t depth_ = 0;
  // Each needs those above it.
  std::optional<EffectHost> effectHost_;
  std::optional<OpenContent> content_;
  CoordMan coordMan_;
  std::optional<ViewGeometry> geometry_;
  std::optional<HostedEffect> effect_;
  std::unique_ptr<Watch> watch_;
  ComPtr<Viewer> viewer_;
  std::optional<UndoHistory> history_;
  std::optional<EffectPages> pages_;
  std::optional<PagePlayer> player_;
  std::function<void(const std::string&)> print_;
  std::unique_ptr<ViewerSurface> surface_;
};

}  // namespace vblur::host
