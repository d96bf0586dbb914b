#include <cmath>

#include "show/image/convolution.h"
#include "show/image/filters.h"
#include "show/image/planes.h"
#include "show/image/progress.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

// The weight at distance d: 256 in the centre (d = 0), 0 at d = 1.
std::int32_t raised_cosine(double d) { return truncate(std::cos(d * kPi) * 128.0 + 128.0); }

// Blurs along rows or columns.
void blur_lines(Image* img, Direction direction, std::int32_t r, double strength) {
    std::int32_t sum = 0;
    std::int32_t* kernel = img ? blur_kernel(r, &sum) : nullptr;
    if (!kernel) return;
    const bool done = convolve_lines(img, direction, {kernel, r, sum / strength, 0});
    std::free(kernel);
    if (done) report_progress();
}

// The weight at (dx, dy) of the elliptic kernel; (along_x, along_y) is the direction of the axis that an aspect below
// 1 makes shorter, and one above 1 longer.
std::int32_t elliptic_weight(std::int32_t dx, std::int32_t dy, std::int32_t r, double along_x, double along_y,
                             double aspect) {
    const double reach = r + 1.0;
    const double u = dx / reach, v = dy / reach;
    double d = std::hypot(v, u);
    const double nu = d > 0.0 ? u / d : 0.0, nv = d > 0.0 ? v / d : 0.0;
    const double t = std::fabs(along_x * nu + along_y * nv);
    if (t < 1.0) d /= aspect + (1.0 - aspect) * (1.0 - t);
    return d <= 1.0 ? raised_cosine(d) : 0;
}

} // namespace

std::int32_t* blur_kernel(std::int32_t r, std::int32_t* sum) {
    if (r < 0) return nullptr;
    const std::size_t n = 2 * static_cast<std::size_t>(r) + 1;
    std::int32_t* kernel = static_cast<std::int32_t*>(std::malloc(n * sizeof(std::int32_t)));
    if (!kernel) return nullptr;

    *sum = 0;
    for (std::size_t k = 0; k < n; ++k) {
        kernel[k] = raised_cosine((static_cast<double>(k) - r) / (r + 1.0));
        *sum += kernel[k];
    }
    return kernel;
}

void image_blur_h(Image* img, std::int32_t r, double strength) {
    blur_lines(img, Direction::kRows, r, strength);
}

void image_blur_v(Image* img, std::int32_t r, double strength) {
    blur_lines(img, Direction::kColumns, r, strength);
}

void image_blur_directional(Image* img, std::int32_t r, double angle, double aspect, double strength) {
    if (!img || r < 0) return;
    const std::size_t n = 2 * static_cast<std::size_t>(r) + 1;
    std::int32_t* kernel = static_cast<std::int32_t*>(std::calloc(n * n, sizeof(std::int32_t)));
    if (!kernel) return;

    const double along_x = std::sin(angle), along_y = std::cos(angle);
    std::int32_t sum = 0;
    std::int32_t* weight = kernel;
    for (std::int32_t dy = -r; dy <= r; ++dy) {
        for (std::int32_t dx = -r; dx <= r; ++dx) {
            *weight = elliptic_weight(dx, dy, r, along_x, along_y, aspect);
            sum += *weight++;
        }
    }
    // 1/256, as the convolution sums values >> 8.
    const bool done = convolve(img, {kernel, r, (sum / strength) * 0.00390625, 0});
    std::free(kernel);
    if (done) report_progress();
}
