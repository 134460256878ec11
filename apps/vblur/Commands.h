// The program's commands. Each adds its own subcommand, and runs it once the command line is read.
#pragma once

#include <functional>
#include <memory>

#include <CLI/CLI.hpp>

#include "apps/vblur/RunOptions.h"
#include "apps/vblur/Terminal.h"
#include "host/base/Failure.h"

namespace vblur::cli {

class Command {
 public:
  virtual ~Command() = default;

  // Throws host::Failure.
  virtual host::ExitCode Run(const GlobalOptions& global, Terminal& terminal) = 0;

  CLI::App* App() const { return app_; }

 protected:
  Command(CLI::App& parent, const std::string& name, const std::string& help)
      : app_(parent.add_subcommand(name, help)) {
    app_->fallthrough();
  }

 private:
  CLI::App* app_;
};

std::unique_ptr<Command> MakeRenderCommand(CLI::App& parent);
std::unique_ptr<Command> MakeJobCommand(CLI::App& parent);
std::unique_ptr<Command> MakePropertiesCommand(CLI::App& parent);
std::unique_ptr<Command> MakeChartCommand(CLI::App& parent);
std::unique_ptr<Command> MakeSheetCommand(CLI::App& parent);
std::unique_ptr<Command> MakeKernelCommand(CLI::App& parent);
std::unique_ptr<Command> MakeViewCommand(CLI::App& parent);
std::unique_ptr<Command> MakePageCommand(CLI::App& parent);
std::unique_ptr<Command> MakeInfoCommand(CLI::App& parent);
std::unique_ptr<Command> MakeDocumentCommand(CLI::App& parent);

}  // namespace vblur::cli
