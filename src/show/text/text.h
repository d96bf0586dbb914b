// Lines of text in images, in white, with TrueType fonts.
//
//     Font* font = font_load("./Vera.ttf");
//     draw_text(img, font, 10, 660, 20, 20, -12, "Zwei Bier, bitte.");
//     font_free(font);
//
// Strings are Latin-1: every byte is one character. There is no layout: no kerning, no line breaks, and a control
// character is a glyph like any other. Errors are reported only by null; a font that is null
// or has no face draws nothing.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

struct Image;

struct Font {
    FT_Face face; // null if font_reopen has failed
};

// The one FreeType library, made by the first font_load and never destroyed, and whether it has been made.
extern FT_Library g_ft_library;
extern int g_ft_ready;

// Opens the first face of a font file. The caller frees the font. Null when the file cannot be opened or is not a
// font, or without memory.
Font* font_load(const char* path);

// Closes the font's face and opens another file's first face in its place; font_load must have succeeded
// before. If the file cannot be opened, the font has no face and draws nothing until the next font_reopen. A
// null font is ignored.
void font_reopen(Font* font, const char* path);

// Closes the face and frees the record. Null is ignored.
void font_free(Font* font);

// Draws one line of text into the colour planes (or the grey plane) of an image; alpha is not touched.
//
// x, y              where the pen starts: pixels from the left edge, and the row of the baseline from the top
// glyph_w, glyph_h  width and height of the em square in pixels; unequal values stretch the glyphs. If one is 0 it
//                   takes the other's value; 0 x 0 is drawn as 1 x 1; negative or above 65535 counts as 65535
// tracking          makes every advance wider by tracking / 256 of itself; -256 keeps the pen where it is
//
// Glyphs that start left of or above the image are moved in, not cut. They are cut at the right edge. One that
// reaches past the lower edge is cut at the row whose number is the image's width, as if the image were square.
// Intentional; the show's images with text are square or end well below it. Nothing is ever written outside the
// planes. Characters that the font cannot load are skipped without an advance; a glyph whose bitmap is not 8-bit
// grey advances the pen and draws nothing. The blend of glyph and image wraps in 32 bits.
//
// Nothing happens when img, font, its face or text is null, or the font does not have the size.
void draw_text(Image* img, Font* font, int x, int y, int glyph_w, int glyph_h, int tracking,
               const char* text);
