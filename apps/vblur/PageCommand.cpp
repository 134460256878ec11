// vblur page JOB: a property page of a job's effect as a form in text, and what a script does to it.
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "apps/vblur/Commands.h"
#include "apps/vblur/Interruption.h"
#include "apps/vblur/JobWarnings.h"
#include "apps/vblur/LoadServer.h"
#include "apps/vblur/OptionText.h"
#include "apps/vblur/PropertyOptions.h"
#include "apps/vblur/RunFiles.h"
#include "host/base/StandardStream.h"
#include "host/base/Utf8.h"
#include "host/jobs/JobCheck.h"
#include "host/jobs/JobFile.h"
#include "host/pages/PageSession.h"
#include "host/pages/ShowPages.h"
#include "properties/PageNames.h"

namespace vblur::cli {

namespace {

class PageCommand : public Command {
 public:
  explicit PageCommand(CLI::App& parent)
      : Command(parent, "page", "Show a property page of a job's effect as text, and operate it by a script") {
    App()
        ->add_option("JOB", job_, "Job file; its pictures are read for a percentage alone. - is the standard input")
        ->required()
        ->type_name("");
    AddTextOption(*App(), "--page", ChoiceForm(pages::kAll), "Page to show [the first of the job's use]",
                  [this](const std::string& text) { page_ = pages::kAll[ParseChoice("--page", text, pages::kAll)]; });
    AddTextOption(*App(), "--time", "T", "Time at which values are shown and keys are set [that of the first frame]",
                  [this](const std::string& text) { time_ = ParseNumber("--time", text); });
    AddTextOption(*App(), "--frame", "N", "The time of this frame of the job",
                  [this](const std::string& text) { frame_ = ParseWhole("--frame", text); });
    AddTextOption(*App(), "--script", "FILE",
                  "What to do with the page, one event a line; the page is printed after it. - is the standard input",
                  [this](const std::string& file) { script_ = host::PathOf(file); });
    if (host::kShowsPages) {
      App()->add_flag("--window", inWindow_, "Show the page in a window, behind the script, until it is closed");
    }
    AddTextOption(*App(), "--save-job", "FILE", "Write the job with the properties after the script",
                  [this](const std::string& file) { savedJob_ = host::PathOf(file); });
    App()->add_flag("--overwrite", overwrite_, "Replace a file that exists");
    AddSetOption(*App(), assignments_);
    App()->footer(
        "Events of a page script; names with spaces may be in double quotes, # begins a comment:\n"
        "  show PAGE, set CONTROL NUMBER, scrub CONTROL [fine|coarse] STEPS..., choose LIST ENTRY,\n"
        "  tick BOX, untick BOX, pick R,G,B, press BUTTON, time T, undo, redo, print.\n"
        "A NUMBER may be an expression (3*4), relative (+= 5) or a percentage of the range (50%).\n"
        "-v prints tool tips, -vv every call between host and page.");
  }

  host::ExitCode Run(const GlobalOptions& global, Terminal& terminal) override {
    RequireOtherInput("--script", host::PathOf(job_), script_);
    host::Job job = host::ReadJobFile(host::PathOf(job_));
    ApplyAssignments(assignments_, job);
    std::vector<host::PageEvent> events;
    if (!script_.empty()) events = host::ReadPageScript(script_);
    if (time_ && frame_) host::Refuse("--frame", "expected no --time beside it");
    CheckFiles(job);
    const auto server = LoadServer(global);
    host::CallTrace trace([&](const std::string& line) { terminal.Note(line); });
    WarnOfValues(job, terminal);
    const host::PropertyStore properties =
        Play(job, events, server->Factory(), global.verbose > 1 && !global.quiet ? &trace : nullptr, global.verbose > 0,
             terminal);
    if (!savedJob_.empty()) {
      job.properties = properties;
      host::WriteJobFile(job, savedJob_);
    }
    std::fputs(printed_.c_str(), stdout);
    return host::ExitCode::Done;
  }

 private:
  // The saved job takes the place of no picture that its job reads or writes.
  void CheckFiles(const host::Job& job) const {
    RunFiles files(overwrite_);
    files.AddRead(host::PathOf(job_));
    if (!script_.empty()) files.AddRead(script_);
    files.AddReadByJob(job, host::ResolveFrames(job));
    files.AddWrittenByJob(job, host::ResolveFrames(job));
    if (!savedJob_.empty()) files.AddWritten("--save-job", savedJob_);
  }

  // Returns the properties after the script. Nothing is printed before all of it is done.
  host::PropertyStore Play(const host::Job& job, const std::vector<host::PageEvent>& events,
                           const host::EffectFactory& makeEffect, host::CallTrace* trace, bool toolTips,
                           const Terminal& terminal) {
    const double time = time_.value_or(host::FrameTime(job, frame_.value_or(host::ResolveFrames(job).First())));
    host::PageSession session(job, time, makeEffect, trace);
    const auto print = [&] {
      printed_ += (printed_.empty() ? "" : "\n") + session.Form(toolTips);
      if (printed_.size() > kMostPrinted) host::Refuse("--script", "expected to print at most 64 MiB");
    };
    session.OnPrint(print);
    ShowFirst(session.Pages());
    for (const host::PageEvent& event : events)
      session.Play(event);
    if (inWindow_) ShowUntilClosed(session, terminal);
    if (inWindow_ || events.empty() || events.back().kind != host::PageEvent::Kind::Print) print();
    return session.Properties();
  }

  static void ShowUntilClosed(host::PageSession& session, const Terminal& terminal) {
    Interruption interruption(terminal);
    host::ShowPages(session.Pages(), session.History(), interruption.Context());
    if (interruption.Context().Stopped()) throw host::Failure(host::ExitCode::Interrupted, "interrupted");
  }

  void ShowFirst(host::EffectPages& pages) const {
    const auto listed = pages.Listed();
    if (page_.empty() && listed.empty())
      host::Refuse(host::InputName(host::PathOf(job_)), "the effect has no pages in this use");
    const std::string page = page_.empty() ? std::string(listed.front()) : page_;
    pages.RequireListed(page, "--page");
    pages.Show(page);
  }

  static constexpr std::size_t kMostPrinted = std::size_t{64} << 20;

  std::string job_;
  std::string page_;
  std::filesystem::path script_;
  std::filesystem::path savedJob_;
  std::string printed_;
  std::vector<std::string> assignments_;
  std::optional<double> time_;
  std::optional<std::int32_t> frame_;
  bool overwrite_ = false;
  bool inWindow_ = false;
};

}  // namespace

std::unique_ptr<Command> MakePageCommand(CLI::App& parent) {
  return std::make_unique<PageCommand>(parent);
}

}  // namespace vblur::cli
