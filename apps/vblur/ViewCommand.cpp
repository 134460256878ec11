// vblur view JOB OUTPUT: a frame of a job with the effect's controls over it, after what a pen script does to them.
#include <cstdio>
#include <utility>
#include <vector>

#include "apps/vblur/Commands.h"
#include "apps/vblur/Interruption.h"
#include "apps/vblur/JobWarnings.h"
#include "apps/vblur/LoadServer.h"
#include "apps/vblur/OptionText.h"
#include "apps/vblur/PropertyOptions.h"
#include "apps/vblur/RunFiles.h"
#include "host/base/NameMatch.h"
#include "host/base/Utf8.h"
#include "host/files/OutputFile.h"
#include "host/files/PictureFile.h"
#include "host/jobs/JobCheck.h"
#include "host/jobs/JobFile.h"
#include "host/properties/PropertyText.h"
#include "host/viewer/LiveView.h"
#include "host/viewer/ViewSession.h"
#include "properties/PageNames.h"

namespace vblur::cli {

namespace {

std::string PageHelp() {
  std::string help = "Property page whose controls are shown [";
  return help.append(pages::kFullBlur).append(", ").append(pages::kTransitionBlur).append(" for a transition]");
}

class ViewCommand : public Command {
 public:
  explicit ViewCommand(CLI::App& parent)
      : Command(parent, "view", "Show a frame of a job with the effect's controls over it, and drag them by a script") {
    App()
        ->add_option("JOB", job_, "Job file; the names in it start from its folder. - is the standard input")
        ->required()
        ->type_name("");
    App()->add_option("OUTPUT", output_, "Picture to write")->required()->type_name("");
    AddTextOption(*App(), "--frame", "N", "Frame of the job [its first]",
                  [this](const std::string& text) { frame_ = ParseWhole("--frame", text); });
    AddTextOption(*App(), "--page", ChoiceForm(pages::kAll), PageHelp(),
                  [this](const std::string& text) { page_ = pages::kAll[ParseChoice("--page", text, pages::kAll)]; });
    AddTextOption(*App(), "--zoom", "Z", "Pixels of the view per pixel of the frame [1]",
                  [this](const std::string& text) { SetZoom(ParseNumber("--zoom", text)); });
    AddTextOption(*App(), "--pan", "X,Y", "Centre of the view, in pixels from the frame's centre [0,0]",
                  [this](const std::string& text) { view_.pan = ParseNumberPair("--pan", text); });
    AddTextOption(*App(), "--size", "WxH", "Size of the view [the frame's]", [this](const std::string& text) {
      view_.size = ParseWholePair("--size", text, 'x');
      if ((*view_.size)[0] < 1 || (*view_.size)[1] < 1) host::Refuse("--size", "expected at least 1x1, found " + text);
    });
    App()->add_flag("--hide-controls", hidesControls_, "Show the frame alone; the pen then moves nothing");
    AddTextOption(*App(), "--pen", "FILE", "Pen script to play first, one event a line",
                  [this](const std::string& file) { script_ = host::PathOf(file); });
    if (host::kShowsViews) {
      App()->add_flag("--window", inWindow_,
                      "Show the view in a window, behind the script, until it is closed; the mouse drags the controls");
    }
    AddTextOption(*App(), "--save-job", "FILE", "Write the job with the properties after the script",
                  [this](const std::string& file) { savedJob_ = host::PathOf(file); });
    App()->add_flag("--overwrite", overwrite_, "Replace files that exist");
    AddSetOption(*App(), assignments_);
    App()->footer(
        "Events of a pen script, in pixels of the frame from its lower left corner, y upwards:\n"
        "  move X Y, down X Y [BUTTON], up X Y, time T, set NAME VALUE, snap FILE; # begins a comment.\n"
        "Events of a page script (vblur help page) may stand among them: set \"NAME\" NUMBER types into a control.\n"
        "Names of snapped files start from the script's folder.");
  }

  host::ExitCode Run(const GlobalOptions& global, Terminal& terminal) override {
    try {
      return Show(global, terminal);
    } catch (const host::FileInterrupted&) {
      throw host::Failure(host::ExitCode::Interrupted, "interrupted");
    }
  }

