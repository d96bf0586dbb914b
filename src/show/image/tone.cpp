#include <algorithm>
#include <cmath>

#include "show/image/filters.h"
#include "show/image/levels.h"
#include "show/image/planes.h"
#include "show/image/progress.h"

namespace {

constexpr int kLevels = 65536;

// Applies v ^ exponent to one plane, for values as fractions of 65535. `cache` holds the results so far, else -1.
void gamma_plane(std::int32_t* values, std::size_t count, double exponent, std::int32_t cache[kLevels]) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::int32_t v = std::clamp(values[i], 0, 65535);
        if (cache[v] < 0) cache[v] = truncate(std::pow(v / 65535.0, exponent) * 65535.0);
        values[i] = cache[v];
    }
}

// A new image with the grey of img in its three planes.
Image* grey_in_color(const Image* img) {
    Image* result = image_create(img->width, img->height, kImageColor);
    if (!result) return nullptr;
    for (Plane plane : kColorPlanes) {
        std::memcpy(result->*plane, img->green, image_count(img) * sizeof(std::int32_t));
    }
    return result;
}

// Maps 0..65535 onto the range of two bytes.
void map_to_bytes(std::int32_t* values, std::size_t count, std::uint32_t lo, std::uint32_t hi) {
    const std::int32_t out_lo = static_cast<std::int32_t>((lo & 0xFF) * 257);
    const std::int32_t out_hi = static_cast<std::int32_t>((hi & 0xFF) * 257);
    map_levels(values, count, 0, 65535, out_lo, out_hi);
}

Image* colorized(const Image* img, std::uint32_t color_lo, std::uint32_t color_hi) {
    if (!img || (img->flags & kImagePlanes) != kImageGrey) return nullptr;
    Image* result = grey_in_color(img);
    if (!result) return nullptr;
    const std::size_t count = image_count(img);
    map_to_bytes(result->red, count, color_lo >> 16, color_hi >> 16);
    map_to_bytes(result->green, count, color_lo >> 8, color_hi >> 8);
    map_to_bytes(result->blue, count, color_lo, color_hi);
    return result;
}

// v rounded towards zero to a multiple of step. A step of -1 is not divided by, as -2^31 / -1 does not fit.
std::int32_t whole_steps(std::int32_t v, std::int32_t step) { return step == -1 ? v : v / step * step; }

} // namespace

Image* image_colorized(const Image* img, std::uint32_t color_lo, std::uint32_t color_hi) {
    Image* result = colorized(img, color_lo, color_hi);
    if (result) report_progress();
    return result;
}

void image_colorize(Image* img, std::uint32_t color_lo, std::uint32_t color_hi) {
    Image* result = colorized(img, color_lo, color_hi);
    if (!result) return;
    image_replace(img, result);
    report_progress();
}

void image_gamma(Image* img, std::uint32_t mask, double gamma) {
    if (!img || !(gamma > 0.0)) return;
    std::int32_t* cache = static_cast<std::int32_t*>(std::malloc(kLevels * sizeof(std::int32_t)));
    if (!cache) return;

    std::fill_n(cache, kLevels, -1);
    for (const MaskedPlane& masked : kMaskedPlanes) {
        std::int32_t* values = img->*masked.plane;
        if (values && (mask & masked.mask)) gamma_plane(values, image_count(img), 1.0 / gamma, cache);
    }
    std::free(cache);
    report_progress();
}

void image_posterize(Image* img, std::uint32_t mask, std::int32_t levels) {
    if (!img || levels == -1) return;
    const std::int32_t step = truncate(65536.0 / (levels + 1.0));
    const std::int32_t offset = truncate(32767.5 / (levels + 1.0));
    if (step == 0) return;
    for (const MaskedPlane& masked : kMaskedPlanes) {
        std::int32_t* values = img->*masked.plane;
        if (!values || !(mask & masked.mask)) continue;
        for (std::size_t i = 0; i < image_count(img); ++i) values[i] = whole_steps(values[i] + offset, step);
    }
    report_progress();
}
