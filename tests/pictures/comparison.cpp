#include "tests/pictures/comparison.h"

#include <algorithm>
#include <cstdlib>

Difference difference(const Rgb& a, const Rgb& b) {
    if (a.width != b.width || a.height != b.height || a.pixels.empty()) return {};
    double sum = 0;
    double far_off = 0;
    for (std::size_t i = 0; i < a.pixels.size(); i += 3) {
        int worst = 0;
        for (std::size_t j = i; j < i + 3; ++j) worst = std::max(worst, std::abs(a.pixels[j] - b.pixels[j]));
        sum += worst;
        far_off += worst > kFarOff;
    }
    const double pixels = static_cast<double>(a.pixels.size()) / 3;
    return {sum / pixels, 100 * far_off / pixels};
}

bool same(const Difference& difference) {
    return difference.mean <= kMostMean && difference.far_off <= kMostFarOff;
}
