#include "apps/vblur/Completions.h"

namespace vblur::cli {

namespace {

std::string FishQuoted(const std::string& text) {
  return "'" + Replaced(Replaced(Replaced(text, "\\", "\\\\"), "'", "\\'"), "\n", " ") + "'";
}

std::string FishAction(const OptionEntry& option) {
  switch (option.completion) {
    case Completion::Words: return " -x -a " + FishQuoted(JoinedWords(option.words, " "));
    case Completion::Files: return " -r -F";
    case Completion::Nothing: break;
  }
  return option.TakesValue() ? " -x" : "";
}

std::string FishLine(const std::string& condition, const OptionEntry& option) {
  std::string line = "complete -c vblur" + condition;
  for (const std::string& name : option.names)
    line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
  return line + FishAction(option) + " -d " + FishQuoted(option.help) + "\n";
}

}  // namespace

std::string FishCompletion(const std::vector<CommandEntry>& commands) {
  std::string script = "# Completion of vblur for fish, made from the program's options.\n";
  for (std::size_t i = 1; i < commands.size(); ++i) {
    script += "complete -c vblur -n __fish_use_subcommand -a " + commands[i].name + " -d " +
              FishQuoted(commands[i].help) + "\n";
  }
  for (const CommandEntry& command : commands) {
    const std::string condition =
        command.name.empty() ? "" : " -n " + FishQuoted("__fish_seen_subcommand_from " + command.name);
    for (const OptionEntry& option : command.options)
      script += FishLine(condition, option);
    for (const OptionEntry& argument : command.arguments) {
      if (argument.completion != Completion::Words) continue;
      script += "complete -c vblur" + condition + " -f -a " + FishQuoted(JoinedWords(argument.words, " ")) + "\n";
    }
  }
  return script;
}

}  // namespace vblur::cli
