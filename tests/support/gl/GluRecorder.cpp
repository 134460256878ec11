// Recorder of the GLU functions that the overlay calls.
#include "tests/support/gl/GlCalls.h"

class GLUquadric {};

namespace vblur::test::gl {
namespace {

std::string nameOf(const GLUquadric* quadric) {
  return recorder().quadrics.count(quadric) != 0 ? "quadric" : "NO QUADRIC";
}

std::string nameOf(GLenum value) {
  switch (value) {
    case GLU_NONE: return "GLU_NONE";
    case GLU_FLAT: return "GLU_FLAT";
    case GLU_SMOOTH: return "GLU_SMOOTH";
    case GLU_POINT: return "GLU_POINT";
    case GLU_LINE: return "GLU_LINE";
    case GLU_FILL: return "GLU_FILL";
    case GLU_SILHOUETTE: return "GLU_SILHOUETTE";
    default: return textOf(value);
  }
}

}  // namespace
}  // namespace vblur::test::gl

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
using namespace vblur::test::gl;  // NOLINT(google-build-using-namespace): the names below are GLU's

extern "C" {

GLUquadric* gluNewQuadric() {
  if (recorder().faults.noQuadric) {
    answer("gluNewQuadric", std::string("null"));
    return nullptr;
  }
  auto* quadric = new GLUquadric;
  recorder().quadrics.insert(quadric);
  answer("gluNewQuadric", nameOf(quadric));
  return quadric;
}

void gluDeleteQuadric(GLUquadric* quadric) {
  call("gluDeleteQuadric", nameOf(quadric));
  if (recorder().quadrics.erase(quadric) != 0) delete quadric;
}

void gluQuadricNormals(GLUquadric* quadric, GLenum normals) {
  call("gluQuadricNormals", nameOf(quadric), nameOf(normals));
}

void gluQuadricDrawStyle(GLUquadric* quadric, GLenum style) {
  call("gluQuadricDrawStyle", nameOf(quadric), nameOf(style));
}

void gluDisk(GLUquadric* quadric, GLdouble inner, GLdouble outer, GLint slices, GLint loops) {
  call("gluDisk", nameOf(quadric), inner, outer, slices, loops);
}

void gluPartialDisk(GLUquadric* quadric, GLdouble inner, GLdouble outer, GLint slices, GLint loops, GLdouble start,
                    GLdouble sweep) {
  call("gluPartialDisk", nameOf(quadric), inner, outer, slices, loops, start, sweep);
}

}  // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
