// What the image tests share: pictures as plain vectors, made, filled and compared; a count of progress
// calls; and memory that can run out.
#pragma once

#include <cstdint>
#include <memory>
#include <ostream>
#include <random>
#include <vector>

#include "tests/support/image.h"

using Values = std::vector<std::int32_t>;

// A picture that a test may compute with freely. Planes that the flags do not call for are empty.
struct Picture {
    std::int32_t width = 0, height = 0;
    std::uint32_t flags = 0;
    Values red, green, blue, alpha;

    bool wraps() const { return flags & kImageWrap; }
    bool operator==(const Picture& other) const;
};
std::ostream& operator<<(std::ostream& out, const Picture& picture);

ImagePtr owned(Image* img);
ImagePtr make_image(const Picture& picture);
ImagePtr make_grey(std::int32_t width, std::int32_t height, const Values& values,
                   std::uint32_t flags = kImageGrey);
ImagePtr make_filled(std::int32_t width, std::int32_t height, std::uint32_t flags, std::int32_t value);
Picture picture_of(const Image* img);

// The values of a plane of an image.
Values values_of(const Image* img, const std::int32_t* plane);
inline Values grey_of(const ImagePtr& img) { return values_of(img.get(), img->green); }

// Reproducible random test material.
class Material {
public:
    explicit Material(unsigned seed) : engine_(seed) {}

    std::int32_t between(std::int32_t lo, std::int32_t hi);
    double real_between(double lo, double hi);
    // Values of one kind: nominal ones, bytes, far out of range, extremes.
    Values values(std::size_t count);
    // A picture with odd, tiny or block-sized dimensions and any flags.
    Picture picture();
    Picture picture(std::int32_t width, std::int32_t height, std::uint32_t flags);
    std::uint32_t flags();

private:
    std::mt19937 engine_;
};

// Counts the calls of the progress hook while it lives.
class ProgressCount {
public:
    ProgressCount();
    ~ProgressCount();
    ProgressCount(const ProgressCount&) = delete;
    ProgressCount& operator=(const ProgressCount&) = delete;
    int calls() const;
};

// Lets the library have `successes` more allocations while it lives and none after them.
class ScarceMemory {
public:
    explicit ScarceMemory(int successes);
    ~ScarceMemory();
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;
    // Whether an allocation has failed.
    bool ran_out() const;
};
