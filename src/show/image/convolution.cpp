#include "show/image/convolution.h"

#include <algorithm>

#include "show/image/filters.h"
#include "show/image/loops.h"
#include "show/image/planes.h"
#include "show/image/progress.h"

// Every convolution first copies its source with borders added. The inner loop then needs no border cases, and the
// result may overwrite the source. The copy has 16 bits per value if the kernel has pairs and all values fit, else 32.

namespace {

bool valid(const KernelArgs& args) { return args.weights && args.r >= 0; }

std::size_t kernel_size(const KernelArgs& args) { return 2 * static_cast<std::size_t>(args.r) + 1; }

// Adds r elements of `size` values at both ends of a line of n elements that begins at `first`. Wrapped, the line
// repeats itself; else its first and its last element do.
template <class Value>
void add_borders(Value* first, std::size_t size, std::size_t n, std::size_t r, bool wrapped) {
    const std::ptrdiff_t border = static_cast<std::ptrdiff_t>(r * size),
                         end = static_cast<std::ptrdiff_t>(n * size),
                         period = wrapped ? end : static_cast<std::ptrdiff_t>(size);
    for (std::ptrdiff_t i = 1; i <= border; ++i) first[-i] = first[period - i];
    for (std::ptrdiff_t i = end; i < end + border; ++i) first[i] = first[i - period];
}

void convolve_values(std::int32_t* out, const std::int32_t* in, std::size_t count, const Kernel& kernel) {
    loops().convolve(out, in, count, kernel);
}

void convolve_values(std::int32_t* out, const std::int16_t* in, std::size_t count, const Kernel& kernel) {
    loops().convolve_narrow(out, in, count, kernel);
}

// --- Two-dimensional ---

// Of 15 bits, so that the sum of two values still fits into 16.
constexpr Narrowing kPlaneNarrowing = {8, 0, 15};

// A plane's values >> 8 with r rows and columns added on every side, and the kernel prepared for them. Where a kernel
// is the same above and below its centre row, as those of round blurs are, the rows above and below are added first
// and meet their weights once: the plane is folded.
struct PaddedPlane {
    std::size_t width, height, r; // of the plane; of the kernel
    std::size_t stride;           // of the padded values
    bool wrapped, folded;
    void* values; // of 16 or 32 bits
    void* sums;   // the same for the r+1 rows of a folded window
    PreparedKernel prepared;
};

void free_padded_plane(PaddedPlane& p) {
    std::free(p.values);
    std::free(p.sums);
    free_kernel(p.prepared);
}

// Whether the rows above a kernel's centre row mirror those below it.
bool mirrored(const KernelArgs& args) {
    const std::size_t n = kernel_size(args);
    const std::int32_t *above = args.weights, *below = args.weights + n * (n - 1);
    for (; above < below; above += n, below -= n) {
        if (!std::equal(above, above + n, below)) return false;
    }
    return true;
}

// Allocates a padded plane, its values not yet set, and prepares the kernel. False without memory.
bool make_padded_plane(PaddedPlane& p, std::int32_t width, std::int32_t height, const KernelArgs& args,
                       bool wrapped) {
    const std::size_t n = kernel_size(args);
    p.width = static_cast<std::size_t>(width);
    p.height = static_cast<std::size_t>(height);
    p.r = static_cast<std::size_t>(args.r);
    p.stride = p.width + n - 1 + kLoopSlack;
    p.wrapped = wrapped;
    const std::size_t rows = p.height + n - 1;
    if (rows > PTRDIFF_MAX / sizeof(std::int32_t) / p.stride) return false;
    p.folded = mirrored(args);
    KernelArgs used = args;
    if (p.folded) used.weights += p.r * n;
    if (!prepare_kernel(p.prepared, used, p.folded ? p.r + 1 : n, p.stride, 1, kPlaneNarrowing)) return false;
    p.values = std::calloc(rows * p.stride, sizeof(std::int32_t));
    p.sums = std::calloc((p.r + 1) * p.stride, sizeof(std::int32_t));
    if (p.values && p.sums) return true;
    free_padded_plane(p);
    return false;
}

// The place of the plane's first value.
template <class Value>
Value* first_value(const PaddedPlane& p) {
    return static_cast<Value*>(p.values) + p.r * p.stride + p.r;
}

// Fills the inside of a padded plane with 16 bits per value. False if they do not all fit.
bool fill_narrow(PaddedPlane& p, const std::int32_t* src) {
    std::int16_t* out = first_value<std::int16_t>(p);
    for (std::size_t y = 0; y < p.height; ++y, src += p.width, out += p.stride) {
        if (!loops().narrow(out, src, p.width, kPlaneNarrowing)) return false;
    }
    return true;
}

// Fills the inside of a padded plane with 32 bits per value.
void fill_wide(PaddedPlane& p, const std::int32_t* src) {
    std::int32_t* out = first_value<std::int32_t>(p);
    for (std::size_t y = 0; y < p.height; ++y, src += p.width, out += p.stride) {
        std::transform(src, src + p.width, out, [](std::int32_t v) { return v >> 8; });
    }
}

// The folded window around a padded row: the row, the sums of its neighbours, of the next ones, and so on.
template <class Value>
const Value* fold(const PaddedPlane& p, const Value* row) {
    Value* const sums = static_cast<Value*>(p.sums);
    const std::size_t count = p.stride - kLoopSlack;
    std::copy_n(row, count, sums);
    for (std::size_t k = 1; k <= p.r; ++k) {
        const Value *above = row - k * p.stride, *below = row + k * p.stride;
        Value* const out = sums + k * p.stride;
        for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<Value>(above[i] + below[i]);
    }
    return sums;
}

// Convolves the values of a padded plane whose inside has been filled.
template <class Value>
void convolve_padded(const PaddedPlane& p, std::int32_t* dst) {
    Value* const first = first_value<Value>(p);
    for (std::size_t y = 0; y < p.height; ++y) add_borders(first + y * p.stride, 1, p.width, p.r, p.wrapped);
    Value* const rows = first - p.r;
    add_borders(rows, p.stride, p.height, p.r, p.wrapped);
    for (std::size_t y = 0; y < p.height; ++y) {
        const Value* const row = rows + y * p.stride;
        convolve_values(dst + y * p.width, p.folded ? fold(p, row) : row - p.r * p.stride, p.width,
                        p.prepared.kernel);
    }
}

// Convolves one plane, by way of the padded one; dst may be src.
void convolve_plane(PaddedPlane& p, std::int32_t* dst, const std::int32_t* src) {
    if (p.prepared.kernel.pair_count > 0 && fill_narrow(p, src)) {
        convolve_padded<std::int16_t>(p, dst);
    } else {
        fill_wide(p, src);
        convolve_padded<std::int32_t>(p, dst);
    }
}

// Convolves the colour planes of src into those of dst, which may be src.
bool convolve_planes(Image* dst, const Image* src, const KernelArgs& args) {
    PaddedPlane padded;
    if (!make_padded_plane(padded, src->width, src->height, args, src->flags & kImageWrap)) return false;
    for (Plane plane : kColorPlanes) {
        if (src->*plane) convolve_plane(padded, dst->*plane, src->*plane);
    }
    free_padded_plane(padded);
    return true;
}

// --- One-dimensional ---

// Brings values 0..65535 into the range of 16 bits with a sign.
constexpr Narrowing kLineNarrowing = {0, 32768, 16};

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
    std::size_t r, lanes;
    bool wrapped;
    void* values;           // of 16 or 32 bits
    std::int32_t* gathered; // a line whose values do not lie side by side
    PreparedKernel prepared;
};

