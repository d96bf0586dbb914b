#include "show/stage/packed_picture.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "show/image/image.h"

const unsigned char kZigzag[16] = {0, 1, 4, 8, 5, 2, 3, 6, 9, 12, 13, 10, 7, 11, 14, 15};

namespace {

constexpr int kMaxBlocks = 255;

struct BitReader {
    const unsigned char* source;
    std::size_t size;
    std::size_t index;         // of the next byte
    std::uint32_t accumulator; // the bits held are its lowest
    int held;
    int exhausted;
};

BitReader g_bits;

// The next byte of the source, or 0 past its end, which is recorded.
unsigned next_byte() {
    if (g_bits.index < g_bits.size) return g_bits.source[g_bits.index++];
    g_bits.exhausted = 1;
    return 0;
}

// Number of zero bits before the next one bit, which is consumed too. Stops at the end of the source.
int count_zero_bits() {
    int zeros = 0;
    while (read_bits(1) == 0 && !g_bits.exhausted) ++zeros;
    return zeros;
}

// Reads the next block's change to the running DC value; returns the new value.
int read_dc(int dc) {
    if (read_bits(1) == 0) return dc;
    const bool down = read_bits(1) != 0;
    const int step = static_cast<int>(read_gamma() + 1);
    return down ? dc - step : dc + step;
}

// Reads the AC coefficients, from the last non-zero position downwards; runs of zeros lie between them. A valid
// stream stays in positions 1..15. The runs of a damaged one may also lead to position 0, whose DC value it then
// overwrites; false when they lead below it.
bool read_coefficients(int coef[16]) {
    int last = static_cast<int>(read_bits(4));
    if (last == 0) return true;
    int zeros = static_cast<int>(read_bits(bit_length(last - 1)));
    int count = last - zeros;
    int magnitude_bits = 0;
    for (;;) {
        const bool negative = read_bits(1) != 0;
        magnitude_bits += count_zero_bits();
        const int magnitude = static_cast<int>(read_bits(magnitude_bits) + 1);
        coef[last] = negative ? -magnitude : magnitude;
        if (count == 1) return true;
        const int run = static_cast<int>(read_bits(bit_length(zeros)));
        zeros -= run;
        last -= run + 1;
        --count;
        if (last < 0) return false;
    }
}

// The inverse transform of one row or column of a block, in place.
void inverse_transform(int& e0, int& e1, int& e2, int& e3) {
    const int a = e0 + e2;
    const int b = e0 - e2;
    const int c = (e1 >> 1) - e3;
    const int d = e1 + (e3 >> 1);
    e0 = a + d;
    e1 = b + c;
    e2 = b - c;
    e3 = a - d;
}

unsigned char* allocate_bytes(std::size_t count) { return static_cast<unsigned char*>(std::malloc(count)); }

unsigned char clamp_to_byte(int value) { return static_cast<unsigned char>(std::clamp(value, 0, 255)); }

} // namespace

void begin_bits(const unsigned char* data, std::size_t size) { g_bits = {data, size, 0, 0, 0, 0}; }

unsigned read_bits(int n) {
    while (g_bits.held < n) {
        g_bits.accumulator = (g_bits.accumulator << 8) + next_byte();
        g_bits.held += 8;
    }
    g_bits.held -= n;
    const std::uint32_t mask = n < 32 ? (std::uint32_t{1} << n) - 1 : ~std::uint32_t{0};
    return (g_bits.accumulator >> g_bits.held) & mask;
}

unsigned read_gamma() {
    const int k = count_zero_bits();
    const std::uint32_t offset = k < 32 ? (std::uint32_t{1} << k) - 1 : ~std::uint32_t{0};
    return read_bits(k) + offset;
}

int bits_exhausted() { return g_bits.exhausted; }

int bit_length(int x) {
    for (int k = 0; k <= 30; ++k)
        if (x < (1 << k)) return k;
    return 0;
}

int predict_block(const unsigned char* pred, int c, bool has_left) {
    return has_left ? (pred[c - 1] + pred[c]) >> 1 : pred[c];
}

bool block_has_left(int c, int blocks_x, bool chroma) { return c > 0 && !(chroma && c == blocks_x / 2); }

void reconstruct_block(const int coef[16], int quant, int prediction, unsigned char samples[16]) {
    int block[16];
    for (int i = 0; i < 16; ++i) block[kZigzag[i]] = coef[i] * (quant + i);
    for (int* row = block; row < block + 16; row += 4) inverse_transform(row[0], row[1], row[2], row[3]);
    for (int* column = block; column < block + 4; ++column)
        inverse_transform(column[0], column[4], column[8], column[12]);
    for (int i = 0; i < 16; ++i) samples[i] = clamp_to_byte((block[i] + 8) / 16 + prediction);
}

