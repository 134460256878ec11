// vblur render INPUT OUTPUT: a job made from options.
#include <memory>
#include <vector>

#include "apps/vblur/Commands.h"
#include "apps/vblur/FrameOptions.h"
#include "apps/vblur/OptionText.h"
#include "apps/vblur/PictureOptions.h"
#include "apps/vblur/PropertyOptions.h"
#include "apps/vblur/RunFiles.h"
#include "apps/vblur/RunJob.h"
#include "host/jobs/JobCheck.h"
#include "host/jobs/JobFile.h"
#include "host/properties/PropertyFile.h"
#include "host/properties/PropertyText.h"

namespace vblur::cli {

namespace {

class RenderCommand : public Command {
 public:
  explicit RenderCommand(CLI::App& parent) : Command(parent, "render", "Render a picture or a sequence of pictures") {
    job_.input.emplace();
    App()
        ->add_option("INPUT", job_.input->file, "Picture to read; shot.%04d.exr or shot.####.exr for a sequence")
        ->required()
        ->type_name("");
    App()
        ->add_option("OUTPUT", job_.output.file, "Picture to write, numbered alike for a sequence")
        ->required()
        ->type_name("");
    AddPictureOptions(*App(), job_);
    AddPropertyOptions(*App(), job_.properties);
    AddFrameOptions(*App(), job_);
    AddRunOptions(*App(), run_);
    AddTextOption(*App(), "--save-job", "FILE",
                  "Also write the job file that renders the same, once the render is done",
                  [this](const std::string& file) { savedJob_ = file; })
        ->group("Output");
    AddTextOption(*App(), "--load-properties", "FILE", "Properties from a file; those given as options win",
                  [this](const std::string& file) { loadedProperties_ = file; })
        ->group("Property files");
    AddTextOption(*App(), "--save-properties", "FILE", "Also write the properties to a file, once the render is done",
                  [this](const std::string& file) { savedProperties_ = file; })
        ->group("Property files");
  }

  host::ExitCode Run(const GlobalOptions& global, Terminal& terminal) override {
    ApplyProgress(run_, terminal);
    CheckPictures();
    if (!loadedProperties_.empty()) LoadProperties();
    const SavedFiles saved = SaveBeside();
    const host::ExitCode code = RunJob(job_, global, run_, terminal);
    for (const auto& file : saved) {
      if (code == host::ExitCode::Done) file->Commit();
    }
    return code;
  }

 private:
  using SavedFiles = std::vector<std::unique_ptr<host::OutputFileCommit>>;

  void CheckPictures() {
    if (job_.mask && job_.mask->file.empty()) {
      host::Refuse("--mask-offset", "there is no mask, expected --mask FILE too");
    }
    // Position options apply to all clips.
    if (job_.input2) job_.input2->origin = job_.input->origin;
  }

  void LoadProperties() {
    const host::PropertyStore loaded = host::ReadPropertyFile(loadedProperties_);
    for (const Property& property : kProperties) {
      const auto* setting = loaded.Find(property.guid);
      if (setting != nullptr && App()->count("--" + host::OptionName(property)) == 0) {
        job_.properties.Set(property.guid, *setting);
      }
    }
  }

  // Written before the render, so that none fails after it; without their names, which they take when it is done.
  SavedFiles SaveBeside() const {
    SavedFiles saved;
    if (savedJob_.empty() && savedProperties_.empty()) return saved;
    host::CheckJob(job_, {.outputMayBeInput = run_.render.overwrite});
    CheckSavedNames();
    if (!savedJob_.empty()) saved.push_back(host::WriteJobFileBeside(job_, savedJob_));
    if (!savedProperties_.empty()) {
      saved.push_back(host::WritePropertyFileBeside(job_.properties, savedProperties_));
    }
    return saved;
  }

  void CheckSavedNames() const {
    const host::FrameRange frames = host::ResolveFrames(job_);
    RunFiles files(run_.render.overwrite);
    files.AddReadByJob(job_, frames);
    if (!loadedProperties_.empty()) files.AddRead(loadedProperties_);
    files.AddWrittenByJob(job_, frames);
    if (!savedJob_.empty()) files.AddWritten("--save-job", savedJob_);
    if (!savedProperties_.empty()) files.AddWritten("--save-properties", savedProperties_);
  }

  host::Job job_;
  RunOptions run_;
  std::string savedJob_;
  std::string loadedProperties_;
  std::string savedProperties_;
};

}  // namespace

std::unique_ptr<Command> MakeRenderCommand(CLI::App& parent) {
  return std::make_unique<RenderCommand>(parent);
}

}  // namespace vblur::cli
