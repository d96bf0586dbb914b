// The picture of the text screen, which the scroller fades out.
#pragma once

extern unsigned tex_panel; // white text on transparent black; made by text_screen_prepare, never freed

// The two quads of the picture, in overlay units: a flat backdrop wider than the screen, and the text panel. The
// caller shifts both 100 units to the left.
void draw_backdrop_quad();
void draw_panel_quad();
