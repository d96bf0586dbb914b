// Plasma, ramps and cells.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "show/image/generators.h"
#include "show/image/random.h"
#include "tests/unit/show/image/reference.h"

namespace {

reference::BitSerialGenerator model_of_state() { return {g_random.s1, g_random.s2, g_random.s3}; }

int draws_since(RandomState before) {
    for (int i = 0; i < 5000000; ++i) {
        if (before.s1 == g_random.s1 && before.s2 == g_random.s2 && before.s3 == g_random.s3) return i;
        random_step(before);
    }
    return -1;
}

std::int32_t at(const ImagePtr& img, std::int32_t x, std::int32_t y) {
    return img->green[static_cast<std::ptrdiff_t>(y) * img->width + x];
}

} // namespace

TEST(PlanePlasma, MatchesTheDefinition) {
    Material material(20);
    static const std::int32_t amplitudes[] = {0,     1,       4104, 32768,     33280,
                                              65536, 1000000, -5,   INT32_MAX, INT32_MIN};
    static const double roughnesses[] = {0.0, 0.67, 0.8, 1.0, 1.7, -0.5, 1e9};
    for (int i = 0; i < 300; ++i) {
        const std::int32_t width = material.between(1, 70), height = material.between(1, 70);
        const bool tileable = material.between(0, 1);
        const std::int32_t amplitude = amplitudes[material.between(0, 9)];
        const double roughness = roughnesses[material.between(0, 6)];
        reference::BitSerialGenerator model = model_of_state();
        const Values expected = reference::plasma(width, height, tileable, amplitude, roughness, model);
        Values values(expected.size(), 12345);
        plane_plasma(values.data(), width, height, tileable, amplitude, roughness);
        ASSERT_EQ(values, expected) << width << "x" << height << (tileable ? " tileable, " : ", ")
                                    << amplitude << ", " << roughness;
        ASSERT_EQ(random_next(), model.next());
    }
}

TEST(PlanePlasma, MatchesTheDefinitionAtTheSizesOfTheShow) {
    reference::BitSerialGenerator model = model_of_state();
    const Values tile = reference::plasma(256, 256, true, 32768, 0.67, model);
    const Values large = reference::plasma(1024, 1024, false, 33280, 0.8, model);
    Values values(tile.size());
    plane_plasma(values.data(), 256, 256, true, 32768, 0.67);
    EXPECT_TRUE(values == tile);
    values.resize(large.size());
    plane_plasma(values.data(), 1024, 1024, false, 33280, 0.8);
    EXPECT_TRUE(values == large);
}

TEST(PlanePlasma, OfThreeByThreeIsTheOneComputedByHand) {
    RandomState state = g_random;
    const auto draw = [&](std::uint32_t n) { return static_cast<std::int32_t>(random_step(state) % n); };
    const std::int32_t c00 = draw(65536), c20 = draw(65536), c02 = draw(65536), c22 = draw(65536);
    const std::int32_t a = 100;
    const auto edge = [&](std::int32_t p, std::int32_t q) {
        return std::clamp((p + q + draw(401) - 2 * a) >> 1, 0, 65535);
    };
    const std::int32_t top = edge(c00, c20), bottom = edge(c02, c22), left = edge(c00, c02),
                       right = edge(c20, c22);
    const std::int32_t centre = std::clamp((top + bottom + left + right + draw(801) - 4 * a) >> 2, 0, 65535);

    Values values(9);
    plane_plasma(values.data(), 3, 3, false, a, 0.5);
    EXPECT_EQ(values, (Values{c00, top, c20, left, centre, right, c02, bottom, c22}));
}

TEST(PlanePlasma, NotTileableDrawsOncePerValue) {
    // Four corners, and one number for each of the other points.
    for (const auto& [width, height] : {std::pair{2, 2}, {3, 3}, {17, 33}, {64, 64}}) {
        Values values(static_cast<std::size_t>(width * height));
        const RandomState before = g_random;
        plane_plasma(values.data(), width, height, false, 4000, 0.7);
        EXPECT_EQ(draws_since(before), width * height) << width << "x" << height;
    }
}

TEST(PlanePlasma, TileableDrawsOncePerValue) {
    Values values(64 * 64);
    const RandomState before = g_random;
    plane_plasma(values.data(), 64, 64, true, 4000, 0.7);
    EXPECT_EQ(draws_since(before), 64 * 64);
}

TEST(PlanePlasma, SinglePixelTakesTheLastOfFourCorners) {
    RandomState state = g_random;
    for (int i = 0; i < 3; ++i) random_step(state);
    const std::int32_t last = static_cast<std::int32_t>(random_step(state) & 0xFFFF);
    std::int32_t value = 0;
    plane_plasma(&value, 1, 1, false, 4000, 0.7);
    EXPECT_EQ(value, last);
}

TEST(PlanePlasma, StaysInRange) {
    Values values(128 * 128);
    plane_plasma(values.data(), 128, 128, false, 65535, 1.0);
    EXPECT_GE(*std::min_element(values.begin(), values.end()), 0);
    EXPECT_LE(*std::max_element(values.begin(), values.end()), 65535);
}

