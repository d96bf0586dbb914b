#include "show/image/kernel.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "show/image/planes.h"

namespace {

// With fewer taps, pairs save less time than the 16-bit values cost.
constexpr std::size_t kFewTaps = 8;

// Sorts taps of equal weight together, drops those of weight 0 and sets the lengths of runs. Returns the number of
// taps left.
std::size_t group_taps(Tap* taps, std::size_t count) {
    Tap* const end = std::remove_if(taps, taps + count, [](const Tap& tap) { return tap.weight == 0; });
    std::sort(taps, end, [](const Tap& a, const Tap& b) {
        return a.weight != b.weight ? a.weight < b.weight : a.offset < b.offset;
    });
    for (Tap *first = taps, *next; first != end; first = next) {
        next = std::find_if(first, end, [first](const Tap& tap) { return tap.weight != first->weight; });
        first->run = static_cast<std::int32_t>(next - first);
    }
    return static_cast<std::size_t>(end - taps);
}

// Makes pairs of neighbouring weights of a row, leaving out those of two zeros; the last weight of a row stands
// alone. Returns the number of pairs.
std::size_t make_pairs(PairTap* pairs, const std::int32_t* weights, std::size_t rows, std::size_t n,
                       std::size_t stride) {
    std::size_t count = 0;
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t k = 0; k < n; k += 2) {
            const std::int32_t first = weights[row * n + k],
                               second = k + 1 < n ? weights[row * n + k + 1] : 0;
            if (first == 0 && second == 0) continue;
            pairs[count++] = {static_cast<std::uint16_t>(first) | static_cast<std::uint32_t>(second) << 16,
                              static_cast<std::ptrdiff_t>(row * stride + k)};
        }
    }
    return count;
}

// Whether all weights fit into 16 bits.
bool all_narrow(const std::int32_t* weights, std::size_t count) {
    return std::all_of(weights, weights + count,
                       [](std::int32_t w) { return w >= INT16_MIN && w <= INT16_MAX; });
}

// A factor by which the truncated product is always the truncated quotient, or 0.
//
// With a plain reciprocal the product would be just below some quotients that are integers. This factor is larger by
// 2^-49 of itself, which prevents that. It does not raise a product to an integer above the quotient either: for a
// divisor m / 2^t with t <= 16, a quotient that is not an integer lies below the next integer by at least 1/m, which
// is at least 2^-47 of the quotient for sums of 32 bits.
double exact_reciprocal(const KernelArgs& args) {
    const double m = args.divisor * 65536.0;
    const bool exact = args.bias == 0 && args.divisor >= 1.0 && m < 9007199254740992.0 && m == std::floor(m);
    return exact ? 1.0 / args.divisor * (1.0 + 1.0 / 562949953421312.0) : 0.0;
}

// Whether the result fits into 32 bits for every possible sum.
bool results_fit(const KernelArgs& args) {
    return fits_32(args.bias + INT32_MIN / args.divisor) && fits_32(args.bias + INT32_MAX / args.divisor);
}

} // namespace

bool prepare_kernel(PreparedKernel& prepared, const KernelArgs& args, std::size_t rows, std::size_t stride,
                    std::size_t step, const Narrowing& narrowing) {
    const std::size_t n = 2 * static_cast<std::size_t>(args.r) + 1, count = rows * n;
    prepared.taps = static_cast<Tap*>(std::calloc(count, sizeof(Tap)));
    prepared.pairs = static_cast<PairTap*>(std::calloc(count, sizeof(PairTap)));
    if (!prepared.taps || !prepared.pairs) {
        free_kernel(prepared);
        return false;
    }

    std::int32_t sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t offset = i / n * stride + i % n * step;
        prepared.taps[i] = {args.weights[i], 0, static_cast<std::ptrdiff_t>(offset)};
        sum += args.weights[i];
    }
    Kernel& kernel = prepared.kernel;
    kernel.taps = prepared.taps;
    kernel.count = group_taps(prepared.taps, count);
    kernel.pairs = prepared.pairs;
    kernel.pair_count = 0;
    if (loops().convolve_narrow && step == 1 && count >= kFewTaps && all_narrow(args.weights, count)) {
        kernel.pair_count = make_pairs(prepared.pairs, args.weights, rows, n, stride);
    }
    kernel.narrow_start = static_cast<std::uint32_t>(narrowing.middle) * static_cast<std::uint32_t>(sum);
    kernel.divisor = args.divisor;
    kernel.bias = args.bias;
    kernel.fits = results_fit(args);
    kernel.reciprocal = exact_reciprocal(args);
    const bool bracketed = args.bias == 0 && args.divisor >= 2.0;
    kernel.above = bracketed ? 1.0 / args.divisor * (1.0 + 0x1p-48) : 0.0;
    kernel.below = bracketed ? 1.0 / args.divisor * (1.0 - 0x1p-48) : 0.0;
    return true;
}

void free_kernel(PreparedKernel& prepared) {
    std::free(prepared.taps);
    std::free(prepared.pairs);
}
