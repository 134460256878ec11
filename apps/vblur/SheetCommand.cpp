// vblur sheet INPUT OUTPUT: many settings of the effect side by side on one picture.
#include "apps/vblur/Commands.h"
#include "apps/vblur/Interruption.h"
#include "apps/vblur/LoadServer.h"
#include "apps/vblur/OptionText.h"
#include "apps/vblur/PropertyOptions.h"
#include "apps/vblur/RunFiles.h"
#include "host/base/NameMatch.h"
#include "host/base/StandardStream.h"
#include "host/base/Utf8.h"
#include "host/files/OutputFile.h"
#include "host/jobs/JobCheck.h"
#include "host/properties/PropertyText.h"
#include "host/studies/DrawingLibrary.h"

namespace vblur::cli {

namespace {

constexpr std::string_view kAlpha[] = {"shown", "ignored"};

class SheetCommand : public Command {
 public:
  explicit SheetCommand(CLI::App& parent)
      : Command(parent, "sheet", "Draw a labelled sheet of many settings on one picture") {
    App()
        ->add_option("INPUT", input_, "Picture to read; it is scaled down to the size of a panel")
        ->required()
        ->type_name("");
    App()->add_option("OUTPUT", output_, "Picture to write")->required()->type_name("");
    AddTextOption(*App(), "--of", "channels|mix-back|edges|sizes|ramps",
                  "All channel choices, all mix-back methods, all pairs of edge methods on a crop, a row of sizes, "
                  "or a transition's frames for the four ramps",
                  [this](const std::string& text) {
                    request_.kind = static_cast<host::SheetKind>(ParseChoice("--of", text, host::kSheetNames));
                  })
        ->required();
    AddTextOption(*App(), "--to", "INPUT2", "With ramps: the second clip [INPUT rotated, its colours exchanged]",
                  [this](const std::string& file) { second_ = host::PathOf(file); });
    AddTextOption(*App(), "--depth", "8|16|32", "Bits of a component while rendering [as INPUT's samples]",
                  [this](const std::string& text) { depth_ = ParseWhole("--depth", text); });
    AddTextOption(*App(), "--alpha", "shown|ignored",
                  "Transparency over a checkerboard, or colours alone [ignored for mix-back and edges]",
                  [this](const std::string& text) { request_.showsAlpha = ParseChoice("--alpha", text, kAlpha) == 0; });
    App()->add_flag("--overwrite", overwrite_, "Replace an output file that exists");
    AddPropertyOptions(*App(), request_.properties);
    App()->footer("The properties hold for every panel; --blur is in pixels of a panel.");
  }

  host::ExitCode Run(const GlobalOptions& global, Terminal& terminal) override {
    CheckOptions();
    const auto server = LoadServer(global);
    const host::EffectFactory makeEffect = server->Factory();
    const host::SheetPlan plan =
        host::PlanSheet(request_, [&](double blur) { return host::FactsOfSize(makeEffect, blur); });
    CheckFiles();
    host::TheDrawingLibrary().RequireText();
    Interruption interruption(terminal);
    host::SheetPictures pictures;
    Read(plan, pictures, terminal);
    host::HostImage sheet;
    host::TheDrawingLibrary().DrawSheet(plan, pictures, makeEffect, interruption.Context(), sheet);
    host::PictureWriter().Write(host::PathOf(output_), sheet, nullptr, overwrite_);
    return host::ExitCode::Done;
  }

 private:
  void CheckOptions() {
    CheckPictureName(host::PathOf(output_));
    if (depth_) host::CheckDepth("--depth", *depth_);
    if (!second_.empty() && request_.kind != host::SheetKind::Ramps) host::Refuse("--to", "goes with --of ramps only");
    for (const Property& property : kProperties) {
      if (App()->count("--" + host::OptionName(property)) > 0) request_.given.insert(property.id);
    }
  }

  void CheckFiles() const {
    RunFiles files(overwrite_);
    files.AddRead(host::PathOf(input_));
    if (!second_.empty()) files.AddRead(second_);
    files.AddWritten("OUTPUT", host::PathOf(output_));
  }

  static host::ReadPicture ReadWhole(const std::filesystem::path& file, std::int32_t depth, host::HostImage& whole,
                                     Terminal& terminal) {
    auto read = host::PictureReader().ReadColour(file, depth, whole);
    for (const std::string& loss : read.losses)
      terminal.Warn(loss);
    const std::string beyond = host::FormatBeyond(read.beyond, host::LimitsOf(depth));
    if (!beyond.empty()) terminal.Warn(host::InputName(file) + ": " + beyond);
    return read;
  }

  void Read(const host::SheetPlan& plan, host::SheetPictures& pictures, Terminal& terminal) const {
    const std::int32_t depth = depth_ ? *depth_ : host::ReadPictureInfo(host::PathOf(input_)).NaturalDepth();
    host::HostImage whole;
    const auto read = ReadWhole(host::PathOf(input_), depth, whole, terminal);
    const host::SheetPoint size = host::PanelSize(plan, whole.Width(), whole.Height());
    host::ScalePicture(whole, size.x, size.y, pictures.input);
    pictures.associatedAlpha = read.associatedAlpha;
    pictures.caption = host::Quoted(host::Utf8Of(host::PathOf(input_).filename())) + ", " +
                       std::to_string(whole.Width()) + " x " + std::to_string(whole.Height()) + " pixels, shown at " +
                       std::to_string(size.x) + " x " + std::to_string(size.y) + ", " + std::to_string(depth) +
                       " bits a component";
    if (plan.use != host::EffectKind::Transition) return;
    pictures.caption += "; second clip: ";
    if (second_.empty()) {
      host::MakeSecondClip(pictures.input, pictures.input2);
      pictures.caption += "the same rotated by 180 degrees, colours exchanged";
      return;
    }
    ReadWhole(second_, depth, whole, terminal);
    host::ScalePicture(whole, size.x, size.y, pictures.input2);
    pictures.caption += host::Quoted(host::Utf8Of(second_.filename()));
  }

  host::SheetRequest request_;
  std::string input_;
  std::string output_;
  std::filesystem::path second_;
  std::optional<std::int32_t> depth_;
  bool overwrite_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeSheetCommand(CLI::App& parent) {
  return std::make_unique<SheetCommand>(parent);
}

}  // namespace vblur::cli
