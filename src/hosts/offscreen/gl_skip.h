// Running the show's frames without drawing them. Every GL call is made and leaves its state as in a frame
// that is drawn (matrices, lights, bindings, the current colour, normal and texture coordinate); only pixels
// are not touched.
#pragma once

// From now on frames are skipped (true) or drawn (false).
void set_gl_skip(bool skip);
