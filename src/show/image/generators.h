// Generators: they fill an image's colour planes and leave alpha as it is.
#pragma once

#include <cstdint>

#include "show/image/image.h"

// Plasma: midpoint displacement, one fractal per colour plane, in the order green, red, blue. Tileable if the image
// wraps. `amplitude` is in value units, `roughness` the factor by which it shrinks each time the cells are halved.
// See plane_plasma.
void image_plasma(Image* img, std::int32_t amplitude, double roughness);

// Fills a plane with plasma. Values are 0..65535, except possibly at the first point of a tileable plane.
//
// Not tileable: the four corners (left to right, top to bottom) are random_next() & 0xFFFF, and the cell between them
// is subdivided. Tileable: one point, (0, 0), becomes 32768 + random_next() % (2s + 1) - s, s = trunc(amplitude *
// roughness), and the cell from (0, 0) to (width, height) is subdivided; its far sides wrap to column and row 0. The
// first point is not clamped: an s above 32767 may lead out of the range, and below 0 the point counts as not set
// yet. The remainders, here and below, are unsigned.
//
// Subdividing a cell with amplitude a sets, where they are not set yet, the midpoints of its top, bottom, left and
// right edge, then its centre, and then subdivides its quadrants (top left, top right, bottom left, bottom right)
// with the amplitude trunc(a * roughness):
//   edge point   (A + B + random_next() % (4a + 1) - 2a) >> 1            of its edge's two ends
//   centre       (N1 + .. + N4 + random_next() % (8a + 1) - 4a) >> 2     of the four edge points
// both clamped to 0..65535. A point that two cells share is set by the one that comes first. A number is drawn only
// for a point that is set.
void plane_plasma(std::int32_t* plane, std::int32_t width, std::int32_t height, bool tileable,
                  std::int32_t amplitude, double roughness);

// A cone about the pixel (width / 2, height / 2), in integer division: 65536 up to the distance 0.5 * width * inner,
// falling linearly to 0 at 0.5 * width * outer, both not rounded; values are truncated. A ramp shorter than 0.0001
// pixels becomes 1 pixel long. 65536 is one above the nominal maximum: that makes no difference to a byte, but it
// does in the blends that the textures are made with.
void image_radial(Image* img, double inner, double outer);

// A linear ramp from 0 at (x0, y0) to 65535 at (x1, y1), constant across it; 0 before and 65535 behind; values are
// truncated. All 0 if both points are the same.
void image_linear_gradient(Image* img, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1);

// Grows the non-zero values of the green plane into cells. `steps` times, each pixel's value is written to itself and
// its four neighbours (wrapping) in a second plane where that is still 0, and the two planes swap their roles; the
// old source is not cleared. With `edges`, the cells are then replaced by their outlines: 0 where a pixel equals both
// its right and its lower neighbour, else 65535. Other planes stay as they are.
void image_cells(Image* img, std::int32_t steps, bool edges);
