// Packed pictures written by hand, and a model of the transform that shares no code with the decoder.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// Bytes of a string of '0' and '1'; anything else in it is only for the eye. Padded with zero bits.
inline std::vector<std::uint8_t> bits(const std::string& text) {
    std::vector<std::uint8_t> bytes;
    int count = 0;
    for (const char c : text) {
        if (c != '0' && c != '1') continue;
        if (count % 8 == 0) bytes.push_back(0);
        if (c == '1') bytes.back() = static_cast<std::uint8_t>(bytes.back() | (128 >> (count % 8)));
        ++count;
    }
    return bytes;
}

inline std::vector<std::uint8_t> packed(int blocks_x, int blocks_y, int quant, const std::string& blocks) {
    std::vector<std::uint8_t> bytes = bits(blocks);
    bytes.insert(bytes.begin(), {static_cast<std::uint8_t>(blocks_x), static_cast<std::uint8_t>(blocks_y),
                                 static_cast<std::uint8_t>(quant)});
    return bytes;
}

// The n lowest bits of a number as text.
inline std::string binary(unsigned value, int n) {
    std::string text;
    for (int bit = n - 1; bit >= 0; --bit) text += (value >> bit) & 1u ? '1' : '0';
    return text;
}

// Raster positions along the anti-diagonals of a 4 by 4 block, to and fro, starting to the right.
inline std::array<int, 16> zigzag_walk() {
    std::array<int, 16> walk = {};
    std::size_t i = 0;
    for (int diagonal = 0; diagonal <= 6; ++diagonal)
        for (int step = 0; step <= diagonal; ++step) {
            const int y = diagonal % 2 == 1 ? step : diagonal - step;
            const int x = diagonal - y;
            if (x < 4 && y < 4) walk[i++] = 4 * y + x;
        }
    return walk;
}

// What the transform makes of levels (zigzag order): the sum of products of two basis functions. Exact where
// every level times its step is a multiple of 4, because no half is then lost.
inline std::array<double, 16> transform_model(const std::array<int, 16>& levels, int quant) {
    static constexpr double kBasis[4][4] = {
        {1, 1, 1, 1}, {1, 0.5, -0.5, -1}, {1, -1, -1, 1}, {0.5, -1, 1, -0.5}};
    const std::array<int, 16> walk = zigzag_walk();
    std::array<double, 16> block = {};
    for (std::size_t i = 0; i < 16; ++i)
        for (std::size_t at = 0; at < 16; ++at)
            block[at] += levels[i] * (quant + static_cast<int>(i)) * kBasis[walk[i] / 4][at / 4] *
                         kBasis[walk[i] % 4][at % 4];
    return block;
}