unsigned char block_predictor(const unsigned char samples[16]) {
    int sum = 0;
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x) sum += samples[4 * y + x];
    return static_cast<unsigned char>((sum + 8) >> 4);
}

int packed_width(const unsigned char* data) { return 4 * data[0]; }
int packed_height(const unsigned char* data) { return 4 * data[1]; }
int packed_buffer_size(const unsigned char* data) { return data[0] * data[1] * 24; }

void decode_packed(const unsigned char* data, unsigned char* samples) {
    decode_packed_n(data, SIZE_MAX, samples);
}

int decode_packed_n(const unsigned char* data, std::size_t size, unsigned char* samples) {
    if (size < 3) return 0;
    begin_bits(data, size);
    const int blocks_x = static_cast<int>(read_bits(8));
    const int blocks_y = static_cast<int>(read_bits(8));
    const int quant = static_cast<int>(read_bits(8));
    const int rows = blocks_y + blocks_y / 2;
    const int stride = 4 * blocks_x;

    int dc = 0; // carries across all blocks, luma and chroma alike
    unsigned char pred[kMaxBlocks];
    for (int r = 0; r < rows; ++r) {
        const bool chroma = r >= blocks_y;
        if (r == 0 || r == blocks_y) std::memset(pred, kFirstPredictor, sizeof pred);
        for (int c = 0; c < blocks_x; ++c) {
            const int prediction = predict_block(pred, c, block_has_left(c, blocks_x, chroma));
            dc = read_dc(dc);
            int coef[16] = {dc};
            if (!read_coefficients(coef) || g_bits.exhausted) return 0;
            unsigned char block[16];
            reconstruct_block(coef, quant, prediction, block);
            for (int y = 0; y < 4; ++y) std::memcpy(samples + (4 * r + y) * stride + 4 * c, block + 4 * y, 4);
            pred[c] = block_predictor(block);
        }
    }
    return 1;
}

void yuv_to_rgb(int w, int h, const unsigned char* samples, unsigned char* r, unsigned char* g,
                unsigned char* b) {
    std::copy_n(samples, w * h, r);

    const unsigned char* chroma = samples + w * h;
    for (int y = 0; y < h; y += 2) {
        for (unsigned char* plane : {g, b}) {
            unsigned char* row = plane + y * w;
            for (int x = 0; x < w; x += 2, ++chroma)
                row[x] = row[x + 1] = row[x + w] = row[x + w + 1] = *chroma;
        }
    }

    for (int i = 0; i < w * h; ++i) {
        const int y = 298 * r[i] - 4768;
        const int u = g[i] - 128;
        const int v = b[i] - 128;
        r[i] = clamp_to_byte((y + 409 * v + 128) >> 8);
        g[i] = clamp_to_byte((y - 100 * u - 208 * v + 128) >> 8);
        b[i] = clamp_to_byte((y + 516 * u + 128) >> 8);
    }
}

void bytes_to_plane(const unsigned char* src, std::int32_t* plane, int count) {
    for (int i = 0; i < count; ++i) plane[i] = src[i] * 257;
}

Image* load_packed_picture(const unsigned char* data) { return load_packed_picture_n(data, SIZE_MAX); }

Image* load_packed_picture_n(const unsigned char* data, std::size_t size) {
    if (size < 3) return nullptr;
    const int w = packed_width(data);
    const int h = packed_height(data);
    const std::size_t sample_count = static_cast<std::size_t>(packed_buffer_size(data));
    const std::size_t pixels = static_cast<std::size_t>(w) * static_cast<std::size_t>(h);

    unsigned char* samples = allocate_bytes(sample_count);
    unsigned char* r = allocate_bytes(pixels);
    unsigned char* g = allocate_bytes(pixels);
    unsigned char* b = allocate_bytes(pixels);
    Image* img = nullptr;
    if (samples && r && g && b) {
        std::memset(samples, kNeutralSample, sample_count);
        if (decode_packed_n(data, size, samples)) img = image_create(w, h, kImageColor);
    }
    if (img) {
        yuv_to_rgb(w, h, samples, r, g, b);
        bytes_to_plane(r, img->red, w * h);
        bytes_to_plane(g, img->green, w * h);
        bytes_to_plane(b, img->blue, w * h);
    }
    std::free(samples);
    std::free(r);
    std::free(g);
    std::free(b);
    return img;
}
