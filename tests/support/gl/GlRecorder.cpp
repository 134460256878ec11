// Recorder of the OpenGL functions that the overlay calls.
#include <initializer_list>

#include "tests/support/gl/GlCalls.h"

namespace vblur::test::gl {
namespace {

struct Named {
  GLenum value;
  const char* name;
};

#define VBLUR_NAMED(constant) \
  Named {                     \
    constant, #constant       \
  }

// Kinds whose values overlap with other kinds.
constexpr std::initializer_list<Named> kPrimitives = {
    VBLUR_NAMED(GL_POINTS),       VBLUR_NAMED(GL_LINES),     VBLUR_NAMED(GL_LINE_LOOP),
    VBLUR_NAMED(GL_LINE_STRIP),   VBLUR_NAMED(GL_TRIANGLES), VBLUR_NAMED(GL_TRIANGLE_STRIP),
    VBLUR_NAMED(GL_TRIANGLE_FAN), VBLUR_NAMED(GL_QUADS),     VBLUR_NAMED(GL_POLYGON),
};
constexpr std::initializer_list<Named> kBlendFactors = {
    VBLUR_NAMED(GL_ZERO),      VBLUR_NAMED(GL_ONE), VBLUR_NAMED(GL_SRC_ALPHA), VBLUR_NAMED(GL_ONE_MINUS_SRC_ALPHA),
    VBLUR_NAMED(GL_DST_COLOR),
};
constexpr std::initializer_list<Named> kAttributes = {
    VBLUR_NAMED(GL_LIST_BIT),   VBLUR_NAMED(GL_LINE_BIT),         VBLUR_NAMED(GL_CURRENT_BIT),
    VBLUR_NAMED(GL_ENABLE_BIT), VBLUR_NAMED(GL_COLOR_BUFFER_BIT),
};
constexpr std::initializer_list<Named> kConstants = {
    VBLUR_NAMED(GL_BLEND),
    VBLUR_NAMED(GL_BLEND_DST),
    VBLUR_NAMED(GL_BLEND_SRC),
    VBLUR_NAMED(GL_DEPTH_TEST),
    VBLUR_NAMED(GL_FLAT),
    VBLUR_NAMED(GL_LINE_SMOOTH),
    VBLUR_NAMED(GL_LINE_STIPPLE),
    VBLUR_NAMED(GL_LINE_STIPPLE_PATTERN),
    VBLUR_NAMED(GL_LINE_STIPPLE_REPEAT),
    VBLUR_NAMED(GL_MODELVIEW),
    VBLUR_NAMED(GL_POINT_SMOOTH),
    VBLUR_NAMED(GL_POLYGON_SMOOTH),
    VBLUR_NAMED(GL_PROJECTION),
    VBLUR_NAMED(GL_SMOOTH),
    VBLUR_NAMED(GL_TEXTURE_2D),
    VBLUR_NAMED(GL_UNSIGNED_BYTE),
};
#undef VBLUR_NAMED

std::string nameOf(GLenum value, std::initializer_list<Named> names = kConstants) {
  for (const Named& known : names) {
    if (known.value == value) return known.name;
  }
  return textOf(Bits{value});
}

std::string quoted(const void* text, GLsizei length) {
  return '"' + std::string(static_cast<const char*>(text), static_cast<std::size_t>(length)) + '"';
}

void restore(const SavedState& saved) {
  State& state = recorder().state;
  if ((saved.mask & GL_ENABLE_BIT) != 0) state.enabled = saved.state.enabled;
  if ((saved.mask & GL_LIST_BIT) != 0) state.listBase = saved.state.listBase;
  if ((saved.mask & GL_COLOR_BUFFER_BIT) != 0) {
    state.blendSource = saved.state.blendSource;
    state.blendDestination = saved.state.blendDestination;
  }
  if ((saved.mask & GL_LINE_BIT) != 0) {
    state.stippleRepeat = saved.state.stippleRepeat;
    state.stipplePattern = saved.state.stipplePattern;
  }
}

GLint valueOf(GLenum name) {
  const State& state = recorder().state;
  switch (name) {
    case GL_BLEND_SRC: return state.blendSource;
    case GL_BLEND_DST: return state.blendDestination;
    case GL_LINE_STIPPLE_PATTERN: return state.stipplePattern;
    case GL_LINE_STIPPLE_REPEAT: return state.stippleRepeat;
    default: return 0;
  }
}

}  // namespace
}  // namespace vblur::test::gl

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
using namespace vblur::test::gl;  // NOLINT(google-build-using-namespace): the names below are OpenGL's

