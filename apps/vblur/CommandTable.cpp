#include "apps/vblur/CommandTable.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "host/files/OutputFormat.h"
#include "host/properties/PropertyText.h"
#include "properties/PropertyTable.h"

namespace vblur::cli {

namespace {

std::vector<std::string> PartsOf(const std::string& text, char separator) {
  std::vector<std::string> parts;
  for (std::size_t from = 0; from <= text.size();) {
    const std::size_t end = std::min(text.find(separator, from), text.size());
    parts.push_back(text.substr(from, end - from));
    from = end + 1;
  }
  return parts;
}

// Not a placeholder, such as NUMBER or A-B.
bool IsWord(const std::string& part) {
  const auto isUpper = [](char c) { return std::isupper(static_cast<unsigned char>(c)) != 0; };
  if (part.empty() || part.find_first_of(":,%.") != std::string::npos) return false;
  return !isUpper(part[0]) || (part.size() > 1 && std::islower(static_cast<unsigned char>(part[1])) != 0);
}

// "Add Over" as add-over, which is read alike.
std::string Dashed(std::string_view entry) {
  std::string word;
  for (const char c : entry) {
    if (c == '\'') continue;
    word += c == ' ' ? '-' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return word;
}

std::vector<std::string> Extensions() {
  std::vector<std::string> all;
  for (const host::OutputFormat& format : host::OutputFormats()) {
    for (const std::string& extension : PartsOf(std::string(format.extensions), ' '))
      all.push_back(extension);
  }
  return all;
}

std::vector<std::string> WordsOf(const OptionEntry& entry) {
  if (entry.form == "EXT" || entry.form == "FORMAT") return Extensions();
  std::vector<std::string> words;
  for (const Property& property : kProperties) {
    const std::string option = host::OptionName(property);
    if (entry.form == "PROPERTY") words.push_back(option);
    if (entry.form != "ENTRY" || "--" + option != entry.names.back()) continue;
    for (const std::string_view each : property.entries)
      words.push_back(Dashed(each));
  }
  if (!words.empty() || entry.form.find('|') == std::string::npos) return words;
  for (const std::string& part : PartsOf(entry.form, '|')) {
    if (IsWord(part)) words.push_back(part);
  }
  return words;
}

void Complete(OptionEntry& entry) {
  static constexpr std::string_view kFiles[] = {"FILE", "INPUT", "INPUT2", "OUTPUT", "MORE", "JOB"};
  entry.words = WordsOf(entry);
  if (!entry.words.empty()) {
    entry.completion = Completion::Words;
  } else if (std::ranges::find(kFiles, entry.form) != std::end(kFiles)) {
    entry.completion = Completion::Files;
  }
}

OptionEntry ArgumentOf(const CLI::Option& option, const std::string& command) {
  OptionEntry entry;
  entry.names = {option.get_name(true)};
  entry.form = command == "properties" ? "PROPERTY" : entry.names.front();
  entry.help = option.get_description();
  entry.isRequired = option.get_required();
  entry.isRepeated = option.get_expected_max() > 1;
  Complete(entry);
  return entry;
}

OptionEntry OptionOf(const CLI::Option& option) {
  OptionEntry entry;
  for (const std::string& name : option.get_snames())
    entry.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames())
    entry.names.push_back("--" + name);
  if (option.get_items_expected_max() > 0) entry.form = option.get_type_name();
  entry.help = option.get_description();
  entry.group = option.get_group();
  Complete(entry);
  return entry;
}

CommandEntry CommandOf(const CLI::App& app, const std::string& name) {
  CommandEntry command;
  command.name = name;
  command.help = app.get_description();
  command.footer = app.get_footer();
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_positional()) {
      command.arguments.push_back(ArgumentOf(*option, name));
    } else if (!option->get_group().empty()) {
      command.options.push_back(OptionOf(*option));
    }
  }
  return command;
}

}  // namespace

std::vector<CommandEntry> ReadCommandTable(const CLI::App& program) {
  std::vector<CommandEntry> commands{CommandOf(program, "")};
  for (const CLI::App* command : program.get_subcommands({})) {
    if (!command->get_group().empty()) commands.push_back(CommandOf(*command, command->get_name()));
  }
  return commands;
}

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
  return text;
}

std::string JoinedWords(const std::vector<std::string>& words, const std::string& separator) {
  std::string all;
  for (const std::string& word : words)
    all += (all.empty() ? "" : separator) + word;
  return all;
}

}  // namespace vblur::cli
