// The black bars above and below a scene's picture.
#pragma once

// The rows of the whole window and of the picture between the bars.
void set_full_viewport();
void set_picture_viewport();

// The two bars in the window's viewport, with blending, lighting and depth writes off, inside a begin_2d that
// is left open. Texturing stays as it is.
void begin_letterbox();

// Switches blending, lighting and depth writes on again, but leaves the overlay and the viewport.
void restore_after_letterbox();

// The bars from start to end: enters with any state, leaves blending, lighting and depth writes on, texturing
// as it was, and the viewport of the picture.
void draw_letterbox();
