// The kernel of a convolution: as the caller gives it, and prepared for the inner loops.
#pragma once

#include <cstddef>
#include <cstdint>

#include "show/image/loops.h"

// The arguments of a convolution (filters.h). Null weights or a negative radius are an error.
struct KernelArgs {
    const std::int32_t* weights; // of the caller
    std::int32_t r;
    double divisor;
    std::int32_t bias;
};

// A kernel for the inner loops, and the memory of its taps and pairs.
struct PreparedKernel {
    Tap* taps;
    PairTap* pairs;
    Kernel kernel;
};

// Prepares a kernel of `rows` rows of 2r+1 weights, for values `step` apart in rows `stride` apart that may be
// narrowed. The caller frees it with free_kernel. False without memory.
bool prepare_kernel(PreparedKernel& prepared, const KernelArgs& args, std::size_t rows, std::size_t stride,
                    std::size_t step, const Narrowing& narrowing);

void free_kernel(PreparedKernel& prepared);
