// Chooses the levels of a block's fifteen AC coefficients so that the sum of error and weighted bits is smallest.
#pragma once

#include <array>
#include <vector>

struct AcChoice {
    std::array<int, 16> levels; // in coefficient order; levels[0] is the DC's and stays 0
    int bits;                   // what the levels cost in the stream, without the DC change
    double cost;                // weighted squared error of the AC part + lambda * bits
};

// The best choice for every possible position of the last coefficient and every number of zeros below it, best first,
// at most `limit` of them; never empty. `target` holds 16 samples row by row; `weight` is the cost of a squared error
// of one sample, `lambda` that of a bit. Exact except for the rounding inside the transform.
std::vector<AcChoice> search_coefficients(const double target[16], double weight, int quant, double lambda,
                                          std::size_t limit);

// The level of the DC coefficient with which the block's mean is closest to `mean` (in sample units).
int nearest_dc(double mean, int quant);