void free_padded_line(PaddedLine& p) {
    std::free(p.values);
    std::free(p.gathered);
    free_kernel(p.prepared);
}

// Allocates a padded line or strip, its values not yet set, and prepares the kernel. False without memory.
bool make_padded_line(PaddedLine& p, const Lines& lines, const KernelArgs& args, bool wrapped) {
    const std::size_t length = static_cast<std::size_t>(lines.length);
    p.lines = lines;
    p.r = static_cast<std::size_t>(args.r);
    p.lanes = lines.stride == 1 && lines.step != 1 ? kStripLanes : 1;
    p.wrapped = wrapped;
    if (!prepare_kernel(p.prepared, args, 1, 0, p.lanes, kLineNarrowing)) return false;
    p.values = std::calloc((length + 2 * p.r) * p.lanes + kLoopSlack, sizeof(std::int32_t));
    p.gathered = static_cast<std::int32_t*>(std::malloc(length * sizeof(std::int32_t)));
    if (p.values && p.gathered) return true;
    free_padded_line(p);
    return false;
}

// Convolves the columns of a plane, kStripLanes at a time.
void convolve_strips(PaddedLine& p, std::int32_t* dst, const std::int32_t* src) {
    const std::size_t count = static_cast<std::size_t>(p.lines.count),
                      length = static_cast<std::size_t>(p.lines.length),
                      step = static_cast<std::size_t>(p.lines.step);
    std::int32_t* const values = static_cast<std::int32_t*>(p.values);
    std::int32_t* const first = values + p.r * kStripLanes;
    for (std::size_t strip = 0; strip < count; strip += kStripLanes) {
        const std::size_t used = std::min(kStripLanes, count - strip);
        for (std::size_t i = 0; i < length; ++i)
            std::copy_n(src + strip + i * step, used, first + i * kStripLanes);
        add_borders(first, kStripLanes, length, p.r, p.wrapped);
        for (std::size_t i = 0; i < length; ++i) {
            convolve_values(dst + strip + i * step, values + i * kStripLanes, used, p.prepared.kernel);
        }
    }
}

