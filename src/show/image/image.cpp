#include "show/image/image.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "show/image/progress.h"

namespace {

// One byte of a colour and the plane that takes it.
struct PlaneLevel {
    std::int32_t* plane;
    std::uint32_t level;
};

// Lists the planes of an image with their bytes of a colour; returns their number.
int split_color(const Image* img, std::uint32_t color, PlaneLevel levels[4]) {
    const std::uint32_t red = color >> 16 & 0xFF, green = color >> 8 & 0xFF, blue = color & 0xFF;
    int n = 0;
    if ((img->flags & kImagePlanes) == kImageGrey) {
        levels[n++] = {img->green, blue};
    } else {
        if (img->blue) levels[n++] = {img->blue, blue};
        levels[n++] = {img->green, green};
        if (img->red) levels[n++] = {img->red, red};
    }
    if (img->alpha) levels[n++] = {img->alpha, color >> 24};
    return n;
}

// (a + b) / 2, rounded towards zero. In 64 bits, as the sum of two columns of a very wide plane exceeds 32.
std::int32_t midpoint(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>((std::int64_t{a} + b) / 2);
}

bool inside(const Image* img, std::int32_t x, std::int32_t y) {
    return x >= 0 && y >= 0 && x < img->width && y < img->height;
}

// Fills a rectangle in one plane. Nothing is written before the plane.
void fill_rect(const Image* img, const PlaneLevel& target, std::int64_t x, std::int64_t y, std::int64_t w,
               std::int64_t h) {
    for (std::int64_t row = std::max<std::int64_t>(y, 0); row < y + h; ++row) {
        const std::int64_t begin = std::max<std::int64_t>(row * img->width + x, 0);
        const std::int64_t end = row * img->width + x + w;
        if (begin < end)
            plane_fill(target.plane + begin, static_cast<std::size_t>(end - begin), target.level);
    }
}

} // namespace

Image* image_create(std::int32_t width, std::int32_t height, std::uint32_t flags) {
    if (width < 1 || height < 1 || width > INT32_MAX / height) return nullptr;

    Image* img = static_cast<Image*>(std::calloc(1, sizeof(Image)));
    if (!img) return nullptr;
    *img = {width, height, flags, nullptr, nullptr, nullptr, nullptr};

    const std::size_t bytes = image_count(img) * sizeof(std::int32_t);
    const auto allocate = [bytes] { return static_cast<std::int32_t*>(std::malloc(bytes)); };
    const bool three = image_has_three_planes(img), alpha = flags & kImageAlpha;
    img->green = allocate();
    if (three) img->red = allocate();
    if (three) img->blue = allocate();
    if (alpha) img->alpha = allocate();

    if (img->green && (!three || (img->red && img->blue)) && (!alpha || img->alpha)) return img;
    image_free(img);
    return nullptr;
}

Image* image_create_like(const Image* img) {
    return img ? image_create(img->width, img->height, img->flags) : nullptr;
}

Image* image_copy(const Image* img) {
    Image* copy = image_create_like(img);
    if (!copy) return nullptr;

    const std::size_t bytes = image_count(img) * sizeof(std::int32_t);
    std::memcpy(copy->green, img->green, bytes);
    if (copy->red) std::memcpy(copy->red, img->red, bytes);
    if (copy->blue) std::memcpy(copy->blue, img->blue, bytes);
    if (copy->alpha) std::memcpy(copy->alpha, img->alpha, bytes);
    return copy;
}

void image_free(Image* img) {
    if (!img) return;
    std::free(img->red);
    std::free(img->green);
    std::free(img->blue);
    std::free(img->alpha);
    std::free(img);
}

void image_replace(Image* dst, Image* src) {
    if (!dst || !src || dst == src) return;
    std::free(dst->red);
    std::free(dst->green);
    std::free(dst->blue);
    std::free(dst->alpha);
    *dst = *src;
    std::free(src);
}

void image_set_alpha(Image* dst, const Image* src) {
    if (!dst || !src || !src->green || dst->width != src->width || dst->height != src->height) return;

    const std::size_t bytes = image_count(src) * sizeof(std::int32_t);
    if (!dst->alpha) dst->alpha = static_cast<std::int32_t*>(std::malloc(bytes));
    if (!dst->alpha) return;
    std::memcpy(dst->alpha, src->green, bytes);
    dst->flags |= kImageAlpha;
    report_progress();
}

void image_fill(Image* img, std::uint32_t color) {
    if (!img) return;
    PlaneLevel levels[4];
    const int n = split_color(img, color, levels);
    for (int i = 0; i < n; ++i) plane_fill(levels[i].plane, image_count(img), levels[i].level);
    report_progress();
}

void image_fill_rect(Image* img, std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h,
                     std::uint32_t color) {
    if (!img) return;
    const std::int64_t columns = std::min<std::int64_t>(w, std::int64_t{img->width} - x);
    const std::int64_t rows = std::min<std::int64_t>(h, std::int64_t{img->height} - y);
    PlaneLevel levels[4];
    const int n = split_color(img, color, levels);
    for (int i = 0; i < n; ++i) fill_rect(img, levels[i], x, y, columns, rows);
    report_progress();
}

void image_line(Image* img, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
                std::uint32_t color) {
    if (!img || !inside(img, x0, y0) || !inside(img, x1, y1)) return;
    PlaneLevel levels[4];
    const int n = split_color(img, color, levels);
    for (int i = 0; i < n; ++i) plane_line(levels[i].plane, img->width, x0, y0, x1, y1, levels[i].level);
    report_progress();
}

void plane_fill(std::int32_t* plane, std::size_t count, std::uint32_t level) {
    std::fill_n(plane, count, static_cast<std::int32_t>(level * 257));
}

void plane_line(std::int32_t* plane, std::int32_t width, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                std::int32_t y1, std::uint32_t level) {
    const std::int32_t value = static_cast<std::int32_t>(level * 257);
    plane[std::ptrdiff_t{y0} * width + x0] = value;
    plane[std::ptrdiff_t{y1} * width + x1] = value;
    if (std::abs(x0 - x1) <= 1 && std::abs(y0 - y1) <= 1) return;

    const std::int32_t mx = midpoint(x0, x1), my = midpoint(y0, y1);
    plane_line(plane, width, x0, y0, mx, my, level);
    plane_line(plane, width, mx, my, x1, y1, level);
}
