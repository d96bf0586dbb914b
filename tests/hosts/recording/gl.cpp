// GL entry points: the log, and a small model of what GL itself would keep (names, stack depths, errors).
#include <GL/gl.h>

#include "tests/hosts/recording/record.h"

using recording::g_gl;
using recording::record;
using recording::record_array;

namespace {

constexpr int kStackLimit = 32;

int& current_depth() {
    return g_gl.matrix_mode == GL_PROJECTION ? g_gl.projection_depth : g_gl.modelview_depth;
}

// Notes an error of the call just recorded. GL keeps the first one until it is read.
void fail(GLenum error, const char* name) {
    if (g_gl.error == GL_NO_ERROR) g_gl.error = error;
    if (recording::g_logging) g_gl.errors.push_back({name, {static_cast<double>(error)}});
}

// Whether a call that must not stand between glBegin and glEnd may be executed; notes the error if not.
bool outside_begin(const char* name) {
    if (g_gl.in_begin) fail(GL_INVALID_OPERATION, name);
    return !g_gl.in_begin;
}

// Logs a call that must not stand between glBegin and glEnd.
template <class... Arguments>
bool record_outside(const char* name, Arguments... arguments) {
    record(name, arguments...);
    return outside_begin(name);
}

template <class... Arguments>
bool record_array_outside(const char* name, Arguments... arguments) {
    record_array(name, arguments...);
    return outside_begin(name);
}

bool is_capability(GLenum name) {
    switch (name) {
    case GL_DEPTH_TEST:
    case GL_LIGHTING:
    case GL_TEXTURE_2D:
    case GL_BLEND:
    case GL_CULL_FACE:
    case GL_STENCIL_TEST:
    case GL_COLOR_MATERIAL:
    case GL_NORMALIZE:
    case GL_FOG:
        return true;
    default:
        return name >= GL_LIGHT0 && name <= GL_LIGHT7;
    }
}

bool is_blend_factor(GLenum factor) {
    return factor == GL_ZERO || factor == GL_ONE ||
           (factor >= GL_SRC_COLOR && factor <= GL_SRC_ALPHA_SATURATE);
}

} // namespace

