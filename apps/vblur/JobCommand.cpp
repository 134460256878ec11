// vblur job FILE: a job from a file, with what the command line changes in it.
#include <vector>

#include "apps/vblur/Commands.h"
#include "apps/vblur/FrameOptions.h"
#include "apps/vblur/PropertyOptions.h"
#include "apps/vblur/RunJob.h"
#include "apps/vblur/StorageOptions.h"
#include "host/base/StandardStream.h"
#include "host/base/Utf8.h"
#include "host/jobs/JobCheck.h"
#include "host/jobs/JobFile.h"
#include "host/jobs/JobFiles.h"

namespace vblur::cli {

namespace {

class JobCommand : public Command {
 public:
  explicit JobCommand(CLI::App& parent) : Command(parent, "job", "Render what a job file describes") {
    App()
        ->add_option("FILE", file_, "Job file; the names in it start from its folder. - is the standard input")
        ->required()
        ->type_name("");
    AddSetOption(*App(), assignments_);
    AddFramesOption(*App(), frames_);
    AddRenumberOption(*App(), "the job's start, or its first frame", renumber_);
    AddRunOptions(*App(), run_);
    AddStorageOptions(*App(), storage_);
  }

  host::ExitCode Run(const GlobalOptions& global, Terminal& terminal) override {
    ApplyProgress(run_, terminal);
    host::Job job = host::ReadJobFile(host::PathOf(file_));
    if (host::IsStandardStream(file_) && host::ReadsStandardInput(job)) {
      host::Refuse("FILE", "the standard input is the job file, expected the job's pictures in files");
    }
    storage_.ApplyTo(job);
    if (renumber_) job.output.renumber = renumber_;
    if (frames_) host::TakeFrames(job, FramesOf(*frames_, job));
    TakeStandardInput(job, run_, terminal);
    ApplyAssignments(assignments_, job, run_.render.maxPixels);
    return RunJob(job, global, run_, terminal, *App());
  }

 private:
  std::string file_;
  std::vector<std::string> assignments_;
  std::optional<host::FrameChoice> frames_;
  std::optional<std::int32_t> renumber_;
  RunOptions run_;
  StorageChanges storage_;
};

}  // namespace

std::unique_ptr<Command> MakeJobCommand(CLI::App& parent) {
  return std::make_unique<JobCommand>(parent);
}

}  // namespace vblur::cli
