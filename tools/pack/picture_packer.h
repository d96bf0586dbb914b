// Packs pictures into the format of show/stage/packed_picture.h.
//
// The packer works in a closed loop: it predicts every block from decoded samples, with the decoder's own code. A
// choice also affects the prediction of later blocks; a beam search, which keeps the best few beginnings of the
// stream, takes account of that.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tools/pack/picture.h"

constexpr int kMaxPackedSide = 1020; // pixels: 255 blocks

struct PackOptions {
    int quant = 20;      // 1 (nearly lossless) .. 255
    double lambda = 0.0; // squared error that one bit is worth; 0 for default_lambda
};

struct PackedPicture {
    std::vector<std::uint8_t> bytes;
    std::size_t bits; // of the stream, without the padding of its last byte
};

// The squared error, in squared levels, that one bit is worth at a quantiser by default.
double default_lambda(int quant);

// Packs a picture. Throws std::runtime_error if a side is not a multiple of 4 pixels in 4..1020, or an option is out
// of its range. With a height that is not a multiple of 8, the format has no colour for the lowest four rows.
PackedPicture pack_picture(const Picture& picture, const PackOptions& options);
