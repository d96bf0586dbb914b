// The choice of a block's fifteen AC coefficients: which to keep, and at which level, so that error plus bits
// are least.
#pragma once

#include <array>
#include <vector>

struct AcChoice {
    std::array<int, 16> levels; // in coefficient order; levels[0] is the DC's and stays 0
    int bits;                   // what the levels cost in the stream, without the DC change
    double cost;                // weighted squared error of the AC part + lambda * bits
};

// The best choice for every possible place of the last coefficient and every number of zeros below it, best
// first, at most `limit` of them; never empty. `target` holds 16 samples row by row, `weight` what a squared
// error of one sample counts, `lambda` what a bit counts. Exact but for the rounding inside the transform.
std::vector<AcChoice> search_coefficients(const double target[16], double weight, int quant, double lambda,
                                          std::size_t limit);

// The level that the DC coefficient should have so that the block's mean comes closest to `mean` samples.
int nearest_dc(double mean, int quant);
