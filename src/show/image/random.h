// The random generator of the show. It starts from a fixed state, so every run makes the same textures. All textures
// depend on the order of all draws: they are made in a fixed order, and an operation documents how many numbers it
// draws and for what.
//
// Maximally equidistributed combined Tausworthe generator taus88: P. L'Ecuyer, "Maximally equidistributed
// combined Tausworthe generators", Mathematics of Computation 65 (213), 1996.
//
// To draw from a range of n values, take random_next() % n with an unsigned n.
#pragma once

#include <cstddef>
#include <cstdint>

struct RandomState {
    std::uint32_t s1, s2, s3;
};

// The state of the process's generator. Only random_seed resets it.
extern RandomState g_random;

// One step of a generator.
constexpr std::uint32_t random_step(RandomState& s) {
    s.s1 = ((s.s1 & 0xFFFFFFFE) << 12) ^ (((s.s1 << 13) ^ s.s1) >> 19);
    s.s2 = ((s.s2 & 0xFFFFFFF8) << 4) ^ (((s.s2 << 2) ^ s.s2) >> 25);
    s.s3 = ((s.s3 & 0xFFFFFFF0) << 17) ^ (((s.s3 << 3) ^ s.s3) >> 11);
    return s.s1 ^ s.s2 ^ s.s3;
}

// The next number of the process, 0..2^32 - 1.
std::uint32_t random_next();

// Restarts the generator from `seed`, makes one step and returns its number, which callers ignore.
//
// The state becomes (seed, 0, ~seed). The 0 is intentional: zero is a fixed point of every component, so from the
// first call on the second component stays 0 and the numbers come from s1 ^ s3 alone. The seeded scenes depend on
// these sequences. random_seed(0) loses s1 as well.
std::uint32_t random_seed(std::uint32_t seed);

// The numbers of random_next, drawn in blocks, which is much faster. Call random_begin before the first number and
// random_end after the last, and draw no others in between. Unused numbers of the last block are returned to the
// generator. Take numbers with random_next(block), or read `numbers` and set `used`.
struct RandomBlock {
    static constexpr std::size_t kSize = 1024;

    RandomState before, after;    // of the generator, before the first and after the last of the numbers
    std::size_t used;             // how many numbers have been taken, from the first on
    std::uint32_t numbers[kSize]; // in the order of random_next
};
void random_begin(RandomBlock& block);
void random_refill(RandomBlock& block); // fills a block whose numbers have all been taken
void random_end(const RandomBlock& block);

inline std::uint32_t random_next(RandomBlock& block) {
    if (block.used == RandomBlock::kSize) random_refill(block);
    return block.numbers[block.used++];
}