// Convolves one line whose values lie side by side.
void convolve_line(PaddedLine& p, std::int32_t* dst, const std::int32_t* src) {
    const Kernel& kernel = p.prepared.kernel;
    const std::size_t length = static_cast<std::size_t>(p.lines.length);
    std::int16_t* const narrow = static_cast<std::int16_t*>(p.values);
    if (kernel.pair_count > 0 && loops().narrow(narrow + p.r, src, length, kLineNarrowing)) {
        add_borders(narrow + p.r, 1, length, p.r, p.wrapped);
        convolve_values(dst, narrow, length, kernel);
    } else {
        std::int32_t* const wide = static_cast<std::int32_t*>(p.values);
        std::copy_n(src, length, wide + p.r);
        add_borders(wide + p.r, 1, length, p.r, p.wrapped);
        convolve_values(dst, wide, length, kernel);
    }
}

// Convolves all lines of a plane.
void convolve_plane_lines(PaddedLine& p, std::int32_t* dst, const std::int32_t* src) {
    if (p.lanes != 1) {
        convolve_strips(p, dst, src);
        return;
    }
    for (std::int32_t n = 0; n < p.lines.count; ++n) {
        const std::ptrdiff_t start = std::ptrdiff_t{n} * p.lines.stride, step = p.lines.step;
        if (step == 1) {
            convolve_line(p, dst + start, src + start);
            continue;
        }
        for (std::int32_t i = 0; i < p.lines.length; ++i) p.gathered[i] = src[start + i * step];
        convolve_line(p, p.gathered, p.gathered);
        for (std::int32_t i = 0; i < p.lines.length; ++i) dst[start + i * step] = p.gathered[i];
    }
}

// Convolves the rows or columns of the colour planes of src into those of dst, which may be src.
bool convolve_planes_lines(Image* dst, const Image* src, Direction direction, const KernelArgs& args) {
    const Lines rows = {src->height, src->width, src->width, 1};
    const Lines columns = {src->width, 1, src->height, src->width};
    PaddedLine padded;
    if (!make_padded_line(padded, direction == Direction::kRows ? rows : columns, args,
                          src->flags & kImageWrap))
        return false;
    for (Plane plane : kColorPlanes) {
        if (src->*plane) convolve_plane_lines(padded, dst->*plane, src->*plane);
    }
    free_padded_line(padded);
    return true;
}

// One plane, for the operations on planes of filters.h.
bool plane_convolve(std::int32_t* dst, const std::int32_t* src, std::int32_t width, std::int32_t height,
                    const KernelArgs& args, bool wrapped) {
    PaddedPlane padded;
    if (!valid(args) || !make_padded_plane(padded, width, height, args, wrapped)) return false;
    convolve_plane(padded, dst, src);
    free_padded_plane(padded);
    return true;
}

bool plane_convolve_line(std::int32_t* dst, const std::int32_t* src, const Lines& lines,
                         const KernelArgs& args, bool wrapped) {
    PaddedLine padded;
    if (!valid(args) || !make_padded_line(padded, lines, args, wrapped)) return false;
    convolve_plane_lines(padded, dst, src);
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
