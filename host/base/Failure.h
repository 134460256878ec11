// How the stand-alone host reports what it cannot do: one clear line and the exit code it leads to.
#pragma once

#include <stdexcept>
#include <string>

namespace vblur::host {

// The exit codes of the command line.
enum class ExitCode : int {
  Done = 0,
  SomeFramesFailed = 1,
  WrongUsage = 2,  // a wrong option or a wrong job
  CannotRead = 3,
  CannotWrite = 4,
  Interrupted = 130,
};

// The message is one line that says what, where and what was expected, and ends without a period
// or a line break.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}
  ExitCode code() const { return code_; }

 private:
  ExitCode code_;
};

// Throws a Failure that begins with the place: a file, an option, a field.
[[noreturn]] inline void Refuse(ExitCode code, const std::string& place, const std::string& why) {
  throw Failure(code, place + ": " + why);
}

}  // namespace vblur::host
