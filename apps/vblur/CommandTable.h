// The program's commands and options as the option library holds them, for texts that are made from them: the manual
// page and the completions of shells. What is not here is in none of them.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace vblur::cli {

enum class Completion { Nothing, Words, Files };

struct OptionEntry {
  std::vector<std::string> names;  // "-q", "--quiet"; of an argument without a name, how the help calls it
  std::string form;                // of its value; empty for a flag
  std::string help;
  std::string group;
  bool isRequired = false;
  bool isRepeated = false;
  Completion completion = Completion::Nothing;
  std::vector<std::string> words;  // without spaces

  bool TakesValue() const { return !form.empty(); }
};

struct CommandEntry {
  std::string name;  // empty for the program itself
  std::string help;
  std::string footer;
  std::vector<OptionEntry> arguments;
  std::vector<OptionEntry> options;
};

// The program first, whose options every command has, then its commands.
std::vector<CommandEntry> ReadCommandTable(const CLI::App& program);

// The text with every occurrence replaced.
std::string Replaced(std::string text, const std::string& what, const std::string& by);
std::string JoinedWords(const std::vector<std::string>& words, const std::string& separator);

}  // namespace vblur::cli
