#include "apps/vblur/Completions.h"

namespace vblur::cli {

namespace {

std::string BashNames(const std::vector<OptionEntry>& options) {
  std::string names;
  for (const OptionEntry& option : options)
    names += (names.empty() ? "" : " ") + JoinedWords(option.names, " ");
  return names;
}

std::string CommandNames(const std::vector<CommandEntry>& commands, const std::string& separator) {
  std::vector<std::string> names;
  for (std::size_t i = 1; i < commands.size(); ++i)
    names.push_back(commands[i].name);
  return JoinedWords(names, separator);
}

std::string BashAction(const OptionEntry& option) {
  switch (option.completion) {
    case Completion::Words: return "kind=words words='" + JoinedWords(option.words, " ") + "'";
    case Completion::Files: return "kind=files";
    case Completion::Nothing: break;
  }
  return "kind=none";
}

// What stands behind an option that takes a value. The program's options follow every command.
std::string BashValues(const CommandEntry& command) {
  std::string cases;
  for (const OptionEntry& option : command.options) {
    if (!option.TakesValue()) continue;
    std::vector<std::string> patterns;
    for (const std::string& name : option.names)
      patterns.push_back(command.name.empty() ? "*' " + name + "'" : "'" + command.name + " " + name + "'");
    cases += "    " + JoinedWords(patterns, "|") + ") " + BashAction(option) + " ;;\n";
  }
  return cases;
}

constexpr const char* kBashBegin = R"(# Completion of vblur for bash, made from the program's options.
_vblur() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
  local command='' kind='' words='' options='' index
  COMPREPLY=()
  # "=" is a word of its own.
  if [[ $current == '=' ]]; then
    current=''
  elif [[ $previous == '=' ]]; then
    previous=${COMP_WORDS[COMP_CWORD-2]}
  fi
  for ((index = 1; index < COMP_CWORD; ++index)); do
    case ${COMP_WORDS[index]} in
      @COMMANDS@) command=${COMP_WORDS[index]}; break ;;
    esac
  done
  if [[ -z $command && $COMP_CWORD -gt 1 ]]; then
    if [[ ${COMP_WORDS[1]} == help ]]; then
      mapfile -t COMPREPLY < <(compgen -W '@WORDS@' -- "$current")
      return
    fi
    [[ ${COMP_WORDS[1]} == -?* ]] || command=render
  fi
  case "$command $previous" in
)";

constexpr const char* kBashEnd = R"(  esac
  if [[ -z $kind && $current == -* ]]; then
    kind=words words="@GLOBAL@ $options"
  elif [[ -z $kind && -z $command ]]; then
    kind=both words='@WORDS@ help'
  elif [[ -z $kind ]]; then
    kind=${argument:-files}
  fi
  if [[ $kind == words || $kind == both ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  fi
  if [[ $kind == files || $kind == both ]]; then
    mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -f -- "$current")
    compopt -o filenames 2>/dev/null
  fi
}
complete -F _vblur vblur
)";

}  // namespace

std::string BashCompletion(const std::vector<CommandEntry>& commands) {
  std::string script = kBashBegin;
  for (const CommandEntry& command : commands)
    script += BashValues(command);
  script += "  esac\n  local argument=''\n  case $command in\n";
  for (std::size_t i = 1; i < commands.size(); ++i) {
    const CommandEntry& command = commands[i];
    script += "    " + command.name + ") options='" + BashNames(command.options) + "'";
    for (const OptionEntry& argument : command.arguments) {
      if (argument.completion != Completion::Words) continue;
      script += "; argument=words; [[ $kind ]] || words='" + JoinedWords(argument.words, " ") + "'";
    }
    script += " ;;\n";
  }
  script += kBashEnd;
  script = Replaced(script, "@COMMANDS@", CommandNames(commands, "|"));
  script = Replaced(script, "@WORDS@", CommandNames(commands, " "));
  return Replaced(script, "@GLOBAL@", BashNames(commands.front().options));
}

}  // namespace vblur::cli
