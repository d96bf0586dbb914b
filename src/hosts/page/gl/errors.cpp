#include "hosts/page/gl/errors.h"

#include <cstdio>
#include <cstring>

namespace page::gl {

namespace {

void print(const char* line) { std::fprintf(stderr, "%s\n", line); }

GLenum g_error = GL_NO_ERROR;
void (*g_report)(const char* line) = print;

// What has been reported. There are not more texts in the layer than this.
constexpr int kMostReported = 64;
const char* g_reported[kMostReported];
int g_reported_count = 0;

} // namespace

bool g_in_begin = false;

void set_error(GLenum error) {
    if (g_error == GL_NO_ERROR) g_error = error;
}

GLenum take_error() {
    if (!outside_begin()) return GL_NO_ERROR;
    const GLenum error = g_error;
    g_error = GL_NO_ERROR;
    return error;
}

void report_missing(const char* what) {
    for (int i = 0; i < g_reported_count; ++i) {
        if (std::strcmp(g_reported[i], what) == 0) return;
    }
    if (g_reported_count < kMostReported) g_reported[g_reported_count++] = what;
    char line[200];
    std::snprintf(line, sizeof line, "OpenGL on WebGL: %s is not done here", what);
    report(line);
}

void report(const char* line) { g_report(line); }

void report_to(void (*function)(const char* line)) { g_report = function; }

void reset_errors() {
    g_in_begin = false;
    g_error = GL_NO_ERROR;
    g_reported_count = 0;
}

} // namespace page::gl
