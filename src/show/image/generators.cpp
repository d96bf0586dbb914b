#include "show/image/generators.h"

#include <cmath>
#include <initializer_list>
#include <utility>

#include "show/image/planes.h"
#include "show/image/progress.h"

namespace {

void copy_green_to_red_and_blue(Image* img) {
    const std::size_t bytes = image_count(img) * sizeof(std::int32_t);
    if (img->red) std::memcpy(img->red, img->green, bytes);
    if (img->blue) std::memcpy(img->blue, img->green, bytes);
}

// Writes each value of src to a cross of five pixels in dst, where dst is still 0.
void grow_cells(std::int32_t* dst, const std::int32_t* src, std::int32_t width, std::int32_t height) {
    for (std::int32_t y = 0; y < height; ++y) {
        std::int32_t* const row = dst + std::ptrdiff_t{y} * width;
        std::int32_t* const above = dst + std::ptrdiff_t{wrap(y - 1, height)} * width;
        std::int32_t* const below = dst + std::ptrdiff_t{wrap(y + 1, height)} * width;
        for (std::int32_t x = 0; x < width; ++x) {
            const std::int32_t v = src[std::ptrdiff_t{y} * width + x];
            for (std::int32_t* cell :
                 {row + x, row + wrap(x - 1, width), row + wrap(x + 1, width), above + x, below + x}) {
                if (*cell == 0) *cell = v;
            }
        }
    }
}

// Sets dst to 65535 where a pixel of src differs from its right or lower neighbour, else to 0.
void outline_cells(std::int32_t* dst, const std::int32_t* src, std::int32_t width, std::int32_t height) {
    for (std::int32_t y = 0; y < height; ++y) {
        const std::int32_t* const row = src + std::ptrdiff_t{y} * width;
        const std::int32_t* const below = src + std::ptrdiff_t{wrap(y + 1, height)} * width;
        for (std::int32_t x = 0; x < width; ++x) {
            const bool inner = row[x] == below[x] && row[x] == row[wrap(x + 1, width)];
            dst[std::ptrdiff_t{y} * width + x] = inner ? 0 : 65535;
        }
    }
}

} // namespace

void image_radial(Image* img, double inner, double outer) {
    if (!img) return;
    const double r0 = img->width * inner * 0.5;
    double ramp = img->width * outer * 0.5 - r0;
    if (ramp < 0.0001) ramp = 1.0;

    std::int32_t* value = img->green;
    for (std::int32_t y = -(img->height / 2); y < img->height - img->height / 2; ++y) {
        for (std::int32_t x = -(img->width / 2); x < img->width - img->width / 2; ++x) {
            const double distance = std::sqrt(static_cast<double>(x) * x + static_cast<double>(y) * y);
            const double t = 1.0 - (distance - r0) / ramp;
            *value++ = t < 0.0 ? 0 : t > 1.0 ? 65536 : truncate(t * 65536.0);
        }
    }
    copy_green_to_red_and_blue(img);
    report_progress();
}

void image_linear_gradient(Image* img, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) {
    if (!img) return;
    const double dx = static_cast<double>(x1) - x0, dy = static_cast<double>(y1) - y0;
    const double length = dx * dx + dy * dy;

    std::int32_t* value = img->green;
    for (std::int32_t y = 0; y < img->height; ++y) {
        for (std::int32_t x = 0; x < img->width; ++x) {
            const double t = (static_cast<double>(x) - x0) * dx + (static_cast<double>(y) - y0) * dy;
            *value++ = t <= 0.0 ? 0 : t >= length ? 65535 : truncate(t * 65535.0 / length);
        }
    }
    copy_green_to_red_and_blue(img);
    report_progress();
}

void image_cells(Image* img, std::int32_t steps, bool edges) {
    if (!img) return;
    std::int32_t* dst = static_cast<std::int32_t*>(std::calloc(image_count(img), sizeof(std::int32_t)));
    if (!dst) return;

    std::int32_t* src = img->green;
    for (std::int32_t i = 0; i < steps; ++i) {
        grow_cells(dst, src, img->width, img->height);
        std::swap(src, dst);
    }
    if (edges) {
        outline_cells(dst, src, img->width, img->height);
        std::swap(src, dst);
    }
    img->green = src;
    std::free(dst);
    report_progress();
}
