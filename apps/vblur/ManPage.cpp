#include "apps/vblur/ManPage.h"

#include <cctype>
#include <sstream>

namespace vblur::cli {

namespace {

std::string ManEscaped(const std::string& text) {
  return Replaced(Replaced(text, "\\", "\\e"), "-", "\\-");
}

// Lines of their own; none begins with what would be a request.
std::string ManParagraphs(const std::string& text) {
  std::istringstream lines(text);
  std::string out;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t start = line.find_first_not_of(' ');
    if (start == std::string::npos) continue;
    if (!out.empty()) out += ".br\n";
    out += "\\&" + ManEscaped(line.substr(start)) + "\n";
  }
  return out;
}

std::string InCapitals(std::string text) {
  for (char& c : text)
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

std::string ManNames(const OptionEntry& option) {
  std::string names;
  for (const std::string& name : option.names)
    names += (names.empty() ? "\\fB" : ", \\fB") + ManEscaped(name) + "\\fR";
  return option.TakesValue() ? names + " \\fI" + ManEscaped(option.form) + "\\fR" : names;
}

std::string ManItem(const std::string& title, const std::string& help) {
  return ".TP\n" + title + "\n" + ManParagraphs(help);
}

std::string ManSynopsis(const CommandEntry& command) {
  std::string line = "\\fBvblur " + ManEscaped(command.name) + "\\fR [\\fIoptions\\fR]";
  for (const OptionEntry& argument : command.arguments) {
    const std::string name = "\\fI" + argument.names.front() + "\\fR" + (argument.isRepeated ? "..." : "");
    line += argument.isRequired ? " " + name : " [" + name + "]";
  }
  return line + "\n";
}

std::string ManOptions(const CommandEntry& command) {
  std::string text;
  std::string group;
  for (const OptionEntry& option : command.options) {
    if (option.group != group) text += ".SS " + ManEscaped(option.group) + "\n";
    group = option.group;
    text += ManItem(ManNames(option), option.help);
  }
  return text;
}

std::string ManSection(const CommandEntry& command) {
  std::string text = ".SH \"VBLUR " + ManEscaped(InCapitals(command.name)) + "\"\n" + ManSynopsis(command);
  text += ".PP\n" + ManParagraphs(command.help + ".");
  for (const OptionEntry& argument : command.arguments)
    text += ManItem("\\fI" + argument.names.front() + "\\fR", argument.help);
  text += ManOptions(command);
  if (!command.footer.empty()) text += ".PP\n" + ManParagraphs(command.footer);
  return text;
}

}  // namespace

std::string ManPage(const std::vector<CommandEntry>& commands, const std::string& version) {
  const CommandEntry& program = commands.front();
  std::string page = ".\\\" Made from the program's options.\n.TH VBLUR 1 \"\" \"vblur " + version +
                     "\" \"User Commands\"\n.SH NAME\nvblur \\- blur and sharpen pictures and sequences of pictures\n"
                     ".SH SYNOPSIS\n\\fBvblur\\fR \\fICOMMAND\\fR [\\fIoptions\\fR] ...\n.br\n"
                     "\\fBvblur\\fR [\\fIoptions\\fR] \\fIINPUT\\fR \\fIOUTPUT\\fR\n.SH DESCRIPTION\n";
  page += ManParagraphs(program.help + "\n" + program.footer);
  page += ".SH COMMANDS\n";
  for (std::size_t i = 1; i < commands.size(); ++i)
    page += ManItem("\\fB" + ManEscaped(commands[i].name) + "\\fR", commands[i].help);
  page += ".SH \"OPTIONS OF EVERY COMMAND\"\n" + ManOptions(program);
  for (std::size_t i = 1; i < commands.size(); ++i)
    page += ManSection(commands[i]);
  return page;
}

}  // namespace vblur::cli
