#include "apps/vblur/CommandLine.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <initializer_list>
#include <new>
#include <sstream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "apps/vblur/Advice.h"
#include "apps/vblur/Commands.h"
#include "apps/vblur/Interruption.h"
#include "apps/vblur/RunJob.h"
#include "apps/vblur/StandardStreams.h"
#include "apps/vblur/SystemStreams.h"
#include "host/base/NameMatch.h"
#include "host/base/PartFiles.h"
#include "host/base/StandardStream.h"
#include "host/base/SystemFiles.h"
#include "host/base/Utf8.h"
#include "host/base/Wildcards.h"

namespace vblur::cli {

namespace {

using host::ExitCode;

// `--job FILE`, anywhere, is the command `job FILE`.
std::vector<std::string> ReadArguments(std::vector<std::string> arguments) {
  // As values and names of properties, options are spelled either way.
  constexpr std::string_view kColor = "--crop-color-";
  for (std::string& argument : arguments) {
    if (argument.starts_with(kColor)) argument.replace(0, kColor.size(), "--crop-colour-");
  }
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    const bool apart = argument == "--job" && i + 1 < arguments.size();
    const bool joined = argument.rfind("--job=", 0) == 0;
    if (!apart && !joined) continue;
    const std::string file = apart ? arguments[i + 1] : argument.substr(std::string("--job=").size());
    const auto at = arguments.begin() + static_cast<std::ptrdiff_t>(i);
    arguments.erase(at, at + (apart ? 2 : 1));
    arguments.insert(arguments.begin(), {"job", file});
    break;
  }
  return arguments;
}

// The first argument from this place on that is neither an option of one of these nor the value of one.
std::size_t FirstWord(const std::vector<std::string>& arguments, std::size_t at,
                      std::initializer_list<const CLI::App*> takers) {
  while (at < arguments.size() && arguments[at].starts_with('-') && !host::IsStandardStream(arguments[at])) {
    const std::string& argument = arguments[at];
    if (argument == "--") return std::min(at + 1, arguments.size());
    // "--threads=4" as --threads, "-vv" as -v.
    const std::string name = argument.substr(0, argument.starts_with("--") ? argument.find('=') : 2);
    const CLI::Option* option = nullptr;
    for (const CLI::App* taker : takers) {
      if (option == nullptr) option = taker->get_option_no_throw(name);
    }
    if (option == nullptr) break;
    const bool hasValueApart = option->get_items_expected_max() > 0 && name == argument;
    at += hasValueApart ? 2 : 1;
  }
  return std::min(at, arguments.size());
}

bool IsCommand(const CLI::App& app, const std::string& word) {
  const auto commands = app.get_subcommands({});
  return std::ranges::any_of(commands, [&](const CLI::App* each) { return each->get_name() == word; });
}

// `help COMMAND` is `COMMAND --help`. Anything else but the program's own options is left to be refused.
void ExpandHelp(std::vector<std::string>& arguments, const CLI::App& app) {
  std::erase(arguments, "help");
  const std::size_t at = FirstWord(arguments, 0, {&app});
  const bool isAlone = at == arguments.size();
  if (!isAlone && !IsCommand(app, arguments[at])) return;
  const std::size_t next = isAlone ? at : FirstWord(arguments, at + 1, {&app});
  if (next < arguments.size()) {
    throw host::Failure(ExitCode::WrongUsage,
                        "unexpected argument " + host::Quoted(arguments[next]) + "; see vblur --help");
  }
  arguments.emplace_back("--help");
}

// `help COMMAND` asks for help, and two files without a command are `render`; options may stand before both.
void ExpandShortForms(std::vector<std::string>& arguments, const CLI::App& app) {
  const std::size_t at = FirstWord(arguments, 0, {&app, app.get_subcommand("render")});
  if (at == arguments.size()) return;
  const std::string first = arguments[at];
  if (first == "help") return ExpandHelp(arguments, app);
  std::error_code error;
  const std::filesystem::path file = host::PathOf(first);
  // Names that no command has, such as those of devices, are told as what they are.
  const bool isFile = host::IsStandardStream(first) || file.has_extension() || !host::FlawOfName(file).empty() ||
                      std::filesystem::exists(file, error);
  if (!IsCommand(app, first) && isFile) arguments.insert(arguments.begin(), "render");
}

// Names with * and ? as those of the files, where they are no options' values.
void ExpandWildcards(std::vector<std::string>& arguments, const CLI::App& app) {
  const CLI::App* command = app.get_subcommand("render");
  std::size_t at = FirstWord(arguments, 0, {&app, command});
  if (at < arguments.size() && IsCommand(app, arguments[at])) command = app.get_subcommand(arguments[at++]);
  // Its names are those of properties.
  if (command->get_name() == "properties") return;
  for (bool areNames = false; at < arguments.size();) {
    if (!areNames) at = FirstWord(arguments, at, {&app, command});
    if (at == arguments.size()) return;
    areNames = areNames || (at > 0 && arguments[at - 1] == "--");
    // An option that is not known.
    if (!areNames && arguments[at].starts_with("--")) return;
    const std::vector<std::string> files = host::FilesNamed(arguments[at]);
    const auto place = arguments.erase(arguments.begin() + static_cast<std::ptrdiff_t>(at));
    arguments.insert(place, files.begin(), files.end());
    at += files.size();
  }
}

std::string HelpHint(const CLI::App& command) {
  return "; see vblur " + (command.get_parent() ? command.get_name() + " " : std::string()) + "--help";
}

std::string FirstUnknown(const CLI::App& app) {
  for (const std::string& argument : app.remaining(true)) {
    if (argument.size() > 1 && argument.front() == '-') return argument.substr(0, argument.find('='));
  }
  const auto all = app.remaining(true);
  return all.empty() ? std::string() : all.front();
}

std::vector<std::string> OptionNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames())
      names.push_back("--" + name);
  }
  return names;
}

