// What was drawn with OpenGL, call by call. Tests link the recorder in the place of the OpenGL library, GLU and
// the fonts of platform/GlFont.h; each call then becomes one line:
//
//   glBegin(GL_LINE_STRIP)
//   glVertex2f(-0.5, 3)
//   glIsEnabled(GL_BLEND) -> 0
//
// Constants by their name, numbers as short as they can be read back from (a 32-bit float that went through
// a double shows it), texts in quotes.
#pragma once

#include <string>
#include <vector>

namespace vblur::test {

// What is to fail from now on.
struct GlFaults {
  bool noContext = false;  // wglGetCurrentDC gives null
  bool noFont = false;     // CreateFontA gives null
  bool noBitmaps = false;  // wglUseFontBitmapsW gives false
  bool noLists = false;    // glGenLists gives 0
  bool noQuadric = false;  // gluNewQuadric gives null
};

// One at a time. From its making on calls are written down, on an OpenGL that has just been made; before the
// first and after the last they are made and forgotten.
class GlRecording {
 public:
  GlRecording() { start(); }
  ~GlRecording();
  GlRecording(const GlRecording&) = delete;
  GlRecording& operator=(const GlRecording&) = delete;

  // OpenGL as new, no lines, no faults. Quadrics and fonts live on.
  void start();
  // Forgets the lines alone.
  void clear();

  const std::vector<std::string>& lines() const;
  // Every line with its end.
  std::string text() const;

  GlFaults& faults();

  // 0 and false where every push has had its pop, and every glBegin its glEnd.
  int matrixDepth() const;
  int attributeDepth() const;
  bool isInsideBegin() const;
  // What stands in the whole process.
  int liveQuadrics() const;
  int liveFonts() const;
};

// The device context that wglGetCurrentDC gives.
void* recordedContext();

// Names the first line that differs, with those around it.
std::string firstDifference(const std::string& have, const std::string& want);

}  // namespace vblur::test
