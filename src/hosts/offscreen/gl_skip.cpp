#include "hosts/offscreen/gl_skip.h"

#include <set>

#include "hosts/offscreen/gl_next.h"

namespace {

SKAV_NEXT_GL(glNewList);
SKAV_NEXT_GL(glEndList);
SKAV_NEXT_GL(glCallList);
SKAV_NEXT_GL(glCallLists);
SKAV_NEXT_GL(glBindTexture);
SKAV_NEXT_GL(glBegin);
SKAV_NEXT_GL(glClear);

bool g_skip = false;
bool g_compiling = false;         // a display list, without executing it
GLuint g_list = 0;                // the one being compiled
std::set<GLuint> g_binding_lists; // lists that bind textures of their own
PictureOrigin g_origin;

unsigned bound_texture() {
    GLint texture = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &texture);
    return static_cast<unsigned>(texture);
}

bool writes_color() {
    GLboolean mask[4];
    glGetBooleanv(GL_COLOR_WRITEMASK, mask);
    return mask[0] && mask[1] && mask[2] && mask[3];
}

bool writes_depth() {
    GLboolean mask;
    glGetBooleanv(GL_DEPTH_WRITEMASK, &mask);
    return mask;
}

// Inside a list the capability may change: there a copied texture that is bound counts as used.
void note_list(GLuint list) {
    if (g_compiling) {
        if (g_binding_lists.count(list) != 0) g_binding_lists.insert(g_list);
        return;
    }
    g_origin.drew();
    if (!g_origin.any_copies()) return;
    if (g_binding_lists.count(list) != 0) {
        g_origin.sampled_any();
    } else {
        g_origin.sampled(bound_texture());
    }
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

void begin_gl_frame(std::int64_t frame, bool drawn) {
    g_origin.begin_frame(frame, drawn);
    if (g_skip == !drawn) return;
    g_skip = !drawn;
    // A condition that is never met. The vertices of a skipped frame still go where those of a drawn one go,
    // up to the driver: how it cuts the stream of vertices into batches depends on all that came before, and
    // the last bit of a pixel may depend on that.
    if (g_skip) {
        glBeginConditionalRender(query_without_samples(), GL_QUERY_WAIT);
    } else {
        glEndConditionalRender();
    }
}

const PictureOrigin& picture_origin() { return g_origin; }

void note_copy_to_texture(bool whole) {
    if (whole) {
        g_origin.copied_whole(bound_texture());
    } else {
        g_origin.copied_part(bound_texture());
    }
}

extern "C" {

void GLAPIENTRY glNewList(GLuint list, GLenum mode) {
    g_compiling = mode == GL_COMPILE;
    g_list = list;
    g_binding_lists.erase(list);
    next_glNewList(list, mode);
}

void GLAPIENTRY glEndList(void) {
    g_compiling = false;
    g_list = 0;
    next_glEndList();
}

void GLAPIENTRY glBindTexture(GLenum target, GLuint texture) {
    if (g_list != 0) g_binding_lists.insert(g_list);
    next_glBindTexture(target, texture);
}

void GLAPIENTRY glCallList(GLuint list) {
    note_list(list);
    next_glCallList(list);
}

// Which lists these are depends on the type and the base: taken for any.
void GLAPIENTRY glCallLists(GLsizei count, GLenum type, const GLvoid* lists) {
    g_origin.drew();
    g_origin.sampled_any();
    next_glCallLists(count, type, lists);
}

void GLAPIENTRY glBegin(GLenum mode) {
    if (!g_compiling) {
        g_origin.drew();
        if (g_origin.any_copies() && g_origin.is_copy(bound_texture()) && glIsEnabled(GL_TEXTURE_2D)) {
            g_origin.sampled(bound_texture());
        }
    }
    next_glBegin(mode);
}

void GLAPIENTRY glClear(GLbitfield buffers) {
    if (!g_compiling && !glIsEnabled(GL_SCISSOR_TEST)) {
        if ((buffers & GL_COLOR_BUFFER_BIT) && writes_color()) g_origin.cleared_color();
        if ((buffers & GL_DEPTH_BUFFER_BIT) && writes_depth()) g_origin.cleared_depth();
    }
    next_glClear(buffers);
}

} // extern "C"