std::string UnknownArgument(const CLI::App& app, const CLI::App& command) {
  const std::string unknown = FirstUnknown(app);
  if (unknown.empty() || unknown.front() != '-') {
    if (&app != &command) return "unexpected argument " + host::Quoted(unknown) + HelpHint(command);
    std::vector<std::string_view> names;
    std::vector<std::string> kept;
    for (const CLI::App* sub : app.get_subcommands({}))
      kept.push_back(sub->get_name());
    names.assign(kept.begin(), kept.end());
    return host::UnknownName("command", unknown, names) + HelpHint(app);
  }
  std::vector<std::string> options = OptionNames(command);
  if (&app != &command) {
    const auto global = OptionNames(app);
    options.insert(options.end(), global.begin(), global.end());
  }
  const std::vector<std::string_view> names(options.begin(), options.end());
  return host::UnknownName("option", unknown, names) + HelpHint(command);
}

// Replaces the option library's messages about missing, repeated and unwanted values.
std::string WrongValue(const CLI::App& app, const CLI::App& command, const CLI::ParseError& error) {
  std::string message = error.what();
  const std::size_t start = message.find("--");
  if (start == std::string::npos) return message;
  const std::string name = message.substr(start, message.find_first_of(": =", start) - start);
  const CLI::Option* option = command.get_option_no_throw(name);
  if (option == nullptr) option = app.get_option_no_throw(name);
  if (option == nullptr) return message;
  if (option->get_expected_max() == 0) return name + ": takes no value";
  if (option->count() > 1) return name + ": given twice";
  return name + ": expected a value, " + option->get_type_name();
}

class Program {
 public:
  Program() : app_("Blurs and sharpens pictures and sequences of pictures.", "vblur") {
    app_.set_version_flag("-V,--version", "vblur " VBLUR_VERSION);
    app_.set_help_flag("-h,--help", "Print this help and end");
    // On Windows too a name may begin with a slash.
    app_.allow_windows_style_options(false);
    app_.get_formatter()->column_width(34);
    app_.require_subcommand(1);
    AddGlobalOptions(app_, global_);
    for (const auto make :
         {MakeRenderCommand, MakeJobCommand, MakePropertiesCommand, MakeChartCommand, MakeSheetCommand,
          MakeKernelCommand, MakeViewCommand, MakePageCommand, MakeInfoCommand, MakeDocumentCommand}) {
      commands_.push_back(make(app_));
    }
    app_.footer(
        "vblur INPUT OUTPUT is short for vblur render INPUT OUTPUT, vblur --job FILE for vblur job FILE; vblur help "
        "COMMAND explains a command.\n"
        "Exit codes: 0 done, 1 some frames failed, 2 wrong usage or job, 3 cannot read, 4 cannot write, "
        "128 and more ended by a signal: 130 for Ctrl-C.");
  }

