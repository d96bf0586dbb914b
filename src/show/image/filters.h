// Filters and combiners, for images that a generator has filled.
//
// Filters work on the colour planes. Unless an operation says otherwise alpha is not filtered: the form in place leaves
// it as it is, a new image gets a copy. So filter first, then give the image its alpha (image_set_alpha). Neighbours
// beyond a border wrap around in a tileable image (kImageWrap); otherwise the border pixel repeats. A radius may exceed
// the image.
#pragma once

#include <cstdint>

#include "show/image/image.h"

// --- Convolution ---
//
// A kernel is an array of 32-bit integer weights. Every result is
//     trunc(bias + sum / divisor)
// with the weighted sum as a wrapping 32-bit integer, the division and the addition in double, and no
// clamping. A divisor equal to the sum of the weights (one-dimensional) keeps the brightness. Null, or
// nothing, for a null image or kernel or a negative radius.

// Two-dimensional: (2r+1) x (2r+1) weights, row by row, from (-r, -r) to (r, r). Values are shifted right by 8 before
// they are weighted, so that 32 bits hold the sum: scale the divisor by 1/256 to match (the sum of the weights / 256
// keeps the brightness, but only the high byte of each value counts). The form in place replaces a divisor of 0 by 1.
Image* image_convolved(const Image* img, const std::int32_t* kernel, std::int32_t r, double divisor,
                       std::int32_t bias);
void image_convolve(Image* img, const std::int32_t* kernel, std::int32_t r, double divisor,
                    std::int32_t bias);

// One-dimensional, along rows (h) or columns (v): 2r+1 weights from -r to r, on the full values.
Image* image_convolved_h(const Image* img, const std::int32_t* kernel, std::int32_t r, double divisor,
                         std::int32_t bias);
void image_convolve_h(Image* img, const std::int32_t* kernel, std::int32_t r, double divisor,
                      std::int32_t bias);
Image* image_convolved_v(const Image* img, const std::int32_t* kernel, std::int32_t r, double divisor,
                         std::int32_t bias);
void image_convolve_v(Image* img, const std::int32_t* kernel, std::int32_t r, double divisor,
                      std::int32_t bias);

// One plane of width x height, from src to dst, which may be src. False, with dst unchanged, for a null kernel, a
// negative radius or without memory.
bool plane_convolve_clamp(std::int32_t* dst, const std::int32_t* src, std::int32_t width, std::int32_t height,
                          const std::int32_t* kernel, std::int32_t r, double divisor, std::int32_t bias);
bool plane_convolve_wrap(std::int32_t* dst, const std::int32_t* src, std::int32_t width, std::int32_t height,
                         const std::int32_t* kernel, std::int32_t r, double divisor, std::int32_t bias);

// `lines` lines of `length` values: line n starts at n * line_stride and goes on in steps of `step`. Rows of a plane:
// height lines, stride width, step 1; columns: width lines, stride 1, step width. Otherwise as above.
bool plane_convolve_line_clamp(std::int32_t* dst, const std::int32_t* src, std::int32_t lines,
                               std::int32_t line_stride, std::int32_t length, std::int32_t step,
                               const std::int32_t* kernel, std::int32_t r, double divisor, std::int32_t bias);
bool plane_convolve_line_wrap(std::int32_t* dst, const std::int32_t* src, std::int32_t lines,
                              std::int32_t line_stride, std::int32_t length, std::int32_t step,
                              const std::int32_t* kernel, std::int32_t r, double divisor, std::int32_t bias);

// --- Blurs ---

// The raised cosine of radius r: weights trunc(cos(i / (r+1) * pi) * 128 + 128) for i = -r..r. They fall from 256 in
// the middle to the ends, which are above 0 up to radius 24 and 0 from 25 on. Stores their sum; the caller frees the
// 2r+1 weights with std::free. Null for a negative radius or without memory. r = 1: 128, 256, 128, sum 512.
std::int32_t* blur_kernel(std::int32_t r, std::int32_t* sum);

// Raised-cosine blur of r pixels to both sides, along rows (h) or columns (v). Strength 1 keeps the
// brightness, 2 doubles it.
void image_blur_h(Image* img, std::int32_t r, double strength);
void image_blur_v(Image* img, std::int32_t r, double strength);

// Raised-cosine blur with an elliptic kernel of radius r. The distance of a weight from the centre, in units of r+1,
// is divided by aspect + (1 - aspect) * (1 - t), where t is the absolute value of the cosine between its direction
// and (sin(angle), cos(angle)), angle in radians: the divisor is `aspect` along that direction and 1 across it. So an
// aspect below 1 blurs farther across the direction than along it. A weight exactly on the direction (t = 1) keeps
// its distance; that jump is intentional. Strength as above, to the precision of 8 bits (see image_convolve).
void image_blur_directional(Image* img, std::int32_t r, double angle, double aspect, double strength);

// --- Levels ---

