#include "hosts/offscreen/caption.h"

#include <ft2build.h>

#include "hosts/offscreen/failure.h"
#include FT_FREETYPE_H

#include <algorithm>

struct Caption::Face {
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    ~Face() {
        if (face) FT_Done_Face(face);
        if (library) FT_Done_FreeType(library);
    }
};

Caption::Caption(const std::string& font, int size) : face_(std::make_unique<Face>()) {
    const bool open = FT_Init_FreeType(&face_->library) == 0 &&
                      FT_New_Face(face_->library, font.c_str(), 0, &face_->face) == 0 &&
                      FT_Set_Pixel_Sizes(face_->face, 0, static_cast<FT_UInt>(size)) == 0;
    if (!open) throw Failure("cannot use the font " + font);
}

Caption::~Caption() = default;

void Caption::draw(Picture& picture, int x, int y, int width, const std::string& text, int level) {
    const int end = std::min(x + width, picture.width);
    for (char letter : text) {
        if (FT_Load_Char(face_->face, static_cast<unsigned char>(letter), FT_LOAD_RENDER) != 0) continue;
        const FT_GlyphSlot glyph = face_->face->glyph;
        const int advance = static_cast<int>(glyph->advance.x >> 6);
        if (x + advance > end) return;
        for (unsigned row = 0; row < glyph->bitmap.rows; ++row) {
            const int to_y = y - glyph->bitmap_top + static_cast<int>(row);
            if (to_y < 0 || to_y >= picture.height) continue;
            const unsigned char* from = glyph->bitmap.buffer + static_cast<int>(row) * glyph->bitmap.pitch;
            for (unsigned column = 0; column < glyph->bitmap.width; ++column) {
                const int to_x = x + glyph->bitmap_left + static_cast<int>(column);
                if (to_x < 0 || to_x >= end) continue;
                std::uint8_t* pixel = picture.row(to_y) + 4 * to_x;
                for (int i = 0; i < 3; ++i) {
                    pixel[i] = static_cast<std::uint8_t>(pixel[i] + (level - pixel[i]) * from[column] / 255);
                }
            }
        }
        x += advance;
    }
}