extern "C" {

GLenum glGetError() {
    record_outside(__func__);
    const GLenum error = g_gl.error;
    g_gl.error = GL_NO_ERROR;
    return error;
}

void glEnable(GLenum cap) {
    if (!record_outside(__func__, cap)) return;
    if (!is_capability(cap)) fail(GL_INVALID_ENUM, __func__);
}
void glDisable(GLenum cap) {
    if (!record_outside(__func__, cap)) return;
    if (!is_capability(cap)) fail(GL_INVALID_ENUM, __func__);
}
void glBlendFunc(GLenum sfactor, GLenum dfactor) {
    if (!record_outside(__func__, sfactor, dfactor)) return;
    if (!is_blend_factor(sfactor) || !is_blend_factor(dfactor)) fail(GL_INVALID_ENUM, __func__);
}

void glMatrixMode(GLenum mode) {
    if (record_outside(__func__, mode)) g_gl.matrix_mode = mode;
}
void glPushMatrix() {
    if (!record_outside(__func__)) return;
    if (current_depth() == kStackLimit) return fail(GL_STACK_OVERFLOW, __func__);
    ++current_depth();
}
void glPopMatrix() {
    if (!record_outside(__func__)) return;
    if (current_depth() == 1) return fail(GL_STACK_UNDERFLOW, __func__);
    --current_depth();
}
void glLoadIdentity() { record_outside(__func__); }
void glOrtho(GLdouble l, GLdouble r, GLdouble b, GLdouble t, GLdouble n, GLdouble f) {
    record_outside(__func__, l, r, b, t, n, f);
}
void glTranslated(GLdouble x, GLdouble y, GLdouble z) { record_outside(__func__, x, y, z); }
void glTranslatef(GLfloat x, GLfloat y, GLfloat z) { record_outside(__func__, x, y, z); }
void glScaled(GLdouble x, GLdouble y, GLdouble z) { record_outside(__func__, x, y, z); }
void glScalef(GLfloat x, GLfloat y, GLfloat z) { record_outside(__func__, x, y, z); }
void glRotated(GLdouble angle, GLdouble x, GLdouble y, GLdouble z) {
    record_outside(__func__, angle, x, y, z);
}
void glRotatef(GLfloat angle, GLfloat x, GLfloat y, GLfloat z) { record_outside(__func__, angle, x, y, z); }

void glBegin(GLenum mode) {
    record(__func__, mode);
    outside_begin(__func__);
    g_gl.in_begin = true;
}
void glEnd() {
    record(__func__);
    if (!g_gl.in_begin) fail(GL_INVALID_OPERATION, __func__);
    g_gl.in_begin = false;
}
void glVertex2d(GLdouble x, GLdouble y) { record(__func__, x, y); }
void glVertex2f(GLfloat x, GLfloat y) { record(__func__, x, y); }
void glVertex2i(GLint x, GLint y) { record(__func__, x, y); }
void glVertex3d(GLdouble x, GLdouble y, GLdouble z) { record(__func__, x, y, z); }
void glVertex3f(GLfloat x, GLfloat y, GLfloat z) { record(__func__, x, y, z); }
void glVertex3i(GLint x, GLint y, GLint z) { record(__func__, x, y, z); }
void glVertex3fv(const GLfloat* v) { record_array(__func__, v, 3); }
void glVertex3dv(const GLdouble* v) { record_array(__func__, v, 3); }
void glTexCoord2d(GLdouble s, GLdouble t) { record(__func__, s, t); }
void glTexCoord2f(GLfloat s, GLfloat t) { record(__func__, s, t); }
void glTexCoord2i(GLint s, GLint t) { record(__func__, s, t); }
void glNormal3d(GLdouble x, GLdouble y, GLdouble z) { record(__func__, x, y, z); }
void glNormal3f(GLfloat x, GLfloat y, GLfloat z) { record(__func__, x, y, z); }
void glColor3d(GLdouble r, GLdouble g, GLdouble b) { record(__func__, r, g, b); }
void glColor3f(GLfloat r, GLfloat g, GLfloat b) { record(__func__, r, g, b); }
void glColor4d(GLdouble r, GLdouble g, GLdouble b, GLdouble a) { record(__func__, r, g, b, a); }
void glColor4f(GLfloat r, GLfloat g, GLfloat b, GLfloat a) { record(__func__, r, g, b, a); }
void glPointSize(GLfloat size) { record_outside(__func__, size); }

void glClear(GLbitfield mask) { record_outside(__func__, mask); }
void glClearColor(GLclampf r, GLclampf g, GLclampf b, GLclampf a) { record_outside(__func__, r, g, b, a); }
void glColorMask(GLboolean r, GLboolean g, GLboolean b, GLboolean a) { record_outside(__func__, r, g, b, a); }
void glCullFace(GLenum mode) { record_outside(__func__, mode); }
void glDepthFunc(GLenum func) { record_outside(__func__, func); }
void glDepthMask(GLboolean flag) { record_outside(__func__, flag); }
void glStencilFunc(GLenum func, GLint ref, GLuint mask) { record_outside(__func__, func, ref, mask); }
void glStencilOp(GLenum fail_op, GLenum zfail, GLenum zpass) {
    record_outside(__func__, fail_op, zfail, zpass);
}
void glShadeModel(GLenum mode) { record_outside(__func__, mode); }
void glHint(GLenum target, GLenum mode) { record_outside(__func__, target, mode); }
void glViewport(GLint x, GLint y, GLsizei width, GLsizei height) {
    record_outside(__func__, x, y, width, height);
}
void glFlush() { record_outside(__func__); }

void glColorMaterial(GLenum face, GLenum mode) { record_outside(__func__, face, mode); }
void glLightModeli(GLenum pname, GLint param) { record_outside(__func__, pname, param); }
void glLightModelfv(GLenum pname, const GLfloat* params) { record_array_outside(__func__, params, 4, pname); }
void glLightfv(GLenum light, GLenum pname, const GLfloat* params) {
    record_array_outside(__func__, params, 4, light, pname);
}
void glMateriali(GLenum face, GLenum pname, GLint param) { record(__func__, face, pname, param); }
void glMaterialfv(GLenum face, GLenum pname, const GLfloat* params) {
    record_array(__func__, params, 4, face, pname);
}
void glFogi(GLenum pname, GLint param) { record_outside(__func__, pname, param); }
void glFogf(GLenum pname, GLfloat param) { record_outside(__func__, pname, param); }
void glFogfv(GLenum pname, const GLfloat* params) { record_array_outside(__func__, params, 4, pname); }

void glTexEnvf(GLenum target, GLenum pname, GLfloat param) { record_outside(__func__, target, pname, param); }
void glTexParameteri(GLenum target, GLenum pname, GLint param) {
    record_outside(__func__, target, pname, param);
}
void glTexParameterf(GLenum target, GLenum pname, GLfloat param) {
    record_outside(__func__, target, pname, param);
}
void glGenTextures(GLsizei n, GLuint* textures) {
    record_outside(__func__, n);
    for (GLsizei i = 0; i < n; ++i) textures[i] = g_gl.next_texture++;
}
void glBindTexture(GLenum target, GLuint texture) {
    if (record_outside(__func__, target, texture)) g_gl.bound_texture = texture;
}
void glCopyTexImage2D(GLenum target, GLint level, GLenum internalFormat, GLint x, GLint y, GLsizei width,
                      GLsizei height, GLint border) {
    record_outside(__func__, target, level, internalFormat, x, y, width, height, border);
}

GLuint glGenLists(GLsizei range) {
    record_outside(__func__, range);
    const GLuint first = g_gl.next_list;
    g_gl.next_list += static_cast<GLuint>(range);
    return first;
}
void glNewList(GLuint list, GLenum mode) { record_outside(__func__, list, mode); }
void glEndList() { record_outside(__func__); }
void glCallList(GLuint list) { record(__func__, list); }

} // extern "C"
