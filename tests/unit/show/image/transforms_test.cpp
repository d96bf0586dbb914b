// Operations that move values about.
#include <gtest/gtest.h>

#include <cmath>

#include "show/image/transforms.h"
#include "tests/unit/show/image/reference.h"

namespace {

const double kQuarterTurn = 1.5707963267948966;

} // namespace

TEST(ImageShift, MatchesTheDefinition) {
    Material material(50);
    for (int i = 0; i < 100; ++i) {
        const Picture picture = material.picture();
        const std::int32_t dx = material.between(-200, 200), dy = material.between(-200, 200);
        const ImagePtr img = make_image(picture);
        const Picture expected = reference::shift(picture, dx, dy);
        ASSERT_EQ(picture_of(owned(image_shifted(img.get(), dx, dy)).get()), expected) << dx << ", " << dy;
        image_shift(img.get(), dx, dy);
        ASSERT_EQ(picture_of(img.get()), expected) << dx << ", " << dy;
    }
}

TEST(ImageShift, MovesThePictureToTheRightAndDown) {
    const ImagePtr img = make_grey(3, 2, {1, 2, 3, 4, 5, 6});
    image_shift(img.get(), 1, 0);
    EXPECT_EQ(grey_of(img), (Values{3, 1, 2, 6, 4, 5}));
    image_shift(img.get(), 0, 1);
    EXPECT_EQ(grey_of(img), (Values{6, 4, 5, 3, 1, 2}));
}

TEST(ImageShift, TakesExtremeDistances) {
    const ImagePtr img = make_grey(3, 1, {1, 2, 3});
    image_shift(img.get(), INT32_MAX, INT32_MIN); // 2^31 - 1 is 1 beyond a multiple of 3
    EXPECT_EQ(grey_of(img), (Values{3, 1, 2}));
}

TEST(ImageShrink, MatchesTheDefinition) {
    Material material(51);
    for (int i = 0; i < 100; ++i) {
        const Picture picture = material.picture();
        const std::int32_t fx = material.between(1, picture.width), fy = material.between(1, picture.height);
        const ImagePtr img = make_image(picture);
        const Picture expected = reference::shrink(picture, fx, fy);
        ASSERT_EQ(picture_of(owned(image_shrunk(img.get(), fx, fy)).get()), expected);
        image_shrink(img.get(), fx, fy);
        ASSERT_EQ(picture_of(img.get()), expected);
    }
}

TEST(ImageShrink, RoundsTheAverage) {
    const ImagePtr img = make_grey(5, 2, {1, 2, 10, 10, 99, 2, 2, 10, 11, 99});
    image_shrink(img.get(), 2, 2);
    EXPECT_EQ(img->width, 2);
    EXPECT_EQ(img->height, 1);
    EXPECT_EQ(grey_of(img), (Values{2, 10})); // 7 / 4, 41 / 4
}

TEST(ImageShrink, AveragesLargeBlocksWithoutOverflow) {
    const ImagePtr img = make_filled(512, 512, kImageGrey, 65535);
    image_shrink(img.get(), 512, 512);
    EXPECT_EQ(grey_of(img), (Values{65535}));
}

TEST(ImageShrink, RefusesFactorsThatLeaveNothing) {
    const ImagePtr img = make_filled(3, 3, kImageGrey, 7);
    const ProgressCount progress;
    for (std::int32_t factor : {0, -1, 4, INT32_MAX}) {
        EXPECT_EQ(image_shrunk(img.get(), factor, 1), nullptr);
        image_shrink(img.get(), 1, factor);
    }
    EXPECT_EQ(grey_of(img), Values(9, 7));
    EXPECT_EQ(progress.calls(), 0);
}

TEST(ImageEnlarge, MatchesTheDefinition) {
    Material material(52);
    for (int i = 0; i < 60; ++i) {
        const Picture picture =
            material.picture(material.between(1, 12), material.between(1, 12), material.flags());
        const std::int32_t fx = material.between(1, 5), fy = material.between(1, 5);
        const ImagePtr img = make_image(picture);
        const Picture expected = reference::enlarge(picture, fx, fy);
        ASSERT_EQ(picture_of(owned(image_enlarged(img.get(), fx, fy)).get()), expected);
        image_enlarge(img.get(), fx, fy);
        ASSERT_EQ(picture_of(img.get()), expected);
        image_shrink(img.get(), fx, fy);
    }
}

