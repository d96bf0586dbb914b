// Feeds the image library with sequences of its operations in place, but for rotozoom, and a BMP export, on
// two images of any flags and values that start with up to 200 x 200 pixels. What is checked is what the
// sanitizers see, and that an image stays one: its size and planes fit its flags.
//
// The input is a list of bytes: the size, flags and values of two images, then operations with their
// arguments.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <vector>

#include "show/image/bmp.h"
#include "show/image/filters.h"
#include "show/image/generators.h"
#include "show/image/loops.h"
#include "show/image/noise.h"
#include "show/image/transforms.h"
#include "tests/support/image.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr std::size_t kMaxPixels = 1 << 16;
constexpr int kMaxOperations = 24;

// Reads the input byte by byte; zeros follow its end.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), left_(size) {}

    bool empty() const { return left_ == 0; }

    std::uint8_t byte() {
        if (left_ == 0) return 0;
        --left_;
        return *data_++;
    }

    std::int32_t below(std::int32_t n) { return (byte() | byte() << 8) % n; }

    // Mostly near 0, sometimes any number, sometimes one of the extremes.
    std::int32_t integer() {
        const std::uint8_t kind = byte();
        if (kind < 128) return static_cast<std::int8_t>(byte());
        if (kind < 192) return byte() | byte() << 8;
        if (kind == 255) return INT32_MIN;
        if (kind == 254) return INT32_MAX;
        std::uint32_t v = 0;
        for (int i = 0; i < 4; ++i) v = v << 8 | byte();
        return static_cast<std::int32_t>(v);
    }

    double real() {
        switch (const std::uint8_t kind = byte()) {
        case 255:
            return std::nan("");
        case 254:
            return HUGE_VAL;
        case 253:
            return -1e300;
        case 252:
            return std::numeric_limits<double>::denorm_min();
        default:
            return kind < 192 ? static_cast<std::int8_t>(byte()) / 16.0 : integer() * 1.7;
        }
    }

    std::vector<std::int32_t> kernel(std::int32_t count) {
        std::vector<std::int32_t> weights(static_cast<std::size_t>(count));
        for (std::int32_t& w : weights) w = integer();
        return weights;
    }

private:
    const std::uint8_t* data_;
    std::size_t left_;
};

void require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

void check(const Image* img) {
    require(img->width > 0 && img->height > 0, "an image has no size");
    require(img->green != nullptr, "an image has no green plane");
    require((img->red != nullptr) == image_has_three_planes(img), "red does not fit the flags");
    require((img->blue != nullptr) == image_has_three_planes(img), "blue does not fit the flags");
    require((img->alpha != nullptr) == ((img->flags & kImageAlpha) != 0), "alpha does not fit the flags");
}

void fill_plane(Input& in, std::int32_t* plane, std::size_t count) {
    if (!plane) return;
    const std::int32_t base = in.integer(), step = in.integer();
    for (std::size_t i = 0; i < count; ++i) plane[i] = base + step * static_cast<std::int32_t>(i % 251);
    for (int k = in.byte() % 8; k > 0; --k)
        plane[static_cast<std::size_t>(in.below(65535)) % count] = in.integer();
}

ImagePtr read_image(Input& in, std::int32_t width, std::int32_t height) {
    ImagePtr img(image_create(width, height, in.byte() & 15));
    for (std::int32_t* plane : {img->green, img->red, img->blue, img->alpha}) {
        fill_plane(in, plane, image_count(img.get()));
    }
    return img;
}

void convolve(Input& in, Image* img) {
    const int which = in.byte() % 3;
    const std::int32_t r = which == 0 ? in.below(6) : in.below(80);
    const std::vector<std::int32_t> kernel = in.kernel(which == 0 ? (2 * r + 1) * (2 * r + 1) : 2 * r + 1);
    const double divisor = in.real();
    const std::int32_t bias = in.integer();
    if (which == 0) image_convolve(img, kernel.data(), r, divisor, bias);
    if (which == 1) image_convolve_h(img, kernel.data(), r, divisor, bias);
    if (which == 2) image_convolve_v(img, kernel.data(), r, divisor, bias);
}

void fill_rect(Input& in, Image* img) {
    const std::int32_t x = in.integer(), y = in.integer(), w = in.integer(), h = in.below(2000);
    image_fill_rect(img, x, y, w, h, static_cast<std::uint32_t>(in.integer()));
}

void line(Input& in, Image* img) {
    const std::int32_t x0 = in.integer(), y0 = in.integer(), x1 = in.integer(), y1 = in.integer();
    image_line(img, x0, y0, x1, y1, static_cast<std::uint32_t>(in.integer()));
}

