// Lines of text on a scene's texture.
#pragma once

#include "show/image/image.h"
#include "show/text/text.h"

// The arguments of draw_text.
struct TextLine {
    int x, y;                      // pen start and baseline, pixels
    int glyph_width, glyph_height; // pixels per em; unequal values stretch the letters
    int tracking;                  // 1/256 of every advance
    const char* text;              // Latin-1
};

void draw_text_line(Image* img, Font* font, const TextLine& line);

// Makes white text on black a pixel bolder, blurs it along the rows and copies the result to alpha.
void make_text_glow(Image* img);