extern "C" {

void glPushAttrib(GLbitfield mask) {
  call("glPushAttrib", nameOf(mask, kAttributes));
  recorder().attributes.push_back({mask, recorder().state});
}

void glPopAttrib() {
  call("glPopAttrib");
  if (recorder().attributes.empty()) return;
  restore(recorder().attributes.back());
  recorder().attributes.pop_back();
}

void glShadeModel(GLenum mode) {
  call("glShadeModel", nameOf(mode));
}

void glClearColor(GLclampf red, GLclampf green, GLclampf blue, GLclampf alpha) {
  call("glClearColor", red, green, blue, alpha);
}

void glEnable(GLenum capability) {
  call("glEnable", nameOf(capability));
  recorder().state.enabled.insert(capability);
}

void glDisable(GLenum capability) {
  call("glDisable", nameOf(capability));
  recorder().state.enabled.erase(capability);
}

GLboolean glIsEnabled(GLenum capability) {
  const bool enabled = recorder().state.enabled.count(capability) != 0;
  return static_cast<GLboolean>(answer("glIsEnabled", enabled ? 1 : 0, nameOf(capability)));
}

void glGetIntegerv(GLenum name, GLint* values) {
  *values = valueOf(name);
  const bool isFactor = name == GL_BLEND_SRC || name == GL_BLEND_DST;
  const auto value = static_cast<GLenum>(*values);
  std::string shown = textOf(*values);
  if (isFactor) shown = nameOf(value, kBlendFactors);
  if (name == GL_LINE_STIPPLE_PATTERN) shown = textOf(Bits{value});
  answer("glGetIntegerv", shown, nameOf(name));
}

void glBlendFunc(GLenum source, GLenum destination) {
  call("glBlendFunc", nameOf(source, kBlendFactors), nameOf(destination, kBlendFactors));
  recorder().state.blendSource = static_cast<GLint>(source);
  recorder().state.blendDestination = static_cast<GLint>(destination);
}

void glLineStipple(GLint repeat, GLushort pattern) {
  call("glLineStipple", repeat, Bits{pattern});
  recorder().state.stippleRepeat = repeat;
  recorder().state.stipplePattern = pattern;
}

void glLineWidth(GLfloat width) {
  call("glLineWidth", width);
}

void glViewport(GLint x, GLint y, GLsizei width, GLsizei height) {
  call("glViewport", x, y, width, height);
}

void glMatrixMode(GLenum mode) {
  call("glMatrixMode", nameOf(mode));
}

void glLoadIdentity() {
  call("glLoadIdentity");
}

void glOrtho(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble nearBy, GLdouble far) {
  call("glOrtho", left, right, bottom, top, nearBy, far);
}

void glScalef(GLfloat x, GLfloat y, GLfloat z) {
  call("glScalef", x, y, z);
}

void glRotatef(GLfloat angle, GLfloat x, GLfloat y, GLfloat z) {
  call("glRotatef", angle, x, y, z);
}

void glTranslatef(GLfloat x, GLfloat y, GLfloat z) {
  call("glTranslatef", x, y, z);
}

void glMultMatrixf(const GLfloat* matrix) {
  std::string elements;
  for (int i = 0; i < 16; ++i)
    elements += (i == 0 ? "" : ", ") + textOf(matrix[i]);
  call("glMultMatrixf", elements);
}

void glPushMatrix() {
  call("glPushMatrix");
  ++recorder().matrixDepth;
}

void glPopMatrix() {
  call("glPopMatrix");
  --recorder().matrixDepth;
}

void glBegin(GLenum primitive) {
  call("glBegin", nameOf(primitive, kPrimitives));
  recorder().insideBegin = true;
}

void glEnd() {
  call("glEnd");
  recorder().insideBegin = false;
}

void glVertex2f(GLfloat x, GLfloat y) {
  call("glVertex2f", x, y);
}

void glRectf(GLfloat x0, GLfloat y0, GLfloat x1, GLfloat y1) {
  call("glRectf", x0, y0, x1, y1);
}

void glColor3f(GLfloat red, GLfloat green, GLfloat blue) {
  call("glColor3f", red, green, blue);
}

void glRasterPos2f(GLfloat x, GLfloat y) {
  call("glRasterPos2f", x, y);
}

void glListBase(GLuint base) {
  call("glListBase", base);
  recorder().state.listBase = base;
}

void glCallLists(GLsizei count, GLenum type, const GLvoid* lists) {
  call("glCallLists", count, nameOf(type), quoted(lists, count));
}

GLuint glGenLists(GLsizei range) {
  const GLuint base = recorder().faults.noLists ? 0 : recorder().nextList;
  if (base != 0) recorder().nextList += static_cast<GLuint>(range);
  return answer("glGenLists", base, range);
}

void glDeleteLists(GLuint list, GLsizei range) {
  call("glDeleteLists", list, range);
}

GLenum glGetError() {
  return GL_NO_ERROR;
}

}  // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
