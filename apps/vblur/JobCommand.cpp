// vblur job FILE: a job from a file, with what the command line changes in it.
#include <vector>

#include "apps/vblur/Commands.h"
#include "apps/vblur/FrameOptions.h"
#include "apps/vblur/OptionText.h"
#include "apps/vblur/RunJob.h"
#include "host/jobs/JobCheck.h"
#include "host/jobs/JobFile.h"
#include "host/properties/PropertyText.h"

namespace vblur::cli {

namespace {

class JobCommand : public Command {
 public:
  explicit JobCommand(CLI::App& parent) : Command(parent, "job", "Render what a job file describes") {
    App()->add_option("FILE", file_, "Job file; the names in it start from its folder")->required()->type_name("");
    App()
        ->add_option("--set", assignments_, "Change a property: \"Blur=24\", \"Effect Gain=0:100,24:50\"; repeatable")
        ->type_name("NAME=VALUE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group("Properties");
    AddFramesOption(*App(), frames_);
    AddRenumberOption(*App(), renumber_);
    AddRunOptions(*App(), run_);
  }

  host::ExitCode Run(const GlobalOptions& global, Terminal& terminal) override {
    ApplyProgress(run_, terminal);
    host::Job job = host::ReadJobFile(file_);
    for (const std::string& assignment : assignments_)
      Assign(job, assignment);
    if (renumber_) job.output.renumber = renumber_;
    if (frames_) host::TakeFrames(job, FramesOf(*frames_, job));
    return RunJob(job, global, run_, terminal);
  }

 private:
  static void Assign(host::Job& job, const std::string& assignment) {
    try {
      host::ApplyAssignment(job.properties, assignment);
    } catch (const host::Failure& failure) {
      host::Refuse("--set", failure.what());
    }
  }

  std::string file_;
  std::vector<std::string> assignments_;
  std::optional<host::FrameChoice> frames_;
  std::optional<std::int32_t> renumber_;
  RunOptions run_;
};

}  // namespace

std::unique_ptr<Command> MakeJobCommand(CLI::App& parent) {
  return std::make_unique<JobCommand>(parent);
}

}  // namespace vblur::cli
