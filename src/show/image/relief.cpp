#include <algorithm>
#include <cmath>

#include "show/image/convolution.h"
#include "show/image/filters.h"
#include "show/image/planes.h"
#include "show/image/progress.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kLampAngle = kPi / 4.0;    // between lamp and eye, and between lamp and picture
constexpr double kHalfwayAngle = kPi / 8.0; // from the eye to half-way between it and the lamp

struct EmbossKernel {
    std::int32_t weights[9];
};

EmbossKernel emboss_kernel(double angle) {
    EmbossKernel kernel;
    std::int32_t* weight = kernel.weights;
    for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) {
            *weight++ = truncate((dx * std::sin(angle) + dy * std::cos(angle)) * 256.0);
        }
    }
    return kernel;
}

// Light on a slope: a factor for the colour, and a highlight in value units that is added.
struct Shade {
    double factor, highlight;
};

Shade shade(std::int32_t slope, const BumpLight& light) {
    const double tilt = std::atan(slope / -65536.0);
    const double diffuse = std::max(0.0, std::cos(kLampAngle - tilt));
    const double highlight = std::max(0.0, std::cos(kHalfwayAngle - tilt));
    return {light.ambient + light.diffuse * diffuse,
            65535.0 * light.specular * std::pow(highlight, light.shininess)};
}

// Clamps to 0..65535 and truncates; a NaN becomes 0.
std::int32_t clamp_to_range(double v) { return v > 0.0 ? truncate(std::min(v, 65535.0)) : 0; }

} // namespace

Image* image_embossed(const Image* img, double angle) {
    const EmbossKernel kernel = emboss_kernel(angle);
    return image_convolved(img, kernel.weights, 1, 1.0, 0);
}

void image_emboss(Image* img, double angle) {
    const EmbossKernel kernel = emboss_kernel(angle);
    image_convolve(img, kernel.weights, 1, 1.0, 0);
}

void image_light(Image* dst, const Image* height, const BumpLight& light) {
    if (!dst || !height || !same_size(dst, height)) return;
    const EmbossKernel kernel = emboss_kernel(light.angle);
    Image* slopes = convolved(height, {kernel.weights, 1, 1.0, 0});
    if (!slopes) return;

    for (std::size_t i = 0; i < image_count(dst); ++i) {
        const Shade s = shade(slopes->green[i], light);
        for (Plane plane : kColorPlanes) {
            if (dst->*plane) (dst->*plane)[i] = clamp_to_range((dst->*plane)[i] * s.factor + s.highlight);
        }
    }
    image_free(slopes);
    report_progress();
}