  ExitCode Run(std::vector<std::string> arguments, Wildcards wildcards) {
    arguments = ReadArguments(std::move(arguments));
    if (wildcards == Wildcards::Program) ExpandWildcards(arguments, app_);
    ExpandShortForms(arguments, app_);
    if (arguments.empty()) {
      std::fputs(app_.help().c_str(), stdout);
      return ExitCode::WrongUsage;
    }
    std::reverse(arguments.begin(), arguments.end());
    try {
      app_.parse(arguments);
    } catch (const CLI::Success& request) {
      std::ostringstream text;
      app_.exit(request, text, text);
      std::fputs(text.str().c_str(), stdout);
      return ExitCode::Done;
    } catch (const CLI::ParseError& error) {
      throw host::Failure(ExitCode::WrongUsage, Describe(error));
    }
    ApplyGlobalOptions(global_, terminal_);
    for (const auto& command : commands_) {
      if (command->App()->parsed()) return RunCommand(*command);
    }
    return ExitCode::WrongUsage;
  }

  Terminal& Screen() { return terminal_; }

 private:
  const CLI::App& ChosenCommand() const {
    for (const auto& command : commands_) {
      if (command->App()->parsed()) return *command->App();
    }
    return app_;
  }

  ExitCode RunCommand(Command& command) {
    try {
      return command.Run(global_, terminal_);
    } catch (const host::Failure& failure) {
      throw host::Failure(failure.Code(), failure.what() + Advice(*command.App(), failure.Kind()), failure.Kind());
    }
  }

  std::string Describe(const CLI::ParseError& error) const {
    const CLI::App& command = ChosenCommand();
    const bool extras = !app_.remaining(true).empty();
    if (extras) return UnknownArgument(app_, command);
    const bool isMissing = error.get_name() == "RequiredError";
    return (isMissing ? error.what() : WrongValue(app_, command, error)) + HelpHint(command);
  }

  Terminal terminal_;
  CLI::App app_;
  GlobalOptions global_;
  std::vector<std::unique_ptr<Command>> commands_;
};

// Every failure as one line and an exit code.
ExitCode RunGuarded(Program& program, std::vector<std::string> arguments, Wildcards wildcards) {
  try {
    return program.Run(std::move(arguments), wildcards);
  } catch (const host::Failure& failure) {
    // No message after a broken pipe.
    const bool isPipeBroken = failure.Code() == ExitCode::Interrupted && Interruption::Caught() == kBrokenPipe;
    if (!isPipeBroken) program.Screen().Fail(failure.what());
    return failure.Code();
  } catch (const std::bad_alloc&) {
    program.Screen().Fail("not enough memory");
  } catch (const std::system_error& error) {
    const bool threads = error.code() == std::errc::resource_unavailable_try_again;
    program.Screen().Fail(threads ? "the system starts no more threads" : error.what());
  } catch (const std::exception& error) {
    program.Screen().Fail(error.what());
  }
  return ExitCode::SomeFramesFailed;
}

std::string WhatEnds(const std::exception_ptr& error) {
  try {
    if (error) std::rethrow_exception(error);
  } catch (const std::system_error&) {
  } catch (const std::bad_alloc&) {
    return "not enough memory";
  } catch (const std::exception& other) {
    return other.what();
  } catch (...) {
    return "an unknown error";
  }
  return "the system starts no more threads, or has no memory for them";
}

Terminal* lastTerminal = nullptr;

// Libraries that cannot start their threads end the process, some while they are loaded.
[[noreturn]] void EndLibrary() {
  host::RemoveNotedParts();
  if (lastTerminal != nullptr) lastTerminal->Fail(WhatEnds(std::current_exception()));
  EndProcess(static_cast<int>(ExitCode::SomeFramesFailed));
}

}  // namespace

int RunCommandLine(std::vector<std::string> arguments, Wildcards wildcards) {
  OpenStandardStreams();
  Program program;
  lastTerminal = &program.Screen();
  std::set_terminate(EndLibrary);
  const ExitCode code = RunGuarded(program, std::move(arguments), wildcards);
  const int status = FinishStandardOutput(code, program.Screen());
  RestoreConsole();
  return status;
}

}  // namespace vblur::cli
