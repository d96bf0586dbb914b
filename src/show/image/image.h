// The image record that the show's textures are made in.
//
//     Image* img = image_create(256, 256, kImageGrey | kImageWrap);
//     image_plasma(img, 32768, 0.67);
//     unsigned texture = image_upload(img, kTextureMipmapped);
//     image_free(img);
//
// Operations come in two forms. The new form (a participle: image_ranked) leaves its input unchanged and returns a
// new Image that the caller owns. The form in place (a verb: image_rank) changes the Image it is given. Errors are
// not reported in any other way: with a null image, images whose sizes do not match, or no memory, the new form
// returns null and the form in place does nothing; an input is never left half changed. An operation that
// was not refused ends with one call of g_progress_hook (image/progress.h), also if it is built from others. Create,
// copy, free, replace, upload, BMP export and the functions on single planes never call it.
#pragma once

#include <cstddef>
#include <cstdint>

// Values run from 0 (black, transparent) to 65535 (full, opaque); an 8-bit level b is stored as b * 257. Only the
// conversion back to bytes (value_to_byte) and the operations that say so clamp: noise, blends and convolutions may
// leave values below 0 or above 65535. 32-bit arithmetic on values wraps, except in image_shrink and the resamplers
// (transforms.h), whose sums are exact, and where an operation computes in double. A result that is truncated from
// double and does not fit into 32 bits (or is not a number) becomes -2^31, except in image_light, which clamps.
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
    kImageGrey = 1,   // one colour plane; so have 0 and 3
    kImageColor = 2,  // three colour planes
    kImagePlanes = 3, // mask of the two above
    kImageAlpha = 4,  // an alpha plane
    kImageWrap = 8 // tileable: neighbours wrap around the borders, a texture repeats; else the border repeats
};

// The planes that an operation changes.
enum PLANE_MASK : std::uint32_t {
    kPlaneRed = 1,
    kPlaneGreen = 2, // also the plane of a grey image
    kPlaneBlue = 4,
    kPlaneAlpha = 8 // only if an operation says so
};

// Colours are words 0xAARRGGBB. The plane of an image with kImageGrey takes the blue byte (bits 0-7), an alpha plane
// bits 24-31. (With 0 or 3 in place of kImageGrey the plane takes the green byte.)

inline bool image_has_three_planes(const Image* img) { return (img->flags & kImagePlanes) == kImageColor; }

// Values in a plane of the image.
inline std::size_t image_count(const Image* img) {
    return static_cast<std::size_t>(img->width) * static_cast<std::size_t>(img->height);
}

// --- Creation and ownership ---

// An image with the planes of its flags, their values undefined. Null if the size is not allowed or without memory.
Image* image_create(std::int32_t width, std::int32_t height, std::uint32_t flags);

// An image of the same size and flags, its values undefined. Null for null.
Image* image_create_like(const Image* img);

// A copy with all planes. Null for null.
Image* image_copy(const Image* img);

// Frees the planes and the record. Null is ignored.
void image_free(Image* img);

// Moves src's size, flags and planes to dst, whose own planes are freed, and frees src's record: src must not be used
// again. Operations in place commit their results with it. Nothing if either is null or both are the same.
void image_replace(Image* dst, Image* src);

// --- Elementary operations ---

// Copies src's green (grey) plane into dst's alpha plane, which is allocated if dst has none, and sets kImageAlpha.
// Nothing if the sizes differ or src has no green plane. src may be dst.
void image_set_alpha(Image* dst, const Image* src);

// Fills every plane, alpha too, with its byte of the colour.
void image_fill(Image* img, std::uint32_t color);

// Fills w columns and h rows from (x, y) in every plane, alpha too. What lies beyond the right or bottom edge is cut.
// Negative x or y are an error of the caller: columns left of the image are drawn at the end of the row above, as far
// as that exists.
void image_fill_rect(Image* img, std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h,
                     std::uint32_t color);

// Draws a line in every plane, alpha too, by plane_line. There is no clipping: nothing is drawn if an end lies
// outside the image.
void image_line(Image* img, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
                std::uint32_t color);

// --- One plane ---

// Sets `count` values to level * 257; level is 0..255.
void plane_fill(std::int32_t* plane, std::size_t count, std::uint32_t level);

// Draws a line by halving: sets both ends to level * 257 and, if a coordinate of theirs differs by more than 1, draws
// both halves up to the midpoint, which is rounded towards zero. Both ends must lie in the plane.
void plane_line(std::int32_t* plane, std::int32_t width, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                std::int32_t y1, std::uint32_t level);
