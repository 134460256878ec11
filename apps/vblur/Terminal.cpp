#include "apps/vblur/Terminal.h"

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include "host/base/Failure.h"

namespace vblur::cli {

namespace {

std::FILE* OwnErrorStream() {
  const int own = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
  std::FILE* stream = own >= 0 ? ::fdopen(own, "w") : nullptr;
  return stream ? stream : stderr;
}

}  // namespace

Terminal::Terminal() : stream_(OwnErrorStream()) {}

Terminal::~Terminal() {
  if (stream_ != stderr) std::fclose(stream_);
}

bool Terminal::IsScreen() const {
  return ::isatty(::fileno(stream_)) != 0;
}

void Terminal::Note(const std::string& line) {
  if (!json_) std::fprintf(stream_, "%s\n", line.c_str());
}

std::string Terminal::Line(const char* event, const std::string& text) const {
  const std::string line = host::OnOneLine(text);
  if (!json_) return "vblur: " + line + "\n";
  const nlohmann::ordered_json object = {{"event", event}, {"message", line}};
  return object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

void Terminal::Say(const char* event, const std::string& text) {
  std::fputs(Line(event, text).c_str(), stream_);
  std::fflush(stream_);
}

void Terminal::Fail(const std::string& message) {
  Say("error", message);
}

void Terminal::Warn(const std::string& message) {
  if (!quiet_) Say("warning", message);
}

}  // namespace vblur::cli
