// The show drawn at a multiple of its size. It draws for 1024x768 pixels. Its calls that count pixels are passed on
// multiplied, so that geometry, text and textures copied from the screen come out sharp; what it asks GL for is in its
// own pixels. The linker's --wrap (CMakeLists.txt) leads these calls here first, for all that is linked into the
// program:
//
//     glViewport, glScissor, glPointSize, glLineWidth    multiplied
//     glCopyTexImage2D, glCopyTexSubImage2D              multiplied: the texture is as sharp as the picture
//     glReadPixels                                       of the picture averaged down to its size: colours, and not
//                                                        while a display list is compiled
//     glGetIntegerv, glGetFloatv, glGetDoublev           divided, for what is multiplied above; for the framebuffer
//                                                        that is bound 0, the window's, which the show knows alone
//     glGetError                                         also returns errors kept by keep_errors_for_show
//
// The multiple may change between frames. Not followed then: multiplied calls that a display list or an attribute
// stack holds from before, and copies into a part of a texture that was copied before.
#pragma once

#include "hosts/common/gl_surface.h"

namespace common {

// From here on the show draws into `surface`, which has to outlive the drawing: it is bound, and viewport, scissor
// box, point size and line width become those that the show has set, times the surface's multiple. Not while a
// display list is compiled.
void draw_scaled(const GlSurface& surface);

// While one lives, calls are the host's own: passed on as they are.
class HostCalls {
public:
    HostCalls();
    ~HostCalls();
    HostCalls(const HostCalls&) = delete;
    HostCalls& operator=(const HostCalls&) = delete;

private:
    bool outer_;
};

// Takes GL's error flag, so that the host can check calls of its own. The show's next glGetError returns it.
void keep_errors_for_show();

} // namespace common
