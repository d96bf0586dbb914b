// The picture that every texture of the show is made in.
//
//     Image* img = image_create(256, 256, kImageGrey | kImageWrap);
//     image_plasma(img, 32768, 0.67);
//     unsigned texture = image_upload(img, kTextureMipmapped);
//     image_free(img);
//
// Operations come in two forms. The new form (a participle: image_ranked) leaves its input alone and returns
// a fresh Image that the caller owns, or null. The form in place (a verb: image_rank) changes the Image it is
// given. Nothing reports an error in another way: a null image, images whose sizes do not fit together, or no
// memory make an operation do nothing (in place) or return null (new form), and an input is never left half
// changed. An operation that changed or made pixels ends by calling g_progress_hook (image/progress.h), once,
// also where it is built from others; create, copy, free, replace, upload and BMP export never call it.
#pragma once

#include <cstddef>
#include <cstdint>

// Values run from 0 (black, transparent) to 65535 (full, opaque); an 8-bit level b is stored as b * 257.
// Nothing clamps but the conversion back to bytes (value_to_byte) and the operations that say so: noise,
// blends and convolutions may leave values below 0 or above 65535. 32-bit arithmetic on values wraps.
//
// A plane holds width * height values, row 0 first: the value of pixel (x, y) has the index y * width + x.
struct Image {
    std::int32_t width;  // pixels per row
    std::int32_t height; // rows
    std::uint32_t flags; // ImageFlags
    std::int32_t* red;   // null unless there are three colour planes
    std::int32_t* green; // green, or grey where it is the only colour plane; always there
    std::int32_t* blue;  // null unless there are three colour planes
    std::int32_t* alpha; // null unless flags has kImageAlpha
};

// Sizes are at least 1 x 1, and width * height is at most 2^31 - 1.
enum ImageFlags : std::uint32_t {
    kImageGrey = 1,   // one colour plane; so is any value of the two lowest bits but 2
    kImageColor = 2,  // three colour planes
    kImagePlanes = 3, // the field of the two above
    kImageAlpha = 4,  // an alpha plane
    kImageWrap = 8 // tileable: neighbours wrap around the borders, else the border pixel repeats; uploaded as
                   // repeat/clamp
};

// Which planes an operation is to change.
enum PLANE_MASK : std::uint32_t {
    kPlaneRed = 1,
    kPlaneGreen = 2, // also the plane of a grey image
    kPlaneBlue = 4,
    kPlaneAlpha = 8 // only where an operation says so
};

// Colours are words 0xAARRGGBB. A grey plane takes the blue byte (bits 0-7), an alpha plane bits 24-31.

inline bool image_has_three_planes(const Image* img) { return (img->flags & kImagePlanes) == kImageColor; }

// Values in a plane of the image.
inline std::size_t image_count(const Image* img) {
    return static_cast<std::size_t>(img->width) * static_cast<std::size_t>(img->height);
}

// --- Making and owning ---

// An image with the planes that the flags call for, their values undefined. Null for a size that is not
// allowed or without memory.
Image* image_create(std::int32_t width, std::int32_t height, std::uint32_t flags);

// An image of the same size and flags, its values undefined. Null for null.
Image* image_create_like(const Image* img);

// A copy with all planes. Null for null.
Image* image_copy(const Image* img);

// Frees the planes and the record. Null is ignored.
void image_free(Image* img);

// Hands src's size, flags and planes to dst, whose own planes are freed, and frees src's record: src must not
// be used again. This is how an operation commits a result of another size. Nothing if either is null.
void image_replace(Image* dst, Image* src);

// --- Elementary operations ---

// Copies src's green (grey) plane into dst's alpha plane, which is made where dst has none, and sets
// kImageAlpha. Nothing where the sizes differ or src has no green plane. src may be dst.
void image_set_alpha(Image* dst, const Image* src);

// Fills every plane, alpha too, with its byte of the colour.
void image_fill(Image* img, std::uint32_t color);

// Fills w columns and h rows from (x, y) in every plane, alpha too. What runs past the right or bottom edge
// is cut. Negative x or y are not clipped and are the caller's mistake: such a rectangle comes out in the
// rows above, as far as these exist.
void image_fill_rect(Image* img, std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h,
                     std::uint32_t color);

// Draws a line with both its ends in every plane, alpha too, by plane_line. There is no clipping: nothing is
// drawn where an end lies outside of the image.
void image_line(Image* img, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
                std::uint32_t color);

// --- One plane ---

// Sets `count` values to level * 257; level is 0..255.
void plane_fill(std::int32_t* plane, std::size_t count, std::uint32_t level);

// Draws a line by halving it: sets both ends to level * 257 and, unless they touch (no coordinate differs by
// more than 1), draws both halves up to the midpoint, which is rounded towards zero. Both ends must lie in
// the plane.
void plane_line(std::int32_t* plane, std::int32_t width, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                std::int32_t y1, std::uint32_t level);
