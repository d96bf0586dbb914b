// Geometry: shifting, scaling, displacing and resampling images.
#pragma once

#include <cstdint>

#include "show/image/image.h"

// Moves the picture by (dx, dy), wrapping around. Colour planes only; alpha stays.
Image* image_shifted(const Image* img, std::int32_t dx, std::int32_t dy);
void image_shift(Image* img, std::int32_t dx, std::int32_t dy);

// Box average of blocks of fx x fy values, (sum + n / 2) / n with n = fx * fy; the size becomes width / fx x
// height / fy, what is left over at the right and bottom is dropped. All planes, alpha too. Factors are at
// least 1, and at most the size.
Image* image_shrunk(const Image* img, std::int32_t fx, std::int32_t fy);
void image_shrink(Image* img, std::int32_t fx, std::int32_t fy);

// Each pixel repeated fx x fy times. All planes, alpha too. Factors are at least 1.
Image* image_enlarged(const Image* img, std::int32_t fx, std::int32_t fy);
void image_enlarge(Image* img, std::int32_t fx, std::int32_t fy);

// Takes each pixel from a place to its right and below, by the values of a map of the same size: the offset in 1/64
// pixels is (map * sx) >> 10 across and (map * sy) >> 10 down, where map is the red (two_planes) or green plane for x
// and the green one for y; a negative offset counts as 0. Positions wrap. The four pixels around the place are mixed
// with the weights 63 - f and f, f being the low six bits of each offset, >> 12: with offsets of 0 a value keeps
// 3969/4096 of itself. Colour planes only; alpha stays. Null, or nothing, if the sizes differ, or if two_planes is
// set and the map has no red plane.
Image* image_displaced(const Image* img, const Image* map, std::int32_t sx, std::int32_t sy, bool two_planes);
void image_displace(Image* img, const Image* map, std::int32_t sx, std::int32_t sy, bool two_planes);

// The resamplers below: a place (u, v) between pixels gives the bilinear mix of the four around it, with fractions of
// 1/256 (rounded down), >> 16. Beyond the borders the image wraps, or its border pixels repeat, as its flags say. All
// planes, alpha too.

// Each pixel (x, y) shows the place (cx + xx * (x - cx) + xy * (y - cy), cy + yx * (x - cx) + yy * (y - cy)), with
// the centre (cx, cy) = ((width - 1) / 2, (height - 1) / 2), not rounded.
struct Matrix2 {
    double xx, xy, yx, yy;
};
Image* image_transformed(const Image* img, const Matrix2& matrix);
void image_transform(Image* img, const Matrix2& matrix);

// Rotates by `angle` radians clockwise and enlarges `zoom` times about the centre. Null, or nothing, for a zoom of 0.
Image* image_rotozoomed(const Image* img, double angle, double zoom);
void image_rotozoom(Image* img, double angle, double zoom);

// Polar coordinates: columns become directions about the centre, clockwise from straight up, and rows become
// distances, row 0 in the centre and row `height` at the distance min(width, height) / 2.
Image* image_polarized(const Image* img);
void image_polarize(Image* img);
