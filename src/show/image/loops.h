// The inner loops of the filters: plain code over contiguous values, compiled for several instruction sets, of which
// the best is chosen at run time. All variants give the same bits: integers wrap, and doubles are only added,
// multiplied and divided, with every operation rounded.
#pragma once

#include <cstddef>
#include <cstdint>

// One weight of a kernel and the offset of its value from that of the kernel's first weight. Sums of wrapping
// integers may be taken in any order, so taps of equal weight are neighbours and their values are multiplied once.
struct Tap {
    std::int32_t weight;
    std::int32_t run; // in the first of several taps of equal weight, their number
    std::ptrdiff_t offset;
};

// Two weights of 16 bits, for the value at `offset` and for its right neighbour. x86 has an instruction that
// multiplies and adds such pairs.
struct PairTap {
    std::uint32_t weights; // the first one in the low half
    std::ptrdiff_t offset;
};

// How 32-bit values are brought into 16 bits: v becomes (v >> shift) - middle, which must fit into `bits` bits with a
// sign.
struct Narrowing {
    std::int32_t shift, middle, bits;
};

struct Kernel {
    const Tap* taps; // without those of weight 0
    std::size_t count;
    const PairTap* pairs; // the same weights; none if they are too large, too few or not side by side
    std::size_t pair_count;
    std::uint32_t narrow_start; // the sum of weight * middle of the narrowed values
    double divisor;
    std::int32_t bias;
    bool fits; // whether every possible result fits into 32 bits

    // trunc(sum * reciprocal) is the exact result for every sum; 0 if there is no such number.
    double reciprocal;

    // sum / divisor lies between the products of sum with these two; 0 if bias or divisor rule that out.
    double above, below;
};

// A linear map of values clamped to in_lo..in_hi.
struct LevelMap {
    std::int32_t in_lo, in_hi, out_lo;
    double scale;
};

struct Loops {
    const char* name;

    // out[i] = trunc(bias + sum / divisor) with the sum of in[i + offset] * weight over all taps. Values are read in
    // blocks: kLoopSlack values beyond `count` must be readable.
    void (*convolve)(std::int32_t* out, const std::int32_t* in, std::size_t count, const Kernel& kernel);

    // Narrows values. Returns whether all of them fit. Null where convolve_narrow is.
    bool (*narrow)(std::int16_t* out, const std::int32_t* values, std::size_t count,
                   const Narrowing& narrowing);

    // As convolve, with the kernel's pairs, on narrowed values. Null where it would not be faster.
    void (*convolve_narrow)(std::int32_t* out, const std::int16_t* in, std::size_t count,
                            const Kernel& kernel);

    // v = trunc((v - in_lo) * scale + out_lo), for differences and results of 32 bits.
    void (*map_levels)(std::int32_t* values, std::size_t count, const LevelMap& map);

    // The same for a scale of 1 or -1, in integers.
    void (*shift_levels)(std::int32_t* values, std::size_t count, const LevelMap& map);

    // d = (m * opacity + d * (256 - opacity)) >> 8 with m of MixMode (image/filters.h).
    void (*blend)(std::int32_t* dst, const std::int32_t* src, std::size_t count, int mode,
                  std::int32_t opacity);

    // out[i] = the minimum (which = 0, at most 65535) or maximum (at least 0) of three rows' values i-1, i, i+1.
    void (*rank)(std::int32_t* out, const std::int32_t* above, const std::int32_t* row,
                 const std::int32_t* below, std::size_t count, int which);
};

constexpr std::size_t kLoopSlack = 64;

// The variants that this processor can run, from the simplest to the best; null beyond the last.
const Loops* loops_variant(int index);

// The variant in use: the best one, unless loops_use has set another.
const Loops& loops();

// Sets the variant, for tests and benchmarks; null means the best one.
void loops_use(const Loops* variant);