TEST(PlanePlasma, WithoutAmplitudeInterpolatesTheCorners) {
    Values v(5 * 5);
    plane_plasma(v.data(), 5, 5, false, 0, 0.5);
    EXPECT_EQ(v[2], (v[0] + v[4]) >> 1);
    EXPECT_EQ(v[1], (v[0] + v[2]) >> 1);
    EXPECT_EQ(v[10], (v[0] + v[20]) >> 1);
    EXPECT_EQ(v[12], (v[2] + v[22] + v[10] + v[14]) >> 2);
}

TEST(PlanePlasma, TileableMeetsWithoutASeam) {
    // Beside the border the steps are as small as anywhere else.
    Values v(256 * 256);
    plane_plasma(v.data(), 256, 256, true, 32768, 0.5);
    int inside = 0, across = 0;
    for (std::size_t y = 0; y < 256; ++y) {
        for (std::size_t x = 1; x < 256; ++x)
            inside = std::max(inside, std::abs(v[y * 256 + x] - v[y * 256 + x - 1]));
        across = std::max(across, std::abs(v[y * 256 + 255] - v[y * 256]));
        across = std::max(across, std::abs(v[255 * 256 + y] - v[y]));
    }
    EXPECT_LE(across, inside);
}

TEST(PlanePlasma, ThinPlanesEndSoon) {
    // A cell without width has every quadrant twice: visiting both would take the square of the length.
    Values v(1 << 20);
    plane_plasma(v.data(), 1, 1 << 20, false, 100, 0.9);
    plane_plasma(v.data(), 1 << 20, 1, true, 100, 0.9);
    plane_plasma(v.data(), 2, 1 << 19, false, 100, 0.9);
    EXPECT_GE(*std::min_element(v.begin(), v.end()), 0);
}

TEST(ImagePlasma, FillsGreenThenRedThenBlue) {
    reference::BitSerialGenerator model = model_of_state();
    const Values green = reference::plasma(20, 10, true, 5000, 0.7, model);
    const Values red = reference::plasma(20, 10, true, 5000, 0.7, model);
    const Values blue = reference::plasma(20, 10, true, 5000, 0.7, model);
    const ImagePtr img = make_filled(20, 10, kImageColor | kImageAlpha | kImageWrap, 3);
    image_plasma(img.get(), 5000, 0.7);
    EXPECT_EQ(picture_of(img.get()), (Picture{20, 10, 14, red, green, blue, Values(200, 3)}));
}

TEST(ImagePlasma, IsTileableOnlyWhereTheImageWraps) {
    reference::BitSerialGenerator model = model_of_state();
    const Values expected = reference::plasma(20, 10, false, 5000, 0.7, model);
    const ImagePtr img = make_filled(20, 10, kImageGrey, 3);
    image_plasma(img.get(), 5000, 0.7);
    EXPECT_EQ(grey_of(img), expected);
}

TEST(ImageRadial, IsAConeAboutTheMiddle) {
    const ImagePtr img = owned(image_create(256, 256, kImageGrey));
    image_radial(img.get(), 0.0, 1.0);
    EXPECT_EQ(at(img, 128, 128), 65536) << "one above the nominal maximum";
    EXPECT_EQ(at(img, 128 + 64, 128), 32768);
    EXPECT_EQ(at(img, 128, 128 - 32), 49152);
    EXPECT_EQ(at(img, 128 - 3, 128 + 4), 65536 - 5 * 512);
    EXPECT_EQ(at(img, 0, 128), 0);
    EXPECT_EQ(at(img, 128, 0), 0);
    EXPECT_EQ(at(img, 0, 0), 0);
    EXPECT_EQ(at(img, 255, 255), 0);
}

TEST(ImageRadial, MatchesTheDefinition) {
    Material material(21);
    for (int i = 0; i < 60; ++i) {
        const std::int32_t w = material.between(1, 40), h = material.between(1, 40);
        const double inner = material.real_between(-0.5, 1.5), outer = material.real_between(-0.5, 1.5);
        const ImagePtr img = owned(image_create(w, h, kImageGrey));
        image_radial(img.get(), inner, outer);
        const double r0 = w * inner * 0.5;
        const double ramp = w * outer * 0.5 - r0 < 0.0001 ? 1.0 : w * outer * 0.5 - r0;
        for (std::int32_t y = 0; y < h; ++y) {
            for (std::int32_t x = 0; x < w; ++x) {
                const std::int32_t dx = x - w / 2, dy = y - h / 2;
                const double t = 1 - (std::sqrt(dx * dx + dy * dy) - r0) / ramp;
                const std::int32_t expected = t < 0   ? 0
                                              : t > 1 ? 65536
                                                      : static_cast<std::int32_t>(t * 65536);
                ASSERT_EQ(at(img, x, y), expected) << x << ", " << y;
            }
        }
    }
}

