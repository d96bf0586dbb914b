#include <algorithm>

#include "show/image/filters.h"
#include "show/image/loops.h"
#include "show/image/planes.h"
#include "show/image/progress.h"

namespace {

std::int32_t minimum_of_nine(const std::int32_t values[9]) {
    return std::min(65535, *std::min_element(values, values + 9));
}

std::int32_t maximum_of_nine(const std::int32_t values[9]) {
    return std::max(0, *std::max_element(values, values + 9));
}

// The result for column x of three rows, given the columns of its neighbours.
std::int32_t rank_border_pixel(const std::int32_t* const rows[3], std::int32_t left, std::int32_t x,
                               std::int32_t right, int which) {
    std::int32_t values[9];
    for (int k = 0; k < 3; ++k) {
        values[3 * k] = rows[k][left];
        values[3 * k + 1] = rows[k][x];
        values[3 * k + 2] = rows[k][right];
    }
    return rank_filters[which](values);
}

// Ranks a whole plane into another one. which: 0 minimum, 1 maximum.
void rank_plane(std::int32_t* dst, const std::int32_t* src, const Image* img, int which) {
    const std::int32_t width = img->width, height = img->height, last = width - 1;
    const bool wrapped = img->flags & kImageWrap;
    const auto row_at = [=](std::int32_t y) {
        return src + std::ptrdiff_t{wrapped ? wrap(y, height) : clamp_index(y, height)} * width;
    };
    for (std::int32_t y = 0; y < height; ++y) {
        const std::int32_t* const rows[3] = {row_at(y - 1), row_at(y), row_at(y + 1)};
        std::int32_t* const out = dst + std::ptrdiff_t{y} * width;
        out[0] = rank_border_pixel(rows, wrapped ? last : 0, 0, std::min(1, last), which);
        if (width == 1) continue;
        loops().rank(out + 1, rows[0] + 1, rows[1] + 1, rows[2] + 1, static_cast<std::size_t>(width) - 2,
                     which);
        out[last] = rank_border_pixel(rows, last - 1, last, wrapped ? 0 : last, which);
    }
}

} // namespace

std::int32_t (*const rank_filters[2])(const std::int32_t values[9]) = {minimum_of_nine, maximum_of_nine};

Image* image_ranked(const Image* img, int which) {
    Image* result = img ? create_result(img) : nullptr;
    if (!result) return nullptr;
    for (Plane plane : kColorPlanes) {
        if (img->*plane) rank_plane(result->*plane, img->*plane, img, which != 0);
    }
    report_progress();
    return result;
}

void image_rank(Image* img, int which) {
    if (!img) return;
    const auto rank = [=](std::int32_t* dst, const std::int32_t* src) {
        rank_plane(dst, src, img, which != 0);
    };
    if (remake_color_planes(img, rank)) report_progress();
}
