// Running the show's frames without drawing them, and knowing what the picture of a drawn frame is made of.
//
// In a skipped frame every GL call is still made and leaves GL as in a frame that is drawn: matrices, lights,
// bindings, the current colour, normal and texture coordinate that the next frame may inherit, even the error
// flag. Only pixels are not touched. A copy from the frame buffer gives the texture its size, and no picture.
//
// Followed are immediate mode, display lists, clears and copies to textures: all that the show draws with.
#pragma once

#include "hosts/offscreen/picture_origin.h"

// Frame `frame`, or kLoadingFrame, begins. It is drawn, or skipped.
void begin_gl_frame(std::int64_t frame, bool drawn);

// What the picture in the frame buffer is made of at this point.
const PictureOrigin& picture_origin();

// A rectangle of the frame buffer, `whole` the whole image, is copied into the bound texture.
void note_copy_to_texture(bool whole);