TEST(ImageEnlarge, RepeatsPixels) {
    const ImagePtr img = make_grey(2, 1, {1, 2});
    image_enlarge(img.get(), 2, 3);
    EXPECT_EQ(grey_of(img), (Values{1, 1, 2, 2, 1, 1, 2, 2, 1, 1, 2, 2}));
}

TEST(ImageEnlarge, RefusesSizesThatNoPlaneCanHave) {
    const ImagePtr img = make_filled(3, 3, kImageGrey, 7);
    for (std::int32_t factor : {0, -1, INT32_MAX, 100000}) {
        EXPECT_EQ(image_enlarged(img.get(), factor, factor), nullptr);
        image_enlarge(img.get(), factor, factor);
    }
    EXPECT_EQ(grey_of(img), Values(9, 7));
}

TEST(ImageDisplace, MatchesTheDefinition) {
    Material material(53);
    for (int i = 0; i < 150; ++i) {
        const Picture picture = material.picture();
        const bool two_planes = material.between(0, 1);
        const Picture map =
            material.picture(picture.width, picture.height, two_planes ? kImageColor + 0u : material.flags());
        const std::int32_t sx = material.between(-500, 500), sy = material.between(-500, 500);
        const ImagePtr img = make_image(picture), m = make_image(map);
        const Picture expected = reference::displace(picture, map, sx, sy, two_planes);
        ASSERT_EQ(picture_of(owned(image_displaced(img.get(), m.get(), sx, sy, two_planes)).get()), expected);
        image_displace(img.get(), m.get(), sx, sy, two_planes);
        ASSERT_EQ(picture_of(img.get()), expected);
    }
}

TEST(ImageDisplace, FetchesFromTheRightAndBelow) {
    // 1024 * 64 >> 10 = one pixel; whole pixels keep 63 * 63 / 4096 of the value.
    const ImagePtr img = make_grey(3, 2, {4096, 8192, 12288, 16384, 20480, 24576});
    const ImagePtr map = make_filled(3, 2, kImageGrey, 1024);
    const ImagePtr across = owned(image_displaced(img.get(), map.get(), 64, 0, false));
    EXPECT_EQ(grey_of(across), (Values{3969 * 2, 3969 * 3, 3969, 3969 * 5, 3969 * 6, 3969 * 4}));
    const ImagePtr down = owned(image_displaced(img.get(), map.get(), 0, 64, false));
    EXPECT_EQ(grey_of(down), (Values{3969 * 4, 3969 * 5, 3969 * 6, 3969, 3969 * 2, 3969 * 3}));
}

TEST(ImageDisplace, TakesNegativeOffsetsAsNone) {
    const ImagePtr img = make_grey(2, 1, {4096, 8192});
    image_displace(img.get(), make_filled(2, 1, kImageGrey, 1024).get(), -64, -64, false);
    EXPECT_EQ(grey_of(img), (Values{3969, 3969 * 2}));
}

TEST(ImageDisplace, TakesTwoPlanesOnlyFromColor) {
    const ImagePtr img = make_grey(2, 1, {4096, 8192}), grey = make_filled(2, 1, kImageGrey, 0);
    const ProgressCount progress;
    EXPECT_EQ(image_displaced(img.get(), grey.get(), 1, 1, true), nullptr);
    EXPECT_EQ(image_displaced(img.get(), make_filled(1, 2, kImageGrey, 0).get(), 1, 1, false), nullptr);
    EXPECT_EQ(image_displaced(img.get(), nullptr, 1, 1, false), nullptr);
    EXPECT_EQ(progress.calls(), 0);
}

TEST(ImageTransform, IdentityKeepsEveryPlane) {
    Material material(54);
    for (int i = 0; i < 30; ++i) {
        const Picture picture = material.picture();
        const ImagePtr img = make_image(picture);
        image_transform(img.get(), {1, 0, 0, 1});
        ASSERT_EQ(picture_of(img.get()), picture);
    }
}

TEST(ImageTransform, MirrorsAboutTheCentre) {
    const ImagePtr img = make_grey(3, 2, {1, 2, 3, 4, 5, 6});
    image_transform(img.get(), {-1, 0, 0, 1});
    EXPECT_EQ(grey_of(img), (Values{3, 2, 1, 6, 5, 4}));
}

