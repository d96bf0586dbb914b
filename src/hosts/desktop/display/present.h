// The surface that the show draws into, and how it comes to the window.
#pragma once

#include <memory>

#include "hosts/common/gl_surface.h"
#include "hosts/desktop/display/sharpness.h"

namespace desktop {

class Presenter {
public:
    // Makes the surface for a window of that size and has the show draw into it. Where OpenGL cannot make it so
    // large the multiple is smaller. Throws std::runtime_error with a line that says what this OpenGL cannot do.
    // GL's state is that of a new context.
    Presenter(Sharpness sharpness, common::Extent window);

    // Draws the surface to its place in the back buffer of the window, which has the given size, with black around
    // it. Enlarged it is filtered linearly; at half its size or less it is first halved by averaging 2x2
    // pixels as often as possible, so that no pixel is left out. Leaves the window's framebuffer bound; end() follows
    // once the buffers are swapped.
    void draw_to_window(common::Extent window) const;

    // The show goes on drawing: into the surface that a window of that size needs. If that is a new one the picture
    // goes over into it.
    void end(common::Extent window);

    // Neither of the two changes GL state that the show can see, nor its error flag. Not while a display list is
    // compiled.

    // At which multiple the show is drawn.
    int multiple() const { return surface_->multiple(); }

private:
    std::unique_ptr<common::GlSurface> make_surface(common::Extent window);
    void change_surface(common::Extent window);

    Sharpness sharpness_;
    int largest_; // multiple that OpenGL has not refused
    std::unique_ptr<common::GlSurface> surface_;
};

} // namespace desktop
