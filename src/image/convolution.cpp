#include "image/convolution.h"

#include <algorithm>
#include <cmath>

#include "image/filters.h"
#include "image/loops.h"
#include "image/planes.h"
#include "image/progress.h"

// Every convolution first copies what it reads with its borders added, so that the inner loop has no border
// to think of and the result may overwrite the source.

namespace {

bool valid(const KernelArgs& args) { return args.weights && args.r >= 0; }

std::size_t kernel_size(const KernelArgs& args) { return 2 * static_cast<std::size_t>(args.r) + 1; }

std::int32_t border_index(std::int64_t i, std::int32_t n, bool wrapped) {
    return wrapped ? wrap(i, n) : clamp_index(i, n);
}

// --- Taps ---

// Puts taps of equal weight together, drops those of weight 0 and marks the runs. Returns how many are left.
std::size_t group_taps(Tap* taps, std::size_t count) {
    Tap* const end = std::remove_if(taps, taps + count, [](const Tap& tap) { return tap.weight == 0; });
    std::sort(taps, end, [](const Tap& a, const Tap& b) {
        return a.weight != b.weight ? a.weight < b.weight : a.offset < b.offset;
    });
    for (Tap *first = taps, *next; first != end; first = next) {
        next = std::find_if(first, end, [first](const Tap& tap) { return tap.weight != first->weight; });
        first->run = static_cast<std::int32_t>(next - first);
    }
    return static_cast<std::size_t>(end - taps);
}

// A factor by which the truncated product is always the truncated quotient, or 0.
//
// The product with a plain reciprocal would fall short of some quotients that are integers. This one is too
// large by 2^-49, so it never does; and it never reaches an integer that the quotient does not reach: where
// the divisor is m / 2^t with t <= 16, a quotient that is no integer misses the next one by at least 1/m,
// which is more than 2^-47 of itself for sums of 32 bits.
double exact_reciprocal(const KernelArgs& args) {
    const double m = args.divisor * 65536.0;
    const bool exact = args.bias == 0 && args.divisor >= 1.0 && m < 9007199254740992.0 && m == std::floor(m);
    return exact ? 1.0 / args.divisor * (1.0 + 1.0 / 562949953421312.0) : 0.0;
}

Kernel make_kernel(const Tap* taps, std::size_t count, const KernelArgs& args) {
    const bool fits =
        fits_32(args.bias + INT32_MIN / args.divisor) && fits_32(args.bias + INT32_MAX / args.divisor);
    return {taps, count, args.divisor, args.bias, fits, exact_reciprocal(args)};
}

// --- Two-dimensional ---

// Memory for rows of values, undefined; null also where its size is more than memory can have.
std::int32_t* allocate_rows(std::size_t rows, std::size_t stride) {
    if (rows > PTRDIFF_MAX / sizeof(std::int32_t) / stride) return nullptr;
    return static_cast<std::int32_t*>(std::malloc(rows * stride * sizeof(std::int32_t)));
}

// A plane's values >> 8 with r rows and columns added on every side, and the taps that go with it.
struct PaddedPlane {
    std::int32_t width, height; // of the plane
    std::size_t stride;
    std::int32_t* values;
    Tap* taps;
    Kernel kernel;
};

void free_padded_plane(PaddedPlane& p) {
    std::free(p.values);
    std::free(p.taps);
}

bool make_padded_plane(PaddedPlane& p, std::int32_t width, std::int32_t height, const KernelArgs& args) {
    const std::size_t n = kernel_size(args), border = n - 1;
    p.width = width;
    p.height = height;
    p.stride = static_cast<std::size_t>(width) + border + kLoopSlack;
    p.values = allocate_rows(static_cast<std::size_t>(height) + border, p.stride);
    p.taps = static_cast<Tap*>(std::calloc(n * n, sizeof(Tap)));
    if (!p.values || !p.taps) {
        free_padded_plane(p);
        return false;
    }
    for (std::size_t i = 0; i < n * n; ++i) {
        p.taps[i] = {args.weights[i], 0, static_cast<std::ptrdiff_t>(i / n * p.stride + i % n)};
    }
    p.kernel = make_kernel(p.taps, group_taps(p.taps, n * n), args);
    return true;
}

void pad_plane(PaddedPlane& p, const std::int32_t* src, std::int32_t r, bool wrapped) {
    for (std::int64_t y = -std::int64_t{r}; y < std::int64_t{p.height} + r; ++y) {
        const std::int32_t* row = src + std::ptrdiff_t{border_index(y, p.height, wrapped)} * p.width;
        std::int32_t* out = p.values + static_cast<std::size_t>(y + r) * p.stride;
        for (std::int64_t x = -std::int64_t{r}; x < 0; ++x)
            *out++ = row[border_index(x, p.width, wrapped)] >> 8;
        for (std::int32_t x = 0; x < p.width; ++x) *out++ = row[x] >> 8;
        for (std::int64_t x = p.width; x < std::int64_t{p.width} + r; ++x) {
            *out++ = row[border_index(x, p.width, wrapped)] >> 8;
        }
    }
}

void convolve_plane(PaddedPlane& p, std::int32_t* dst, const std::int32_t* src, std::int32_t r,
                    bool wrapped) {
    pad_plane(p, src, r, wrapped);
    for (std::int32_t y = 0; y < p.height; ++y) {
        loops().convolve(dst + std::ptrdiff_t{y} * p.width, p.values + static_cast<std::size_t>(y) * p.stride,
                         static_cast<std::size_t>(p.width), p.kernel);
    }
}

// Convolves the colour planes of src into those of dst, which may be src.
bool convolve_planes(Image* dst, const Image* src, const KernelArgs& args) {
    PaddedPlane padded;
    if (!make_padded_plane(padded, src->width, src->height, args)) return false;
    for (Plane plane : kColorPlanes) {
        if (src->*plane) convolve_plane(padded, dst->*plane, src->*plane, args.r, src->flags & kImageWrap);
    }
    free_padded_plane(padded);
    return true;
}

// --- One-dimensional ---

// The lines of a plane. Rows are taken one by one; columns, whose neighbours lie side by side, `lanes` at a
// time, so that memory is read and written in whole cache lines. Other layouts are gathered line by line.
struct Lines {
    std::int32_t count, stride; // lines, and from one line to the next
    std::int32_t length, step;  // values in a line, and from one to the next
};

constexpr std::size_t kStripLanes = 64;

// A line, or strip of columns, with r values added at both ends, and the taps that go with it.
struct PaddedLine {
    Lines lines;
    std::size_t lanes;
    std::int32_t* values;
    std::int32_t* result; // a line's, where it is not written in place
    Tap* taps;
    Kernel kernel;
};

void free_padded_line(PaddedLine& p) {
    std::free(p.values);
    std::free(p.result);
    std::free(p.taps);
}

bool make_padded_line(PaddedLine& p, const Lines& lines, const KernelArgs& args) {
    const std::size_t n = kernel_size(args), length = static_cast<std::size_t>(lines.length);
    p.lines = lines;
    p.lanes = lines.stride == 1 && lines.step != 1 ? kStripLanes : 1;
    p.values = static_cast<std::int32_t*>(
        std::calloc((length + n - 1) * p.lanes + kLoopSlack, sizeof(std::int32_t)));
    p.result = static_cast<std::int32_t*>(std::malloc(length * sizeof(std::int32_t)));
    p.taps = static_cast<Tap*>(std::calloc(n, sizeof(Tap)));
    if (!p.values || !p.result || !p.taps) {
        free_padded_line(p);
        return false;
    }
    for (std::size_t i = 0; i < n; ++i) {
        p.taps[i] = {args.weights[i], 0, static_cast<std::ptrdiff_t>(i * p.lanes)};
    }
    p.kernel = make_kernel(p.taps, group_taps(p.taps, n), args);
    return true;
}

// Copies `used` lanes of every position of a line, the borders included.
void pad_line(PaddedLine& p, const std::int32_t* src, std::size_t used, std::int32_t r, bool wrapped) {
    const std::int32_t length = p.lines.length;
    std::int32_t* out = p.values;
    const auto copy = [&](std::int32_t i) {
        const std::int32_t* values = src + std::ptrdiff_t{i} * p.lines.step;
        for (std::size_t lane = 0; lane < used; ++lane) out[lane] = values[lane];
        out += p.lanes;
    };
    for (std::int64_t i = -std::int64_t{r}; i < 0; ++i) copy(border_index(i, length, wrapped));
    if (p.lanes == 1 && p.lines.step == 1) {
        std::memcpy(out, src, static_cast<std::size_t>(length) * sizeof *src);
        out += length;
    } else {
        for (std::int32_t i = 0; i < length; ++i) copy(i);
    }
    for (std::int64_t i = length; i < std::int64_t{length} + r; ++i) copy(border_index(i, length, wrapped));
}

void convolve_strips(PaddedLine& p, std::int32_t* dst, const std::int32_t* src, std::int32_t r,
                     bool wrapped) {
    const std::size_t count = static_cast<std::size_t>(p.lines.count);
    for (std::size_t first = 0; first < count; first += kStripLanes) {
        const std::size_t used = std::min(kStripLanes, count - first);
        pad_line(p, src + first, used, r, wrapped);
        for (std::int32_t i = 0; i < p.lines.length; ++i) {
            loops().convolve(dst + first + std::ptrdiff_t{i} * p.lines.step,
                             p.values + static_cast<std::size_t>(i) * kStripLanes, used, p.kernel);
        }
    }
}

void convolve_line(PaddedLine& p, std::int32_t* dst, const std::int32_t* src, std::int32_t r, bool wrapped) {
    pad_line(p, src, 1, r, wrapped);
    const std::size_t length = static_cast<std::size_t>(p.lines.length);
    if (p.lines.step == 1) {
        loops().convolve(dst, p.values, length, p.kernel);
        return;
    }
    loops().convolve(p.result, p.values, length, p.kernel);
    for (std::int32_t i = 0; i < p.lines.length; ++i) dst[std::ptrdiff_t{i} * p.lines.step] = p.result[i];
}

void convolve_plane_lines(PaddedLine& p, std::int32_t* dst, const std::int32_t* src, std::int32_t r,
                          bool wrapped) {
    if (p.lanes != 1) {
        convolve_strips(p, dst, src, r, wrapped);
        return;
    }
    for (std::int32_t n = 0; n < p.lines.count; ++n) {
        const std::ptrdiff_t start = std::ptrdiff_t{n} * p.lines.stride;
        convolve_line(p, dst + start, src + start, r, wrapped);
    }
}

bool convolve_planes_lines(Image* dst, const Image* src, Direction direction, const KernelArgs& args) {
    const Lines rows = {src->height, src->width, src->width, 1};
    const Lines columns = {src->width, 1, src->height, src->width};
    PaddedLine padded;
    if (!make_padded_line(padded, direction == Direction::kRows ? rows : columns, args)) return false;
    for (Plane plane : kColorPlanes) {
        if (src->*plane)
            convolve_plane_lines(padded, dst->*plane, src->*plane, args.r, src->flags & kImageWrap);
    }
    free_padded_line(padded);
    return true;
}

bool plane_convolve(std::int32_t* dst, const std::int32_t* src, std::int32_t width, std::int32_t height,
                    const KernelArgs& args, bool wrapped) {
    PaddedPlane padded;
    if (!valid(args) || !make_padded_plane(padded, width, height, args)) return false;
    convolve_plane(padded, dst, src, args.r, wrapped);
    free_padded_plane(padded);
    return true;
}

bool plane_convolve_line(std::int32_t* dst, const std::int32_t* src, const Lines& lines,
                         const KernelArgs& args, bool wrapped) {
    PaddedLine padded;
    if (!valid(args) || !make_padded_line(padded, lines, args)) return false;
    convolve_plane_lines(padded, dst, src, args.r, wrapped);
    free_padded_line(padded);
    return true;
}

// Ends an operation in its new form.
Image* reported(Image* result) {
    if (result) report_progress();
    return result;
}

} // namespace

