#include "image/noise.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>

#include "image/loops.h"
#include "image/planes.h"
#include "image/progress.h"
#include "image/random.h"

namespace {

constexpr std::size_t kBlock = 512;

// One number per pixel, added to every plane.
void add_grey_noise(Image* img, std::int32_t amplitude, std::uint32_t range) {
    std::uint32_t numbers[kBlock];
    for (std::size_t left = image_count(img); left > 0;) {
        const std::size_t n = std::min(left, kBlock);
        left -= n;
        loops().draw(g_random, numbers, n);
        if (range == 1) std::fill_n(numbers, n, 0); // what they leave divided by 1
        for (Plane plane : kColorPlanes) {
            if (img->*plane)
                loops().add_noise(img->*plane + left, numbers, n, std::max(range, 3u), amplitude);
        }
    }
}

// Three numbers per pixel: red, green, blue.
void add_color_noise(Image* img, std::int32_t amplitude, std::uint32_t range) {
    for (std::size_t i = image_count(img); i-- > 0;) {
        for (std::int32_t* plane : {img->red, img->green, img->blue}) {
            plane[i] += static_cast<std::int32_t>(random_step(g_random) % range) - amplitude;
        }
    }
}

} // namespace

void image_noise(Image* img, std::int32_t amplitude) {
    if (!img) return;
    const bool color = amplitude < 0 && image_has_three_planes(img);
    if (color) amplitude = -amplitude;

    const std::uint32_t range = static_cast<std::uint32_t>(2 * amplitude + 1); // odd, so never 0
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
