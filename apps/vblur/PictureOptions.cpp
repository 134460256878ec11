#include "apps/vblur/PictureOptions.h"

#include "apps/vblur/OptionText.h"

namespace vblur::cli {

namespace {

constexpr std::string_view kUses[] = {"filter", "paint", "transition", "generator"};
constexpr host::EffectKind kKinds[] = {host::EffectKind::Filter, host::EffectKind::Paint, host::EffectKind::Transition,
                                       host::EffectKind::Generator};

host::MaskRecord& MaskOf(host::Job& job) {
  return job.mask ? *job.mask : job.mask.emplace();
}

}  // namespace

void AddPictureOptions(CLI::App& app, host::Job& job) {
  const auto add = [&](const char* name, const char* form, const char* help,
                       const std::function<void(const std::string&)>& set) {
    AddTextOption(app, name, form, help, set)->group("Pictures");
  };
  add("--to", "INPUT2", "Second clip: the effect is the transition from INPUT to it",
      [&](const std::string& file) { job.input2.emplace().file = file; });
  add("--layer", "NAME",
      "Layer of INPUT to work on, such as diffuse; the others pass unchanged [the one without a name]",
      [&](const std::string& name) { job.input->layer = name; });
  add("--mask", "FILE", "Paint the effect through a mask, white where the effect shows",
      [&](const std::string& file) { MaskOf(job).file = file; });
  add("--mask-offset", "X,Y", "Position of the mask's lower left corner in INPUT, in pixels [0,0]",
      [&](const std::string& text) { MaskOf(job).offset = ParseWholePair("--mask-offset", text); });
  add("--mask-channel", "NAME", "Channel of the mask [the first; alpha where nothing else varies]",
      [&](const std::string& name) { MaskOf(job).channel = name; });
  add("--use", "filter|paint|transition|generator",
      "Use of the effect [transition with --to, paint with --mask, else filter]",
      [&](const std::string& text) { job.kind = kKinds[ParseChoice("--use", text, kUses)]; });
}

}  // namespace vblur::cli
