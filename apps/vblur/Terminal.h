// What the program says to the one who started it, on the standard error stream: one line each.
#pragma once

#include <cstdio>
#include <string>

namespace vblur::cli {

class Terminal {
 public:
  // Keeps a way of its own to the standard error stream, which libraries may be kept from.
  Terminal();
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // Only failures from now on.
  void BeQuiet() { quiet_ = true; }
  // Objects instead of text, for a program that reads every line.
  void SpeakJson() { json_ = true; }

  void Fail(const std::string& message);
  void Warn(const std::string& message);
  // A line as it is, for what was asked to be told in full; nothing while objects are spoken.
  void Note(const std::string& line);

  std::FILE* stream() const { return stream_; }
  // Whether a person is looking.
  bool isScreen() const;
  bool isQuiet() const { return quiet_; }

 private:
  void Say(const char* event, const std::string& text);

  std::FILE* stream_;
  bool quiet_ = false;
  bool json_ = false;
};

}  // namespace vblur::cli