TEST(ImageTransform, MixesBetweenPixels) {
    // A factor of 1/2 about the centre 0.5 looks at 0.25 and 0.75.
    const ImagePtr img = make_grey(2, 1, {0, 400});
    image_transform(img.get(), {0.5, 0, 0, 1});
    EXPECT_EQ(grey_of(img), (Values{100, 300}));
}

TEST(ImageTransform, RepeatsTheBorderOrWraps) {
    // A factor of 3 about the centre 1 looks at -2, 1 and 4.
    const ImagePtr plain = make_grey(3, 1, {1, 2, 3}),
                   tile = make_grey(3, 1, {1, 2, 3}, kImageGrey | kImageWrap);
    image_transform(plain.get(), {3, 0, 0, 1});
    image_transform(tile.get(), {3, 0, 0, 1});
    EXPECT_EQ(grey_of(plain), (Values{1, 2, 3}));
    EXPECT_EQ(grey_of(tile), (Values{2, 2, 2}));
}

TEST(ImageTransform, SurvivesAnyMatrix) {
    for (double v : {1e300, -1e300, std::nan(""), HUGE_VAL, 1e18}) {
        const ImagePtr img = make_filled(3, 3, kImageGrey | kImageWrap, 7);
        image_transform(img.get(), {v, v, v, v});
        EXPECT_EQ(grey_of(img), Values(9, 7));
    }
}

TEST(ImageRotozoom, QuarterTurnIsClockwise) {
    const ImagePtr img = make_filled(3, 3, kImageGrey, 0);
    img->green[1] = 65536; // top middle
    image_rotozoom(img.get(), kQuarterTurn, 1.0);
    EXPECT_GT(img->green[3 + 2], 65000) << "right middle";
    EXPECT_LT(img->green[1], 600);
}

TEST(ImageRotozoom, ZoomEnlargesAboutTheCentre) {
    const ImagePtr img = make_grey(5, 1, {0, 0, 4096, 0, 0});
    image_rotozoom(img.get(), 0.0, 2.0);
    EXPECT_EQ(grey_of(img), (Values{0, 2048, 4096, 2048, 0}));
}

TEST(ImageRotozoom, RefusesAZoomOfZero) {
    const ImagePtr img = make_filled(3, 3, kImageGrey, 7);
    EXPECT_EQ(image_rotozoomed(img.get(), 0.0, 0.0), nullptr);
    image_rotozoom(img.get(), 0.0, 0.0);
    EXPECT_EQ(grey_of(img), Values(9, 7));
}

TEST(ImagePolarize, RowsBecomeDistances) {
    // Black upper half, white lower half: a black disc in white.
    const ImagePtr img = make_filled(64, 64, kImageGrey | kImageWrap, 0);
    for (int i = 32 * 64; i < 64 * 64; ++i) img->green[i] = 65535;
    image_polarize(img.get());
    EXPECT_EQ(img->green[32 * 64 + 32], 0);
    EXPECT_EQ(img->green[32 * 64 + 44], 0);
    EXPECT_EQ(img->green[32 * 64 + 52], 65535);
    EXPECT_EQ(img->green[12 * 64 + 32], 65535);
}

TEST(ImagePolarize, ColumnsBecomeDirectionsClockwiseFromTheTop) {
    // Only the second quarter of the columns is white: from the right to the bottom.
    const ImagePtr img = make_filled(64, 64, kImageGrey | kImageWrap, 0);
    for (int y = 0; y < 64; ++y) {
        for (int x = 16; x < 32; ++x) img->green[y * 64 + x] = 65535;
    }
    image_polarize(img.get());
    EXPECT_EQ(img->green[44 * 64 + 44], 65535) << "right and below";
    EXPECT_EQ(img->green[20 * 64 + 44], 0) << "right and above";
    EXPECT_EQ(img->green[44 * 64 + 20], 0) << "left and below";
    EXPECT_EQ(img->green[20 * 64 + 20], 0) << "left and above";
}

TEST(ImagePolarize, SurvivesASinglePixel) {
    const ImagePtr img = make_filled(1, 1, kImageColor | kImageAlpha, 7);
    image_polarize(img.get());
    EXPECT_EQ(picture_of(img.get()), (Picture{1, 1, 6, {7}, {7}, {7}, {7}}));
}