// --- Without the hook ---

Image* convolved(const Image* img, const KernelArgs& args) {
    if (!img || !valid(args)) return nullptr;
    Image* result = create_result(img);
    if (result && convolve_planes(result, img, args)) return result;
    image_free(result);
    return nullptr;
}

bool convolve(Image* img, const KernelArgs& args) {
    if (!img || !valid(args)) return false;
    KernelArgs safe = args;
    if (safe.divisor == 0.0) safe.divisor = 1.0;
    return convolve_planes(img, img, safe);
}

Image* convolved_lines(const Image* img, Direction direction, const KernelArgs& args) {
    if (!img || !valid(args)) return nullptr;
    Image* result = create_result(img);
    if (result && convolve_planes_lines(result, img, direction, args)) return result;
    image_free(result);
    return nullptr;
}

bool convolve_lines(Image* img, Direction direction, const KernelArgs& args) {
    return img && valid(args) && convolve_planes_lines(img, img, direction, args);
}

// --- Public operations ---

Image* image_convolved(const Image* img, const std::int32_t* kernel, std::int32_t r, double divisor,
                       std::int32_t bias) {
    return reported(convolved(img, {kernel, r, divisor, bias}));
}

void image_convolve(Image* img, const std::int32_t* kernel, std::int32_t r, double divisor,
                    std::int32_t bias) {
    if (convolve(img, {kernel, r, divisor, bias})) report_progress();
}