 private:
  host::ExitCode Show(const GlobalOptions& global, Terminal& terminal) {
    RequireOtherInput("--pen", host::PathOf(job_), script_);
    host::Job job = host::ReadJobFile(host::PathOf(job_));
    ApplyAssignments(assignments_, job);
    std::vector<host::PenEvent> events;
    if (!script_.empty()) events = host::ReadPenScript(script_);
    const std::int32_t frame = frame_.value_or(host::ResolveFrames(job).First());
    CheckFiles(job, frame, events);
    Interruption interruption(terminal);
    const auto server = LoadServer(global);
    host::CallTrace trace([&](const std::string& line) { terminal.Note(line); });
    host::ViewSession session(job, frame, view_, server->Factory(), interruption.Context(),
                              global.verbose > 1 && !global.quiet ? &trace : nullptr);
    WarnOfValues(job, terminal);
    for (const std::string& warning : session.Warnings())
      terminal.Warn(warning);
    std::string printed;
    session.OnPrint([&](const std::string& form) { printed += (printed.empty() ? "" : "\n") + form; });
    OpenPage(session);
    Pictures pictures = Play(session, events, interruption.Context());
    SaveJob(job, session);
    for (host::WrittenPicture& picture : pictures)
      picture.Commit();
    std::fputs(printed.c_str(), stdout);
    return host::ExitCode::Done;
  }

  using Pictures = std::vector<host::WrittenPicture>;

  void SetZoom(double zoom) {
    using View = host::ViewGeometry;
    if (!(zoom >= View::kLeastZoom && zoom <= View::kMostZoom)) {
      host::Refuse("--zoom", "expected 1/64 to 64, found " + host::FormatNumber(zoom));
    }
    view_.zoom = zoom;
  }

  // Uses without pages have no controls.
  void OpenPage(host::ViewSession& session) const {
    const auto listed = session.Pages().Listed();
    if (page_.empty() && listed.empty()) return;
    const std::string page = page_.empty() ? std::string(listed.front()) : page_;
    session.Pages().RequireListed(page, "--page");
    session.OpenPage(page, hidesControls_);
  }

  // Before anything is rendered.
  void CheckFiles(const host::Job& job, std::int32_t frame, const std::vector<host::PenEvent>& events) const {
    CheckPictureName(host::PathOf(output_));
    RunFiles files(overwrite_);
    files.AddRead(host::PathOf(job_));
    if (!script_.empty()) files.AddRead(script_);
    files.AddReadByJob(job, host::FrameRange{frame, frame});
    files.AddWritten("OUTPUT", host::PathOf(output_));
    if (!savedJob_.empty()) {
      files.AddWritten("--save-job", savedJob_);
      // It takes the place of no output of its job, which the view may.
      RunFiles outputs(overwrite_);
      outputs.AddWrittenByJob(job, host::ResolveFrames(job));
      outputs.AddWritten("--save-job", savedJob_);
    }
    for (const host::PenEvent& event : events) {
      if (event.kind == host::PenEvent::Kind::Snap) files.AddWritten(event.place, event.file);
    }
  }

  // All pictures, on disk but without their names yet.
  Pictures Play(host::ViewSession& session, const std::vector<host::PenEvent>& events,
                const host::ExecuteContext& context) const {
    Pictures pictures;
    host::HostImage view;
    host::PictureWriter writer([&context] { return context.Stopped(); });
    const auto write = [&](const std::filesystem::path& file) {
      session.Paint(view);
      pictures.push_back(writer.WriteBeside(file, view, nullptr, {.overwrite = overwrite_}));
    };
    for (const host::PenEvent& event : events) {
      if (context.Stopped()) throw host::FileInterrupted{};
      if (event.kind == host::PenEvent::Kind::Snap) {
        write(event.file);
      } else {
        session.Apply(event);
      }
    }
    if (inWindow_) host::ShowUntilClosed(session, "vblur view: " + job_);
    if (context.Stopped()) throw host::FileInterrupted{};
    write(host::PathOf(output_));
    return pictures;
  }

  void SaveJob(host::Job job, const host::ViewSession& session) const {
    if (savedJob_.empty()) return;
    job.properties = session.Properties();
    host::WriteJobFile(job, savedJob_);
  }

  std::string job_;
  std::string output_;
  std::string page_;
  std::filesystem::path script_;
  std::filesystem::path savedJob_;
  std::vector<std::string> assignments_;
  std::optional<std::int32_t> frame_;
  host::ViewOptions view_;
  bool hidesControls_ = false;
  bool inWindow_ = false;
  bool overwrite_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeViewCommand(CLI::App& parent) {
  return std::make_unique<ViewCommand>(parent);
}

}  // namespace vblur::cli
