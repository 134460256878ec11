#include "tests/support/gl/GlRecording.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "tests/support/gl/GlCalls.h"

namespace vblur::test {
namespace gl {

Recorder& recorder() {
  // It stays: libraries release their objects when the program ends.
  static Recorder& one = *new Recorder;
  return one;
}

std::string textOf(std::string_view text) {
  return std::string(text);
}

std::string textOf(Bits bits) {
  std::array<char, 16> digits{};
  return "0x" + std::string(digits.data(), std::to_chars(digits.data(), digits.data() + 16, bits.value, 16).ptr);
}

void write(std::string line) {
  if (recorder().recording) recorder().lines.push_back(std::move(line));
}

}  // namespace gl

namespace {

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    lines.push_back(line);
  return lines;
}

}  // namespace

GlRecording::~GlRecording() {
  start();
  gl::recorder().recording = false;
}

void GlRecording::start() {
  gl::Recorder fresh;
  fresh.recording = true;
  fresh.quadrics = gl::recorder().quadrics;
  fresh.fonts = gl::recorder().fonts;
  gl::recorder() = std::move(fresh);
}

void GlRecording::clear() {
  gl::recorder().lines.clear();
}

const std::vector<std::string>& GlRecording::lines() const {
  return gl::recorder().lines;
}

std::string GlRecording::text() const {
  std::string text;
  for (const std::string& line : lines())
    text += line + '\n';
  return text;
}

GlFaults& GlRecording::faults() {
  return gl::recorder().faults;
}

int GlRecording::matrixDepth() const {
  return gl::recorder().matrixDepth;
}

int GlRecording::attributeDepth() const {
  return static_cast<int>(gl::recorder().attributes.size());
}

bool GlRecording::isInsideBegin() const {
  return gl::recorder().insideBegin;
}

int GlRecording::liveQuadrics() const {
  return static_cast<int>(gl::recorder().quadrics.size());
}

int GlRecording::liveFonts() const {
  return static_cast<int>(gl::recorder().fonts.size());
}

std::string firstDifference(const std::string& have, const std::string& want) {
  constexpr std::ptrdiff_t kAround = 3;
  const std::vector<std::string> got = linesOf(have);
  const std::vector<std::string> wanted = linesOf(want);
  const auto size = static_cast<std::ptrdiff_t>(std::max(got.size(), wanted.size()));
  const auto at = [](const std::vector<std::string>& lines, std::ptrdiff_t i) {
    return i < static_cast<std::ptrdiff_t>(lines.size()) ? lines[static_cast<std::size_t>(i)] : "(no more lines)";
  };
  std::ptrdiff_t first = 0;
  while (first < size && at(got, first) == at(wanted, first))
    ++first;
  if (first == size) return "";
  std::ostringstream out;
  out << "line " << first + 1 << " of " << got.size() << " differs (" << wanted.size() << " wanted):\n";
  for (std::ptrdiff_t i = std::max<std::ptrdiff_t>(0, first - kAround); i < first; ++i)
    out << "    " << at(got, i) << '\n';
  out << "  - " << at(wanted, first) << "\n  + " << at(got, first) << '\n';
  return out.str();
}

}  // namespace vblur::test
