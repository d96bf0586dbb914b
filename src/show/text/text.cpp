#include "show/text/text.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "show/image/image.h"

FT_Library g_ft_library = nullptr;
int g_ft_ready = 0;

namespace {

// Where a glyph is drawn: its top-left pixel, and the columns and rows of its bitmap that are drawn (none unless both
// are positive). 64 bits wide, so that positions far outside the image do not wrap.
struct Placement {
    std::int64_t x;
    std::int64_t y;
    std::int64_t w;
    std::int64_t h;
};

// Places a rendered glyph at the pen, and cuts it at the image's edges.
Placement place_glyph(const Image* img, const FT_GlyphSlot glyph, double pen_x, int baseline) {
    const std::int64_t width = glyph->bitmap.width;
    const std::int64_t rows = glyph->bitmap.rows;

    Placement place;
    const double left = glyph->metrics.horiBearingX / 64.0 + pen_x;
    place.x = static_cast<std::int64_t>(std::clamp(left, 0.0, 4294967296.0));
    place.y = std::max<std::int64_t>(0, std::int64_t{baseline} - (glyph->metrics.horiBearingY >> 6));
    place.w = width;
    if (img->width < place.x + place.w) place.w = img->width - place.x;
    place.h = rows;
    // The width in place of the height is intentional. The next line keeps the result inside image and bitmap.
    if (img->height < place.y + place.h) place.h = img->width - place.y;
    place.h = std::min({place.h, rows, img->height - place.y});
    return place;
}

// Blends white over a plane, by the glyph's coverage. The result is not exact (on white, full coverage gives 65279;
// no coverage takes 1/256 off); that is part of the look.
void composite(std::int32_t* plane, std::int32_t plane_width, const FT_Bitmap& bitmap,
               const Placement& place) {
    for (std::int64_t row = 0; row < place.h; ++row) {
        const unsigned char* coverage = bitmap.buffer + row * bitmap.pitch;
        std::int32_t* values = plane + (place.y + row) * plane_width + place.x;
        for (std::int64_t i = 0; i < place.w; ++i) {
            const std::int32_t c = coverage[i];
            values[i] = c * 257 + (((255 - c - (c >> 7)) * values[i]) >> 8);
        }
    }
}

// Draws a rendered glyph into the colour planes.
void draw_glyph(Image* img, const FT_GlyphSlot glyph, double pen_x, int baseline) {
    // A bitmap font may deliver other pixel formats, whose rows are not coverage bytes.
    if (glyph->bitmap.pixel_mode != FT_PIXEL_MODE_GRAY || glyph->bitmap.pitch < 0) return;
    const Placement place = place_glyph(img, glyph, pen_x, baseline);
    if (place.w <= 0 || place.h <= 0) return;
    composite(img->green, img->width, glyph->bitmap, place);
    if (!image_has_three_planes(img)) return;
    composite(img->red, img->width, glyph->bitmap, place);
    composite(img->blue, img->width, glyph->bitmap, place);
}

} // namespace

Font* font_load(const char* path) {
    Font* font = static_cast<Font*>(std::calloc(1, sizeof(Font)));
    if (!font) return nullptr;
    if (!g_ft_ready) {
        if (FT_Init_FreeType(&g_ft_library) != 0) {
            std::free(font);
            return nullptr;
        }
        g_ft_ready = 1;
    }
    if (FT_New_Face(g_ft_library, path, 0, &font->face) != 0) {
        std::free(font);
        return nullptr;
    }
    return font;
}

void font_reopen(Font* font, const char* path) {
    if (!font) return;
    if (font->face) FT_Done_Face(font->face);
    font->face = nullptr; // FreeType does not write it when it fails
    FT_New_Face(g_ft_library, path, 0, &font->face);
}

void font_free(Font* font) {
    if (!font) return;
    if (font->face) FT_Done_Face(font->face);
    std::free(font);
}

void draw_text(Image* img, Font* font, int x, int y, int glyph_w, int glyph_h, int tracking,
               const char* text) {
    if (!img || !font || !font->face || !text) return;
    const FT_Face face = font->face;
    if (FT_Set_Pixel_Sizes(face, static_cast<FT_UInt>(glyph_w), static_cast<FT_UInt>(glyph_h)) != 0) return;

    const double factor = tracking * (1.0 / 256) + 1.0;
    double pen_x = x;
    for (; *text; ++text) {
        if (FT_Load_Char(face, static_cast<unsigned char>(*text), FT_LOAD_RENDER) != 0) continue;
        const FT_GlyphSlot glyph = face->glyph;
        draw_glyph(img, glyph, pen_x, y);
        pen_x += glyph->advance.x * factor / 64;
    }
}
