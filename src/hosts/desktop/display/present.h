// Showing what has been drawn off the screen in the window.
#pragma once

#include "hosts/common/gl_surface.h"

namespace desktop {

// Draws the surface into the back buffer of the window, which has the given size: scaled with its aspect kept and
// black around it. Enlarged it is filtered linearly; at less than half its size it is first halved by averaging 2x2
// pixels as often as possible, so that no pixel is left out. Leaves the window's framebuffer bound; the surface's
// bind() follows once the buffers are swapped. No GL state that the show can see changes, and GL's error flags are
// neither read nor set.
void draw_to_window(const common::GlSurface& surface, common::Extent window);

} // namespace desktop
