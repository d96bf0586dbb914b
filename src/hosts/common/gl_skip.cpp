#define GL_GLEXT_PROTOTYPES
#include "hosts/common/gl_skip.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <cstdlib>

namespace common {

namespace {

bool g_skip = false;

bool can_skip() {
    static const bool can = [] {
        const GLubyte* version = glGetString(GL_VERSION);
        return version && std::atoi(reinterpret_cast<const char*>(version)) >= 3;
    }();
    return can;
}

// A query that has counted no samples.
GLuint query_without_samples() {
    static GLuint query = 0;
    if (query == 0) {
        glGenQueries(1, &query);
        glBeginQuery(GL_SAMPLES_PASSED, query);
        glEndQuery(GL_SAMPLES_PASSED);
    }
    return query;
}

} // namespace

void skip_drawing(bool skip) {
    if (g_skip == skip || !can_skip()) return;
    g_skip = skip;
    // Rendering under a condition that is never met. Vertices still go all the way to the driver: how it cuts their
    // stream into batches depends on everything before, and the last bit of a pixel may depend on that.
    if (g_skip) {
        glBeginConditionalRender(query_without_samples(), GL_QUERY_WAIT);
    } else {
        glEndConditionalRender();
    }
}

} // namespace common
