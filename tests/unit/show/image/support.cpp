#include "tests/unit/show/image/support.h"

#include <algorithm>
#include <cstdlib>

#include "show/image/progress.h"

namespace {

int g_progress_calls = 0;
int g_allocations_left = -1; // negative: no limit
bool g_ran_out = false;

bool may_allocate() {
    if (g_allocations_left < 0) return true;
    if (g_allocations_left > 0) {
        --g_allocations_left;
        return true;
    }
    g_ran_out = true;
    return false;
}

} // namespace

// The linker sends the calls of malloc and calloc in this program here.
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);

void* __wrap_malloc(std::size_t size) { return may_allocate() ? __real_malloc(size) : nullptr; }
void* __wrap_calloc(std::size_t count, std::size_t size) {
    return may_allocate() ? __real_calloc(count, size) : nullptr;
}
}

bool Picture::operator==(const Picture& other) const {
    return width == other.width && height == other.height && flags == other.flags && red == other.red &&
           green == other.green && blue == other.blue && alpha == other.alpha;
}

std::ostream& operator<<(std::ostream& out, const Picture& picture) {
    out << picture.width << "x" << picture.height << " flags " << picture.flags;
    const auto print = [&](const char* name, const Values& values) {
        out << "\n" << name << ":";
        for (std::size_t i = 0; i < std::min<std::size_t>(values.size(), 400); ++i) out << " " << values[i];
    };
    print("red", picture.red);
    print("green", picture.green);
    print("blue", picture.blue);
    print("alpha", picture.alpha);
    return out;
}

ImagePtr owned(Image* img) { return ImagePtr(img); }

ImagePtr make_image(const Picture& picture) {
    ImagePtr img = owned(image_create(picture.width, picture.height, picture.flags));
    std::copy(picture.green.begin(), picture.green.end(), img->green);
    if (img->red) std::copy(picture.red.begin(), picture.red.end(), img->red);
    if (img->blue) std::copy(picture.blue.begin(), picture.blue.end(), img->blue);
    if (img->alpha) std::copy(picture.alpha.begin(), picture.alpha.end(), img->alpha);
    return img;
}

ImagePtr make_grey(std::int32_t width, std::int32_t height, const Values& values, std::uint32_t flags) {
    return make_image({width, height, flags, {}, values, {}, {}});
}

ImagePtr make_filled(std::int32_t width, std::int32_t height, std::uint32_t flags, std::int32_t value) {
    const Values values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), value);
    return make_image({width, height, flags, values, values, values, values});
}

Values values_of(const Image* img, const std::int32_t* plane) {
    return plane ? Values(plane, plane + image_count(img)) : Values();
}

Picture picture_of(const Image* img) {
    return {img->width,
            img->height,
            img->flags,
            values_of(img, img->red),
            values_of(img, img->green),
            values_of(img, img->blue),
            values_of(img, img->alpha)};
}

std::int32_t Material::between(std::int32_t lo, std::int32_t hi) {
    return std::uniform_int_distribution<std::int32_t>(lo, hi)(engine_);
}

double Material::real_between(double lo, double hi) {
    return std::uniform_real_distribution<double>(lo, hi)(engine_);
}

Values Material::values(std::size_t count) {
    static const std::int32_t extremes[] = {INT32_MIN, INT32_MIN + 1, -65536, -1,    0,        1,
                                            32768,     65535,         65536,  70000, INT32_MAX};
    const int kind = between(0, 4);
    Values values(count);
    for (std::int32_t& v : values) {
        switch (kind) {
        case 0:
            v = between(0, 255) * 257;
            break;
        case 1:
            v = between(-100000, 200000);
            break;
        case 2:
            v = extremes[between(0, 10)];
            break;
        case 3:
            v = between(INT32_MIN, INT32_MAX);
            break;
        default:
            v = between(0, 65535);
            break;
        }
    }
    return values;
}

std::uint32_t Material::flags() {
    static const std::uint32_t planes[] = {kImageGrey, kImageColor, 0, 3};
    return planes[between(0, 9) < 8 ? between(0, 1) : between(2, 3)] |
           static_cast<std::uint32_t>(between(0, 3)) * kImageAlpha;
}

Picture Material::picture() {
    static const std::int32_t sizes[] = {1, 2, 3, 16, 63, 64, 65, 128, 131};
    const auto size = [this] { return between(0, 2) ? between(1, 24) : sizes[between(0, 8)]; };
    const std::int32_t width = size(), height = size();
    return picture(width, height, flags());
}

Picture Material::picture(std::int32_t width, std::int32_t height, std::uint32_t flags) {
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    Picture p{width, height, flags, {}, values(count), {}, {}};
    if ((flags & kImagePlanes) == kImageColor) {
        p.red = values(count);
        p.blue = values(count);
    }
    if (flags & kImageAlpha) p.alpha = values(count);
    return p;
}

ProgressCount::ProgressCount() {
    g_progress_calls = 0;
    g_progress_hook = [] { ++g_progress_calls; };
}
ProgressCount::~ProgressCount() { g_progress_hook = nullptr; }
int ProgressCount::calls() const { return g_progress_calls; }

ScarceMemory::ScarceMemory(int successes) {
    g_allocations_left = successes;
    g_ran_out = false;
}
ScarceMemory::~ScarceMemory() { g_allocations_left = -1; }
bool ScarceMemory::ran_out() const { return g_ran_out; }
