// The OpenGL functions that the overlay calls. Without the system's libraries they draw nothing and return zeros.
#include <GL/gl.h>
#include <GL/glu.h>

#include "sdk/opengl/SystemFunction.h"

// NOLINTBEGIN(bugprone-macro-parentheses): types, and lists with parentheses of their own.
// Defines an OpenGL function that calls the one of the same name in a library of the system.
#define VBLUR_FORWARD(library, Result, name, parameters, arguments)                                        \
  extern "C" Result GLAPIENTRY name parameters {                                                           \
    using vblur::GlLibrary;                                                                                \
    using Answer = Result;                                                                                 \
    static const auto function = reinterpret_cast<decltype(&name)>(vblur::FindGlFunction(library, #name)); \
    return function == nullptr ? Answer() : function arguments;                                            \
  }
#define VBLUR_GL(Result, name, parameters, arguments) \
  VBLUR_FORWARD(GlLibrary::OpenGl, Result, name, parameters, arguments)
#define VBLUR_GLU(Result, name, parameters, arguments) \
  VBLUR_FORWARD(GlLibrary::Glu, Result, name, parameters, arguments)
// NOLINTEND(bugprone-macro-parentheses)

VBLUR_GL(void, glBegin, (GLenum mode), (mode))
VBLUR_GL(void, glBlendFunc, (GLenum source, GLenum destination), (source, destination))
VBLUR_GL(void, glCallLists, (GLsizei count, GLenum type, const GLvoid* lists), (count, type, lists))
VBLUR_GL(void, glClearColor, (GLclampf red, GLclampf green, GLclampf blue, GLclampf alpha), (red, green, blue, alpha))
VBLUR_GL(void, glColor3f, (GLfloat red, GLfloat green, GLfloat blue), (red, green, blue))
VBLUR_GL(void, glDeleteLists, (GLuint list, GLsizei range), (list, range))
VBLUR_GL(void, glDisable, (GLenum mode), (mode))
VBLUR_GL(void, glEnable, (GLenum mode), (mode))
VBLUR_GL(void, glEnd, (), ())
VBLUR_GL(GLuint, glGenLists, (GLsizei range), (range))
VBLUR_GL(void, glGetIntegerv, (GLenum name, GLint* values), (name, values))
VBLUR_GL(GLboolean, glIsEnabled, (GLenum mode), (mode))
VBLUR_GL(void, glLineStipple, (GLint factor, GLushort pattern), (factor, pattern))
VBLUR_GL(void, glLineWidth, (GLfloat width), (width))
VBLUR_GL(void, glListBase, (GLuint base), (base))
VBLUR_GL(void, glLoadIdentity, (), ())
VBLUR_GL(void, glMultMatrixf, (const GLfloat* matrix), (matrix))
VBLUR_GL(void, glOrtho, (GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble near, GLdouble far),
         (left, right, bottom, top, near, far))
VBLUR_GL(void, glPopAttrib, (), ())
VBLUR_GL(void, glPopMatrix, (), ())
VBLUR_GL(void, glPushAttrib, (GLbitfield mask), (mask))
VBLUR_GL(void, glPushMatrix, (), ())
VBLUR_GL(void, glRasterPos2f, (GLfloat x, GLfloat y), (x, y))
VBLUR_GL(void, glRectf, (GLfloat x1, GLfloat y1, GLfloat x2, GLfloat y2), (x1, y1, x2, y2))
VBLUR_GL(void, glRotatef, (GLfloat angle, GLfloat x, GLfloat y, GLfloat z), (angle, x, y, z))
VBLUR_GL(void, glScalef, (GLfloat x, GLfloat y, GLfloat z), (x, y, z))
VBLUR_GL(void, glShadeModel, (GLenum mode), (mode))
VBLUR_GL(void, glTranslatef, (GLfloat x, GLfloat y, GLfloat z), (x, y, z))
VBLUR_GL(void, glVertex2f, (GLfloat x, GLfloat y), (x, y))
VBLUR_GL(void, glViewport, (GLint x, GLint y, GLsizei width, GLsizei height), (x, y, width, height))

VBLUR_GLU(GLUquadric*, gluNewQuadric, (), ())
VBLUR_GLU(void, gluDeleteQuadric, (GLUquadric * quadric), (quadric))
VBLUR_GLU(void, gluQuadricDrawStyle, (GLUquadric * quadric, GLenum style), (quadric, style))
VBLUR_GLU(void, gluQuadricNormals, (GLUquadric * quadric, GLenum normals), (quadric, normals))
VBLUR_GLU(void, gluDisk, (GLUquadric * quadric, GLdouble inner, GLdouble outer, GLint slices, GLint loops),
          (quadric, inner, outer, slices, loops))
VBLUR_GLU(void, gluPartialDisk,
          (GLUquadric * quadric, GLdouble inner, GLdouble outer, GLint slices, GLint loops, GLdouble start,
           GLdouble sweep),
          (quadric, inner, outer, slices, loops, start, sweep))
