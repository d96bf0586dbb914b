#include "show/image/transforms.h"

#include <algorithm>
#include <cmath>

#include "show/image/planes.h"
#include "show/image/progress.h"

namespace {

// Ends an operation in place: commits the result, if there is one, and calls the hook.
void commit(Image* img, Image* result) {
    if (!result) return;
    image_replace(img, result);
    report_progress();
}

// --- Shift ---

void shift_plane(std::int32_t* dst, const std::int32_t* src, std::int32_t width, std::int32_t height,
                 std::int32_t dx, std::int32_t dy) {
    const std::int32_t left = wrap(dx, width);
    for (std::int32_t y = 0; y < height; ++y) {
        const std::int32_t* row = src + std::ptrdiff_t{y} * width;
        std::int32_t* out = dst + std::ptrdiff_t{wrap(std::int64_t{y} + dy, height)} * width;
        std::rotate_copy(row, row + (width - left), row + width, out);
    }
}

// --- Shrink, enlarge ---

// The rounded mean of fx x fy values.
std::int32_t block_average(const std::int32_t* block, std::int32_t stride, std::int32_t fx, std::int32_t fy) {
    const std::int64_t n = std::int64_t{fx} * fy;
    std::int64_t sum = 0;
    for (std::int32_t y = 0; y < fy; ++y) {
        for (std::int32_t x = 0; x < fx; ++x) sum += block[std::ptrdiff_t{y} * stride + x];
    }
    return static_cast<std::int32_t>((sum + n / 2) / n);
}

Image* shrunk(const Image* img, std::int32_t fx, std::int32_t fy) {
    if (!img || fx < 1 || fy < 1) return nullptr;
    Image* result = image_create(img->width / fx, img->height / fy, img->flags);
    if (!result) return nullptr;
    for (Plane plane : kAllPlanes) {
        std::int32_t* out = result->*plane;
        if (!out) continue;
        for (std::int32_t y = 0; y < result->height; ++y) {
            const std::int32_t* row = img->*plane + std::ptrdiff_t{y} * fy * img->width;
            for (std::int32_t x = 0; x < result->width; ++x) {
                *out++ = block_average(row + std::ptrdiff_t{x} * fx, img->width, fx, fy);
            }
        }
    }
    return result;
}

Image* enlarged(const Image* img, std::int32_t fx, std::int32_t fy) {
    if (!img || fx < 1 || fy < 1) return nullptr;
    if (img->width > INT32_MAX / fx || img->height > INT32_MAX / fy) return nullptr;
    Image* result = image_create(img->width * fx, img->height * fy, img->flags);
    if (!result) return nullptr;
    for (Plane plane : kAllPlanes) {
        std::int32_t* out = result->*plane;
        if (!out) continue;
        for (std::int32_t y = 0; y < result->height; ++y) {
            const std::int32_t* row = img->*plane + std::ptrdiff_t{y / fy} * img->width;
            for (std::int32_t x = 0; x < img->width; ++x) out = std::fill_n(out, fx, row[x]);
        }
    }
    return result;
}

// --- Displace ---

// An offset in 1/64 pixels; negative ones become 0.
std::int32_t map_offset(std::int32_t value, std::int32_t scale) { return std::max(0, (value * scale) >> 10); }

// The bilinear mix of the four pixels at an offset (1/64 pixels) from (x, y).
std::int32_t displaced_pixel(const std::int32_t* src, const Image* img, std::int32_t x, std::int32_t y,
                             std::int32_t offset_x, std::int32_t offset_y) {
    const std::int32_t x0 = wrap(std::int64_t{x} + (offset_x >> 6), img->width),
                       x1 = wrap(x0 + 1, img->width);
    const std::int32_t y0 = wrap(std::int64_t{y} + (offset_y >> 6), img->height),
                       y1 = wrap(y0 + 1, img->height);
    const std::int32_t fx = offset_x & 63, fy = offset_y & 63;
    const std::int32_t* const upper = src + std::ptrdiff_t{y0} * img->width;
    const std::int32_t* const lower = src + std::ptrdiff_t{y1} * img->width;
    const std::int32_t mix =
        (upper[x0] * (63 - fx) + upper[x1] * fx) * (63 - fy) + (lower[x0] * (63 - fx) + lower[x1] * fx) * fy;
    return mix >> 12;
}

Image* displaced(const Image* img, const Image* map, std::int32_t sx, std::int32_t sy, bool two_planes) {
    if (!img || !map || !same_size(img, map) || (two_planes && !map->red)) return nullptr;
    Image* result = create_result(img);
    if (!result) return nullptr;

    const std::int32_t* const across = two_planes ? map->red : map->green;
    for (Plane plane : kColorPlanes) {
        std::int32_t* const out = result->*plane;
        if (!out) continue;
        std::size_t i = 0;
        for (std::int32_t y = 0; y < img->height; ++y) {
            for (std::int32_t x = 0; x < img->width; ++x, ++i) {
                out[i] = displaced_pixel(img->*plane, img, x, y, map_offset(across[i], sx),
                                         map_offset(map->green[i], sy));
            }
        }
    }
    return result;
}

// --- Resampling ---

struct Place {
    double u, v;
};

// A position outside every picture that still fits into 64-bit integers.
constexpr double kFarAway = 4294967296.0;

// The integer part and the fraction, in 1/256, of one coordinate.
struct Split {
    std::int64_t whole;
    std::int64_t fraction;
};

Split split(double v) {
    const double inside = v > -kFarAway ? std::min(v, kFarAway) : -kFarAway; // also for a NaN
    const double whole = std::floor(inside);
    return {static_cast<std::int64_t>(whole), static_cast<std::int64_t>((inside - whole) * 256.0)};
}

// The bilinear mix around a place.
std::int32_t sample(const std::int32_t* src, const Image* img, const Place& place) {
    const bool wrapped = img->flags & kImageWrap;
    const auto column = [=](std::int64_t x) {
        return wrapped ? wrap(x, img->width) : clamp_index(x, img->width);
    };
    const auto row = [=](std::int64_t y) {
        return src +
               std::ptrdiff_t{wrapped ? wrap(y, img->height) : clamp_index(y, img->height)} * img->width;
    };
    const Split x = split(place.u), y = split(place.v);
    const std::int32_t x0 = column(x.whole), x1 = column(x.whole + 1);
    const std::int32_t* const upper = row(y.whole);
    const std::int32_t* const lower = row(y.whole + 1);
    const std::int64_t mix = (upper[x0] * (256 - x.fraction) + upper[x1] * x.fraction) * (256 - y.fraction) +
                             (lower[x0] * (256 - x.fraction) + lower[x1] * x.fraction) * y.fraction;
    return static_cast<std::int32_t>(mix >> 16);
}

// An image whose pixel (x, y) shows the place at(x, y) of img.
template <class PlaceAt>
Image* resampled(const Image* img, const PlaceAt& at) {
    Image* result = image_create_like(img);
    if (!result) return nullptr;
    std::size_t i = 0;
    for (std::int32_t y = 0; y < img->height; ++y) {
        for (std::int32_t x = 0; x < img->width; ++x, ++i) {
            const Place place = at(x, y);
            for (Plane plane : kAllPlanes) {
                if (result->*plane) (result->*plane)[i] = sample(img->*plane, img, place);
            }
        }
    }
    return result;
}

Image* transformed(const Image* img, const Matrix2& m) {
    if (!img) return nullptr;
    const double cx = (img->width - 1) / 2.0, cy = (img->height - 1) / 2.0;
    return resampled(img, [&](std::int32_t x, std::int32_t y) {
        const double dx = x - cx, dy = y - cy;
        return Place{cx + m.xx * dx + m.xy * dy, cy + m.yx * dx + m.yy * dy};
    });
}

Image* rotozoomed(const Image* img, double angle, double zoom) {
    if (zoom == 0.0) return nullptr;
    const double c = std::cos(angle) / zoom, s = std::sin(angle) / zoom;
    return transformed(img, {c, s, -s, c});
}

Image* polarized(const Image* img) {
    if (!img) return nullptr;
    constexpr double kTurn = 6.28318530717958647692;
    const double cx = (img->width - 1) / 2.0, cy = (img->height - 1) / 2.0;
    const double reach = std::min(img->width, img->height) / 2.0;
    return resampled(img, [=](std::int32_t x, std::int32_t y) {
        const double dx = x - cx, dy = y - cy;
        const double turn = std::atan2(dx, -dy) / kTurn; // -0.5..0.5, 0 straight up
        return Place{(turn < 0.0 ? turn + 1.0 : turn) * img->width, std::hypot(dx, dy) / reach * img->height};
    });
}

} // namespace

