// The source of the inner loops. Each loops_<instruction set>.cpp defines these macros, includes this file and is
// compiled for its instruction set:
//   LOOPS_TABLE  name of the table of the loops
//   LOOPS_NAME   the name for a reader
//   LOOPS_BYTES  size of a vector register
// It must not call inline functions of headers: the linker keeps only one copy of each, which could be the one
// compiled for an instruction set that this processor lacks.
#ifdef __SSE2__
#include <immintrin.h>
#endif

#include "show/image/filters.h"
#include "show/image/loops.h"

namespace {

using std::int16_t;
using std::int32_t;
using std::ptrdiff_t;
using std::size_t;
using std::uint16_t;
using std::uint32_t;

// --- Convolution ---

typedef uint32_t Vector __attribute__((vector_size(LOOPS_BYTES)));
typedef uint32_t UnalignedVector __attribute__((vector_size(LOOPS_BYTES), aligned(4), may_alias));

// Registers per block: enough to hide the latency of a multiplication, and the cost of the loop over the taps.
constexpr size_t kVectors = LOOPS_BYTES == 16 ? 8 : 4;
constexpr size_t kLanes = LOOPS_BYTES / sizeof(uint32_t);
constexpr size_t kBlock = kVectors * kLanes;
static_assert(kBlock <= kLoopSlack, "a block may read that much beyond the end");

// sums[i] = the sum of in[i + offset] * weight over all taps, for one block.
inline void sum_taps(int32_t sums[kBlock], const int32_t* in, const Kernel& kernel) {
    Vector total[kVectors] = {};
    const Tap* const end = kernel.taps + kernel.count;
    for (const Tap* tap = kernel.taps; tap != end;) {
        const uint32_t weight = static_cast<uint32_t>(tap->weight);
        const Tap* const run_end = tap + tap->run;
        Vector run[kVectors];
        const UnalignedVector* values = reinterpret_cast<const UnalignedVector*>(in + tap->offset);
        for (size_t v = 0; v < kVectors; ++v) run[v] = values[v];
        while (++tap != run_end) {
            values = reinterpret_cast<const UnalignedVector*>(in + tap->offset);
            for (size_t v = 0; v < kVectors; ++v) run[v] += values[v];
        }
        for (size_t v = 0; v < kVectors; ++v) total[v] += run[v] * weight;
    }
    for (size_t v = 0; v < kVectors; ++v) reinterpret_cast<UnalignedVector*>(sums)[v] = total[v];
}

// out[i] = trunc(bias + sum / divisor) for a whole block.
inline void scale_sums(int32_t* out, const int32_t sums[kBlock], const Kernel& kernel) {
    const double bias = kernel.bias, divisor = kernel.divisor, reciprocal = kernel.reciprocal;
    if (reciprocal != 0.0) {
        for (size_t i = 0; i < kBlock; ++i) out[i] = static_cast<int32_t>(sums[i] * reciprocal);
        return;
    }
    if (kernel.above != 0.0) {
        // The quotient lies between the products. Where both are truncated to the same number, so is the quotient.
        const double above = kernel.above, below = kernel.below;
        int32_t differ = 0;
        for (size_t i = 0; i < kBlock; ++i) {
            out[i] = static_cast<int32_t>(sums[i] * above);
            differ |= out[i] ^ static_cast<int32_t>(sums[i] * below);
        }
        if (!differ) return;
    }
    if (kernel.fits) {
        for (size_t i = 0; i < kBlock; ++i) out[i] = static_cast<int32_t>(bias + sums[i] / divisor);
    } else {
        for (size_t i = 0; i < kBlock; ++i) {
            const double v = bias + sums[i] / divisor;
            out[i] = v > -2147483649.0 && v < 2147483648.0 ? static_cast<int32_t>(v) : INT32_MIN;
        }
    }
}

// Processes a line block by block. The last block may extend beyond the end; it goes through a copy.
template <class SumBlock>
inline void convolve_blocks(int32_t* out, size_t count, const Kernel& kernel, const SumBlock& sum_block) {
    int32_t sums[kBlock], results[kBlock];
    size_t i = 0;
    for (; i + kBlock <= count; i += kBlock) {
        sum_block(sums, i);
        scale_sums(out + i, sums, kernel);
    }
    if (i == count) return;
    sum_block(sums, i);
    scale_sums(results, sums, kernel);
    for (size_t k = 0; i < count; ++i, ++k) out[i] = results[k];
}

void convolve(int32_t* out, const int32_t* in, size_t count, const Kernel& kernel) {
    convolve_blocks(out, count, kernel,
                    [&](int32_t sums[kBlock], size_t i) { sum_taps(sums, in + i, kernel); });
}

// --- Convolution of narrow values ---

#ifdef __SSE2__

bool narrow(int16_t* out, const int32_t* values, size_t count, const Narrowing& narrowing) {
    const int32_t shift = narrowing.shift, middle = narrowing.middle, half = 1 << (narrowing.bits - 1);
    uint32_t outside = 0;
    for (size_t i = 0; i < count; ++i) {
        const int32_t v = (values[i] >> shift) - middle;
        outside |= static_cast<uint32_t>(v + half);
        out[i] = static_cast<int16_t>(v);
    }
    return outside >> narrowing.bits == 0;
}

typedef uint32_t UnalignedNarrow __attribute__((vector_size(LOOPS_BYTES), aligned(2), may_alias));

// In every lane of 32 bits: a[0] * b[0] + a[1] * b[1] of their two halves, as signed numbers of 16 bits.
inline Vector multiply_add(Vector a, Vector b) {
#if LOOPS_BYTES == 64
    return reinterpret_cast<Vector>(
        _mm512_madd_epi16(reinterpret_cast<__m512i>(a), reinterpret_cast<__m512i>(b)));
#elif LOOPS_BYTES == 32
    return reinterpret_cast<Vector>(
        _mm256_madd_epi16(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
#else
    return reinterpret_cast<Vector>(
        _mm_madd_epi16(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
#endif
}

// The same sums as sum_taps. A vector of 16-bit values holds two per lane: read from `in` on, the lanes give the sums
// for the even places, and read from the next value on, those for the odd ones.
inline void sum_pairs(int32_t sums[kBlock], const int16_t* in, const Kernel& kernel) {
    constexpr size_t kHalf = kVectors / 2;
    Vector even[kHalf], odd[kHalf];
    for (size_t v = 0; v < kHalf; ++v) even[v] = odd[v] = Vector{} + kernel.narrow_start;
    for (const PairTap *pair = kernel.pairs, *end = pair + kernel.pair_count; pair != end; ++pair) {
        const Vector weights = Vector{} + pair->weights;
        const UnalignedNarrow* at_even = reinterpret_cast<const UnalignedNarrow*>(in + pair->offset);
        const UnalignedNarrow* at_odd = reinterpret_cast<const UnalignedNarrow*>(in + pair->offset + 1);
        for (size_t v = 0; v < kHalf; ++v) {
            even[v] += multiply_add(at_even[v], weights);
            odd[v] += multiply_add(at_odd[v], weights);
        }
    }
    for (size_t v = 0; v < kHalf; ++v) {
        for (size_t lane = 0; lane < kLanes; ++lane) {
            sums[2 * (v * kLanes + lane)] = static_cast<int32_t>(even[v][lane]);
            sums[2 * (v * kLanes + lane) + 1] = static_cast<int32_t>(odd[v][lane]);
        }
    }
}

void convolve_narrow(int32_t* out, const int16_t* in, size_t count, const Kernel& kernel) {
    convolve_blocks(out, count, kernel,
                    [&](int32_t sums[kBlock], size_t i) { sum_pairs(sums, in + i, kernel); });
}

#else
constexpr auto narrow = nullptr;
constexpr auto convolve_narrow = nullptr;
#endif

// --- Levels ---

inline int32_t clamp(int32_t v, int32_t lo, int32_t hi) {
    v = v < lo ? lo : v;
    return v > hi ? hi : v;
}

void map_levels(int32_t* values, size_t count, const LevelMap& map) {
    const int32_t lo = map.in_lo, hi = map.in_hi;
    const double scale = map.scale, offset = map.out_lo;
    if (offset == 0.0) {
        for (size_t i = 0; i < count; ++i)
            values[i] = static_cast<int32_t>((clamp(values[i], lo, hi) - lo) * scale);
        return;
    }
    for (size_t i = 0; i < count; ++i) {
        values[i] = static_cast<int32_t>((clamp(values[i], lo, hi) - lo) * scale + offset);
    }
}

void shift_levels(int32_t* values, size_t count, const LevelMap& map) {
    const int32_t lo = map.in_lo, hi = map.in_hi;
    if (map.scale > 0.0) {
        const int32_t offset = map.out_lo - lo;
        for (size_t i = 0; i < count; ++i) values[i] = clamp(values[i], lo, hi) + offset;
    } else {
        const int32_t offset = map.out_lo + lo;
        for (size_t i = 0; i < count; ++i) values[i] = offset - clamp(values[i], lo, hi);
    }
}

// --- Blending ---

template <class Mix>
inline void blend_all(int32_t* dst, const int32_t* src, size_t count, int32_t opacity, const Mix& mix) {
    const int32_t rest = 256 - opacity;
    for (size_t i = 0; i < count; ++i) {
        const int32_t d = dst[i];
        dst[i] = (mix(d, src[i]) * opacity + d * rest) >> 8;
    }
}

void blend(int32_t* dst, const int32_t* src, size_t count, int mode, int32_t opacity) {
    const auto all = [=](const auto& mix) { blend_all(dst, src, count, opacity, mix); };
    switch (mode) {
    case kMixAdd:
        return all([](int32_t d, int32_t s) { return d + s; });
    case kMixSubtract:
        return all([](int32_t d, int32_t s) { return d - s; });
    case kMixDifference:
        return all([](int32_t d, int32_t s) { return d - s < 0 ? s - d : d - s; });
    case kMixMultiply:
        return all([](int32_t d, int32_t s) { return ((d >> 2) * (s >> 2)) >> 12; });
    case kMixScreen:
        return all([](int32_t d, int32_t s) {
            return ((((d ^ 0xFFFF) >> 2) * ((s ^ 0xFFFF) >> 2)) >> 12) ^ 0xFFFF;
        });
    case kMixHardLight:
        return all([](int32_t d, int32_t s) {
            return s < 32769 ? ((s >> 3) * d) >> 12 : (s + d) * 2 - (((d >> 2) * (s >> 2)) >> 11) - 65536;
        });
    default:
        return all([](int32_t, int32_t s) { return s; });
    }
}

// --- Rank ---

template <class Pick>
inline void rank_all(int32_t* out, const int32_t* a, const int32_t* b, const int32_t* c, size_t count,
                     int32_t start, const Pick& pick) {
    for (ptrdiff_t i = 0; i < static_cast<ptrdiff_t>(count); ++i) {
        const int32_t above = pick(pick(a[i - 1], a[i]), a[i + 1]);
        const int32_t row = pick(pick(b[i - 1], b[i]), b[i + 1]);
        const int32_t below = pick(pick(c[i - 1], c[i]), c[i + 1]);
        out[i] = pick(pick(pick(above, row), below), start);
    }
}

void rank(int32_t* out, const int32_t* above, const int32_t* row, const int32_t* below, size_t count,
          int which) {
    if (which) {
        rank_all(out, above, row, below, count, 0, [](int32_t u, int32_t v) { return u > v ? u : v; });
    } else {
        rank_all(out, above, row, below, count, 65535, [](int32_t u, int32_t v) { return u < v ? u : v; });
    }
}

} // namespace

extern const Loops LOOPS_TABLE;
const Loops LOOPS_TABLE = {LOOPS_NAME, convolve,     narrow, convolve_narrow,
                           map_levels, shift_levels, blend,  rank};