Image* image_convolved_h(const Image* img, const std::int32_t* kernel, std::int32_t r, double divisor,
                         std::int32_t bias) {
    return reported(convolved_lines(img, Direction::kRows, {kernel, r, divisor, bias}));
}

void image_convolve_h(Image* img, const std::int32_t* kernel, std::int32_t r, double divisor,
                      std::int32_t bias) {
    if (convolve_lines(img, Direction::kRows, {kernel, r, divisor, bias})) report_progress();
}

Image* image_convolved_v(const Image* img, const std::int32_t* kernel, std::int32_t r, double divisor,
                         std::int32_t bias) {
    return reported(convolved_lines(img, Direction::kColumns, {kernel, r, divisor, bias}));
}

void image_convolve_v(Image* img, const std::int32_t* kernel, std::int32_t r, double divisor,
                      std::int32_t bias) {
    if (convolve_lines(img, Direction::kColumns, {kernel, r, divisor, bias})) report_progress();
}

bool plane_convolve_clamp(std::int32_t* dst, const std::int32_t* src, std::int32_t width, std::int32_t height,
                          const std::int32_t* kernel, std::int32_t r, double divisor, std::int32_t bias) {
    return plane_convolve(dst, src, width, height, {kernel, r, divisor, bias}, false);
}

bool plane_convolve_wrap(std::int32_t* dst, const std::int32_t* src, std::int32_t width, std::int32_t height,
                         const std::int32_t* kernel, std::int32_t r, double divisor, std::int32_t bias) {
    return plane_convolve(dst, src, width, height, {kernel, r, divisor, bias}, true);
}

bool plane_convolve_line_clamp(std::int32_t* dst, const std::int32_t* src, std::int32_t lines,
                               std::int32_t line_stride, std::int32_t length, std::int32_t step,
                               const std::int32_t* kernel, std::int32_t r, double divisor,
                               std::int32_t bias) {
    return plane_convolve_line(dst, src, {lines, line_stride, length, step}, {kernel, r, divisor, bias},
                               false);
}

bool plane_convolve_line_wrap(std::int32_t* dst, const std::int32_t* src, std::int32_t lines,
                              std::int32_t line_stride, std::int32_t length, std::int32_t step,
                              const std::int32_t* kernel, std::int32_t r, double divisor, std::int32_t bias) {
    return plane_convolve_line(dst, src, {lines, line_stride, length, step}, {kernel, r, divisor, bias},
                               true);
}
