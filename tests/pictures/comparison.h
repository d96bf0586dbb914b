// Whether two pictures show the same.
//
// Another version of the renderer may round differently, move an edge by a fraction of a pixel, or choose the
// neighbouring mipmap level: that changes few pixels of a reduced picture by much, or many by little. A wrong
// colour, position or texture changes more.
#pragma once

#include "tests/support/picture.h"

// Pictures are compared at this fraction of 1024x768: 256x192.
constexpr int kReduction = 4;

// Of a pixel, the largest difference among its three channels counts, 0..255.
struct Difference {
    double mean = 255;    // over all pixels
    double far_off = 100; // per cent of the pixels that differ by more than kFarOff
};
constexpr int kFarOff = 32;
constexpr double kMostMean = 1.5;
constexpr double kMostFarOff = 0.75; // per cent: about 370 of 49152 pixels

Difference difference(const Rgb& a, const Rgb& b);
bool same(const Difference& difference);
