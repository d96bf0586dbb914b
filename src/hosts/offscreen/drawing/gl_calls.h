// The GL calls that this host intercepts to follow whether a picture shows something of a skipped frame; gl_calls.cpp
// lists them. Frames are skipped by hosts/common/gl_skip.h. What hosts/common/gl_scale.h multiplies arrives here
// multiplied.
//
// Immediate mode, display lists, clears and copies to textures are followed: all that the show draws with.
#pragma once

#include "hosts/offscreen/drawing/picture_origin.h"

namespace offscreen {

// A frame begins: it is drawn, or skipped.
void begin_gl_frame(bool drawn);

// What the picture in the framebuffer depends on at this point.
const PictureOrigin& picture_origin();

} // namespace offscreen
