#include "show/image/random.h"

#include <cstring>

namespace {

// A block consists of four stretches of the sequence, one in each lane of a vector. The generator is linear over
// bits: the state some steps ahead is the XOR of the states that the single bits of the current one lead to.
constexpr std::size_t kLanes = 4;
constexpr std::size_t kStretch = RandomBlock::kSize / kLanes;

typedef std::uint32_t Lanes __attribute__((vector_size(kLanes * sizeof(std::uint32_t))));

// The state that each single bit leads to, one stretch ahead.
struct BitsAhead {
    RandomState of_bit[32];
};

constexpr BitsAhead bits_one_stretch_ahead() {
    BitsAhead ahead{};
    for (int bit = 0; bit < 32; ++bit) {
        RandomState s = {1u << bit, 1u << bit, 1u << bit};
        for (std::size_t i = 0; i < kStretch; ++i) random_step(s);
        ahead.of_bit[bit] = s;
    }
    return ahead;
}

constexpr BitsAhead kAhead = bits_one_stretch_ahead();

RandomState one_stretch_ahead(const RandomState& state) {
    RandomState sum = {0, 0, 0};
    for (int bit = 0; bit < 32; ++bit) {
        // All ones where the bit is set.
        sum.s1 ^= kAhead.of_bit[bit].s1 & (0 - (state.s1 >> bit & 1));
        sum.s2 ^= kAhead.of_bit[bit].s2 & (0 - (state.s2 >> bit & 1));
        sum.s3 ^= kAhead.of_bit[bit].s3 & (0 - (state.s3 >> bit & 1));
    }
    return sum;
}

// Writes four numbers of each lane to the lane's own stretch.
void store_transposed(std::uint32_t* numbers, const Lanes rows[kLanes]) {
    const Lanes low01 = __builtin_shufflevector(rows[0], rows[1], 0, 4, 1, 5);
    const Lanes low23 = __builtin_shufflevector(rows[2], rows[3], 0, 4, 1, 5);
    const Lanes high01 = __builtin_shufflevector(rows[0], rows[1], 2, 6, 3, 7);
    const Lanes high23 = __builtin_shufflevector(rows[2], rows[3], 2, 6, 3, 7);
    const Lanes columns[kLanes] = {__builtin_shufflevector(low01, low23, 0, 1, 4, 5),
                                   __builtin_shufflevector(low01, low23, 2, 3, 6, 7),
                                   __builtin_shufflevector(high01, high23, 0, 1, 4, 5),
                                   __builtin_shufflevector(high01, high23, 2, 3, 6, 7)};
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
        std::memcpy(numbers + lane * kStretch, &columns[lane], sizeof columns[lane]);
    }
}

// Fills a block with the numbers that follow a state.
void fill(RandomBlock& block, const RandomState& state) {
    block.before = state;
    block.used = 0;
    Lanes s1 = {}, s2 = {}, s3 = {};
    RandomState start = state;
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
        s1[lane] = start.s1;
        s2[lane] = start.s2;
        s3[lane] = start.s3;
        start = one_stretch_ahead(start);
    }
    block.after = start;
    for (std::size_t i = 0; i < kStretch; i += kLanes) {
        Lanes rows[kLanes];
        for (Lanes& row : rows) { // random_step in every lane
            s1 = ((s1 & 0xFFFFFFFE) << 12) ^ (((s1 << 13) ^ s1) >> 19);
            s2 = ((s2 & 0xFFFFFFF8) << 4) ^ (((s2 << 2) ^ s2) >> 25);
            s3 = ((s3 & 0xFFFFFFF0) << 17) ^ (((s3 << 3) ^ s3) >> 11);
            row = s1 ^ s2 ^ s3;
        }
        store_transposed(block.numbers + i, rows);
    }
}

} // namespace

RandomState g_random = {0x31C95435, 0x1201F90A, 0x76C30533};

std::uint32_t random_next() { return random_step(g_random); }

std::uint32_t random_seed(std::uint32_t seed) {
    g_random = {seed, 0, ~seed};
    return random_next();
}

void random_begin(RandomBlock& block) { fill(block, g_random); }

void random_refill(RandomBlock& block) { fill(block, block.after); }

void random_end(const RandomBlock& block) {
    if (block.used == RandomBlock::kSize) {
        g_random = block.after;
        return;
    }
    g_random = block.before;
    for (std::size_t i = 0; i < block.used; ++i) random_step(g_random);
}
