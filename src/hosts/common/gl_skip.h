// Running frames without drawing them.
#pragma once

namespace common {

// From here on frames are skipped, or drawn again. In a skipped frame every GL call is still made and leaves GL as a
// drawn frame does: matrices, lights, bindings, the current colour, normal and texture coordinate that the next frame
// may inherit, even the error flag. Only pixels are not written. A copy from the framebuffer gives the texture its
// size, but no picture.
//
// Needs OpenGL 3.0; without it everything is drawn, which only takes longer. Not while a display list is compiled.
void skip_drawing(bool skip);

} // namespace common
