#include "show/image/levels.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "show/image/filters.h"
#include "show/image/loops.h"
#include "show/image/planes.h"
#include "show/image/progress.h"

namespace {

// Whether every clamped value gives a result of 32 bits; the map is monotonic, so its ends decide.
bool results_fit(const LevelMap& map) {
    if (map.in_hi - map.in_lo < 0) return false; // the difference itself leaves 32 bits
    return fits_32((map.in_hi - map.in_lo) * map.scale + map.out_lo);
}

void map_levels_checked(std::int32_t* values, std::size_t count, const LevelMap& map) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::int32_t v = std::clamp(values[i], map.in_lo, map.in_hi);
        values[i] = truncate((v - map.in_lo) * map.scale + map.out_lo);
    }
}

} // namespace

void map_levels(std::int32_t* values, std::size_t count, std::int32_t in_lo, std::int32_t in_hi,
                std::int32_t out_lo, std::int32_t out_hi) {
    const double scale = static_cast<double>(out_hi - out_lo) / (in_hi - in_lo);
    const LevelMap map = {in_lo, in_hi, out_lo, scale};
    if (!results_fit(map)) {
        map_levels_checked(values, count, map);
    } else if (scale == 1.0 || scale == -1.0) {
        loops().shift_levels(values, count, map);
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
