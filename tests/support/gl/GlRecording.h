// Recorder of OpenGL calls. Tests link it in place of OpenGL, GLU and the fonts of platform/GlFont.h; each call becomes
// one line:
//
//   glBegin(GL_LINE_STRIP)
//   glVertex2f(-0.5, 3)
//   glIsEnabled(GL_BLEND) -> 0
//
// Constants by name, numbers in the shortest form that reads back (a 32-bit float passed as a double is visible),
// strings in quotes.
#pragma once

#include <string>
#include <vector>

#include "platform/GlFont.h"

namespace vblur::test {

// Calls that fail.
struct GlFaults {
  bool noContext = false;  // wglGetCurrentDC gives null
  bool noFont = false;     // CreateFontA gives null
  bool noBitmaps = false;  // wglUseFontBitmapsW gives false
  bool noLists = false;    // glGenLists gives 0
  bool noQuadric = false;  // gluNewQuadric gives null
};

// One at a time. Records from its construction, starting with default OpenGL state. Without one calls work but are not
// recorded.
class GlRecording {
 public:
  GlRecording() { start(); }
  ~GlRecording();
  GlRecording(const GlRecording&) = delete;
  GlRecording& operator=(const GlRecording&) = delete;

  // Default OpenGL state, no lines, no faults. Quadrics and fonts stay.
  void start();
  // Drops the lines only.
  void clear();

  const std::vector<std::string>& lines() const;
  // The lines, each with its newline.
  std::string text() const;

  GlFaults& faults();

  // 0 and false if pushes and pops, glBegin and glEnd are balanced.
  int matrixDepth() const;
  int attributeDepth() const;
  bool isInsideBegin() const;
  // Counts over the whole process.
  int liveQuadrics() const;
  int liveFonts() const;
};

// The device context that wglGetCurrentDC returns.
HDC recordedContext();

// Shows the first line that differs, with its context.
std::string firstDifference(const std::string& have, const std::string& want);

}  // namespace vblur::test
