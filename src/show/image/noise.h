// Noise from the random generator (image/random.h).
#pragma once

#include <cstdint>

#include "show/image/image.h"

// Adds uniform noise from -amplitude to +amplitude inclusive, in value units; nothing is clamped, alpha
// stays. Draws from the last pixel to the first:
//   grey image:                    one number per pixel
//   three planes, amplitude >= 0:  one number per pixel, added to all three (grey noise)
//   three planes, amplitude < 0:   the amplitude is -amplitude; three numbers per pixel, for red,
//                                  green and blue
// Each added value is random_next() % (2 * amplitude + 1) - amplitude. A negative amplitude on a grey image is used
// as it is: the modulus is unsigned and then huge, so the added values are practically raw 32-bit numbers.
void image_noise(Image* img, std::int32_t amplitude);

// Sets width * height / density randomly chosen pixels (none if that is negative; a density of 0 does nothing) to
// random values 0..65535, one per colour plane in the order red, green, blue. Positions come from the random
// generator (x, then y), values from the C library's rand().
void image_scatter_noise(Image* img, std::int32_t density);
