#include "hosts/offscreen/gl_scale.h"

#include "hosts/offscreen/gl_next.h"
#include "hosts/offscreen/gl_skip.h"

namespace {

int g_scale = 1;

SKAV_NEXT_GL(glViewport);
SKAV_NEXT_GL(glScissor);
SKAV_NEXT_GL(glPointSize);
SKAV_NEXT_GL(glLineWidth);
SKAV_NEXT_GL(glCopyTexImage2D);
SKAV_NEXT_GL(glCopyTexSubImage2D);

} // namespace

void set_gl_scale(int scale) { g_scale = scale; }

extern "C" {

void GLAPIENTRY glViewport(GLint x, GLint y, GLsizei width, GLsizei height) {
    next_glViewport(x * g_scale, y * g_scale, width * g_scale, height * g_scale);
}

void GLAPIENTRY glScissor(GLint x, GLint y, GLsizei width, GLsizei height) {
    next_glScissor(x * g_scale, y * g_scale, width * g_scale, height * g_scale);
}

void GLAPIENTRY glPointSize(GLfloat size) { next_glPointSize(size * static_cast<float>(g_scale)); }

void GLAPIENTRY glLineWidth(GLfloat width) { next_glLineWidth(width * static_cast<float>(g_scale)); }

void GLAPIENTRY glCopyTexImage2D(GLenum target, GLint level, GLenum format, GLint x, GLint y, GLsizei width,
                                 GLsizei height, GLint border) {
    note_copy_to_texture(level == 0);
    next_glCopyTexImage2D(target, level, format, x * g_scale, y * g_scale, width * g_scale, height * g_scale,
                          border);
}

void GLAPIENTRY glCopyTexSubImage2D(GLenum target, GLint level, GLint to_x, GLint to_y, GLint x, GLint y,
                                    GLsizei width, GLsizei height) {
    note_copy_to_texture(false);
    next_glCopyTexSubImage2D(target, level, to_x * g_scale, to_y * g_scale, x * g_scale, y * g_scale,
                             width * g_scale, height * g_scale);
}

} // extern "C"
