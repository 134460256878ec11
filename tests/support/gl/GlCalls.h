// Shared by the parts of the recorder: the state that calls read back, and the formatting of calls.
#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <GL/gl.h>
#include <GL/glu.h>

#include "tests/support/gl/GlRecording.h"

namespace vblur::test::gl {

// The OpenGL state that can be queried.
struct State {
  std::set<GLenum> enabled;
  GLint blendSource = GL_ONE;
  GLint blendDestination = GL_ZERO;
  GLint stippleRepeat = 1;
  GLint stipplePattern = 0xFFFF;
  GLuint listBase = 0;
};

struct SavedState {
  GLbitfield mask;
  State state;
};

struct Recorder {
  bool recording = false;
  std::vector<std::string> lines;
  GlFaults faults;
  State state;
  std::vector<SavedState> attributes;
  int matrixDepth = 0;
  bool insideBegin = false;
  GLuint nextList = 1;
  std::set<const void*> quadrics;
  std::set<const void*> fonts;
};

Recorder& recorder();

// A number in hexadecimal.
struct Bits {
  std::uint32_t value;
};

std::string textOf(std::string_view text);
std::string textOf(Bits bits);
template <class Number>
requires std::integral<Number> || std::floating_point<Number> std::string textOf(Number number) {
  std::array<char, 32> digits{};
  return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

void write(std::string line);

template <class... Arguments>
std::string lineOf(const char* function, const Arguments&... arguments) {
  std::string line = std::string(function) + '(';
  [[maybe_unused]] const char* separator = "";
  ((line += separator + textOf(arguments), separator = ", "), ...);
  return line + ')';
}

template <class... Arguments>
void call(const char* function, const Arguments&... arguments) {
  write(lineOf(function, arguments...));
}

template <class Result, class... Arguments>
Result answer(const char* function, Result result, const Arguments&... arguments) {
  write(lineOf(function, arguments...) + " -> " + textOf(result));
  return result;
}

}  // namespace vblur::test::gl
