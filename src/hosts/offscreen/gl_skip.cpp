#include "hosts/offscreen/gl_skip.h"

#include "hosts/offscreen/gl_next.h"

#include <set>

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
bool g_drop_vertices = false;     // g_skip, but for lists being compiled
PictureOrigin g_origin;

void update_drop() { g_drop_vertices = g_skip && !g_compiling; }

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

} // namespace

void begin_gl_frame(std::int64_t frame, bool drawn) {
    g_origin.begin_frame(frame, drawn);
    g_skip = !drawn;
    update_drop();
    // Drops primitives and clears, also those of display lists, and leaves everything else as it is.
    if (g_skip) {
        glEnable(GL_RASTERIZER_DISCARD);
    } else {
        glDisable(GL_RASTERIZER_DISCARD);
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
    update_drop();
    next_glNewList(list, mode);
}

void GLAPIENTRY glEndList(void) {
    g_compiling = false;
    g_list = 0;
    update_drop();
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

// Every form of glVertex.
#define SKAV_VERTEX(name, parameters, arguments)                                                             \
    void GLAPIENTRY name parameters {                                                                        \
        SKAV_NEXT_GL(name);                                                                                  \
        if (!g_drop_vertices) next_##name arguments;                                                         \
    }
#define SKAV_VERTICES(suffix, type)                                                                          \
    SKAV_VERTEX(glVertex2##suffix, (type x, type y), (x, y))                                                 \
    SKAV_VERTEX(glVertex3##suffix, (type x, type y, type z), (x, y, z))                                      \
    SKAV_VERTEX(glVertex4##suffix, (type x, type y, type z, type w), (x, y, z, w))                           \
    SKAV_VERTEX(glVertex2##suffix##v, (const type* v), (v))                                                  \
    SKAV_VERTEX(glVertex3##suffix##v, (const type* v), (v))                                                  \
    SKAV_VERTEX(glVertex4##suffix##v, (const type* v), (v))

SKAV_VERTICES(s, GLshort)
SKAV_VERTICES(i, GLint)
SKAV_VERTICES(f, GLfloat)
SKAV_VERTICES(d, GLdouble)

} // extern "C"
