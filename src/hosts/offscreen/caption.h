// Lines of text in a picture.
#pragma once

#include <memory>
#include <string>

#include "hosts/offscreen/picture.h"

class Caption {
public:
    // Text `size` pixels high, set in the font file `font`. Throws Failure.
    Caption(const std::string& font, int size);
    ~Caption();
    Caption(const Caption&) = delete;
    Caption& operator=(const Caption&) = delete;

    // Draws `text` in a grey of `level` (0..255) with its base line at row `y` from the top and its left end
    // at column `x`. What does not fit into `width` columns, or the picture, is left out.
    void draw(Picture& picture, int x, int y, int width, const std::string& text, int level);

private:
    struct Face;
    std::unique_ptr<Face> face_;
};
