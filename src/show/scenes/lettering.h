// Lines of text on a scene's texture: where they stand, and what makes them glow.
#pragma once

#include "show/image/image.h"
#include "show/text/text.h"

// The arguments of draw_text.
struct TextLine {
    int x, y;                      // pen start and baseline, pixels
    int glyph_width, glyph_height; // pixels per em; unequal ones stretch the letters, on purpose
    int tracking;                  // 1/256 of every advance
    const char* text;              // Latin-1
};

void draw_text_line(Image* img, Font* font, const TextLine& line);

// Makes white text on black a pixel bolder, blurs it along the rows and takes the result for alpha too.
void make_text_glow(Image* img);
