#include "tests/support/picture.h"

#include <gtest/gtest.h>
#include <png.h>

bool operator==(const Rgb& a, const Rgb& b) {
    return a.width == b.width && a.height == b.height && a.pixels == b.pixels;
}

Rgb read_png(const std::string& path) {
    Rgb picture;
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) {
        ADD_FAILURE() << path << ": " << image.message;
        return picture;
    }
    image.format = PNG_FORMAT_RGB;
    picture.width = static_cast<int>(image.width);
    picture.height = static_cast<int>(image.height);
    picture.pixels.resize(PNG_IMAGE_SIZE(image));
    EXPECT_TRUE(png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr)) << path;
    return picture;
}

void write_png_file(const Rgb& picture, const std::string& path) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.format = PNG_FORMAT_RGB;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    EXPECT_TRUE(png_image_write_to_file(&image, path.c_str(), 0, picture.pixels.data(), 0, nullptr)) << path;
}

Rgb reduced(const Rgb& picture, int factor) {
    Rgb small;
    small.width = picture.width / factor;
    small.height = picture.height / factor;
    for (int y = 0; y < small.height; ++y) {
        for (int x = 0; x < small.width; ++x) {
            for (int i = 0; i < 3; ++i) {
                int sum = 0;
                for (int dy = 0; dy < factor; ++dy) {
                    for (int dx = 0; dx < factor; ++dx)
                        sum += picture.at(x * factor + dx, y * factor + dy)[i];
                }
                const int count = factor * factor;
                small.pixels.push_back(static_cast<std::uint8_t>((sum + count / 2) / count));
            }
        }
    }
    return small;
}

std::vector<std::string> raw_pictures(const std::string& stream) {
    constexpr std::size_t kSize = 1024 * 768 * 3;
    EXPECT_EQ(stream.size() % kSize, 0u);
    std::vector<std::string> pictures;
    for (std::size_t at = 0; at + kSize <= stream.size(); at += kSize)
        pictures.push_back(stream.substr(at, kSize));
    return pictures;
}

Rgb raw_picture(const std::string& bytes) {
    Rgb picture;
    picture.width = 1024;
    picture.height = 768;
    picture.pixels.assign(bytes.begin(), bytes.end());
    return picture;
}
