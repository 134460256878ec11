// The system's template of a dialog, DLGTEMPLATEEX, as a module's resources hold it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/Module.h"

namespace vblur::host {

// A template that was read, with the texts that its record points into.
class ReadDialog {
 public:
  // Nothing for bytes that are no such template, or have a class that no ModuleControlKind stands for.
  static std::optional<ReadDialog> Of(std::int32_t id, std::span<const std::byte> bytes);

  // Valid as long as this.
  ModuleDialog Record();

 private:
  ModuleDialog dialog_;
  std::string font_;
  std::vector<ModuleControl> controls_;
  std::vector<std::string> texts_;  // of each control
};

enum class TemplateClasses {
  AsInResources,
  // A static whose text has ";class=NAME" of one of the host's own controls is of that class, which reads the text.
  HostsOwn,
};

// The template of a dialog, hidden at first, with its controls in their order.
std::vector<std::byte> WriteDialogTemplate(const ModuleDialog& dialog, TemplateClasses classes);

}  // namespace vblur::host
