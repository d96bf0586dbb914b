// The black bars above and below a scene's picture, and the viewports with and without them.
#pragma once

// The whole screen, 1024 by 768 pixels.
void set_full_viewport();

// The picture between the bars: 614 rows, from row 76 (counted from below).
void set_picture_viewport();

// Draws both bars and restores what drawing needs: leaves blending, lighting and depth writes on, texturing as it
// was, and the viewport of the picture.
void draw_letterbox();

// The first part of draw_letterbox: draws the bars in the full viewport, with blending, lighting and depth writes
// off, in an overlay (begin_2d) that stays open. Texturing stays as it is.
void begin_letterbox();

// The second part: switches blending, lighting and depth writes on. The overlay and the viewport stay.
void restore_after_letterbox();
