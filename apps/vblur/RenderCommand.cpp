// vblur render INPUT OUTPUT: a job made from options.
#include <filesystem>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "apps/vblur/Commands.h"
#include "apps/vblur/FrameOptions.h"
#include "apps/vblur/OptionText.h"
#include "apps/vblur/PercentSize.h"
#include "apps/vblur/PictureOptions.h"
#include "apps/vblur/PropertyOptions.h"
#include "apps/vblur/RunFiles.h"
#include "apps/vblur/RunJob.h"
#include "apps/vblur/StorageOptions.h"
#include "host/base/NameMatch.h"
#include "host/base/RealPaths.h"
#include "host/base/StandardStream.h"
#include "host/base/Utf8.h"
#include "host/jobs/FramePattern.h"
#include "host/jobs/JobCheck.h"
#include "host/jobs/JobFile.h"
#include "host/jobs/JobFiles.h"
#include "host/properties/PropertyFile.h"
#include "host/properties/PropertyText.h"

namespace vblur::cli {

namespace {

class RenderCommand : public Command {
 public:
  explicit RenderCommand(CLI::App& parent) : Command(parent, "render", "Render a picture or a sequence of pictures") {
    job_.input.emplace();
    App()
        ->add_option("INPUT", job_.input->file,
                     "Picture to read; shot.%04d.png or shot.####.png for a sequence, - for the standard input")
        ->required()
        ->type_name("");
    App()
        ->add_option("OUTPUT", output_,
                     "Picture to write, numbered alike for a sequence; or a folder, where it keeps its name; - for the "
                     "standard output")
        ->type_name("");
    App()
        ->add_option("MORE", more_, "More pictures to read; the last name is then the folder for all of them")
        ->type_name("");
    AddTextOption(*App(), "-o,--output", "OUTPUT", "The same as an option; every other name is then a picture to read",
                  [this](const std::string& file) { outputOption_ = file; });
    AddPictureOptions(*App(), job_);
    AddPropertyOptions(*App(), job_.properties, &percentBlur_);
    AddFrameOptions(*App(), job_, frames_);
    AddRunOptions(*App(), run_);
    AddStorageOptions(*App(), storage_);
    AddTextOption(*App(), "--save-job", "FILE",
                  "Also write the job file that renders the same, once the render is done",
                  [this](const std::string& file) { savedJob_ = host::PathOf(file); })
        ->group("Output");
    AddTextOption(*App(), "--load-properties", "FILE",
                  "Properties from a file; - is the standard input. Those given as options win",
                  [this](const std::string& file) { loadedProperties_ = host::PathOf(file); })
        ->group("Property files");
    AddTextOption(*App(), "--save-properties", "FILE", "Also write the properties to a file, once the render is done",
                  [this](const std::string& file) { savedProperties_ = host::PathOf(file); })
        ->group("Property files");
  }

  host::ExitCode Run(const GlobalOptions& global, Terminal& terminal) override {
    ApplyProgress(run_, terminal);
    CheckPictures();
    storage_.ApplyTo(job_);
    if (!loadedProperties_.empty()) LoadProperties();
    std::vector<host::Job> jobs = Jobs();
    // If one of several is refused, nothing is written.
    for (const host::Job& job : jobs)
      host::CheckJob(job, {.outputMayBeInput = run_.render.overwrite});
    if (jobs.size() > 1) CheckApart(jobs);
    SettleBlur(jobs, terminal);
    const SavedFiles saved = SaveBeside(jobs);
    const host::ExitCode code = RunAll(jobs, global, terminal);
    for (const auto& file : saved) {
      if (code == host::ExitCode::Done) file->Commit();
    }
    return code;
  }

 private:
  using SavedFiles = std::vector<std::unique_ptr<host::OutputFileCommit>>;

  void CheckPictures() {
    if (job_.mask && job_.mask->file.empty()) {
      host::Refuse(job_.mask->channel.empty() ? "--mask-offset" : "--mask-channel",
                   "there is no mask, expected --mask FILE too");
    }
    // Position options apply to all clips.
    if (job_.input2) job_.input2->origin = job_.input->origin;
  }

  // One for each input.
  std::vector<host::Job> Jobs() const {
    std::vector<std::string> inputs{job_.input->file};
    if (!output_.empty()) inputs.push_back(output_);
    inputs.insert(inputs.end(), more_.begin(), more_.end());
    std::string output = outputOption_;
    if (output.empty() && inputs.size() > 1) {
      output = inputs.back();
      inputs.pop_back();
    }
    if (output.empty()) throw host::Failure(host::ExitCode::WrongUsage, "OUTPUT is required; see vblur render --help");
    std::error_code ignored;
    const bool isFolder =
        !host::IsStandardStream(output) && std::filesystem::is_directory(host::PathOf(output), ignored);
    if (!isFolder && inputs.size() > 1) {
      host::Refuse(output, "expected a folder that exists, for " + std::to_string(inputs.size()) + " pictures");
    }
    if (!isFolder && !host::PathOf(output).has_filename()) host::Refuse(output, "expected a folder that exists");
    std::vector<host::Job> jobs;
    std::unordered_map<std::string, std::string> inputOf;  // by output
    for (const std::string& input : inputs) {
      host::Job& job = jobs.emplace_back(job_);
      job.input->file = input;
      job.output.file = isFolder ? InFolder(output, input) : output;
      if (frames_) job.frames = FramesOf(*frames_, job);
      const auto [other, isNew] = inputOf.emplace(job.output.file, input);
      if (isNew) continue;
      host::Refuse("OUTPUT", host::Quoted(other->second) + " and " + host::Quoted(input) +
                                 " would both be written to " + host::Quoted(job.output.file) +
                                 ", expected pictures of different names");
    }
    return jobs;
  }

