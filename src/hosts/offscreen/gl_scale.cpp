#include "hosts/offscreen/gl_scale.h"

#include "hosts/offscreen/gl_next.h"

namespace {

int g_scale = 1;

SKAV_NEXT_GL(glViewport);
SKAV_NEXT_GL(glScissor);
SKAV_NEXT_GL(glPointSize);
SKAV_NEXT_GL(glLineWidth);

} // namespace

void set_gl_scale(int scale) { g_scale = scale; }
int gl_scale() { return g_scale; }

extern "C" {

void GLAPIENTRY glViewport(GLint x, GLint y, GLsizei width, GLsizei height) {
    next_glViewport(x * g_scale, y * g_scale, width * g_scale, height * g_scale);
}

void GLAPIENTRY glScissor(GLint x, GLint y, GLsizei width, GLsizei height) {
    next_glScissor(x * g_scale, y * g_scale, width * g_scale, height * g_scale);
}

void GLAPIENTRY glPointSize(GLfloat size) { next_glPointSize(size * static_cast<float>(g_scale)); }

void GLAPIENTRY glLineWidth(GLfloat width) { next_glLineWidth(width * static_cast<float>(g_scale)); }

} // extern "C"
