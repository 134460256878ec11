// How the host reports what it cannot do: one line, and the exit code that it leads to.
#pragma once

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

#include "host/base/StandardStream.h"

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

// Causes that a program can advise on. The advice is the program's: the library does not know its options.
enum class FailureKind { Other, FileExists, IsInput, TooManyPixels, NeedsMemory, HoldsLess };

// A text for people on one line: control characters, which file names and channels' names may hold, are spaces.
inline std::string OnOneLine(std::string text) {
  std::ranges::replace_if(
      text, [](unsigned char c) { return c < ' ' || c == 127; }, ' ');
  return text;
}

// The message is one line with the cause: what, where, what was expected. No period, no advice.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& message, FailureKind kind = FailureKind::Other)
      : std::runtime_error(OnOneLine(message)), code_(code), kind_(kind) {}
  ExitCode Code() const { return code_; }
  FailureKind Kind() const { return kind_; }

 private:
  ExitCode code_;
  FailureKind kind_;
};

// Throw a Failure that begins with the place: a file, an option, a field. Without a code: wrong usage.
[[noreturn]] inline void Refuse(ExitCode code, std::string_view place, const std::string& why) {
  throw Failure(code, std::string(place) + ": " + why);
}
[[noreturn]] inline void Refuse(std::string_view place, const std::string& why) {
  Refuse(ExitCode::WrongUsage, place, why);
}
[[noreturn]] inline void RefuseToRead(const std::filesystem::path& file, const std::string& why) {
  Refuse(ExitCode::CannotRead, InputName(file), "cannot read: " + why);
}
[[noreturn]] inline void RefuseToWrite(const std::filesystem::path& file, const std::string& why) {
  Refuse(ExitCode::CannotWrite, OutputName(file), "cannot write: " + why);
}

}  // namespace vblur::host
