// Pictures as tests read, write and compare them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// An 8-bit RGB picture, top row first.
struct Rgb {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
    const std::uint8_t* at(int x, int y) const {
        return &pixels[3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                            static_cast<std::size_t>(x))];
    }
};
bool operator==(const Rgb& a, const Rgb& b);

// Both fail the test where the file cannot be read or written.
Rgb read_png(const std::string& path);
void write_png_file(const Rgb& picture, const std::string& path);

// Each square of `factor` pixels becomes its mean.
Rgb reduced(const Rgb& picture, int factor);

// Cuts a stream of raw pictures of 1024x768 into its pictures.
std::vector<std::string> raw_pictures(const std::string& stream);
Rgb raw_picture(const std::string& bytes);
