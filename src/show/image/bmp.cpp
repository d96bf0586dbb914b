#include "show/image/bmp.h"

#include <cstdlib>
#include <cstring>

#include "show/image/upload.h"

namespace {

constexpr std::size_t kHeaderSize = 54;

// Writes a value in the machine's own byte order; a BMP file needs little-endian.
void put_32(std::uint8_t* header, std::size_t offset, std::int32_t value) {
    std::memcpy(header + offset, &value, sizeof value);
}

void write_header(std::uint8_t* header, std::int32_t size, const Image* img) {
    std::memset(header, 0, kHeaderSize);
    header[0] = 'B';
    header[1] = 'M';
    put_32(header, 2, size);
    header[10] = kHeaderSize; // offset of the pixels
    header[14] = 40;          // size of the information header
    put_32(header, 18, img->width);
    put_32(header, 22, img->height);
    header[26] = 1;  // planes
    header[28] = 24; // bits per pixel
}

} // namespace

std::uint8_t* image_to_bmp(const Image* img, std::int32_t* size) {
    if (!img || image_count(img) > (INT32_MAX - kHeaderSize) / 3) return nullptr;
    const std::size_t bytes = image_count(img) * 3 + kHeaderSize;
    std::uint8_t* file = static_cast<std::uint8_t*>(std::malloc(bytes));
    if (!file) return nullptr;

    *size = static_cast<std::int32_t>(bytes);
    write_header(file, *size, img);
    const bool three = image_has_three_planes(img);
    const std::int32_t* const planes[3] = {three ? img->blue : img->green, img->green,
                                           three ? img->red : img->green};
    std::uint8_t* out = file + kHeaderSize;
    for (std::ptrdiff_t y = img->height - 1; y >= 0; --y) {
        for (std::ptrdiff_t i = y * img->width; i < (y + 1) * img->width; ++i) {
            for (const std::int32_t* plane : planes) *out++ = value_to_byte(plane[i]);
        }
    }
    return file;
}