  // Pixels of each picture for a blur in percent of its width.
  void SettleBlur(std::vector<host::Job>& jobs, const Terminal& terminal) const {
    if (percentBlur_.empty()) return;
    for (host::Job& job : jobs) {
      TakeStandardInput(job, run_, terminal);
      SetInPercent(job, PropertyOf(PropertyId::Blur), percentBlur_, run_.render.maxPixels);
      if (savedProperties_.empty() || job.properties == jobs.front().properties) continue;
      host::Refuse("--save-properties", "the pictures have different widths, expected a Blur in pixels");
    }
  }

  static std::string InFolder(const std::string& folder, const std::string& input) {
    if (host::IsStandardStream(input)) {
      host::Refuse("OUTPUT", "the standard input has no name to keep in a folder, expected the name of a file");
    }
    const std::filesystem::path literal = host::PathOf(host::FramePattern::Escaped(folder));
    return host::Utf8Of(literal / host::PathOf(input).filename());
  }

  // No picture replaces what another one reads or writes, whatever the names.
  static void CheckApart(const std::vector<host::Job>& jobs) {
    constexpr std::size_t kSeveral = static_cast<std::size_t>(-1);
    std::unordered_map<std::string, std::size_t> readers;
    std::unordered_map<std::string, std::size_t> writers;
    for (std::size_t i = 0; i < jobs.size(); ++i) {
      host::ForEachFileRead(jobs[i], host::ResolveFrames(jobs[i]), [&](const host::FileRead& file) {
        const auto [reader, isNew] = readers.emplace(host::Utf8Of(file.path), i);
        if (!isNew && reader->second != i) reader->second = kSeveral;
      });
    }
    host::RealPaths paths;
    for (std::size_t i = 0; i < jobs.size(); ++i) {
      const host::FrameList frames = host::ResolveFrames(jobs[i]);
      const host::FramePattern pattern(jobs[i].output.file);
      for (std::int64_t frame = 0; frame < frames.Count(); ++frame) {
        const auto file = host::OutputFilePath(jobs[i], pattern, frames.FrameAt(frame));
        const std::string path = host::Utf8Of(paths.Of(file));
        const auto reader = readers.find(path);
        const bool isRead = reader != readers.end() && reader->second != i;
        if (!isRead && writers.emplace(path, i).first->second == i) continue;
        host::Refuse("OUTPUT", host::Quoted(host::Utf8Of(file)) + (isRead ? " is read" : " is written") +
                                   " for another picture of this run, expected a file of its own");
      }
    }
  }

  // The first failure's code; the pictures before a failure are finished.
  host::ExitCode RunAll(const std::vector<host::Job>& jobs, const GlobalOptions& global, Terminal& terminal) {
    host::ExitCode code = host::ExitCode::Done;
    run_.render.isOneOfSeveral = jobs.size() > 1;
    for (const host::Job& job : jobs) {
      const host::ExitCode one = RunJob(job, global, run_, terminal, *App());
      if (code == host::ExitCode::Done) code = one;
      if (one == host::ExitCode::Interrupted) return one;
      if (one != host::ExitCode::Done && run_.render.onError == host::OnError::Stop) return code;
    }
    return code;
  }

  void LoadProperties() {
    if (host::IsStandardStream(loadedProperties_) && host::ReadsStandardInput(job_)) {
      host::Refuse("--load-properties", "the standard input is a picture, expected a file");
    }
    const host::PropertyStore loaded = host::ReadPropertyFile(loadedProperties_);
    for (const Property& property : kProperties) {
      const auto* setting = loaded.Find(property.guid);
      if (setting != nullptr && App()->count("--" + host::OptionName(property)) == 0) {
        job_.properties.Set(property.guid, *setting);
      }
    }
  }

  // Written before the render, so that none fails after it; without their names, which they take when it is done.
  SavedFiles SaveBeside(const std::vector<host::Job>& jobs) const {
    SavedFiles saved;
    if (savedJob_.empty() && savedProperties_.empty()) return saved;
    if (!savedJob_.empty() && jobs.size() > 1) {
      host::Refuse("--save-job", "a job file holds one input, found " + std::to_string(jobs.size()));
    }
    CheckSavedNames(jobs);
    if (!savedJob_.empty()) saved.push_back(host::WriteJobFileBeside(jobs.front(), savedJob_));
    if (!savedProperties_.empty()) {
      saved.push_back(host::WritePropertyFileBeside(jobs.front().properties, savedProperties_));
    }
    return saved;
  }

  void CheckSavedNames(const std::vector<host::Job>& jobs) const {
    RunFiles files(run_.render.overwrite);
    for (const host::Job& job : jobs)
      files.AddReadByJob(job, host::ResolveFrames(job));
    if (!loadedProperties_.empty()) files.AddRead(loadedProperties_);
    for (const host::Job& job : jobs)
      files.AddWrittenByJob(job, host::ResolveFrames(job));
    if (!savedJob_.empty()) files.AddWritten("--save-job", savedJob_);
    if (!savedProperties_.empty()) files.AddWritten("--save-properties", savedProperties_);
  }

  host::Job job_;
  std::string output_;
  std::string outputOption_;
  std::vector<std::string> more_;
  std::optional<host::FrameChoice> frames_;
  RunOptions run_;
  StorageChanges storage_;
  std::string percentBlur_;
  std::filesystem::path savedJob_;
  std::filesystem::path loadedProperties_;
  std::filesystem::path savedProperties_;
};

}  // namespace

std::unique_ptr<Command> MakeRenderCommand(CLI::App& parent) {
  return std::make_unique<RenderCommand>(parent);
}

}  // namespace vblur::cli
