// Lines of text in images: TrueType fonts, white letters.
//
//     Font* font = font_load("./Vera.ttf");
//     draw_text(img, font, 10, 660, 20, 20, -12, "Zwei Bier, bitte.");
//     font_free(font);
//
// Strings are Latin-1: every byte is one character, by its code. There is no layout: no kerning, no line
// breaks, and a control character is a glyph like any other. Nothing here reports an error but by null; a
// font that is null or has no face draws nothing.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

struct Image;

struct Font {
    FT_Face face; // null when there is none
};

// The one FreeType library, made by the first font_load and never destroyed, and whether it has been made.
extern FT_Library g_ft_library;
extern int g_ft_ready;

// Opens the first face of a font file. The caller frees the font. Null when the file is missing or no font,
// or without memory.
Font* font_load(const char* path);

// Closes the font's face and opens another file's first face in its place; font_load must have succeeded
// before. Where the file cannot be opened the font is left without a face: it draws nothing, and whoever
// wants something else to be drawn opens that next. A null font is ignored.
void font_reopen(Font* font, const char* path);

// Closes the face and frees the record. Null is ignored.
void font_free(Font* font);

// Draws one line of text into the colour planes (or the grey plane) of an image; alpha is not touched.
//
// x, y              where the pen starts: pixels from the left edge, and the row of the baseline from the top
// glyph_w, glyph_h  width and height of the em square in pixels; unequal ones stretch the glyphs; where one
//                   is 0 it takes the other's value
// tracking          makes every advance wider by tracking / 256 of itself; -256 keeps the pen where it is
//
// Glyphs that start left of or above the image are moved in, not cut. They are cut at the right edge. One
// that reaches past the lower edge is cut at the row whose number is the image's width, as if the image were
// square; meant, all images with text are square or end well below it. Nothing is ever written outside of the
// planes. Characters that the font cannot load are skipped without an advance.
//
// Nothing happens when img, font, its face or text is null, or the font cannot have the size.
void draw_text(Image* img, Font* font, int x, int y, int glyph_w, int glyph_h, int tracking,
               const char* text);
