#include "apps/vblur/Advice.h"

namespace vblur::cli {

std::string Advice(const CLI::App& command, host::FailureKind kind) {
  std::string advice;
  const auto offer = [&](const char* option, const char* effect) {
    if (command.get_option_no_throw(option) == nullptr) return;
    advice += std::string(advice.empty() ? "; give " : " or ") + option + effect;
  };
  if (kind == host::FailureKind::FileExists) {
    offer("--overwrite", " to replace it");
    offer("--skip-existing", " to leave it");
  }
  if (kind == host::FailureKind::IsInput) offer("--overwrite", " to replace it");
  if (kind == host::FailureKind::HoldsLess) offer("--overwrite", "=lossy to replace it all the same");
  if (kind == host::FailureKind::TooManyPixels) offer("--max-pixels", " to allow more");
  if (kind == host::FailureKind::NeedsMemory) offer("--memory", " to allow more");
  return advice;
}

}  // namespace vblur::cli
