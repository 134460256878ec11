#include "apps/vblur/RunOptions.h"

#include "apps/vblur/OptionText.h"
#include "host/base/Failure.h"
#include "host/files/PictureLibrary.h"

namespace vblur::cli {

namespace {

constexpr std::string_view kOnError[] = {"stop", "skip"};
constexpr std::string_view kPictures[] = {"auto", "light", "full"};
constexpr std::string_view kProgress[] = {"auto", "none", "bar", "lines", "json"};

void SetThreads(GlobalOptions& options, const std::string& text) {
  constexpr std::int32_t kMost = 1024;
  const std::int32_t threads = ParseWhole("--threads", text);
  if (threads < 1 || threads > kMost) {
    host::Refuse("--threads", "expected 1 to 1024, found " + text);
  }
  options.threads = threads;
}

void SetFramesInFlight(host::RenderOptions& options, const std::string& text) {
  constexpr std::int32_t kMost = 256;
  const std::int32_t frames = ParseWhole("--frames-in-flight", text);
  if (frames < 1 || frames > kMost) {
    host::Refuse("--frames-in-flight", "expected 1 to 256, found " + text);
  }
  options.framesInFlight = frames;
}

void SetOverwrite(host::RenderOptions& options, const std::string& text) {
  // The option's value when given without one.
  constexpr std::string_view kPlain = "true";
  if (text != kPlain && text != "lossy") host::Refuse("--overwrite", "expected no value or lossy, found " + text);
  options.overwrite = true;
  options.lossy = text != kPlain;
}

}  // namespace

void AddGlobalOptions(CLI::App& app, GlobalOptions& options) {
  app.add_flag("-q,--quiet", options.quiet, "Print nothing but failures, also with -v");
  app.add_flag("-v,--verbose", options.verbose,
               "Print a line for each frame and times at the end; -vv also prints the calls on the effect");
  AddTextOption(app, "--threads", "N", "Threads of a render [one for each processor]",
                [&](const std::string& text) { SetThreads(options, text); });
  AddTextOption(app, "--cpu", "LEVEL", "Code to render with: twin, an instruction set such as AVX2, or native [native]",
                [&](const std::string& level) { options.cpu = level; });
  AddTextOption(app, "--server", "FILE", "The effect's library [that of this installation]",
                [&](const std::string& file) { options.server = file; });
  AddTextOption(app, "--pictures", "auto|light|full",
                "Library of picture files: the light one, which knows plain files of usual formats, the full one, or "
                "the light one "
                "where it will do [auto]",
                [](const std::string& text) {
                  host::UsePictures(static_cast<host::PictureLibraries>(ParseChoice("--pictures", text, kPictures)));
                });
}

void AddRunOptions(CLI::App& app, RunOptions& options) {
  app.add_flag("--overwrite", options.overwrite,
               "Replace output files that exist; --overwrite=lossy also an input by a file that holds less than it")
      ->each([&](const std::string& text) { SetOverwrite(options.render, text); })
      ->group("Output");
  app.add_flag("--skip-existing", options.render.skipExisting, "Skip frames whose output files exist and are whole")
      ->group("Output");
  app.add_flag_callback(
         "--no-sync", [&] { options.render.sync = false; },
         "Do not wait until every file is on its disk: faster, and unsafe should the machine fail")
      ->group("Output");
  AddTextOption(app, "--on-error", "stop|skip", "After a failed frame: stop, or continue with the next [stop]",
                [&](const std::string& text) {
                  options.render.onError = static_cast<host::OnError>(ParseChoice("--on-error", text, kOnError));
                })
      ->group("Output");
  AddTextOption(app, "--frames-in-flight", "N", "Frames that render side by side [automatic]",
                [&](const std::string& text) { SetFramesInFlight(options.render, text); })
      ->group("Output");
  AddTextOption(app, "--memory", "SIZE",
                "Memory that reading, rendering and writing may take, such as 512M or 2.5G [half of the machine's, 2G "
                "at least]",
                [&](const std::string& text) { options.render.memory = ParseBytes("--memory", text); })
      ->group("Output");
  AddTextOption(app, "--max-pixels", "N", "Most pixels of a picture that is read, such as 500M [1G]",
                [&](const std::string& text) { options.render.maxPixels = ParsePixels("--max-pixels", text); })
      ->group("Output");
  AddTextOption(app, "--progress", "auto|none|bar|lines|json",
                "Progress on the standard error stream [auto: a bar on a terminal, else none]",
                [&](const std::string& text) {
                  options.progress = static_cast<ProgressChoice>(ParseChoice("--progress", text, kProgress));
                })
      ->group("Output");
}

}  // namespace vblur::cli
