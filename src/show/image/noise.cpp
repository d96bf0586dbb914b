#include "show/image/noise.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>

#include "show/image/planes.h"
#include "show/image/progress.h"
#include "show/image/random.h"
#include "show/image/remainder.h"

namespace {

// Adds one number per pixel to every plane, block by block from the end.
void add_grey_noise(Image* img, std::int32_t amplitude, const Remainder& range) {
    RandomBlock random;
    std::int32_t noise[RandomBlock::kSize];
    random_begin(random);
    for (std::size_t left = image_count(img); left > 0;) {
        const std::size_t n = std::min(left, RandomBlock::kSize);
        for (std::size_t k = 0; k < n; ++k) {
            noise[n - 1 - k] = static_cast<std::int32_t>(range.of(random.numbers[k])) - amplitude;
        }
        left -= n;
        for (Plane plane : kColorPlanes) {
            if (!(img->*plane)) continue;
            std::int32_t* const values = img->*plane + left;
            for (std::size_t k = 0; k < n; ++k) values[k] += noise[k];
        }
        random.used = n;
        if (left > 0) random_refill(random);
    }
    random_end(random);
}

// Adds three numbers per pixel: to red, green and blue.
void add_color_noise(Image* img, std::int32_t amplitude, const Remainder& range) {
    RandomBlock random;
    random_begin(random);
    for (std::size_t i = image_count(img); i-- > 0;) {
        for (std::int32_t* plane : {img->red, img->green, img->blue}) {
            plane[i] += static_cast<std::int32_t>(range.of(random_next(random))) - amplitude;
        }
    }
    random_end(random);
}

} // namespace

void image_noise(Image* img, std::int32_t amplitude) {
    if (!img) return;
    const bool color = amplitude < 0 && image_has_three_planes(img);
    if (color) amplitude = -amplitude;

    const Remainder range(static_cast<std::uint32_t>(2 * amplitude + 1));
    if (color) {
        add_color_noise(img, amplitude, range);
    } else {
        add_grey_noise(img, amplitude, range);
    }
    report_progress();
}

void image_scatter_noise(Image* img, std::int32_t density) {
    if (!img || density == 0) return;
    const bool one = (img->flags & kImagePlanes) == kImageGrey;
    const std::int32_t n = img->width * img->height / density;
    for (std::int32_t k = 0; k < n; ++k) {
        const std::uint32_t x = random_next() % static_cast<std::uint32_t>(img->width);
        const std::uint32_t y = random_next() % static_cast<std::uint32_t>(img->height);
        const std::size_t i = x + std::size_t{y} * static_cast<std::size_t>(img->width);
        if (!one && img->red) img->red[i] = std::rand() & 0xFFFF;
        img->green[i] = std::rand() & 0xFFFF;
        if (!one && img->blue) img->blue[i] = std::rand() & 0xFFFF;
    }
    report_progress();
}
