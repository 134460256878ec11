#include "apps/vblur/Terminal.h"

#include <nlohmann/json.hpp>

#include "apps/vblur/SystemStreams.h"
#include "host/base/Descriptors.h"
#include "host/base/Failure.h"

namespace vblur::cli {

Terminal::Terminal() : stream_(OwnErrorStream()) {}

Terminal::~Terminal() {
  if (stream_ != stderr) std::fclose(stream_);
}

bool Terminal::IsScreen() const {
  return host::IsTerminal(NumberOf(stream_));
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
  host::Flush(stream_);
}

void Terminal::Fail(const std::string& message) {
  Say("error", message);
}

void Terminal::Warn(const std::string& message) {
  if (!quiet_) Say("warning", message);
}

}  // namespace vblur::cli
