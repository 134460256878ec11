// vblur kernel OUTPUT: the effect's impulse response as a plot and in numbers.
#include "apps/vblur/Commands.h"
#include "apps/vblur/Interruption.h"
#include "apps/vblur/LoadServer.h"
#include "apps/vblur/OptionText.h"
#include "apps/vblur/PercentSize.h"
#include "apps/vblur/RunFiles.h"
#include "host/base/Utf8.h"
#include "host/files/OutputFile.h"
#include "host/properties/PropertyText.h"
#include "host/studies/DrawingLibrary.h"

namespace vblur::cli {

namespace {

const Property& kBlur = PropertyOf(PropertyId::Blur);

class KernelCommand : public Command {
 public:
  explicit KernelCommand(CLI::App& parent)
      : Command(parent, "kernel", "Measure and draw the impulse response of a size") {
    App()->add_option("OUTPUT", output_, "Picture to write")->required()->type_name("");
    AddTextOption(*App(), "--blur", "NUMBER",
                  "Size: " + host::FormatRange(kBlur) + " [" + host::FormatNumber(kBlur.defaultValue) + "]",
                  [this](const std::string& text) {
                    RefusePercent("--blur", text);
                    blur_ = ParseNumber("--blur", text);
                  });
    AddTextOption(*App(), "--depth", "8|16|32", "Bits of a component while rendering [16]",
                  [this](const std::string& text) { depth_ = ParseWhole("--depth", text); });
    App()->add_flag("--overwrite", overwrite_, "Replace an output file that exists");
  }

  host::ExitCode Run(const GlobalOptions& global, Terminal& terminal) override {
    CheckOptions();
    host::RequireWritable(host::PathOf(output_), overwrite_);
    const auto server = LoadServer(global);
    host::TheDrawingLibrary().RequireText();
    Interruption interruption(terminal);
    host::HostImage picture;
    const auto report = host::MeasureKernel(server->Factory(), interruption.Context(), blur_, depth_);
    host::TheDrawingLibrary().DrawKernel(report, picture);
    host::PictureWriter().Write(host::PathOf(output_), picture, nullptr, overwrite_);
    return host::ExitCode::Done;
  }

 private:
  void CheckOptions() const {
    CheckPictureName(host::PathOf(output_));
    if (depth_ != 8 && depth_ != 16 && depth_ != 32)
      host::Refuse("--depth", "expected 8, 16 or 32, found " + std::to_string(depth_));
    if (host::ValueOutOfRange(kBlur, blur_)) {
      host::Refuse("--blur", "expected " + host::FormatRange(kBlur) + ", found " + host::FormatNumber(blur_));
    }
  }

  std::string output_;
  double blur_ = kBlur.defaultValue;
  std::int32_t depth_ = 16;
  bool overwrite_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeKernelCommand(CLI::App& parent) {
  return std::make_unique<KernelCommand>(parent);
}

}  // namespace vblur::cli