// Maps in_lo..in_hi linearly onto out_lo..out_hi, in the planes of the mask (PLANE_MASK, not alpha). Values outside
// are first clamped to in_lo..in_hi. All in double:
//     v = trunc((v - in_lo) * ((out_hi - out_lo) / (in_hi - in_lo)) + out_lo)
// in_lo > in_hi swaps both pairs; in_lo == in_hi changes nothing. (0, 65535, 65535, 0) inverts.
void image_levels(Image* img, std::uint32_t mask, std::int32_t in_lo, std::int32_t in_hi, std::int32_t out_lo,
                  std::int32_t out_hi);

// Gain `factor` about the value 32768 - shift, clipped to 0..65535: image_levels with
//     in_lo = trunc((1 - f) * 32768 - shift), in_hi = trunc((f + 1) * 32768 - shift), out_lo = 0, out_hi = 65535
// and f = 1 / factor, or 1 if |factor| <= 0.0001.
void image_contrast(Image* img, std::uint32_t mask, std::int32_t shift, double factor);

// --- Blending ---

// How a source value s changes a destination value d: d = (m * opacity + d * (256 - opacity)) >> 8. Nothing
// is clamped.
enum MixMode {
    kMixAdd = 1,        // m = d + s
    kMixSubtract = 2,   // m = d - s
    kMixDifference = 3, // m = |d - s|
    kMixMultiply = 4,   // m = ((d >> 2) * (s >> 2)) >> 12
    kMixScreen = 5,     // m = ((((d ^ 0xFFFF) >> 2) * ((s ^ 0xFFFF) >> 2)) >> 12) ^ 0xFFFF
    // m = s < 32769 ? ((s >> 3) * d) >> 12 : (s + d) * 2 - (((d >> 2) * (s >> 2)) >> 11) - 65536
    kMixHardLight = 6,
    kMixReplace = 7 // m = s; also for any other value
};

// Combines src onto dst, opacity 0 (none) to 256 (full). A grey src is used for all three planes of a coloured dst. A
// coloured src on a grey dst changes nothing, nor do images of different sizes. Alpha stays.
void image_blend(Image* dst, const Image* src, int mode, std::int32_t opacity);

// --- Rank ---

// Functions of the nine values of a pixel's 3x3 neighbourhood, row by row: [0] gives their minimum, but at most
// 65535; [1] their maximum, but at least 0.
extern std::int32_t (*const rank_filters[2])(const std::int32_t values[9]);

// 3x3 minimum (which = 0, dark areas grow) or maximum (any other value, bright areas grow).
Image* image_ranked(const Image* img, int which);
void image_rank(Image* img, int which);

// --- Tone and relief ---

// Convolution with the 3x3 weights trunc((dx * sin(angle) + dy * cos(angle)) * 256), divisor 1, bias 0: the
// slope of the values in the direction (sin(angle), cos(angle)), negative where they fall. angle in radians.
Image* image_embossed(const Image* img, double angle);
void image_emboss(Image* img, double angle);

// A grey image in colour: 0..65535 is mapped by image_levels onto the colour range color_lo..color_hi of each plane.
// The result has three planes, no alpha and no wrap flag. Null, or nothing, unless img has kImageGrey.
Image* image_colorized(const Image* img, std::uint32_t color_lo, std::uint32_t color_hi);
void image_colorize(Image* img, std::uint32_t color_lo, std::uint32_t color_hi);

// v = trunc((v / 65535) ^ (1 / gamma) * 65535), of values clamped to 0..65535, in the planes of the mask (alpha too).
// A gamma of 0 or below changes nothing.
void image_gamma(Image* img, std::uint32_t mask, double gamma);

// v = (v + offset) / step * step, in integers, with step = trunc(65536 / (levels + 1)) and offset =
// trunc(32767.5 / (levels + 1)), in the planes of the mask (alpha too). Nothing if levels is -1 or the step is 0.
// For levels below -1 step and offset are negative.
void image_posterize(Image* img, std::uint32_t mask, std::int32_t levels);

// Light for image_light: a white lamp far away at 45 degrees above the picture, seen from straight above.
struct BumpLight {
    double angle;     // the lamp stands in the direction (sin(angle), cos(angle)), radians, y downwards
    double ambient;   // share of dst's value that is always there
    double diffuse;   // share of dst's value under full light
    double specular;  // share of white in the highlight
    double shininess; // exponent of the highlight
};

// Lights the colour planes of dst as a relief whose heights are the green (grey) plane of `height`. With e the value of
// image_embossed(height, angle) and phi = atan(-e / 65536) the tilt of the surface towards the lamp,
//     d = d * (ambient + diffuse * max(0, cos(45deg - phi))) + highlight
//     highlight = 65535 * specular * max(0, cos(22.5deg - phi)) ^ shininess
// clamped to 0..65535 and truncated; not a number becomes 0. 22.5 degrees is half-way between lamp and eye. Nothing
// if the sizes differ.
void image_light(Image* dst, const Image* height, const BumpLight& light);
