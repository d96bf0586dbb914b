// The program's own lossy picture format, for the one picture that is not computed: the loading picture.
//
// A packed picture is one bit stream, most significant bit first: blocks_x, blocks_y and the quantiser in 8 bits
// each, then blocks_y + blocks_y / 2 rows of blocks_x blocks of 4 by 4 samples. The first blocks_y rows are luma; the
// rest hold chroma at half size in both directions, Cb in the left half of every row and Cr in the right. Each block
// is a flat prediction from its neighbours plus an integer 4 by 4 transform of the H.264 kind.
//
//     Image* picture = load_packed_picture_n(bytes, size);
//     if (!picture) ...            // the bytes end early, or are no packed picture
//
// Functions without a size trust the stream and may read past the end of a damaged one; those that end in _n never
// read past the given size, and end in time proportional to it. Neither writes outside its buffer, however damaged
// the bytes are.
#pragma once

#include <cstddef>
#include <cstdint>

struct Image;

// --- Whole pictures ---

// Width and height in pixels, 0..1020, multiples of 4. Reads two bytes.
int packed_width(const unsigned char* data);
int packed_height(const unsigned char* data);

// Bytes that decode_packed fills: width x height luma samples, then half as many chroma samples.
int packed_buffer_size(const unsigned char* data);

// The value of both chroma samples of grey.
constexpr unsigned char kNeutralSample = 128;

// Decodes into packed_buffer_size(data) bytes, rows of packed_width(data) samples. When blocks_y is odd the
// last two chroma rows are not part of the stream and keep what they held; kNeutralSample there shows grey.
void decode_packed(const unsigned char* data, unsigned char* samples);

// The same on `size` bytes. Returns 1, or 0 when the stream ends early or places a coefficient below position 0 of
// its block; the samples from that block on then keep what they held. Also 0 for fewer than 3 bytes.
int decode_packed_n(const unsigned char* data, std::size_t size, unsigned char* samples);

// Splits w x h luma samples and their chroma, as decode_packed leaves them, into three planes of w x h bytes.
// w and h are even. Every chroma sample covers 2 by 2 pixels. ITU-R BT.601, video range, in integers.
void yuv_to_rgb(int w, int h, const unsigned char* samples, unsigned char* r, unsigned char* g,
                unsigned char* b);

// Widens `count` bytes to plane values, 0..65535: the byte repeated in both halves of a 16-bit value.
void bytes_to_plane(const unsigned char* src, std::int32_t* plane, int count);

// Decodes into a new image of three planes, which the caller frees. Null without memory, for a width or height of 0,
// and when the stream places a coefficient below position 0 of its block.
Image* load_packed_picture(const unsigned char* data);

// The same on `size` bytes; null also when they do not hold a whole picture.
Image* load_packed_picture_n(const unsigned char* data, std::size_t size);

// --- The bit stream ---

// Puts the one bit reader at the first bit of `size` bytes, which must stay for as long as bits are read.
void begin_bits(const unsigned char* data, std::size_t size);

// The next n bits as a number, 0 <= n. Bits past the end read as zeros. With n above 25 the first bits may be lost;
// no valid stream has such a field.
unsigned read_bits(int n);

// Exponential-Golomb code of order 0: k zero bits, a one bit, k bits v -> v + 2^k - 1.
unsigned read_gamma();

// 1 once a read has gone past the last byte, else 0.
int bits_exhausted();

// The smallest k in 0..30 with x < 2^k, or 0 if there is none: 0 for x <= 0.
int bit_length(int x);

// --- One block ---
//
// A packer predicts from decoded samples, so it calls these functions as well.

// Predictor of every column above the first luma row and above the first chroma row.
constexpr unsigned char kFirstPredictor = 128;

// Position of coefficient i in the block, row by row.
extern const unsigned char kZigzag[16];

// Flat prediction of the block in column c: the predictor of its upper neighbour, pred[c], or, with `has_left`, the
// mean of it and its left neighbour's, pred[c - 1].
int predict_block(const unsigned char* pred, int c, bool has_left);

// Whether the block in column c is predicted from a left neighbour: not where a row or its Cr half begins.
bool block_has_left(int c, int blocks_x, bool chroma);

// Dequantises coefficients (zigzag order, steps quant, quant + 1, ...), transforms and adds the prediction:
// 16 samples, row by row.
void reconstruct_block(const int coef[16], int quant, int prediction, unsigned char samples[16]);

// A decoded block's predictor, for pred[c]: the rounded sum of its nine samples in the top-left 3 by 3 corner,
// divided by 16. That is about 9/16 of their mean; intentional, part of the format.
unsigned char block_predictor(const unsigned char samples[16]);
