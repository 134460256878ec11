// vblur document KIND: the manual page and the completions of shells, for the build. The help does not show it.
#include <cstdio>
#include <functional>

#include "apps/vblur/CommandTable.h"
#include "apps/vblur/Commands.h"
#include "apps/vblur/Completions.h"
#include "apps/vblur/ManPage.h"
#include "apps/vblur/OptionText.h"

namespace vblur::cli {

namespace {

constexpr std::string_view kDocuments[] = {"man", "bash", "zsh", "fish"};

class DocumentCommand : public Command {
 public:
  explicit DocumentCommand(CLI::App& parent) : Command(parent, "document", "Print the manual page or a completion") {
    App()->group("");
    App()->add_option("KIND", kind_, "man, bash, zsh or fish")->required()->type_name("");
  }

  host::ExitCode Run(const GlobalOptions&, Terminal&) override {
    const std::vector<CommandEntry> commands = ReadCommandTable(*App()->get_parent());
    const std::function<std::string()> texts[] = {
        [&] { return ManPage(commands, VBLUR_VERSION); }, [&] { return BashCompletion(commands); },
        [&] { return ZshCompletion(commands); }, [&] { return FishCompletion(commands); }};
    std::fputs(texts[ParseChoice("KIND", kind_, kDocuments)]().c_str(), stdout);
    return host::ExitCode::Done;
  }

 private:
  std::string kind_;
};

}  // namespace

std::unique_ptr<Command> MakeDocumentCommand(CLI::App& parent) {
  return std::make_unique<DocumentCommand>(parent);
}

}  // namespace vblur::cli
