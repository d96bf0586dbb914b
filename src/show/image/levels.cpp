#include "show/image/levels.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "show/image/filters.h"
#include "show/image/loops.h"
#include "show/image/planes.h"
#include "show/image/progress.h"

namespace {

// Whether the differences from in_lo and the results of all clamped values fit into 32 bits. The map is monotonic, so
// the results at its ends decide; that at in_lo is out_lo.
bool results_fit(const LevelMap& map) {
    const double range = static_cast<double>(map.in_hi) - map.in_lo;
    return fits_32(range) && fits_32(range * map.scale + map.out_lo);
}

// The map for any ranges.
void map_levels_checked(std::int32_t* values, std::size_t count, const LevelMap& map) {
    const double in_lo = map.in_lo;
    for (std::size_t i = 0; i < count; ++i) {
        const std::int32_t v = std::clamp(values[i], map.in_lo, map.in_hi);
        values[i] = truncate((v - in_lo) * map.scale + map.out_lo);
    }
}

} // namespace

void map_levels(std::int32_t* values, std::size_t count, std::int32_t in_lo, std::int32_t in_hi,
                std::int32_t out_lo, std::int32_t out_hi) {
    const double in_range = static_cast<double>(in_hi) - in_lo,
                 out_range = static_cast<double>(out_hi) - out_lo;
    const double scale = out_range / in_range;
    const LevelMap map = {in_lo, in_hi, out_lo, scale};
    if (scale == 1.0 || scale == -1.0) {
        loops().shift_levels(values, count, map); // the results lie between out_lo and out_hi
    } else if (!results_fit(map)) {
        map_levels_checked(values, count, map);
    } else {
        loops().map_levels(values, count, map);
    }
}

void image_levels(Image* img, std::uint32_t mask, std::int32_t in_lo, std::int32_t in_hi, std::int32_t out_lo,
                  std::int32_t out_hi) {
    if (!img || in_lo == in_hi) return;
    if (in_lo > in_hi) {
        std::swap(in_lo, in_hi);
        std::swap(out_lo, out_hi);
    }
    for (const MaskedPlane& masked : kMaskedPlanes) {
        std::int32_t* values = img->*masked.plane;
        if (!values || masked.plane == &Image::alpha || !(mask & masked.mask)) continue;
        map_levels(values, image_count(img), in_lo, in_hi, out_lo, out_hi);
    }
    report_progress();
}

void image_contrast(Image* img, std::uint32_t mask, std::int32_t shift, double factor) {
    const double f = std::fabs(factor) > 0.0001 ? 1.0 / factor : 1.0;
    const std::int32_t lo = truncate((1.0 - f) * 32768.0 - shift);
    const std::int32_t hi = truncate((f + 1.0) * 32768.0 - shift);
    image_levels(img, mask, lo, hi, 0, 65535);
}
