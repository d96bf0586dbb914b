// The kernel of a convolution: as it is asked for, and as the inner loops want it, weights together with the places
// that they belong to.
#pragma once

#include <cstddef>
#include <cstdint>

#include "show/image/loops.h"

// What the result is to be. Nothing is done with null weights or a negative radius.
struct KernelArgs {
    const std::int32_t* weights;
    std::int32_t r;
    double divisor;
    std::int32_t bias;
};

struct PreparedKernel {
    Tap* taps;
    PairTap* pairs;
    Kernel kernel;
};

// Prepares a kernel of `rows` rows of 2r+1 weights for values that lie `step` apart in a row, rows `stride`
// apart. False without memory.
bool prepare_kernel(PreparedKernel& prepared, const KernelArgs& args, std::size_t rows, std::size_t stride,
                    std::size_t step);

void free_kernel(PreparedKernel& prepared);
