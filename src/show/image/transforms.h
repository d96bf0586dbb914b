// Geometry: operations that move values about. Images as in image/image.h.
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

// Fetches each pixel from a place to its right and below, by the values of a map of the same size: the offset
// in 1/64 pixels is (map * sx) >> 10 across and (map * sy) >> 10 down, where map is the red (two_planes) or
// green plane for x and the green one for y, and a negative offset counts as 0. Positions wrap. The four
// pixels around the place are mixed with weights 63 - f and f of the offset's low six bits f, across times
// down, >> 12: a picture that does not move keeps 3969/4096 of its values. Colour planes only; alpha stays.
// Refused where the sizes differ, or with two_planes where the map has no red plane.
Image* image_displaced(const Image* img, const Image* map, std::int32_t sx, std::int32_t sy, bool two_planes);
void image_displace(Image* img, const Image* map, std::int32_t sx, std::int32_t sy, bool two_planes);

// The resamplers' formulas are ours. A place (u, v) between pixels gives the bilinear mix of the four around
// it, with fractions of 1/256 (rounded down), >> 16; beyond the borders the image wraps or repeats as its
// flags say. All planes, alpha too.

// Each pixel (x, y) shows the place (cx + xx * (x - cx) + xy * (y - cy), cy + yx * (x - cx) + yy * (y - cy)),
// with the centre (cx, cy) = ((width - 1) / 2, (height - 1) / 2).
struct Matrix2 {
    double xx, xy, yx, yy;
};
Image* image_transformed(const Image* img, const Matrix2& matrix);
void image_transform(Image* img, const Matrix2& matrix);

// Turns by `angle` radians clockwise and enlarges `zoom` times about the centre. A zoom of 0 is refused.
Image* image_rotozoomed(const Image* img, double angle, double zoom);
void image_rotozoom(Image* img, double angle, double zoom);

// Bends the picture round its centre: columns become directions, from straight up clockwise, and rows
// distances, row 0 in the centre and row `height` at the distance min(width, height) / 2.
Image* image_polarized(const Image* img);
void image_polarize(Image* img);
