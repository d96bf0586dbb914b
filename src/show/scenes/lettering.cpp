#include "show/scenes/lettering.h"

#include "show/image/filters.h"
#include "show/scenes/texture.h"

void draw_text_line(Image* img, Font* font, const TextLine& line) {
    draw_text(img, font, line.x, line.y, line.glyph_width, line.glyph_height, line.tracking, line.text);
}

void make_text_glow(Image* img) {
    invert(img);
    image_rank(img, 0);
    invert(img);
    image_blur_h(img, 4, 1.0);
    image_set_alpha(img, img);
}
