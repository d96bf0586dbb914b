// Generators: pictures from nothing. They fill the colour planes and leave alpha alone.
#pragma once

#include <cstdint>

#include "show/image/image.h"

// Plasma: midpoint displacement, one fractal per colour plane, in the order green, red, blue. Tileable where
// the image wraps. `amplitude` is in value units, `roughness` the factor by which it shrinks with each
// halving of the cells. See plane_plasma.
void image_plasma(Image* img, std::int32_t amplitude, double roughness);

// Fills a plane with plasma. Values are 0..65535, but for the first point of a tileable plane: its offset is
// not clamped, so that more than 32767 of it may lead out of the range.
//
// Not tileable: the four corners (left to right, top to bottom) are random_next() & 0xFFFF, and the cell that
// they span is subdivided. Tileable: one point, (0, 0), becomes 32768 + an offset in -s..s, s = amplitude *
// roughness, and the cell from (0, 0) to (width, height), whose far sides wrap to column and row 0, is
// subdivided.
//
// Subdividing a cell with amplitude a sets, where they are not set yet, the midpoints of its top, bottom,
// left and right edge, then its centre, and then subdivides its quadrants (top left, top right, bottom left,
// bottom right) with the amplitude trunc(a * roughness):
//   edge point   (A + B + random_next() % (4a + 1) - 2a) >> 1            of its edge's two ends
//   centre       (N1 + .. + N4 + random_next() % (8a + 1) - 4a) >> 2     of the four edge points
// both clamped to 0..65535. A point that two cells share belongs to the one that comes first; only points
// that are set draw a number.
void plane_plasma(std::int32_t* plane, std::int32_t width, std::int32_t height, bool tileable,
                  std::int32_t amplitude, double roughness);

// A cone about the pixel (width / 2, height / 2): full up to the distance r0 = width / 2 * inner, falling to
// 0 at width / 2 * outer, in proportion to the distance between them (over 1 pixel where that ramp would be
// shorter than 0.0001). Full is 65536, one above the nominal maximum: it makes no difference to a byte, but
// it counts in blends that the textures are made with.
void image_radial(Image* img, double inner, double outer);

// A ramp from 0 at (x0, y0) to 65535 at (x1, y1), constant across; 0 before and 65535 behind. All 0 where
// both points are the same.
void image_linear_gradient(Image* img, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1);

// Grows every non-zero value of the green plane into cells: `steps` times, each pixel's value is spread to
// itself and its four neighbours (wrapping) where the destination is still 0, and the two planes change
// roles, the old source keeping its values. With `edges`, the cells are then replaced by their outlines: 0
// where a pixel equals both its right and its lower neighbour, else 65535. Other planes stay as they are.
void image_cells(Image* img, std::int32_t steps, bool edges);