TEST(ImageRadial, FallsOverOnePixelWhereInnerIsOuter) {
    const ImagePtr img = owned(image_create(8, 1, kImageGrey));
    image_radial(img.get(), 0.5, 0.5); // full up to 2 pixels from the middle, 0 from 3
    EXPECT_EQ(grey_of(img), (Values{0, 0, 65536, 65536, 65536, 65536, 65536, 0}));
}

TEST(ImageRadial, GivesAllColorPlanesTheSameAndLeavesAlpha) {
    const ImagePtr img = make_filled(9, 7, kImageColor | kImageAlpha, 3);
    image_radial(img.get(), 0.0, 1.0);
    const Picture picture = picture_of(img.get());
    EXPECT_EQ(picture.red, picture.green);
    EXPECT_EQ(picture.blue, picture.green);
    EXPECT_EQ(picture.alpha, Values(63, 3));
}

TEST(ImageLinearGradient, RampsFromOnePointToTheOther) {
    const ImagePtr img = owned(image_create(6, 2, kImageGrey));
    image_linear_gradient(img.get(), 1, 0, 4, 0);
    EXPECT_EQ(grey_of(img), (Values{0, 0, 21845, 43690, 65535, 65535, 0, 0, 21845, 43690, 65535, 65535}));
}

TEST(ImageLinearGradient, RunsInAnyDirection) {
    const ImagePtr img = owned(image_create(3, 3, kImageGrey));
    image_linear_gradient(img.get(), 2, 2, 0, 0);
    EXPECT_EQ(grey_of(img), (Values{65535, 49151, 32767, 49151, 32767, 16383, 32767, 16383, 0}));
}

TEST(ImageLinearGradient, IsBlackWhereBothPointsAreTheSame) {
    const ImagePtr img = make_filled(3, 3, kImageColor, 5);
    image_linear_gradient(img.get(), 1, 1, 1, 1);
    EXPECT_EQ(picture_of(img.get()), (Picture{3, 3, 2, Values(9, 0), Values(9, 0), Values(9, 0), {}}));
}

TEST(ImageLinearGradient, SurvivesExtremePoints) {
    const ImagePtr img = owned(image_create(2, 2, kImageGrey));
    image_linear_gradient(img.get(), INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX);
    EXPECT_EQ(at(img, 0, 0), 32767);
}

TEST(ImageCells, GrowACross) {
    const ImagePtr img = make_filled(4, 4, kImageGrey, 0);
    img->green[1 * 4 + 1] = 9;
    image_cells(img.get(), 1, false);
    EXPECT_EQ(grey_of(img), (Values{0, 9, 0, 0, 9, 9, 9, 0, 0, 9, 0, 0, 0, 0, 0, 0}));
}

TEST(ImageCells, WrapAroundTheBorders) {
    const ImagePtr img = make_filled(4, 4, kImageGrey, 0);
    img->green[0] = 9;
    image_cells(img.get(), 1, false);
    EXPECT_EQ(grey_of(img), (Values{9, 9, 0, 9, 9, 0, 0, 0, 0, 0, 0, 0, 9, 0, 0, 0}));
}

TEST(ImageCells, KeepTheValueThatCameFirst) {
    const ImagePtr img = make_grey(4, 1, {5, 0, 0, 7});
    image_cells(img.get(), 1, false);
    EXPECT_EQ(grey_of(img), (Values{5, 5, 7, 5}))
        << "5 reaches the last pixel around the border before 7 does";
}

TEST(ImageCells, SpreadIntoTheOldSourceInTheSecondStep) {
    // After one step the old source, which is the next destination, still holds 5 and 7 in their places.
    const ImagePtr img = make_grey(4, 1, {5, 0, 0, 7});
    image_cells(img.get(), 2, false);
    EXPECT_EQ(grey_of(img), (Values{5, 5, 5, 7}));
}

TEST(ImageCells, OutlinesAreWhiteWhereTheRightOrLowerNeighbourDiffers) {
    const ImagePtr img = make_grey(2, 2, {1, 1, 1, 2});
    image_cells(img.get(), 0, true);
    EXPECT_EQ(grey_of(img), (Values{0, 65535, 65535, 65535}));
}

TEST(ImageCells, OfOneValueHaveNoOutline) {
    const ImagePtr img = make_filled(4, 4, kImageGrey, 3);
    image_cells(img.get(), 5, true);
    EXPECT_EQ(grey_of(img), Values(16, 0));
}

TEST(ImageCells, TakeAnySize) {
    for (const auto& [w, h] : {std::pair{1, 1}, {1, 5}, {7, 3}}) {
        const ImagePtr img = make_filled(w, h, kImageColor, 0);
        img->green[0] = 4;
        image_cells(img.get(), 12, false);
        EXPECT_EQ(grey_of(img), Values(static_cast<std::size_t>(w * h), 4));
        EXPECT_EQ(values_of(img.get(), img->red), Values(static_cast<std::size_t>(w * h), 0));
    }
}

TEST(ImageCells, StayAsTheyAreWithoutMemory) {
    const ImagePtr img = make_grey(2, 1, {5, 0});
    const ScarceMemory memory(0);
    image_cells(img.get(), 1, true);
    EXPECT_EQ(grey_of(img), (Values{5, 0}));
}
