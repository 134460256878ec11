// Messages on the standard error stream, one line each.
#pragma once

#include <cstdio>
#include <string>

namespace vblur::cli {

class Terminal {
 public:
  // Duplicates the standard error stream, which may be suppressed for libraries.
  Terminal();
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // Print only failures.
  void BeQuiet() { quiet_ = true; }
  // Print JSON objects instead of text.
  void SpeakJson() { json_ = true; }

  void Fail(const std::string& message);
  void Warn(const std::string& message);
  // A line of requested detail, without a prefix; nothing in JSON mode.
  void Note(const std::string& line);

  // A message as it is printed, with its line break.
  std::string Line(const char* event, const std::string& text) const;

  std::FILE* Stream() const { return stream_; }
  // Whether the stream is a terminal.
  bool IsScreen() const;
  bool IsQuiet() const { return quiet_; }

 private:
  void Say(const char* event, const std::string& text);

  std::FILE* stream_;
  bool quiet_ = false;
  bool json_ = false;
};

}  // namespace vblur::cli
