// Any line of text, at any place and size, into small images.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/support/image.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

// Takes numbers off the front of the input; zeros when it is used up.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    int byte() {
        if (size_ == 0) return 0;
        --size_;
        return *data_++;
    }

    // Mostly near the image, now and then anywhere.
    int coordinate() {
        const int kind = byte();
        if (kind >= 16) return byte() - 96;
        const unsigned word = static_cast<unsigned>(byte()) << 24 | static_cast<unsigned>(byte()) << 8;
        return static_cast<int>(word) - kind;
    }

    std::string rest() const { return std::string(data_, data_ + size_); }

private:
    const std::uint8_t* data_;
    std::size_t size_;
};

Font* font() {
    static Font* const loaded = font_load(SKAV_DATA "/Vera.ttf");
    if (!loaded) std::abort();
    return loaded;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const int width = 1 + input.byte() % 80;
    const int height = 1 + input.byte() % 80;
    const ImagePtr img(image_create(width, height, static_cast<std::uint32_t>(input.byte() % 8)));
    image_fill(img.get(), static_cast<std::uint32_t>(input.byte()) * 0x01010101u);
    const int x = input.coordinate();
    const int y = input.coordinate();
    const int glyph_w = input.byte() % 64;
    const int glyph_h = input.byte() % 64;
    const int tracking = input.coordinate() * 4;
    draw_text(img.get(), font(), x, y, glyph_w, glyph_h, tracking, input.rest().c_str());
    return 0;
}
