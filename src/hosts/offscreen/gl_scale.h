// Rendering the show at a whole multiple of its size. The show draws for 1024 by 768 pixels; this host hands
// on its viewports, scissors, point sizes, line widths and copies from the frame buffer multiplied, so that
// text, geometry and the pictures within the picture come out sharp.
#pragma once

// The multiple, 1 or more. Set it before the show draws.
void set_gl_scale(int scale);
