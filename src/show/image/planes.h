// Helpers of the image operations; internal to this folder.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "show/image/image.h"
#include "show/image/progress.h"

using Plane = std::int32_t* Image::*;

// The order in which operations process the planes: green (or grey) first. Planes that an image lacks are null.
constexpr Plane kColorPlanes[] = {&Image::green, &Image::red, &Image::blue};
constexpr Plane kAllPlanes[] = {&Image::green, &Image::red, &Image::blue, &Image::alpha};

struct MaskedPlane {
    std::uint32_t mask;
    Plane plane;
};
constexpr MaskedPlane kMaskedPlanes[] = {{kPlaneGreen, &Image::green},
                                         {kPlaneRed, &Image::red},
                                         {kPlaneBlue, &Image::blue},
                                         {kPlaneAlpha, &Image::alpha}};

inline bool same_size(const Image* a, const Image* b) {
    return a->width == b->width && a->height == b->height;
}

// Whether v truncated fits into 32 bits; false for a NaN.
inline bool fits_32(double v) { return v > -2147483649.0 && v < 2147483648.0; }

// Truncates towards zero. What does not fit becomes -2^31, as with the processor's conversion instruction.
inline std::int32_t truncate(double v) { return fits_32(v) ? static_cast<std::int32_t>(v) : INT32_MIN; }

// i modulo n, never negative. Without a division for positions at most one length outside.
inline std::int32_t wrap(std::int64_t i, std::int32_t n) {
    if (i < 0) {
        i += n;
    } else if (i >= n) {
        i -= n;
    }
    if (i >= 0 && i < n) return static_cast<std::int32_t>(i);
    const std::int32_t rest = static_cast<std::int32_t>(i % n);
    return rest < 0 ? rest + n : rest;
}

inline std::int32_t clamp_index(std::int64_t i, std::int32_t n) {
    return i < 0 ? 0 : i >= n ? n - 1 : static_cast<std::int32_t>(i);
}

inline std::int32_t* allocate_plane(const Image* img) {
    return static_cast<std::int32_t*>(std::malloc(image_count(img) * sizeof(std::int32_t)));
}

// A result for a filter of img: the same size and flags, and a copy of its alpha plane.
inline Image* create_result(const Image* img) {
    Image* result = image_create_like(img);
    if (result && result->alpha) {
        std::memcpy(result->alpha, img->alpha, image_count(img) * sizeof(std::int32_t));
    }
    return result;
}

// Ends an operation in its new form: calls the progress hook if there is a result, and returns it.
inline Image* reported(Image* result) {
    if (result) report_progress();
    return result;
}

// Replaces every colour plane by the one that make(dst, src) fills. False, with the image unchanged, without memory.
template <class Make>
bool remake_color_planes(Image* img, const Make& make) {
    std::int32_t* spare = allocate_plane(img);
    if (!spare) return false;
    for (Plane plane : kColorPlanes) {
        if (!(img->*plane)) continue;
        make(spare, img->*plane);
        std::swap(spare, img->*plane);
    }
    std::free(spare);
    return true;
}
