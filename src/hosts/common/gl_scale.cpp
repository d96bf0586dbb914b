#include "hosts/common/gl_scale.h"

#include <GL/glext.h>

// The calls as they are linked: the first is what the show calls, the second what stands behind it.
#define WRAPPED(result, name, parameters)                                                                    \
    extern "C" result GLAPIENTRY __wrap_##name parameters;                                                   \
    extern "C" result GLAPIENTRY __real_##name parameters

WRAPPED(void, glViewport, (GLint x, GLint y, GLsizei width, GLsizei height));
WRAPPED(void, glScissor, (GLint x, GLint y, GLsizei width, GLsizei height));
WRAPPED(void, glPointSize, (GLfloat size));
WRAPPED(void, glLineWidth, (GLfloat width));
WRAPPED(void, glCopyTexImage2D,
        (GLenum target, GLint level, GLenum format, GLint x, GLint y, GLsizei width, GLsizei height,
         GLint border));
WRAPPED(void, glCopyTexSubImage2D,
        (GLenum target, GLint level, GLint to_x, GLint to_y, GLint x, GLint y, GLsizei width,
         GLsizei height));
WRAPPED(void, glReadPixels,
        (GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type, GLvoid* pixels));
WRAPPED(void, glGetIntegerv, (GLenum name, GLint* values));
WRAPPED(void, glGetFloatv, (GLenum name, GLfloat* values));
WRAPPED(void, glGetDoublev, (GLenum name, GLdouble* values));
WRAPPED(GLenum, glGetError, ());

namespace common {
namespace {

const GlSurface* g_surface = nullptr; // null before draw_scaled
bool g_host_calls = false;
GLenum g_kept_error = GL_NO_ERROR;

// What the arguments of the present call are multiplied by.
int scale() { return g_surface && !g_host_calls ? g_surface->multiple() : 1; }

// How many values a query returns that are in pixels of the picture; 0 for all other queries.
int count_of_pixel_values(GLenum name) {
    switch (name) {
    case GL_VIEWPORT:
    case GL_SCISSOR_BOX:
        return 4;
    case GL_POINT_SIZE:
    case GL_LINE_WIDTH:
        return 1;
    default:
        return 0;
    }
}

// Turns what GL has answered into what the show has set.
template <typename Value>
void answer_for_show(GLenum name, Value* values) {
    if (!g_surface || g_host_calls) return;
    if (name == GL_DRAW_FRAMEBUFFER_BINDING || name == GL_READ_FRAMEBUFFER_BINDING) values[0] = 0;
    for (int i = 0; i < count_of_pixel_values(name); ++i) values[i] /= static_cast<Value>(scale());
}

// The part of GL's state that counts pixels.
struct PixelState {
    GLint viewport[4], scissor[4];
    GLfloat point_size, line_width;

    void read() {
        glGetIntegerv(GL_VIEWPORT, viewport);
        glGetIntegerv(GL_SCISSOR_BOX, scissor);
        glGetFloatv(GL_POINT_SIZE, &point_size);
        glGetFloatv(GL_LINE_WIDTH, &line_width);
    }
    void set() const {
        glViewport(viewport[0], viewport[1], viewport[2], viewport[3]);
        glScissor(scissor[0], scissor[1], scissor[2], scissor[3]);
        glPointSize(point_size);
        glLineWidth(line_width);
    }
};

} // namespace

void draw_scaled(const GlSurface& surface) {
    PixelState state;
    state.read();
    g_surface = &surface;
    state.set();
    surface.bind();
}

HostCalls::HostCalls() : outer_(g_host_calls) { g_host_calls = true; }
HostCalls::~HostCalls() { g_host_calls = outer_; }

void keep_errors_for_show() {
    const GLenum error = __real_glGetError();
    if (g_kept_error == GL_NO_ERROR) g_kept_error = error;
}

} // namespace common

using namespace common;

void GLAPIENTRY __wrap_glViewport(GLint x, GLint y, GLsizei width, GLsizei height) {
    const int n = scale();
    __real_glViewport(x * n, y * n, width * n, height * n);
}

void GLAPIENTRY __wrap_glScissor(GLint x, GLint y, GLsizei width, GLsizei height) {
    const int n = scale();
    __real_glScissor(x * n, y * n, width * n, height * n);
}

void GLAPIENTRY __wrap_glPointSize(GLfloat size) { __real_glPointSize(size * static_cast<float>(scale())); }

void GLAPIENTRY __wrap_glLineWidth(GLfloat width) { __real_glLineWidth(width * static_cast<float>(scale())); }

void GLAPIENTRY __wrap_glCopyTexImage2D(GLenum target, GLint level, GLenum format, GLint x, GLint y,
                                        GLsizei width, GLsizei height, GLint border) {
    const int n = scale();
    __real_glCopyTexImage2D(target, level, format, x * n, y * n, width * n, height * n, border);
}

void GLAPIENTRY __wrap_glCopyTexSubImage2D(GLenum target, GLint level, GLint to_x, GLint to_y, GLint x,
                                           GLint y, GLsizei width, GLsizei height) {
    const int n = scale();
    __real_glCopyTexSubImage2D(target, level, to_x * n, to_y * n, x * n, y * n, width * n, height * n);
}

void GLAPIENTRY __wrap_glReadPixels(GLint x, GLint y, GLsizei width, GLsizei height, GLenum format,
                                    GLenum type, GLvoid* pixels) {
    if (scale() == 1) return __real_glReadPixels(x, y, width, height, format, type, pixels);
    g_surface->average_down_to_picture();
    __real_glReadPixels(x, y, width, height, format, type, pixels);
    g_surface->bind();
}

void GLAPIENTRY __wrap_glGetIntegerv(GLenum name, GLint* values) {
    __real_glGetIntegerv(name, values);
    answer_for_show(name, values);
}

void GLAPIENTRY __wrap_glGetFloatv(GLenum name, GLfloat* values) {
    __real_glGetFloatv(name, values);
    answer_for_show(name, values);
}

void GLAPIENTRY __wrap_glGetDoublev(GLenum name, GLdouble* values) {
    __real_glGetDoublev(name, values);
    answer_for_show(name, values);
}

GLenum GLAPIENTRY __wrap_glGetError() {
    if (g_host_calls || g_kept_error == GL_NO_ERROR) return __real_glGetError();
    const GLenum error = g_kept_error;
    g_kept_error = GL_NO_ERROR;
    return error;
}
