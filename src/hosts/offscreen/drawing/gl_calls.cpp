// Each function defined here under its GL name stands in the program itself and so comes before the GL library's, for
// the show and for GLU. Each does its part and calls the library's own.
//
//     glCopyTexImage2D, glCopyTexSubImage2D            the texture depends on the picture so far
//     glNewList, glEndList, glCallList, glCallLists    which lists bind textures; drawing
//     glBindTexture                                    inside a list: the list binds textures
//     glBegin                                          drawing, with the bound texture
//     glClear                                          the picture is this frame's own from here on
#define GL_GLEXT_PROTOTYPES
#include "hosts/offscreen/drawing/gl_calls.h"

#include <GL/gl.h>
#include <GL/glext.h>
#include <dlfcn.h>

#include <set>

#include "hosts/common/gl_skip.h"

namespace offscreen {

namespace {

// The library's function of that name.
template <typename Function>
Function* library_function(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
#define LIBRARY_GL(name) decltype(::name)* const library_##name = library_function<decltype(::name)>(#name)

LIBRARY_GL(glCopyTexImage2D);
LIBRARY_GL(glCopyTexSubImage2D);
LIBRARY_GL(glNewList);
LIBRARY_GL(glEndList);
LIBRARY_GL(glCallList);
LIBRARY_GL(glCallLists);
LIBRARY_GL(glBindTexture);
LIBRARY_GL(glBegin);
LIBRARY_GL(glClear);

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

// Records that `list` is drawn. A list may enable texturing itself, so a bound texture counts as sampled.
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

void begin_gl_frame(bool drawn) {
    g_origin.begin_frame(drawn);
    common::skip_drawing(!drawn);
}

const PictureOrigin& picture_origin() { return g_origin; }

} // namespace offscreen

using namespace offscreen;

extern "C" {

void GLAPIENTRY glCopyTexImage2D(GLenum target, GLint level, GLenum format, GLint x, GLint y, GLsizei width,
                                 GLsizei height, GLint border) {
    if (level == 0) {
        g_origin.copied_whole(bound_texture());
    } else {
        g_origin.copied_part(bound_texture());
    }
    library_glCopyTexImage2D(target, level, format, x, y, width, height, border);
}

void GLAPIENTRY glCopyTexSubImage2D(GLenum target, GLint level, GLint to_x, GLint to_y, GLint x, GLint y,
                                    GLsizei width, GLsizei height) {
    g_origin.copied_part(bound_texture());
    library_glCopyTexSubImage2D(target, level, to_x, to_y, x, y, width, height);
}

void GLAPIENTRY glNewList(GLuint list, GLenum mode) {
    g_compiling = mode == GL_COMPILE;
    g_list = list;
    g_binding_lists.erase(list);
    library_glNewList(list, mode);
}

void GLAPIENTRY glEndList(void) {
    g_compiling = false;
    g_list = 0;
    library_glEndList();
}

void GLAPIENTRY glCallList(GLuint list) {
    note_list(list);
    library_glCallList(list);
}

// Which lists these are depends on the type and the base: any of them may sample any texture.
void GLAPIENTRY glCallLists(GLsizei count, GLenum type, const GLvoid* lists) {
    g_origin.drew();
    g_origin.sampled_any();
    library_glCallLists(count, type, lists);
}

void GLAPIENTRY glBindTexture(GLenum target, GLuint texture) {
    if (g_list != 0) g_binding_lists.insert(g_list);
    library_glBindTexture(target, texture);
}

void GLAPIENTRY glBegin(GLenum mode) {
    if (!g_compiling) {
        g_origin.drew();
        if (g_origin.any_copies() && glIsEnabled(GL_TEXTURE_2D)) g_origin.sampled(bound_texture());
    }
    library_glBegin(mode);
}

void GLAPIENTRY glClear(GLbitfield buffers) {
    if (!g_compiling && !glIsEnabled(GL_SCISSOR_TEST)) {
        if ((buffers & GL_COLOR_BUFFER_BIT) && writes_color()) g_origin.cleared_color();
        if ((buffers & GL_DEPTH_BUFFER_BIT) && writes_depth()) g_origin.cleared_depth();
    }
    library_glClear(buffers);
}

} // extern "C"