Image* image_shifted(const Image* img, std::int32_t dx, std::int32_t dy) {
    Image* result = img ? create_result(img) : nullptr;
    if (!result) return nullptr;
    for (Plane plane : kColorPlanes) {
        if (img->*plane) shift_plane(result->*plane, img->*plane, img->width, img->height, dx, dy);
    }
    return reported(result);
}

void image_shift(Image* img, std::int32_t dx, std::int32_t dy) {
    if (!img) return;
    const auto shift = [=](std::int32_t* dst, const std::int32_t* src) {
        shift_plane(dst, src, img->width, img->height, dx, dy);
    };
    if (remake_color_planes(img, shift)) report_progress();
}

Image* image_shrunk(const Image* img, std::int32_t fx, std::int32_t fy) {
    return reported(shrunk(img, fx, fy));
}

void image_shrink(Image* img, std::int32_t fx, std::int32_t fy) { commit(img, shrunk(img, fx, fy)); }

Image* image_enlarged(const Image* img, std::int32_t fx, std::int32_t fy) {
    return reported(enlarged(img, fx, fy));
}

void image_enlarge(Image* img, std::int32_t fx, std::int32_t fy) { commit(img, enlarged(img, fx, fy)); }

Image* image_displaced(const Image* img, const Image* map, std::int32_t sx, std::int32_t sy,
                       bool two_planes) {
    return reported(displaced(img, map, sx, sy, two_planes));
}

void image_displace(Image* img, const Image* map, std::int32_t sx, std::int32_t sy, bool two_planes) {
    commit(img, displaced(img, map, sx, sy, two_planes));
}

Image* image_transformed(const Image* img, const Matrix2& matrix) {
    return reported(transformed(img, matrix));
}

void image_transform(Image* img, const Matrix2& matrix) { commit(img, transformed(img, matrix)); }

Image* image_rotozoomed(const Image* img, double angle, double zoom) {
    return reported(rotozoomed(img, angle, zoom));
}

void image_rotozoom(Image* img, double angle, double zoom) { commit(img, rotozoomed(img, angle, zoom)); }

Image* image_polarized(const Image* img) { return reported(polarized(img)); }

void image_polarize(Image* img) { commit(img, polarized(img)); }
