// The packer: a picture into the packed format, with the best bits that the format allows.
//
// It works in closed loop: it predicts every block from what the decoder will have decoded, by the decoder's
// own code, and weighs what a choice does to the blocks that come after by carrying the best few beginnings
// along.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tools/pack/picture.h"

constexpr int kMaxPackedSide = 1020; // pixels: 255 blocks

struct PackOptions {
    int quant = 20;      // 1 (nearly lossless) .. 255
    double lambda = 0.0; // squared error that one bit is worth; 0 stands for what suits the quantiser
};

struct PackedPicture {
    std::vector<std::uint8_t> bytes;
    std::size_t bits; // of the stream, without the padding of its last byte
};

// What one bit is worth at a quantiser, in squared levels, when nothing else is asked for.
double default_lambda(int quant);

// Packs a picture. Throws std::runtime_error when a side is not a multiple of 4 pixels in 4..1020, or when an
// option is out of its range. A side that is a multiple of 4 but not of 8 is possible; where it is the
// height, the format has no colour for the lowest four rows.
PackedPicture pack_picture(const Picture& picture, const PackOptions& options);
