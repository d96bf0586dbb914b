// 8-bit RGB pictures, and reading and writing their files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgb; // width x height pixels of red, green, blue; row 0 on top
};

// Reads a PNG, or a binary PPM (P6) of 8 bits. Transparent parts of a PNG are shown on white.
// Throws std::runtime_error, with the path and the reason, for a file that cannot be read, is neither of the
// two, or is larger than `max_side` pixels in a direction.
Picture read_picture(const std::string& path, int max_side);

// Writes a PNG. Throws std::runtime_error with the path and the reason.
void write_png(const std::string& path, const Picture& picture);

// Decodes a packed picture. Throws std::runtime_error when the bytes do not hold a whole one.
Picture decode_picture(const std::vector<std::uint8_t>& packed);

// Peak signal-to-noise ratio over all three channels, in decibels; infinite for equal pictures. Both have the
// same size.
double psnr(const Picture& a, const Picture& b);