void levels(Input& in, Image* img) {
    const std::int32_t in_lo = in.integer(), in_hi = in.integer(), out_lo = in.integer(),
                       out_hi = in.integer();
    const std::uint32_t mask = in.byte();
    image_levels(img, mask, in_lo, in_hi, out_lo, out_hi);
}

void light(Input& in, Image* img, const Image* other) {
    BumpLight lamp;
    for (double* term : {&lamp.angle, &lamp.ambient, &lamp.diffuse, &lamp.specular, &lamp.shininess}) {
        *term = in.real();
    }
    image_light(img, other, lamp);
}

void transform(Input& in, Image* img) {
    Matrix2 m;
    for (double* term : {&m.xx, &m.xy, &m.yx, &m.yy}) *term = in.real();
    image_transform(img, m);
}

void blur_directional(Input& in, Image* img) {
    const std::int32_t r = in.below(8);
    const double angle = in.real(), aspect = in.real();
    image_blur_directional(img, r, angle, aspect, in.real());
}

void resize(Input& in, Image* img) {
    const std::int32_t fx = in.integer(), fy = in.integer();
    if (in.byte() & 1) {
        image_shrink(img, fx, fy);
    } else if (fx < 4 && fy < 4 && image_count(img) < kMaxPixels / 9) {
        image_enlarge(img, fx, fy);
    }
}

void export_bmp(const Image* img) {
    std::int32_t size = 0;
    std::free(image_to_bmp(img, &size));
}

void linear_gradient(Input& in, Image* img) {
    const std::int32_t x0 = in.integer(), y0 = in.integer(), x1 = in.integer(), y1 = in.integer();
    image_linear_gradient(img, x0, y0, x1, y1);
}

void displace(Input& in, Image* img, const Image* other) {
    const std::int32_t sx = in.integer(), sy = in.integer();
    image_displace(img, other, sx, sy, in.byte() & 1);
}

// An argument list may be evaluated in any order, so at most one of its members reads the input.
void run_operation(Input& in, Image* img, const Image* other) {
    std::int32_t i;
    std::uint32_t mask;
    double a;
    switch (in.byte() % 26) {
    case 0:
        return image_set_alpha(img, other);
    case 1:
        return image_fill(img, static_cast<std::uint32_t>(in.integer()));
    case 2:
        return fill_rect(in, img);
    case 3:
        return line(in, img);
    case 4:
        return image_noise(img, in.integer());
    case 5:
        return image_scatter_noise(img, in.integer());
    case 6:
        i = in.integer();
        return image_plasma(img, i, in.real());
    case 7:
        a = in.real();
        return image_radial(img, a, in.real());
    case 8:
        return linear_gradient(in, img);
    case 9:
        i = in.below(5);
        return image_cells(img, i, in.byte() & 1);
    case 10:
        return convolve(in, img);
    case 11:
        i = in.below(300);
        return image_blur_h(img, i, in.real());
    case 12:
        i = in.below(300);
        return image_blur_v(img, i, in.real());
    case 13:
        return blur_directional(in, img);
    case 14:
        return levels(in, img);
    case 15:
        mask = in.byte();
        i = in.integer();
        return image_contrast(img, mask, i, in.real());
    case 16:
        i = in.byte() % 9;
        return image_blend(img, other, i, in.integer());
    case 17:
        return image_rank(img, in.byte() & 1);
    case 18:
        return image_emboss(img, in.real());
    case 19:
        mask = in.byte();
        return image_gamma(img, mask, in.real());
    case 20:
        mask = in.byte();
        return image_posterize(img, mask, in.integer());
    case 21:
        return light(in, img, other);
    case 22:
        i = in.integer();
        return image_shift(img, i, in.integer());
    case 23:
        return displace(in, img, other);
    case 24:
        return transform(in, img);
    default:
        return in.byte() & 1 ? resize(in, img) : image_polarize(img);
    }
}

// Every variant of the inner loops takes its turn.
void choose_loops(Input& in) {
    const Loops* variant = loops_variant(in.byte() % 3);
    loops_use(variant ? variant : loops_variant(0));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input in(data, size);
    choose_loops(in);
    const std::int32_t width = in.below(200) + 1, height = in.below(200) + 1;
    const ImagePtr img = read_image(in, width, height);
    const bool same = in.byte() & 3;
    const std::int32_t other_width = same ? width : in.below(50) + 1,
                       other_height = same ? height : in.below(50) + 1;
    const ImagePtr other = read_image(in, other_width, other_height);
    for (int i = 0; i < kMaxOperations && !in.empty(); ++i) {
        run_operation(in, img.get(), in.byte() % 5 ? other.get() : img.get());
        check(img.get());
    }
    export_bmp(img.get());
    check(other.get());
    return 0;
}
