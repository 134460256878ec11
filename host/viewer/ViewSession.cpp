#include "host/viewer/ViewSession.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"
#include "host/hosted/JobFrame.h"
#include "host/jobs/JobCheck.h"
#include "host/pages/CheckBoxControl.h"
#include "host/pages/PageForm.h"
#include "host/properties/PropertyText.h"
#include "host/viewer/OffScreenSurface.h"
#include "host/viewer/PaintViewer.h"
#include "properties/PageNames.h"
#include "sdk/viewer/ToolObserver.h"

namespace vblur::host {

namespace {

// The checks of a render of this frame, except those of the output file.
void CheckFrame(const Job& job, std::int32_t frame) {
  const FrameList frames = ResolveFrames(job);
  if (!frames.Contains(frame)) {
    const std::string first = std::to_string(frames.First());
    throw Failure(ExitCode::WrongUsage,
                  "frame " + std::to_string(frame) + " is not in the job: expected " +
                      (frames.First() == frames.Last() ? first + ", its only frame"
                                                       : first + " to " + std::to_string(frames.Last())));
  }
  Job single = job;
  if (job.frames) single.frames = FrameRange{frame, frame};
  CheckJob(single, {.outputMayBeInput = true});
}

// A view of the whole frame.
std::array<std::int32_t, 2> SizeOf(const ProjectFrame& frame) {
  constexpr double kMost = 1 << 16;
  const double width = std::ceil(frame.width);
  const double height = std::ceil(frame.height);
  if (!(width <= kMost && height <= kMost)) {
    throw Failure(ExitCode::WrongUsage, "the project's frame of " + FormatNumber(width) + " x " + FormatNumber(height) +
                                            " pixels is too large to be shown, expected at most 65536 a side");
  }
  return {static_cast<std::int32_t>(width), static_cast<std::int32_t>(height)};
}

// Whether an image has an extent where the effect places it: in floats, `ratio` user units for a world unit.
bool HasExtent(double position, double size, double ratio) {
  const auto inUserUnits = [ratio](double world) {
    return static_cast<float>(static_cast<double>(static_cast<float>(world)) * ratio);
  };
  const float from = inUserUnits(position);
  const float to = from + inUserUnits(size);
  return to - from > 0.0f && std::isfinite(to);
}

// The crop box writes percents of the first input's rectangle: numbers only where there is one.
void CheckCropPage(const Job& job, const FramePictures& pictures) {
  const EffectKind kind = ResolveKind(job);
  if (kind != EffectKind::Filter && kind != EffectKind::Transition) {
    Refuse("crop page", "expected a filter or a transition, found use " + std::to_string(static_cast<int>(kind)));
  }
  const auto project = ProjectOf(job, *pictures.output);
  if (!project) Refuse("crop page", "expected a project whose sizes can be read");
  const double ratio = project->user[1] / project->world[1];
  const DSWorldPair position = pictures.input->WorldPosition();
  const DSWorldPair size = pictures.input->WorldSize();
  if (!HasExtent(position.x, size.x, ratio) || !HasExtent(position.y, size.y, ratio)) {
    Refuse("crop page", "expected an input with a width and a height in the project's units");
  }
}

// The help page's only check box.
PageWindow* FindHideBox(const PageDialog& dialog) {
  const auto found =
      std::ranges::find_if(dialog.Items(), [](const auto& item) { return item->Kind() == PageWindowKind::CheckBox; });
  return found == dialog.Items().end() ? nullptr : found->get();
}

std::string NameOf(const GUID& guid) {
  const Property* const property = FindProperty(guid);
  return property == nullptr ? FormatGuid(guid) : std::string(property->name);
}

}  // namespace

// Marks the frame stale on property changes, and traces what tools read and write.
class ViewSession::Watch : public IDSPropertyNotify, public ToolObserver {
 public:
  Watch(IDSProperties& properties, CallTrace* trace) : properties_(properties), trace_(trace) {
    properties_.Advise(this);
    UseToolObserver(trace_ == nullptr ? nullptr : this);
  }
  ~Watch() override {
    UseToolObserver(nullptr);
    properties_.Unadvise(this);
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  void OnPropertyChanged(const GUID&, const DSVariant*, std::uint32_t) override { isStale = true; }
  void OnGetAnimatedProperty(const GUID& property, double value, double time, HRESULT result) override {
    Note("GetAnimatedProperty", property, value, time, result);
  }
  void OnSetAnimatedProperty(const GUID& property, double value, double time, HRESULT result) override {
    Note("SetAnimatedProperty", property, value, time, result);
  }

  bool isStale = true;
  double renderedTime = 0.0;

 private:
  void Note(const char* call, const GUID& property, double value, double time, HRESULT result) {
    const std::string arguments = NameOf(property) + ", " + FormatNumber(value) + ", " + FormatNumber(time);
    trace_->Note("tool", std::string(call) + "(" + arguments + ")", result, 0.0);
  }

  IDSProperties& properties_;
  CallTrace* trace_;
};

ViewSession::ViewSession(const Job& job, std::int32_t frame, const ViewOptions& options,
                         const EffectFactory& makeEffect, ExecuteContext& context, CallTrace* trace)
    : job_(job),
      context_(context),
      pictures_(job),
      buffers_(pictures_, [&context] { return context.Stopped(); }),
      coordMan_(job.proxy) {
  CheckFrame(job, frame);
  depth_ = pictures_.DepthAt(frame);
  buffers_.Prepare(frame, depth_);
  const HostImage& output = buffers_.Output();
  const auto project = ProjectOf(job, output);
  const ProjectFrame whole = FrameOf(project, output);
  const auto size = options.size ? *options.size : SizeOf(whole);
  geometry_.emplace(whole, size[0], size[1]);
  geometry_->SetZoom(options.zoom);
  geometry_->SetPan(options.pan[0], options.pan[1]);
  // Effects read the project when they are created.
  effectHost_.emplace(project);
  content_.emplace(*effectHost_);
  effect_.emplace(makeEffect(), trace);
  effect_->SetUp(job, coordMan_, context);
  watch_ = std::make_unique<Watch>(effect_->PropertyAccess(), trace);
  viewer_ = Viewer::Make(trace);
  viewer_->SetTime(FrameTime(job, frame));
  viewer_->Edit(&effect_->PropertyAccess());
  history_.emplace(effect_->PropertyAccess());
  viewer_->UseUndo(&*history_);
  pages_.emplace(effect_->PropertyAccess(), *history_, trace);
  player_.emplace(*pages_, *history_,
                  PagePlayer::Actions{[this](double time) { viewer_->SetTime(time); },
                                      [this] {
                                        if (print_ && pages_->Front() != nullptr) {
                                          print_(FormatPage(*pages_->Front(), pages_->CurrentTime(), false));
                                        }
                                      }});
  FollowTime();
}

ViewSession::~ViewSession() {
  pages_->CloseAll();
  viewer_->Clear();
  viewer_->UseUndo(nullptr);
  viewer_->Edit(nullptr);
  viewer_->StopTrace();
}

void ViewSession::OpenPage(const std::string& page, bool hidesControls) {
  if (pages::ShowsCropBox(page)) CheckCropPage(job_, buffers_.Pictures());
  // The controls take their placement from a rendered frame.
  RenderIfStale();
  if (hidesControls) {
    auto* const hide = dynamic_cast<CheckBoxControl*>(FindHideBox(*pages_->Show(pages::kHelp).dialog));
    if (hide != nullptr) hide->Toggle();
  }
  pages_->Show(page);
}

void ViewSession::FollowTime() {
  if (pages_->CurrentTime() != viewer_->CurrentTime()) pages_->SetTime(viewer_->CurrentTime());
}

tagVWPENEVENT ViewSession::PenOf(const PenEvent& event) const {
  const WorldPoint point = geometry_->ToWorld(event.point);
  return {event.button, point.x, point.y};
}

void ViewSession::Apply(const PenEvent& event) {
  switch (event.kind) {
    case PenEvent::Kind::Move: viewer_->PenMove(PenOf(event)); break;
    case PenEvent::Kind::Down: viewer_->PenDown(PenOf(event)); break;
    case PenEvent::Kind::Up: viewer_->PenUp(PenOf(event)); break;
    case PenEvent::Kind::Time: viewer_->SetTime(event.time); break;
    case PenEvent::Kind::Set: PutAsOneStep(event); break;
    case PenEvent::Kind::Snap: break;
    case PenEvent::Kind::Page: PlayOnPage(event.page); break;
  }
  FollowTime();
}

void ViewSession::PutAsOneStep(const PenEvent& event) {
  history_->BeginStep(nullptr);
  try {
    effect_->PutProperty(*FindProperty(event.property), &event.setting);
  } catch (...) {
    history_->EndStep();
    throw;
  }
  history_->EndStep();
}

void ViewSession::PlayOnPage(const PageEvent& event) {
  if (event.kind == PageEvent::Kind::Show && viewer_->IsInteracting()) {
    Refuse(event.place, "expected the pen to be up before another page shows");
  }
  if (event.kind == PageEvent::Kind::Show && EqualIgnoringCase(event.name, pages::kCrop)) {
    try {
      CheckCropPage(job_, buffers_.Pictures());
    } catch (const Failure& failure) {
      Refuse(event.place, failure.what());
    }
  }
  player_->Play(event);
}

bool ViewSession::IsStale() const {
  return watch_->isStale || watch_->renderedTime != viewer_->CurrentTime();
}

bool ViewSession::IsInvalid() const {
  return viewer_->IsInvalid() || IsStale();
}

void ViewSession::RenderIfStale() {
  if (!IsStale()) return;
  const double time = viewer_->CurrentTime();
  const FrameList frames = ResolveFrames(job_);
  const double passed = std::floor(time - job_.time);
  const auto frame = static_cast<std::int32_t>(
      std::clamp(ResolveStart(job_) + passed, static_cast<double>(frames.First()), static_cast<double>(frames.Last())));
  HRESULT result = kOk;
  std::string why;
  try {
    buffers_.Prepare(frame, depth_);
    // On a clone, like background renders; it reports the placement to the effect.
    HostedEffect clone = effect_->Clone("clone");
    result = RenderFields(clone, job_, buffers_.Pictures(), time, context_, [] {});
    why = clone.WhyNotRendered();
  } catch (const FileInterrupted&) {
  } catch (const std::bad_alloc&) {
    result = kOutOfMemory;
  }
  if (context_.Stopped()) throw Failure(ExitCode::Interrupted, "interrupted");
  if (result == kOutOfMemory) throw Failure(ExitCode::SomeFramesFailed, "not enough memory for this frame");
  if (result != kOk) {
    throw Failure(ExitCode::SomeFramesFailed, "the effect cannot render this frame (" + FormatResult(result) + ")");
  }
  if (!why.empty()) throw Failure(ExitCode::SomeFramesFailed, "the effect cannot render this frame: " + why);
  watch_->isStale = false;
  watch_->renderedTime = time;
  ++rendersDone_;
}

void ViewSession::PaintOn(std::unique_ptr<ViewerSurface> surface) {
  surface_ = std::move(surface);
}

void ViewSession::Resize(std::int32_t width, std::int32_t height) {
  if (surface_) surface_->Resize(width, height);
  geometry_->Resize(width, height);
}

void ViewSession::PaintSurface() {
  RenderIfStale();
  if (!surface_) surface_ = MakeOffScreenSurface(geometry_->SurfaceWidth(), geometry_->SurfaceHeight());
  PaintViewer(*viewer_, buffers_.Output(), *geometry_, *surface_);
}

void ViewSession::Paint(HostImage& into) {
  PaintSurface();
  ReadBack(*surface_, into);
}

void ViewSession::Show() {
  PaintSurface();
  surface_->Present();
}

PropertyStore ViewSession::Properties() const {
  return effect_->Properties();
}

}  // namespace vblur::host
