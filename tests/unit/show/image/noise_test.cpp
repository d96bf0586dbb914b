// Noise.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "show/image/noise.h"
#include "show/image/random.h"
#include "show/image/remainder.h"
#include "tests/unit/show/image/reference.h"

namespace {

reference::BitSerialGenerator model_of_state() { return {g_random.s1, g_random.s2, g_random.s3}; }

// How many numbers have been drawn since `before`, up to a limit.
int draws_since(RandomState before) {
    for (int i = 0; i < 100000; ++i) {
        if (before.s1 == g_random.s1 && before.s2 == g_random.s2 && before.s3 == g_random.s3) return i;
        random_step(before);
    }
    return -1;
}

} // namespace

TEST(ImageNoise, MatchesTheDefinition) {
    Material material(10);
    for (int i = 0; i < 200; ++i) {
        const Picture picture = material.picture();
        static const std::int32_t amplitudes[] = {0,      1,     300,       -300,     41728,
                                                  -65535, 32767, INT32_MAX, INT32_MIN};
        const std::int32_t amplitude = amplitudes[material.between(0, 8)];
        reference::BitSerialGenerator model = model_of_state();
        const Picture expected = reference::noise(picture, amplitude, model);
        const ImagePtr img = make_image(picture);
        image_noise(img.get(), amplitude);
        ASSERT_EQ(picture_of(img.get()), expected) << "amplitude " << amplitude;
        ASSERT_EQ(random_next(), model.next());
    }
}

TEST(ImageNoise, GivesTheFirstNumberToTheLastPixel) {
    RandomState state = g_random;
    const std::int32_t last = static_cast<std::int32_t>(random_step(state) % 201) - 100;
    const std::int32_t first = static_cast<std::int32_t>(random_step(state) % 201) - 100;
    const ImagePtr img = make_grey(2, 1, {1000, 2000});
    image_noise(img.get(), 100);
    EXPECT_EQ(grey_of(img), (Values{1000 + first, 2000 + last}));
}

TEST(ImageNoise, OfAmplitudeZeroDrawsAndChangesNothing) {
    const ImagePtr img = make_filled(5, 3, kImageGrey, 7);
    const RandomState before = g_random;
    image_noise(img.get(), 0);
    EXPECT_EQ(grey_of(img), Values(15, 7));
    EXPECT_EQ(draws_since(before), 15);
}

TEST(ImageNoise, OnColorDrawsOncePerPixelAndThriceWithANegativeAmplitude) {
    const ImagePtr img = make_filled(5, 3, kImageColor | kImageAlpha, 7);
    RandomState before = g_random;
    image_noise(img.get(), 300);
    EXPECT_EQ(draws_since(before), 15);
    EXPECT_EQ(values_of(img.get(), img->red), values_of(img.get(), img->green)) << "grey noise";
    EXPECT_EQ(values_of(img.get(), img->red), values_of(img.get(), img->blue));

    before = g_random;
    image_noise(img.get(), -300);
    EXPECT_EQ(draws_since(before), 45);
    EXPECT_NE(values_of(img.get(), img->red), values_of(img.get(), img->green));
    EXPECT_EQ(values_of(img.get(), img->alpha), Values(15, 7));
}

TEST(ImageNoise, ReachesBothEndsOfItsRangeAndNoFurther) {
    const ImagePtr img = make_filled(100, 100, kImageGrey, 0);
    image_noise(img.get(), 5);
    const Values values = grey_of(img);
    EXPECT_EQ(*std::min_element(values.begin(), values.end()), -5);
    EXPECT_EQ(*std::max_element(values.begin(), values.end()), 5);
}

TEST(ImageScatterNoise, SetsChosenPixelsToValuesOfTheLibraryGenerator) {
    const ImagePtr img = make_filled(7, 5, kImageColor, -1);
    std::srand(1);
    RandomState state = g_random;
    image_scatter_noise(img.get(), 10); // 35 / 10 = 3 pixels

    std::srand(1);
    Picture expected = picture_of(make_filled(7, 5, kImageColor, -1).get());
    for (int k = 0; k < 3; ++k) {
        const std::uint32_t x = random_step(state) % 7, y = random_step(state) % 5;
        expected.red[x + y * 7] = std::rand() & 0xFFFF;
        expected.green[x + y * 7] = std::rand() & 0xFFFF;
        expected.blue[x + y * 7] = std::rand() & 0xFFFF;
    }
    EXPECT_EQ(picture_of(img.get()), expected);
    EXPECT_EQ(random_next(), random_step(state));
}

TEST(ImageScatterNoise, TakesOneValueForAGreyPixel) {
    const ImagePtr img = make_filled(1, 1, kImageGrey, -1);
    std::srand(3);
    image_scatter_noise(img.get(), 1);
    std::srand(3);
    EXPECT_EQ(img->green[0], std::rand() & 0xFFFF);
}

TEST(ImageScatterNoise, SetsNothingForANegativeOrZeroDensity) {
    const ImagePtr img = make_filled(7, 5, kImageGrey, -1);
    const RandomState before = g_random;
    for (std::int32_t density : {-1, -2, 0, 36, INT32_MAX, INT32_MIN})
        image_scatter_noise(img.get(), density);
    EXPECT_EQ(grey_of(img), Values(35, -1));
    EXPECT_EQ(draws_since(before), 0);
}

TEST(Remainder, IsExact) {
    Material material(11);
    static const std::uint32_t edges[] = {0,          1,          2,          3,         0x7FFFFFFF,
                                          0x80000000, 0x80000001, 0xFFFFFFFE, 0xFFFFFFFF};
    for (int i = 0; i < 200000; ++i) {
        const auto any = [&] {
            return material.between(0, 3) ? static_cast<std::uint32_t>(material.between(INT32_MIN, INT32_MAX))
                                          : edges[material.between(0, 8)];
        };
        const std::uint32_t v = any(), n = std::max(1u, any() >> material.between(0, 31));
        ASSERT_EQ(Remainder(n).of(v), v % n) << v << " % " << n;
    }
}
