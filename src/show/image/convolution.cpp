#include "show/image/convolution.h"

#include <algorithm>

#include "show/image/filters.h"
#include "show/image/loops.h"
#include "show/image/planes.h"
#include "show/image/progress.h"

// Every convolution first copies its source with borders added. The inner loop then needs no border cases, and the
// result may overwrite the source.

namespace {

bool valid(const KernelArgs& args) { return args.weights && args.r >= 0; }

std::size_t kernel_size(const KernelArgs& args) { return 2 * static_cast<std::size_t>(args.r) + 1; }

// The index of the value that stands for position i of a line of n values, which i may exceed.
std::int32_t border_index(std::int64_t i, std::int32_t n, bool wrapped) {
    return wrapped ? wrap(i, n) : clamp_index(i, n);
}

// --- Two-dimensional ---

// A plane's values >> 8 with r rows and columns added on every side, and the kernel prepared for them.
struct PaddedPlane {
    std::int32_t width, height; // of the plane
    std::size_t stride, count;  // of the padded values
    std::int32_t* values;
    std::int16_t* narrow; // the same in 16 bits, if they all fit
    PreparedKernel prepared;
};

void free_padded_plane(PaddedPlane& p) {
    std::free(p.values);
    std::free(p.narrow);
    free_kernel(p.prepared);
}

// Allocates a padded plane, its values not yet set, and prepares the kernel. False without memory.
bool make_padded_plane(PaddedPlane& p, std::int32_t width, std::int32_t height, const KernelArgs& args) {
    const std::size_t n = kernel_size(args), rows = static_cast<std::size_t>(height) + n - 1;
    p.width = width;
    p.height = height;
    p.stride = static_cast<std::size_t>(width) + n - 1 + kLoopSlack;
    if (rows > PTRDIFF_MAX / sizeof(std::int32_t) / p.stride) return false;
    if (!prepare_kernel(p.prepared, args, n, p.stride, 1)) return false;
    p.count = rows * p.stride;
    p.values = static_cast<std::int32_t*>(std::malloc(p.count * sizeof *p.values));
    p.narrow = static_cast<std::int16_t*>(std::malloc(p.count * sizeof *p.narrow));
    if (p.values && p.narrow) return true;
    free_padded_plane(p);
    return false;
}

// Fills a padded plane from a source plane.
void pad_plane(PaddedPlane& p, const std::int32_t* src, std::int32_t r, bool wrapped) {
    const std::int32_t width = p.width, height = p.height;
    for (std::int64_t y = -std::int64_t{r}; y < std::int64_t{height} + r; ++y) {
        const std::int32_t* row = src + std::ptrdiff_t{border_index(y, height, wrapped)} * width;
        std::int32_t* out = p.values + static_cast<std::size_t>(y + r) * p.stride;
        for (std::int64_t x = -std::int64_t{r}; x < 0; ++x)
            *out++ = row[border_index(x, width, wrapped)] >> 8;
        out = std::transform(row, row + width, out, [](std::int32_t v) { return v >> 8; });
        for (std::int64_t x = width; x < std::int64_t{width} + r; ++x) {
            *out++ = row[border_index(x, width, wrapped)] >> 8;
        }
        std::fill_n(out, kLoopSlack, 0);
    }
}

// Convolves one plane, by way of the padded one; dst may be src.
void convolve_plane(PaddedPlane& p, std::int32_t* dst, const std::int32_t* src, std::int32_t r,
                    bool wrapped) {
    pad_plane(p, src, r, wrapped);
    const Kernel& kernel = p.prepared.kernel;
    const bool narrow = kernel.pair_count > 0 && loops().narrow(p.narrow, p.values, p.count, 0);
    for (std::int32_t y = 0; y < p.height; ++y) {
        std::int32_t* const out = dst + std::ptrdiff_t{y} * p.width;
        const std::size_t start = static_cast<std::size_t>(y) * p.stride,
                          count = static_cast<std::size_t>(p.width);
        if (narrow) {
            loops().convolve_narrow(out, p.narrow + start, count, kernel, 0);
        } else {
            loops().convolve(out, p.values + start, count, kernel);
        }
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

// The lines of a plane. Rows are convolved one by one; columns, whose neighbours lie side by side, kStripLanes at a
// time, so that memory is read and written in whole cache lines. Lines of other layouts are gathered one by one.
struct Lines {
    std::int32_t count, stride; // lines, and from one line to the next
    std::int32_t length, step;  // values in a line, and from one to the next
};

constexpr std::size_t kStripLanes = 64;

// A line, or a strip of columns, with r values added at both ends, and the kernel prepared for it.
struct PaddedLine {
    Lines lines;
    std::size_t lanes, count;
    std::int32_t* values;
    std::int16_t* narrow; // the same less kNarrowMiddle in 16 bits, if they all fit
    std::int32_t* result; // of a line whose values do not lie side by side
    PreparedKernel prepared;
};

// Subtracted from values 0..65535 so that they fit into 16 bits with a sign.
constexpr std::int32_t kNarrowMiddle = 32768;

void free_padded_line(PaddedLine& p) {
    std::free(p.values);
    std::free(p.narrow);
    std::free(p.result);
    free_kernel(p.prepared);
}

// Allocates a padded line or strip, its values not yet set, and prepares the kernel. False without memory.
bool make_padded_line(PaddedLine& p, const Lines& lines, const KernelArgs& args) {
    const std::size_t length = static_cast<std::size_t>(lines.length);
    p.lines = lines;
    p.lanes = lines.stride == 1 && lines.step != 1 ? kStripLanes : 1;
    p.count = (length + kernel_size(args) - 1) * p.lanes + kLoopSlack;
    if (!prepare_kernel(p.prepared, args, 1, 0, p.lanes)) return false;
    p.values = static_cast<std::int32_t*>(std::calloc(p.count, sizeof *p.values));
    p.narrow = static_cast<std::int16_t*>(std::malloc(p.count * sizeof *p.narrow));
    p.result = static_cast<std::int32_t*>(std::malloc(length * sizeof *p.result));
    if (p.values && p.narrow && p.result) return true;
    free_padded_line(p);
    return false;
}

// Fills a padded line or strip: copies `used` lanes of every position, borders included.
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

// Convolves the columns of a plane, kStripLanes at a time.
void convolve_strips(PaddedLine& p, std::int32_t* dst, const std::int32_t* src, std::int32_t r,
                     bool wrapped) {
    const std::size_t count = static_cast<std::size_t>(p.lines.count);
    for (std::size_t first = 0; first < count; first += kStripLanes) {
        const std::size_t used = std::min(kStripLanes, count - first);
        pad_line(p, src + first, used, r, wrapped);
        for (std::int32_t i = 0; i < p.lines.length; ++i) {
            loops().convolve(dst + first + std::ptrdiff_t{i} * p.lines.step,
                             p.values + static_cast<std::size_t>(i) * kStripLanes, used, p.prepared.kernel);
        }
    }
}

// Convolves one line.
void convolve_line(PaddedLine& p, std::int32_t* dst, const std::int32_t* src, std::int32_t r, bool wrapped) {
    pad_line(p, src, 1, r, wrapped);
    const Kernel& kernel = p.prepared.kernel;
    const std::size_t length = static_cast<std::size_t>(p.lines.length);
    std::int32_t* const out = p.lines.step == 1 ? dst : p.result;
    if (kernel.pair_count > 0 && loops().narrow(p.narrow, p.values, p.count, kNarrowMiddle)) {
        loops().convolve_narrow(out, p.narrow, length, kernel, kNarrowMiddle);
    } else {
        loops().convolve(out, p.values, length, kernel);
    }
    if (out == dst) return;
    for (std::int32_t i = 0; i < p.lines.length; ++i) dst[std::ptrdiff_t{i} * p.lines.step] = p.result[i];
}

// Convolves all lines of a plane.
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

// Convolves the rows or columns of the colour planes of src into those of dst, which may be src.
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

// One plane, for the operations on planes of filters.h.
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
