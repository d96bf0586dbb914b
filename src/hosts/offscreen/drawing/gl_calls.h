// The GL calls that this host intercepts: to draw the show at a multiple of its size, and to run frames without
// drawing them. gl_calls.cpp lists them.
//
// Scaling: the show draws for 1024 by 768 pixels. Viewports, scissors, point sizes, line widths and copies from the
// framebuffer are passed on multiplied, so that text, geometry and copied textures come out sharp.
//
// Skipping: hosts/common/gl_skip.h. Followed here is whether a picture shows something of a skipped frame.
//
// Immediate mode, display lists, clears and copies to textures are followed: all that the show draws with.
#pragma once

#include "hosts/offscreen/drawing/picture_origin.h"

namespace offscreen {

// The multiple, 1 or more. Set before the show draws.
void set_gl_scale(int scale);

// glViewport in pixels, not multiplied.
void set_viewport(int width, int height);

// A frame begins: it is drawn, or skipped.
void begin_gl_frame(bool drawn);

// What the picture in the framebuffer depends on at this point.
const PictureOrigin& picture_origin();

} // namespace offscreen
