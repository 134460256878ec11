#include "apps/vblur/Completions.h"

namespace vblur::cli {

namespace {

std::string ZshQuoted(const std::string& text) {
  return "'" + Replaced(text, "'", "'\\''") + "'";
}

// The description of an option, within its brackets.
std::string ZshDescription(const std::string& help) {
  std::string text = Replaced(help, "\\", "\\\\");
  for (const char* special : {"[", "]", ":"})
    text = Replaced(text, special, std::string("\\") + special);
  return "[" + Replaced(text, "\n", " ") + "]";
}

std::string ZshAction(const OptionEntry& entry) {
  switch (entry.completion) {
    case Completion::Words: return ":value:(" + JoinedWords(entry.words, " ") + ")";
    case Completion::Files: return ":file:_files";
    case Completion::Nothing: break;
  }
  return ":value: ";
}

// One for each name.
std::string ZshOptions(const std::vector<OptionEntry>& options) {
  std::string lines;
  for (const OptionEntry& option : options) {
    const std::string others = option.names.size() > 1 ? "(" + JoinedWords(option.names, " ") + ")" : "";
    for (const std::string& name : option.names) {
      const bool isLong = name.size() > 2;
      const std::string value = option.TakesValue() ? (isLong ? "=" : "+") : "";
      const std::string action = option.TakesValue() ? ZshAction(option) : "";
      std::string entry = others;
      entry.append(name).append(value).append(ZshDescription(option.help)).append(action);
      lines.append("    ").append(ZshQuoted(entry)).append("\n");
    }
  }
  return lines;
}

std::string ZshArgument(const CommandEntry& command) {
  for (const OptionEntry& argument : command.arguments) {
    if (argument.completion == Completion::Words) return "*:value:(" + JoinedWords(argument.words, " ") + ")";
  }
  return "*:file:_files";
}

}  // namespace

std::string ZshCompletion(const std::vector<CommandEntry>& commands) {
  std::string script =
      "#compdef vblur\n# Completion of vblur for zsh, made from the program's options.\n_vblur() {\n"
      "  local -a commands options\n  local command=$words[2] argument='*:file:_files'\n  commands=(\n";
  for (std::size_t i = 1; i < commands.size(); ++i)
    script += "    " + ZshQuoted(commands[i].name + ":" + Replaced(commands[i].help, ":", "\\:")) + "\n";
  script +=
      "  )\n  if (( CURRENT == 2 )) && [[ $command != -* ]]; then\n    _describe command commands\n    _files\n"
      "    return\n  fi\n  options=(\n" +
      ZshOptions(commands.front().options) + "  )\n  case $command in\n";
  for (std::size_t i = 1; i < commands.size(); ++i) {
    // Two files without a command are render.
    const std::string pattern = commands[i].name == "render" ? "render|*.*|-" : commands[i].name;
    script += "  " + pattern + ")\n    argument=" + ZshQuoted(ZshArgument(commands[i])) + "\n    options+=(\n" +
              ZshOptions(commands[i].options) + "    )\n    ;;\n";
  }
  return script + "  esac\n  (( CURRENT-- ))\n  shift words\n  _arguments $options $argument\n}\n_vblur \"$@\"\n";
}

}  // namespace vblur::cli
