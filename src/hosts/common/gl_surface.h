// The framebuffer that the show draws into instead of a window: colour without alpha, 24 bits of depth, no stencil,
// as the show asks GLUT for. It is a multiple of the picture's size. Below it stands a pyramid of further
// framebuffers, each half the size of the one before, so that what is drawn can be averaged down.
//
//     common::GlSurface surface({1024, 768}, 2);
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

    // Makes and binds a surface of `multiple` times the picture's size in the current GL context, which must have
    // framebuffer objects, and clears it with what GL's state says, from the start black and the greatest depth.
    // Reads and clears GL's error flag. Throws std::runtime_error with a line that says what this OpenGL cannot do;
    // the window's framebuffer is bound then.
    GlSurface(Extent picture, int multiple);

    // Needs the context current.
    ~GlSurface();
    GlSurface(const GlSurface&) = delete;
    GlSurface& operator=(const GlSurface&) = delete;

    int multiple() const { return multiple_; }

    // Takes over the picture and the depths of another surface of the same picture. bind() follows.
    void copy_from(const GlSurface& other) const;

    // From here on GL draws to the surface and reads from it.
    void bind() const;

    // Halves the picture, averaging 2x2 pixels, as often as the result is at least `least` in both directions and a
    // level for it exists. Leaves the level that holds the result bound for reading and returns it; bind() follows
    // before anything is drawn again. Changes no other GL state. Not while a display list is compiled.
    const Level& average_down_to(Extent least) const;

    // The same down to exactly the picture's size; where halving does not meet it, the last step is a linear filter.
    void average_down_to_picture() const;

private:
    void add_level(Extent size);
    void release();

    Extent picture_;
    int multiple_;
    std::vector<Level>
        levels_; // the surface, then each half the size of the one before; then the picture's size, if
                 // it is not among them
    std::size_t halves_ = 0; // how many of them halve
};

} // namespace common
