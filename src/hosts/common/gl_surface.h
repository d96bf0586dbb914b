// The framebuffer that the show draws into instead of a window: colour without alpha, 24 bits of depth, no stencil,
// as the show asks GLUT for. Below it stands a pyramid of further framebuffers, each half the size of the one
// before, so that a picture drawn at a multiple of its size can be averaged down to it.
//
//     common::GlSurface surface({2 * 1024, 2 * 768}, {1024, 768});
//     surface.bind();                                        // the show draws 2048x1536 pixels
//     surface.average_down_to({1024, 768});                  // each pixel the mean of four
//     glReadPixels(0, 0, 1024, 768, ...);
//     surface.bind();                                        // the next frame
#pragma once

#include <GL/gl.h>

#include <vector>

#include "hosts/common/geometry.h"

namespace common {

// Whether `list`, an extension string of GL, GLX or EGL (names separated by spaces; null: empty), holds `name`.
bool lists_extension(const char* list, const char* name);

// Whether the current GL context has framebuffer objects: OpenGL 3.0, or GL_ARB_framebuffer_object.
bool has_framebuffer_objects();

class GlSurface {
public:
    struct Level {
        Extent size;
        GLuint framebuffer;
        GLuint color, depth; // renderbuffers; depth is 0 below the first level
    };

    // Makes and binds a surface of that size, cleared to black and to the greatest depth, in the current GL context,
    // which must have framebuffer objects. Levels are added for as long as both sizes are even and their halves at
    // least `smallest`. To be called before the show makes its first GL call: GL's error flags are read. Throws
    // std::runtime_error with a line that says what this OpenGL cannot do.
    GlSurface(Extent size, Extent smallest);

    // Needs the context current.
    ~GlSurface();
    GlSurface(const GlSurface&) = delete;
    GlSurface& operator=(const GlSurface&) = delete;

    // From here on GL draws to the surface and reads from it.
    void bind() const;

    // Halves the picture, averaging 2x2 pixels, as often as the result is at least `least` in both directions and a
    // level for it exists. Leaves the level that holds the result bound for reading and returns it; bind() follows
    // before anything is drawn again. Changes no other GL state. Not while a display list is compiled.
    const Level& average_down_to(Extent least) const;

private:
    void add_level(Extent size);
    void release();

    std::vector<Level> levels_; // the surface, then each half the size of the one before
};

} // namespace common
