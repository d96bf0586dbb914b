// The off-screen surface that stands in for the 1024x768 screen: colour and 24 bits of depth, without alpha
// and stencil, as the show asks GLUT for. While it is bound, everything the show draws, reads back or asks
// about is this surface, at absolute pixel places.
//
// Presenting copies it into the window's back buffer, scaled with its aspect kept and black around it.
// Enlarged it is filtered linearly; at less than half its size it is first halved by averaging 2x2 pixels as
// often as possible, so that no pixel is left out. No GL state that the show can see changes, and GL's error
// flags are neither read nor set.
#pragma once

#include <GL/gl.h>

#include <memory>
#include <vector>

#include "hosts/desktop/display/geometry.h"

namespace desktop {

class Surface {
public:
    // Makes and binds a cleared surface in the current GL context, or returns null where that offers no
    // framebuffer objects (OpenGL before 3.0 without GL_ARB_framebuffer_object). To be called before the show
    // makes its first GL call. The objects live as long as the context.
    static std::unique_ptr<Surface> create();

    // Draws the surface into the back buffer of the window, which has the given size. Leaves the window's
    // framebuffer bound; bind() follows once the buffers are swapped.
    void draw_to_window(Extent window) const;

    // From here on GL draws to the surface.
    void bind() const;

private:
    struct Level {
        GLuint framebuffer;
        Extent size;
    };

    Surface() = default;
    void copy(const Level& from, GLuint to, const Box& box, GLenum filter) const;

    std::vector<Level> levels_; // the surface, then each half the size of the one before it
};

} // namespace desktop
