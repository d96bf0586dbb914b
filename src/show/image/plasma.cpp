#include <cstring>
#include <initializer_list>

#include "show/image/generators.h"
#include "show/image/planes.h"
#include "show/image/progress.h"
#include "show/image/random.h"
#include "show/image/remainder.h"

namespace {

// Cells at most halve from 2^31 to nothing.
constexpr int kMaxDepth = 33;

// Random ranges and offsets for the cells of one size.
struct Level {
    Remainder edge_range, centre_range;
    std::int32_t edge_offset, centre_offset;
};

struct Plasma {
    std::int32_t* plane;
    std::int32_t width, height;
    RandomBlock random;
    Level levels[kMaxDepth];
};

void make_levels(Level levels[kMaxDepth], std::int32_t amplitude, double roughness) {
    for (int depth = 0; depth < kMaxDepth; ++depth) {
        const std::int32_t a = amplitude;
        levels[depth] = {Remainder(static_cast<std::uint32_t>(4 * a + 1)),
                         Remainder(static_cast<std::uint32_t>(8 * a + 1)), 2 * a, 4 * a};
        amplitude = truncate(a * roughness);
    }
}

std::int32_t clamp_level(std::int32_t v) { return v < 0 ? 0 : v > 65535 ? 65535 : v; }

// A random number of a range, less an offset.
std::int32_t draw(Plasma& p, const Remainder& range, std::int32_t offset) {
    return static_cast<std::int32_t>(range.of(random_next(p.random))) - offset;
}

void plasma_edge_point(Plasma& p, const Level& level, std::int32_t a, std::int32_t& point, std::int32_t b) {
    if (point >= 0) return;
    point = clamp_level((a + b + draw(p, level.edge_range, level.edge_offset)) >> 1);
}

void plasma_centre_point(Plasma& p, const Level& level, std::int32_t& point, std::int32_t n1, std::int32_t n2,
                         std::int32_t n3, std::int32_t n4) {
    if (point >= 0) return;
    point = clamp_level((n1 + n2 + n3 + n4 + draw(p, level.centre_range, level.centre_offset)) >> 2);
}

// (a + b) / 2, rounded down. In 64 bits, as the sum of two columns of a very wide plane exceeds 32.
std::int32_t midpoint(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>((std::int64_t{a} + b) >> 1);
}

// Subdivides a cell (see generators.h). Only x1 and y1 of a tileable plane can equal its size; they wrap to 0.
void plasma_subdivide(Plasma& p, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
                      int depth) {
    const std::int32_t mx = midpoint(x0, x1), my = midpoint(y0, y1);
    if (x0 >= mx && y0 >= my) return;

    const Level& level = p.levels[depth];
    std::int32_t* const top = p.plane + std::ptrdiff_t{y0} * p.width;
    std::int32_t* const middle = p.plane + std::ptrdiff_t{my} * p.width;
    std::int32_t* const bottom = p.plane + std::ptrdiff_t{y1 >= p.height ? y1 - p.height : y1} * p.width;
    const std::int32_t right = x1 >= p.width ? x1 - p.width : x1;
    plasma_edge_point(p, level, top[x0], top[mx], top[right]);
    plasma_edge_point(p, level, bottom[x0], bottom[mx], bottom[right]);
    plasma_edge_point(p, level, top[x0], middle[x0], bottom[x0]);
    plasma_edge_point(p, level, top[right], middle[right], bottom[right]);
    plasma_centre_point(p, level, middle[mx], bottom[mx], top[mx], middle[x0], middle[right]);

    // In a cell without width or height every quadrant occurs twice; the second one would have nothing to set.
    plasma_subdivide(p, x0, y0, mx, my, depth + 1);
    if (x0 != x1) plasma_subdivide(p, mx, y0, x1, my, depth + 1);
    if (y0 == y1) return;
    plasma_subdivide(p, x0, my, mx, y1, depth + 1);
    if (x0 != x1) plasma_subdivide(p, mx, my, x1, y1, depth + 1);
}

} // namespace

void plane_plasma(std::int32_t* plane, std::int32_t width, std::int32_t height, bool tileable,
                  std::int32_t amplitude, double roughness) {
    const std::size_t row = static_cast<std::size_t>(width);
    const std::size_t count = row * static_cast<std::size_t>(height);
    std::memset(plane, 0xFF, count * sizeof *plane); // -1: not set yet

    Plasma p;
    p.plane = plane;
    p.width = width;
    p.height = height;
    random_begin(p.random);
    make_levels(p.levels, amplitude, roughness);
    if (tileable) {
        const double offset = amplitude * roughness;
        const std::uint32_t range = static_cast<std::uint32_t>(2 * truncate(offset) + 1);
        plane[0] = truncate(random_next(p.random) % range - offset) + 32768;
        plasma_subdivide(p, 0, 0, width, height, 0);
    } else {
        for (std::size_t corner : {std::size_t{0}, row - 1, count - row, count - 1}) {
            plane[corner] = static_cast<std::int32_t>(random_next(p.random) & 0xFFFF);
        }
        plasma_subdivide(p, 0, 0, width - 1, height - 1, 0);
    }
    random_end(p.random);
}

void image_plasma(Image* img, std::int32_t amplitude, double roughness) {
    if (!img) return;
    for (Plane plane : kColorPlanes) {
        if (!(img->*plane)) continue;
        plane_plasma(img->*plane, img->width, img->height, img->flags & kImageWrap, amplitude, roughness);
    }
    report_progress();
}
