// OpenGL's error flag, what may stand between glBegin and glEnd, and the report of what the layer does not do.
#pragma once

#include <GL/gl.h>

namespace page::gl {

// Whether a glBegin waits for its glEnd.
extern bool g_in_begin;

// Sets the error flag, unless an earlier error is still in it.
void set_error(GLenum error);

// glGetError: reads and clears the flag.
GLenum take_error();

// Whether a call that must not stand between glBegin and glEnd may be executed; sets the error if not.
inline bool outside_begin() {
    if (g_in_begin) set_error(GL_INVALID_OPERATION);
    return !g_in_begin;
}

// Reports that the layer does not do this, once for every text; `what` is a constant text.
void report_missing(const char* what);

// Passes a line to whoever is told: the standard error stream, or that function.
void report(const char* line);
void report_to(void (*function)(const char* line));

void reset_errors();

} // namespace page::gl
