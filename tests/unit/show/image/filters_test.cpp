// Convolution, blurs, levels, blending, rank, tone and relief. Whatever goes through the inner loops runs
// once for every variant of them that this processor has.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "show/image/filters.h"
#include "show/image/loops.h"
#include "tests/unit/show/image/reference.h"

namespace {

class EveryLoops : public testing::TestWithParam<int> {
protected:
    void SetUp() override {
        const Loops* variant = loops_variant(GetParam());
        if (!variant) GTEST_SKIP() << "this processor has no such variant";
        loops_use(variant);
    }
    void TearDown() override { loops_use(nullptr); }
};

using Convolution = EveryLoops;
using Blur = EveryLoops;
using Levels = EveryLoops;
using Blend = EveryLoops;
using Rank = EveryLoops;

std::string variant_name(const testing::TestParamInfo<int>& variant) {
    static const char* const names[] = {"plain", "second", "third"};
    return names[variant.param];
}

INSTANTIATE_TEST_SUITE_P(Loops, Convolution, testing::Range(0, 3), variant_name);
INSTANTIATE_TEST_SUITE_P(Loops, Blur, testing::Range(0, 3), variant_name);
INSTANTIATE_TEST_SUITE_P(Loops, Levels, testing::Range(0, 3), variant_name);
INSTANTIATE_TEST_SUITE_P(Loops, Blend, testing::Range(0, 3), variant_name);
INSTANTIATE_TEST_SUITE_P(Loops, Rank, testing::Range(0, 3), variant_name);

Values random_kernel(Material& material, std::size_t count) {
    const int kind = material.between(0, 4);
    Values kernel(count);
    for (std::int32_t& w : kernel) {
        switch (kind) {
        case 0:
            w = material.between(0, 3);
            break; // many alike
        case 1:
            w = material.between(-256, 256);
            break;
        case 2:
            w = material.between(INT32_MIN, INT32_MAX);
            break;
        case 3:
            w = material.between(0, 1) ? 40000 : -40000;
            break; // beyond 16 bits
        default:
            w = material.between(0, 256);
            break;
        }
    }
    if (material.between(0, 1)) { // symmetric, as the blurs are
        for (std::size_t i = 0; i < count / 2; ++i) kernel[count - 1 - i] = kernel[i];
    }
    return kernel;
}

// Makes the rows below the centre row of a square kernel those above it.
void mirror_rows(Values& kernel, std::int32_t r) {
    const std::ptrdiff_t n = 2 * std::ptrdiff_t{r} + 1;
    for (std::ptrdiff_t y = 0; y < r; ++y) std::copy_n(&kernel[y * n], n, &kernel[(n - 1 - y) * n]);
}

double random_divisor(Material& material, const Values& kernel) {
    const double sum = reference::sum(kernel);
    static const double extremes[] = {std::nan(""), HUGE_VAL, -HUGE_VAL,      -0.0, 5e-324,
                                      -1e-300,      1e-9,     137438953472.0, 1e300};
    switch (material.between(0, 8)) {
    case 8:
        return extremes[material.between(0, 8)];
    case 0:
        return 1.0;
    case 1:
        return sum / 85.0;
    case 2:
        return sum * 0.00390625;
    case 3:
        return 0.25;
    case 4:
        return -3.0;
    case 5:
        return 0.0;
    case 6:
        return material.real_between(0.5, 1000.0);
    default:
        return sum;
    }
}

std::int32_t random_bias(Material& material) {
    static const std::int32_t biases[] = {0, 0, 0, 0, 1, -1, 32768, INT32_MAX, INT32_MIN};
    return biases[material.between(0, 8)];
}

} // namespace

// --- Convolution ---

TEST_P(Convolution, TwoDimensionalMatchesTheDefinition) {
    Material material(30);
    for (int i = 0; i < 250; ++i) {
        const Picture picture = material.picture();
        const std::int32_t r = material.between(0, 9) ? material.between(0, 4) : 9;
        Values kernel = random_kernel(material, static_cast<std::size_t>((2 * r + 1) * (2 * r + 1)));
        if (material.between(0, 2) == 0) mirror_rows(kernel, r); // as round blurs are
        const double divisor = random_divisor(material, kernel);
        const std::int32_t bias = random_bias(material);
        const ImagePtr img = make_image(picture);
        const ImagePtr fresh = owned(image_convolved(img.get(), kernel.data(), r, divisor, bias));
        ASSERT_EQ(picture_of(img.get()), picture);
        ASSERT_EQ(picture_of(fresh.get()), reference::convolve(picture, kernel, r, divisor, bias))
            << "radius " << r << ", divisor " << divisor << ", bias " << bias;
        image_convolve(img.get(), kernel.data(), r, divisor, bias);
        ASSERT_EQ(picture_of(img.get()),
                  reference::convolve(picture, kernel, r, divisor == 0.0 ? 1.0 : divisor, bias));
    }
}

TEST_P(Convolution, AlongRowsAndColumnsMatchesTheDefinition) {
    Material material(31);
    for (int i = 0; i < 400; ++i) {
        const Picture picture = material.picture();
        const std::int32_t r = material.between(0, 9) ? material.between(0, 9) : material.between(10, 200);
        const Values kernel = random_kernel(material, static_cast<std::size_t>(2 * r + 1));
        const double divisor = random_divisor(material, kernel);
        const std::int32_t bias = random_bias(material);
        const Picture rows = reference::convolve_h(picture, kernel, r, divisor, bias);
        const Picture columns = reference::convolve_v(picture, kernel, r, divisor, bias);

        ImagePtr img = make_image(picture);
        ASSERT_EQ(picture_of(owned(image_convolved_h(img.get(), kernel.data(), r, divisor, bias)).get()),
                  rows)
            << "radius " << r << ", divisor " << divisor << ", bias " << bias;
        ASSERT_EQ(picture_of(owned(image_convolved_v(img.get(), kernel.data(), r, divisor, bias)).get()),
                  columns)
            << "radius " << r << ", divisor " << divisor << ", bias " << bias;
        ASSERT_EQ(picture_of(img.get()), picture);
        image_convolve_h(img.get(), kernel.data(), r, divisor, bias);
        ASSERT_EQ(picture_of(img.get()), rows);
        img = make_image(picture);
        image_convolve_v(img.get(), kernel.data(), r, divisor, bias);
        ASSERT_EQ(picture_of(img.get()), columns);
    }
}

TEST_P(Convolution, WeighsByHandAlongARow) {
    // Values 100, 200, 400 with the weights 1, 2, 3: the border pixel stands in for what is missing.
    const Values kernel = {1, 2, 3};
    const ImagePtr img = make_grey(3, 1, {100, 200, 400});
    image_convolve_h(img.get(), kernel.data(), 1, 6.0, 10);
    // (100 + 200 + 600) / 6, (100 + 400 + 1200) / 6, (200 + 800 + 1200) / 6, each plus 10
    EXPECT_EQ(grey_of(img), (Values{160, 293, 376}));
}

TEST_P(Convolution, WeighsByHandAroundATile) {
    const Values kernel = {1, 2, 3};
    const ImagePtr img = make_grey(1, 3, {100, 200, 400}, kImageGrey | kImageWrap);
    image_convolve_v(img.get(), kernel.data(), 1, 1.0, 0);
    EXPECT_EQ(grey_of(img), (Values{400 + 200 + 600, 100 + 400 + 1200, 200 + 800 + 300}));
}

TEST_P(Convolution, WeighsByHandInTwoDimensions) {
    // One bright pixel of 65535: each weight appears mirrored about it, times 255, the pixel's high byte.
    const Values kernel = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    const ImagePtr img = make_grey(3, 3, {0, 0, 0, 0, 65535, 0, 0, 0, 0});
    image_convolve(img.get(), kernel.data(), 1, 1.0, 0);
    EXPECT_EQ(grey_of(img),
              (Values{9 * 255, 8 * 255, 7 * 255, 6 * 255, 5 * 255, 4 * 255, 3 * 255, 2 * 255, 255}));
}

TEST_P(Convolution, TruncatesTowardsZero) {
    const Values kernel = {1};
    const ImagePtr img = make_grey(4, 1, {7, -7, 8, -8});
    image_convolve_h(img.get(), kernel.data(), 0, 4.0, 0);
    EXPECT_EQ(grey_of(img), (Values{1, -1, 2, -2}));
}

TEST_P(Convolution, TruncatesTheSumOfBiasAndQuotient) {
    const Values kernel = {1};
    const ImagePtr img = make_grey(2, 1, {-3, 3});
    image_convolve_h(img.get(), kernel.data(), 0, 4.0, 1); // 1 - 0.75, 1 + 0.75
    EXPECT_EQ(grey_of(img), (Values{0, 1}));
}

TEST_P(Convolution, ReachesEveryQuotientThatIsAnInteger) {
    // A product with 1/49 would give 0.999... for 49, and so a 0.
    Material material(32);
    const Values kernel = {1};
    for (double divisor : {3.0, 49.0, 512.0, 4864.0, 10.0 / 256.0 + 40.0, 65537.0 / 65536.0, 204.8, 3.7}) {
        Values values = {0, 1, -1, INT32_MAX, INT32_MIN};
        for (int i = 0; i < 20000; ++i) {
            const double multiple = std::floor(material.between(-2147483, 2147483) / divisor) * divisor;
            const std::int32_t nearby = static_cast<std::int32_t>(multiple * material.between(1, 900));
            values.push_back(nearby + material.between(-1, 1));
        }
        Values expected;
        for (std::int32_t v : values) expected.push_back(static_cast<std::int32_t>(v / divisor));
        const ImagePtr img = make_grey(static_cast<std::int32_t>(values.size()), 1, values);
        image_convolve_h(img.get(), kernel.data(), 0, divisor, 0);
        ASSERT_EQ(grey_of(img), expected) << divisor;
    }
}

TEST_P(Convolution, DividesByWhatNoReciprocalStandsFor) {
    // Just above 3 no integer quotient is reached any more: 3 / 3.0000000000000004 is 0.9999999999999999. A product
    // with a reciprocal rounded up would say 1.
    Material material(44);
    const Values kernel = {1};
    for (double near : {1.0, 3.0, 49.0, 512.0, 65537.0}) {
        Values values;
        for (int i = 0; i < 2000; ++i) {
            values.push_back(material.between(-32767, 32767) * static_cast<std::int32_t>(near));
        }
        for (double divisor : {std::nextafter(near, 0.0), std::nextafter(near, 1e9)}) {
            Values expected;
            for (std::int32_t v : values) expected.push_back(static_cast<std::int32_t>(v / divisor));
            const ImagePtr img = make_grey(2000, 1, values);
            image_convolve_h(img.get(), kernel.data(), 0, divisor, 0);
            ASSERT_EQ(grey_of(img), expected) << divisor;
        }
    }
}

TEST_P(Convolution, DivisorOfZeroBecomesOneOnlyInTheTwoDimensionalFormInPlace) {
    const Values kernel = {2};
    const ImagePtr img = make_grey(2, 1, {256, 0});
    EXPECT_EQ(grey_of(owned(image_convolved(img.get(), kernel.data(), 0, 0.0, 0))),
              (Values{INT32_MIN, INT32_MIN}));
    EXPECT_EQ(grey_of(owned(image_convolved_h(img.get(), kernel.data(), 0, 0.0, 0))),
              (Values{INT32_MIN, INT32_MIN}));
    image_convolve(img.get(), kernel.data(), 0, 0.0, 0);
    EXPECT_EQ(grey_of(img), (Values{2, 0}));
}

TEST_P(Convolution, OfAPlaneGoesFromSourceToDestination) {
    Material material(33);
    for (int i = 0; i < 60; ++i) {
        Picture picture = material.picture();
        const std::int32_t r = material.between(0, 3);
        const Values kernel = random_kernel(material, static_cast<std::size_t>((2 * r + 1) * (2 * r + 1)));
        Values out(picture.green.size());
        picture.flags = kImageGrey;
        ASSERT_TRUE(plane_convolve_clamp(out.data(), picture.green.data(), picture.width, picture.height,
                                         kernel.data(), r, 9.0, 1));
        picture.red.clear();
        picture.blue.clear();
        ASSERT_EQ(out, reference::convolve(picture, kernel, r, 9.0, 1).green);
        picture.flags |= kImageWrap;
        ASSERT_TRUE(plane_convolve_wrap(out.data(), picture.green.data(), picture.width, picture.height,
                                        kernel.data(), r, 9.0, 1));
        ASSERT_EQ(out, reference::convolve(picture, kernel, r, 9.0, 1).green);
    }
}

TEST_P(Convolution, OfLinesTakesAnyLayout) {
    // Every second value of every third row: 2 lines of 3 values in a plane of 6 x 4.
    Values plane(24);
    for (std::size_t i = 0; i < 24; ++i) plane[i] = static_cast<std::int32_t>(i * i);
    const Values kernel = {1, 0, 2};
    Values clamped = plane, wrapped = plane;
    ASSERT_TRUE(
        plane_convolve_line_clamp(clamped.data(), plane.data(), 2, 18, 3, 2, kernel.data(), 1, 1.0, 0));
    ASSERT_TRUE(
        plane_convolve_line_wrap(wrapped.data(), plane.data(), 2, 18, 3, 2, kernel.data(), 1, 1.0, 0));
    Values expected = plane;
    for (std::size_t line : {0u, 18u}) {
        const std::int32_t a = plane[line], b = plane[line + 2], c = plane[line + 4];
        expected[line] = a + 2 * b;
        expected[line + 2] = a + 2 * c;
        expected[line + 4] = b + 2 * c;
    }
    EXPECT_EQ(clamped, expected);
    for (std::size_t line : {0u, 18u}) {
        expected[line] = plane[line + 4] + 2 * plane[line + 2];
        expected[line + 4] = plane[line + 2] + 2 * plane[line];
    }
    EXPECT_EQ(wrapped, expected);
}

TEST_P(Convolution, IsTheSameJustInsideAndOutsideOfSixteenBits) {
    // Values and weights of 16 bits are convolved by other code than larger ones: these lie on both sides.
    Material material(43);
    const std::int32_t weights[] = {INT16_MIN, INT16_MIN - 1, INT16_MAX, INT16_MAX + 1};
    const std::int32_t values[] = {0,
                                   -1,
                                   65535,
                                   65536,
                                   INT16_MIN * 256,
                                   INT16_MIN * 256 - 1,
                                   INT16_MAX * 256 + 255,
                                   INT16_MAX * 256 + 256,
                                   INT16_MIN * 128,
                                   INT16_MIN * 128 - 1,
                                   (INT16_MAX / 2) * 256 + 255,
                                   (INT16_MAX / 2) * 256 + 256};
    for (std::int32_t weight : weights) {
        for (std::int32_t value : values) {
            for (bool alone : {false, true}) { // all values, or one among ordinary ones
                Picture picture = material.picture(150, 7, kImageGrey);
                if (!alone) picture.green.assign(150 * 7, value);
                picture.green[3 * 150 + 70] = value;
                const Values kernel(25, weight);
                const ImagePtr img = make_image(picture);
                ASSERT_EQ(picture_of(owned(image_convolved_h(img.get(), kernel.data(), 12, 7.0, 0)).get()),
                          reference::convolve_h(picture, kernel, 12, 7.0, 0));
                ASSERT_EQ(picture_of(owned(image_convolved(img.get(), kernel.data(), 2, 7.0, 0)).get()),
                          reference::convolve(picture, kernel, 2, 7.0, 0));
            }
        }
    }
}

TEST_P(Convolution, WithoutWeightsIsTheBias) {
    const Values kernel(9, 0);
    const ImagePtr img = make_filled(70, 3, kImageGrey, 65535);
    image_convolve(img.get(), kernel.data(), 1, 1.0, 77);
    EXPECT_EQ(grey_of(img), Values(210, 77));
}

TEST(ConvolutionInput, IsRefusedWithoutKernelOrWithANegativeRadius) {
    const Values kernel = {1, 2, 1};
    const ImagePtr img = make_filled(3, 1, kImageGrey, 9);
    const ProgressCount progress;
    EXPECT_EQ(image_convolved(img.get(), nullptr, 1, 1.0, 0), nullptr);
    EXPECT_EQ(image_convolved(img.get(), kernel.data(), -1, 1.0, 0), nullptr);
    EXPECT_EQ(image_convolved_h(img.get(), nullptr, 1, 1.0, 0), nullptr);
    EXPECT_EQ(image_convolved_v(img.get(), kernel.data(), INT32_MIN, 1.0, 0), nullptr);
    image_convolve(img.get(), nullptr, 1, 1.0, 0);
    image_convolve_h(img.get(), kernel.data(), -1, 1.0, 0);
    image_convolve_v(img.get(), nullptr, 1, 1.0, 0);
    image_blur_h(img.get(), -1, 1.0);
    image_blur_directional(img.get(), -1, 0.0, 1.0, 1.0);
    EXPECT_EQ(grey_of(img), Values(3, 9));
    EXPECT_EQ(progress.calls(), 0);
}

// --- Blurs ---

TEST(BlurKernel, IsARaisedCosine) {
    std::int32_t sum = 0;
    std::int32_t* kernel = blur_kernel(1, &sum);
    EXPECT_EQ(Values(kernel, kernel + 3), (Values{128, 256, 128}));
    EXPECT_EQ(sum, 512);
    std::free(kernel);

    kernel = blur_kernel(0, &sum);
    EXPECT_EQ(kernel[0], 256);
    EXPECT_EQ(sum, 256);
    std::free(kernel);

    // cos(0), cos(60 degrees), cos(120 degrees) times 128, plus 128; the cosines miss 1/2 by their last bit.
    kernel = blur_kernel(2, &sum);
    EXPECT_EQ(kernel[2], 256);
    EXPECT_NEAR(kernel[1], 192, 1);
    EXPECT_NEAR(kernel[0], 64, 1);
    EXPECT_EQ(kernel[3], kernel[1]);
    EXPECT_EQ(kernel[4], kernel[0]);
    std::free(kernel);
}

TEST(BlurKernel, FallsToItsEndsWhichAreZeroFromRadius25On) {
    for (std::int32_t r : {1, 2, 7, 19, 24, 25, 63}) {
        std::int32_t sum = 0;
        std::int32_t* kernel = blur_kernel(r, &sum);
        EXPECT_EQ(Values(kernel, kernel + 2 * r + 1), reference::blur_weights(r));
        EXPECT_EQ(sum, reference::sum(reference::blur_weights(r)));
        EXPECT_EQ(kernel[0] > 0, r < 25);
        EXPECT_TRUE(std::is_sorted(kernel, kernel + r + 1));
        std::free(kernel);
    }
}

TEST(BlurKernel, IsNullForANegativeRadiusOrWithoutMemory) {
    std::int32_t sum = 0;
    EXPECT_EQ(blur_kernel(-1, &sum), nullptr);
    const ScarceMemory memory(0);
    EXPECT_EQ(blur_kernel(3, &sum), nullptr);
}

TEST_P(Blur, AlongRowsAndColumnsMatchesTheDefinition) {
    Material material(34);
    for (int i = 0; i < 120; ++i) {
        const Picture picture = material.picture();
        const std::int32_t r = material.between(0, 70);
        const double strength =
            material.between(0, 1) ? material.between(1, 100) : material.real_between(0.1, 30.0);
        const Values kernel = reference::blur_weights(r);
        const double divisor = reference::sum(kernel) / strength;
        ImagePtr img = make_image(picture);
        image_blur_h(img.get(), r, strength);
        ASSERT_EQ(picture_of(img.get()), reference::convolve_h(picture, kernel, r, divisor, 0))
            << "radius " << r << ", strength " << strength;
        img = make_image(picture);
        image_blur_v(img.get(), r, strength);
        ASSERT_EQ(picture_of(img.get()), reference::convolve_v(picture, kernel, r, divisor, 0));
    }
}

TEST_P(Blur, DirectionalMatchesTheDefinition) {
    Material material(35);
    static const double angles[] = {0.0, 0.7853981633974483, 1.5707963267948966, 3.141592653589793, -2.0,
                                    0.3};
    for (int i = 0; i < 120; ++i) {
        const Picture picture = material.picture();
        const std::int32_t r = material.between(0, 6);
        const double angle = angles[material.between(0, 5)];
        const double aspect = material.between(0, 1) ? 1.0 : material.real_between(0.05, 2.0);
        const double strength = material.between(0, 1) ? 1.0 : material.real_between(0.1, 10.0);
        const Values kernel = reference::directional_weights(r, angle, aspect);
        const double divisor = reference::sum(kernel) / strength * 0.00390625;
        const ImagePtr img = make_image(picture);
        image_blur_directional(img.get(), r, angle, aspect, strength);
        ASSERT_EQ(picture_of(img.get()), reference::convolve(picture, kernel, r, divisor, 0))
            << "radius " << r << ", angle " << angle << ", aspect " << aspect << ", strength " << strength;
    }
}

TEST_P(Blur, TakesAnyStrengthAndAspect) {
    Material material(36);
    for (const double strength : {0.0, -0.0, -2.0, std::nan(""), 1e-300, HUGE_VAL}) {
        const Picture picture = material.picture();
        const Values kernel = reference::blur_weights(5);
        const ImagePtr img = make_image(picture);
        image_blur_h(img.get(), 5, strength);
        EXPECT_EQ(picture_of(img.get()),
                  reference::convolve_h(picture, kernel, 5, reference::sum(kernel) / strength, 0))
            << "strength " << strength;
        for (const double aspect : {0.0, -0.5, 1.0}) {
            const Values weights = reference::directional_weights(3, 0.3, aspect);
            const double divisor = reference::sum(weights) / strength * 0.00390625;
            const ImagePtr other = make_image(picture);
            image_blur_directional(other.get(), 3, 0.3, aspect, strength);
            EXPECT_EQ(picture_of(other.get()), // a convolution in place takes a divisor of 0 as 1
                      reference::convolve(picture, weights, 3, divisor == 0.0 ? 1.0 : divisor, 0))
                << "strength " << strength << ", aspect " << aspect;
        }
    }
}

TEST_P(Blur, LeavesAConstantAsItIs) {
    for (std::uint32_t flags : {kImageGrey + 0u, kImageGrey | kImageWrap}) {
        const ImagePtr img = make_filled(100, 9, flags, 65535);
        image_blur_h(img.get(), 1, 1.0);
        image_blur_v(img.get(), 1, 1.0);
        image_blur_h(img.get(), 8, 1.0);
        EXPECT_EQ(grey_of(img), Values(900, 65535));
    }
}

TEST_P(Blur, DirectionalKeepsOnlyTheHighByteOfAConstant) {
    for (double angle : {0.0, 0.5, 1.6}) {
        const ImagePtr img = make_filled(100, 9, kImageGrey, 65535);
        image_blur_directional(img.get(), 3, angle, 1.0, 1.0);
        EXPECT_EQ(grey_of(img), Values(900, 65280));
    }
}

TEST_P(Blur, MixesTheFirstColumnOfATileWithItsLast) {
    const ImagePtr tile = make_grey(4, 1, {0, 0, 0, 65536}, kImageGrey | kImageWrap);
    image_blur_h(tile.get(), 1, 1.0);
    EXPECT_EQ(grey_of(tile), (Values{16384, 0, 16384, 32768}));
    const ImagePtr plain = make_grey(4, 1, {0, 0, 0, 65536});
    image_blur_h(plain.get(), 1, 1.0);
    EXPECT_EQ(grey_of(plain), (Values{0, 0, 16384, 49152}));
}

TEST_P(Blur, StrengthMultipliesTheBrightness) {
    const ImagePtr img = make_filled(9, 9, kImageGrey, 1000);
    image_blur_h(img.get(), 3, 2.0);
    EXPECT_EQ(grey_of(img), Values(81, 2000));
}

TEST_P(Blur, DirectionalReachesFurtherAcrossItsDirection) {
    // The direction of angle 0 is (0, 1): with a small aspect a dot spreads along the row.
    const ImagePtr img = make_filled(15, 15, kImageGrey, 0);
    img->green[7 * 15 + 7] = 65535 * 64;
    image_blur_directional(img.get(), 5, 0.0, 0.3, 1.0);
    EXPECT_GT(img->green[7 * 15 + 10], 0);
    EXPECT_GT(img->green[7 * 15 + 10], img->green[9 * 15 + 8]);
    // A weight exactly on the direction keeps its distance: 3 of 6 is half the height, as along the row.
    EXPECT_EQ(img->green[10 * 15 + 7], img->green[7 * 15 + 10]);
}

TEST_P(Blur, StandsARadiusBeyondTheImage) {
    for (std::uint32_t flags : {kImageGrey + 0u, kImageGrey | kImageWrap}) {
        const ImagePtr img = make_filled(1, 1, flags, 512);
        image_blur_h(img.get(), 500, 1.0);
        image_blur_v(img.get(), 500, 1.0);
        image_blur_directional(img.get(), 20, 0.0, 1.0, 1.0);
        EXPECT_EQ(img->green[0], 512);
    }
}

// --- Levels ---

TEST_P(Levels, MatchTheDefinition) {
    Material material(36);
    static const std::int32_t bounds[] = {0,    0,     65535, 65535,     1,        100,
                                          1000, 65536, -1000, INT32_MIN, INT32_MAX};
    for (int i = 0; i < 400; ++i) {
        const Picture picture = material.picture();
        const std::uint32_t mask = static_cast<std::uint32_t>(material.between(0, 15));
        std::int32_t b[4];
        for (std::int32_t& bound : b) bound = bounds[material.between(0, 10)];
        const ImagePtr img = make_image(picture);
        image_levels(img.get(), mask, b[0], b[1], b[2], b[3]);
        ASSERT_EQ(picture_of(img.get()), reference::levels(picture, mask, b[0], b[1], b[2], b[3]))
            << "mask " << mask << ": " << b[0] << ", " << b[1] << " onto " << b[2] << ", " << b[3];
    }
}

TEST_P(Levels, InvertAndClampFirst) {
    const ImagePtr img = make_grey(5, 1, {0, 65535, 1000, -5, 70000});
    image_levels(img.get(), 2, 0, 65535, 65535, 0);
    EXPECT_EQ(grey_of(img), (Values{65535, 0, 64535, 65535, 0}));
}

TEST_P(Levels, InvertTwiceToTheSame) {
    const ImagePtr img = owned(image_create(256, 256, kImageGrey));
    for (std::int32_t i = 0; i < 65536; ++i) img->green[i] = i;
    const Values before = grey_of(img);
    image_levels(img.get(), 7, 0, 65535, 65535, 0);
    image_levels(img.get(), 7, 0, 65535, 65535, 0);
    EXPECT_EQ(grey_of(img), before);
}

TEST_P(Levels, StretchTowardsZero) {
    const ImagePtr img = make_grey(4, 1, {10, 15, 19, 20});
    image_levels(img.get(), 2, 10, 20, 0, 5);
    EXPECT_EQ(grey_of(img), (Values{0, 2, 4, 5}));
}

TEST_P(Levels, TakeDifferencesOfMoreThan31Bits) {
    const ImagePtr wide = make_grey(1, 1, {0});
    image_levels(wide.get(), 2, -1073741824, 1073741824, 0, 65535);
    EXPECT_EQ(grey_of(wide), (Values{32767}));
    const ImagePtr widened = make_grey(3, 1, {0, 1, 2});
    image_levels(widened.get(), 2, 0, 2, INT32_MIN, INT32_MAX);
    EXPECT_EQ(grey_of(widened), (Values{INT32_MIN, 0, INT32_MAX})); // -0.5 is truncated
    const ImagePtr inverted = make_grey(3, 1, {INT32_MIN, 0, INT32_MAX});
    image_levels(inverted.get(), 2, INT32_MIN, INT32_MAX, INT32_MAX, INT32_MIN);
    EXPECT_EQ(grey_of(inverted), (Values{INT32_MAX, -1, INT32_MIN}));
}

TEST_P(Levels, SwapBothPairsWhereTheInputRunsDown) {
    const ImagePtr img = make_grey(3, 1, {10, 15, 20});
    image_levels(img.get(), 2, 20, 10, 0, 100);
    EXPECT_EQ(grey_of(img), (Values{100, 50, 0}));
}

TEST_P(Levels, ChangeNothingForAnEmptyInputRange) {
    const ImagePtr img = make_grey(3, 1, {10, 15, 20});
    const ProgressCount progress;
    image_levels(img.get(), 2, 15, 15, 0, 100);
    EXPECT_EQ(grey_of(img), (Values{10, 15, 20}));
    EXPECT_EQ(progress.calls(), 0);
}

TEST_P(Levels, ChangeOnlyTheMaskedPlanesAndNeverAlpha) {
    const ImagePtr img = make_filled(1, 1, kImageColor | kImageAlpha, 0);
    image_levels(img.get(), kPlaneRed | kPlaneBlue | kPlaneAlpha, 0, 65535, 65535, 0);
    EXPECT_EQ(picture_of(img.get()), (Picture{1, 1, 6, {65535}, {0}, {65535}, {0}}));
}

TEST_P(Levels, ContrastIsTheGainAboutTheMiddle) {
    // 16384..49152 onto 0..65535
    const ImagePtr img = make_grey(5, 1, {0, 16384, 32768, 49152, 65535});
    image_contrast(img.get(), 7, 0, 2.0);
    EXPECT_EQ(grey_of(img), (Values{0, 0, 32767, 65535, 65535}));
}

TEST_P(Levels, ContrastOfFactorZeroIsAShift) {
    const ImagePtr img = make_grey(3, 1, {0, 1000, 66000});
    image_contrast(img.get(), 7, -1000, 0.0); // 1000..66536 onto 0..65535
    EXPECT_EQ(grey_of(img), (Values{0, 0, 64999}));
    const ImagePtr other = make_grey(3, 1, {0, 1000, 66000});
    image_contrast(other.get(), 7, -1000, 0.0001);
    EXPECT_EQ(grey_of(other), grey_of(img));
}

// Both bounds then lie above 2^31, become -2^31 alike, and equal bounds change nothing.
TEST(Contrast, OfBoundsThatDoNotFitChangesNothing) {
    const ImagePtr img = make_grey(2, 1, {100, 40000});
    image_contrast(img.get(), 7, std::numeric_limits<std::int32_t>::min(), 2.0);
    EXPECT_EQ(grey_of(img), (Values{100, 40000}));
}

TEST_P(Levels, ContrastMatchesTheDefinition) {
    Material material(37);
    for (int i = 0; i < 100; ++i) {
        const Picture picture = material.picture();
        const std::int32_t shift = material.between(-70000, 70000);
        const double factor = material.between(0, 3) ? material.real_between(-4.0, 4.0) : 2.47;
        const double f = std::fabs(factor) > 0.0001 ? 1 / factor : 1.0;
        const std::int32_t lo = static_cast<std::int32_t>((1 - f) * 32768 - shift);
        const std::int32_t hi = static_cast<std::int32_t>((f + 1) * 32768 - shift);
        const ImagePtr img = make_image(picture);
        image_contrast(img.get(), 7, shift, factor);
        ASSERT_EQ(picture_of(img.get()), reference::levels(picture, 7, lo, hi, 0, 65535))
            << shift << ", " << factor;
    }
}

// --- Blending ---

TEST_P(Blend, MatchesTheDefinition) {
    Material material(38);
    for (int i = 0; i < 600; ++i) {
        const Picture dst = material.picture();
        const Picture src = material.picture(dst.width, dst.height, material.flags());
        const int mode = material.between(-1, 9);
        const std::int32_t opacity =
            material.between(0, 9) ? material.between(0, 256) : material.between(INT32_MIN, INT32_MAX);
        const ImagePtr d = make_image(dst), s = make_image(src);
        image_blend(d.get(), s.get(), mode, opacity);
        ASSERT_EQ(picture_of(d.get()), reference::blend(dst, src, mode, opacity)) << mode << ", " << opacity;
        ASSERT_EQ(picture_of(s.get()), src);
    }
}

TEST_P(Blend, FollowsEachFormula) {
    // d = 40000, s = 20000 (below the turning point of hard light) and s = 50000 (above it)
    struct Row {
        int mode;
        std::int32_t low, high;
    };
    const Row rows[] = {
        {kMixAdd, 60000, 90000},
        {kMixSubtract, 20000, -10000},
        {kMixDifference, 20000, 10000},
        {kMixMultiply, 12207, 30517},  // 10000 * 5000 >> 12, 10000 * 12500 >> 12
        {kMixScreen, 47797, 59484},    // (6383 * 11383 >> 12) ^ 0xFFFF, (6383 * 3883 >> 12) ^ 0xFFFF
        {kMixHardLight, 24414, 53429}, // 2500 * 40000 >> 12, 180000 - (10000 * 12500 >> 11) - 65536
        {kMixReplace, 20000, 50000},
        {0, 20000, 50000},
        {99, 20000, 50000},
    };
    for (const Row& row : rows) {
        const ImagePtr d = make_grey(2, 1, {40000, 40000});
        image_blend(d.get(), make_grey(2, 1, {20000, 50000}).get(), row.mode, 256);
        EXPECT_EQ(grey_of(d), (Values{row.low, row.high})) << row.mode;
    }
}

TEST_P(Blend, OfNoOpacityLeavesTheDestination) {
    Material material(39);
    for (int mode = 0; mode <= 7; ++mode) {
        const ImagePtr d = make_grey(70, 1, Values(70, 54321)), s = make_filled(70, 1, kImageGrey, 12345);
        image_blend(d.get(), s.get(), mode, 0);
        EXPECT_EQ(grey_of(d), Values(70, 54321));
    }
}

TEST_P(Blend, OfFullOpacityAndReplaceIsTheSource) {
    const ImagePtr d = make_grey(3, 1, {1, 2, 3});
    image_blend(d.get(), make_grey(3, 1, {-5, 70000, 9}).get(), 7, 256);
    EXPECT_EQ(grey_of(d), (Values{-5, 70000, 9}));
}

TEST_P(Blend, GreyCountsForAllPlanesOfColor) {
    const ImagePtr d = make_filled(1, 1, kImageColor | kImageAlpha, 100);
    d->red[0] = 1;
    image_blend(d.get(), make_grey(1, 1, {50}).get(), kMixAdd, 256);
    EXPECT_EQ(picture_of(d.get()), (Picture{1, 1, 6, {51}, {150}, {150}, {100}}));
}

TEST_P(Blend, RefusesColorOnGreyOtherSizesAndNull) {
    const ImagePtr grey = make_filled(2, 2, kImageGrey, 100), color = make_filled(2, 2, kImageColor, 7);
    const ImagePtr other = make_filled(4, 1, kImageGrey, 7);
    const ProgressCount progress;
    image_blend(grey.get(), color.get(), kMixAdd, 256);
    image_blend(grey.get(), other.get(), kMixAdd, 256);
    image_blend(grey.get(), nullptr, kMixAdd, 256);
    image_blend(nullptr, grey.get(), kMixAdd, 256);
    EXPECT_EQ(grey_of(grey), Values(4, 100));
    EXPECT_EQ(progress.calls(), 0);
}

TEST_P(Blend, OfAnImageWithItself) {
    const ImagePtr img = make_filled(70, 2, kImageGrey, 1000);
    image_blend(img.get(), img.get(), kMixAdd, 256);
    EXPECT_EQ(grey_of(img), Values(140, 2000));
}

// --- Rank ---

TEST_P(Rank, MatchesTheDefinition) {
    Material material(40);
    for (int i = 0; i < 300; ++i) {
        const Picture picture = material.picture();
        const int which = material.between(-1, 2);
        const ImagePtr img = make_image(picture);
        const Picture expected = reference::rank(picture, which);
        ASSERT_EQ(picture_of(owned(image_ranked(img.get(), which)).get()), expected) << which;
        ASSERT_EQ(picture_of(img.get()), picture);
        image_rank(img.get(), which);
        ASSERT_EQ(picture_of(img.get()), expected) << which;
    }
}

TEST_P(Rank, MinimumRemovesABrightPixelAndMaximumGrowsIt) {
    for (int x = 0; x < 200; x += 33) {
        const ImagePtr img = make_filled(200, 5, kImageGrey, 0);
        img->green[2 * 200 + x] = 65535;
        EXPECT_EQ(grey_of(owned(image_ranked(img.get(), 0))), Values(1000, 0));
        const ImagePtr grown = owned(image_ranked(img.get(), 1));
        for (int yy = 0; yy < 5; ++yy) {
            for (int xx = 0; xx < 200; ++xx) {
                const bool near = std::abs(xx - x) <= 1 && std::abs(yy - 2) <= 1;
                ASSERT_EQ(grown->green[yy * 200 + xx], near ? 65535 : 0) << xx << ", " << yy;
            }
        }
    }
}

TEST_P(Rank, WrapsInATile) {
    const ImagePtr img = make_filled(4, 4, kImageGrey | kImageWrap, 0);
    img->green[0] = 65535;
    image_rank(img.get(), 1);
    const std::int32_t w = 65535;
    EXPECT_EQ(grey_of(img), (Values{w, w, 0, w, w, w, 0, w, 0, 0, 0, 0, w, w, 0, w}));
}

TEST_P(Rank, TheMinimumNeverExceedsFull) {
    const ImagePtr bright = make_filled(70, 3, kImageGrey, 70000);
    image_rank(bright.get(), 0);
    EXPECT_EQ(grey_of(bright), Values(210, 65535));
}

TEST_P(Rank, TheMaximumOfNegativeValuesIsZeroWhateverTheyAre) {
    for (std::int32_t width : {1, 2, 3, 18, 70}) {
        Values values(static_cast<std::size_t>(width) * 4);
        for (std::size_t i = 0; i < values.size(); ++i) values[i] = i % 3 ? -1 : INT32_MIN;
        for (std::uint32_t flags : {std::uint32_t{kImageGrey}, kImageGrey | kImageWrap}) {
            const ImagePtr img = make_grey(width, 4, values, flags);
            EXPECT_EQ(grey_of(owned(image_ranked(img.get(), 1))), Values(values.size(), 0)) << width;
        }
    }
}

TEST_P(Rank, TwiceReachesTwoPixels) {
    const ImagePtr img = make_filled(9, 9, kImageGrey, 65535);
    img->green[4 * 9 + 4] = 0;
    image_rank(img.get(), 0);
    image_rank(img.get(), 0);
    for (int y = 0; y < 9; ++y) {
        for (int x = 0; x < 9; ++x) {
            EXPECT_EQ(img->green[y * 9 + x] == 0, std::abs(x - 4) <= 2 && std::abs(y - 4) <= 2);
        }
    }
}

TEST_P(Rank, MinimumIsTheInverseOfTheMaximumOfTheInverse) {
    Material material(41);
    const Picture picture = material.picture(90, 20, kImageGrey);
    const ImagePtr a = make_image(picture), b = make_image(picture);
    for (const ImagePtr* img : {&a, &b}) image_levels(img->get(), 7, 0, 65535, 0, 65535); // clamps
    image_rank(a.get(), 0);
    image_levels(b.get(), 7, 0, 65535, 65535, 0);
    image_rank(b.get(), 1);
    image_levels(b.get(), 7, 0, 65535, 65535, 0);
    EXPECT_EQ(grey_of(a), grey_of(b));
}

TEST(RankFilters, TakeNineValues) {
    const std::int32_t values[9] = {5, 3, 9, 7, 70000, -1, 4, 8, 6};
    EXPECT_EQ(rank_filters[0](values), -1);
    EXPECT_EQ(rank_filters[1](values), 70000);
    const std::int32_t bright[9] = {66000, 66000, 66000, 66000, 66000, 66000, 66000, 66000, 66000};
    const std::int32_t dark[9] = {-1, -1, -1, -1, -1, -1, -1, -1, -1};
    EXPECT_EQ(rank_filters[0](bright), 65535);
    EXPECT_EQ(rank_filters[1](dark), 0);
}

// --- Tone and relief ---

TEST(ImageEmboss, IsTheSlopeInItsDirection) {
    // A ramp of 256 per row: three columns of +-256 times a difference of 2.
    Values ramp;
    for (int i = 0; i < 25; ++i) ramp.push_back(i / 5 * 256);
    const ImagePtr img = make_grey(5, 5, ramp);
    const ImagePtr down = owned(image_embossed(img.get(), 0.0));
    EXPECT_EQ(down->green[2 * 5 + 2], 3 * 256 * 2);
    EXPECT_EQ(down->green[0 * 5 + 2], 3 * 256) << "at the border the difference is 1";
    Values across;
    for (int i = 0; i < 25; ++i) across.push_back(i % 5 * 256);
    const ImagePtr flat = make_grey(5, 5, across);
    image_emboss(flat.get(), 0.0);
    EXPECT_EQ(flat->green[2 * 5 + 2], 0) << "no slope in that direction";
}

TEST(ImageEmboss, MatchesTheDefinition) {
    Material material(42);
    for (int i = 0; i < 40; ++i) {
        const Picture picture = material.picture();
        const double angle = material.real_between(-7.0, 7.0);
        Values kernel;
        for (int dy = -1; dy <= 1; ++dy) {
            for (int dx = -1; dx <= 1; ++dx) {
                kernel.push_back(
                    static_cast<std::int32_t>((dx * std::sin(angle) + dy * std::cos(angle)) * 256));
            }
        }
        const ImagePtr img = make_image(picture);
        image_emboss(img.get(), angle);
        ASSERT_EQ(picture_of(img.get()), reference::convolve(picture, kernel, 1, 1.0, 0));
    }
}

TEST(ImageColorize, MapsGreyOntoARangeOfColors) {
    const ImagePtr img = make_grey(3, 1, {0, 32768, 70000}, kImageGrey | kImageWrap | kImageAlpha);
    const ImagePtr result = owned(image_colorized(img.get(), 0xFF000080, 0x00FF8000));
    EXPECT_EQ(picture_of(result.get()),
              (Picture{3, 1, 2, {0, 32768, 65535}, {0, 16448, 32896}, {32896, 16447, 0}, {}}));
    image_colorize(img.get(), 0xFF000080, 0x00FF8000);
    EXPECT_EQ(picture_of(img.get()), picture_of(result.get()));
}

TEST(ImageColorize, RefusesColor) {
    const ImagePtr img = make_filled(1, 1, kImageColor, 5);
    const ProgressCount progress;
    EXPECT_EQ(image_colorized(img.get(), 0, 0xFFFFFF), nullptr);
    image_colorize(img.get(), 0, 0xFFFFFF);
    EXPECT_EQ(picture_of(img.get()), (Picture{1, 1, 2, {5}, {5}, {5}, {}}));
    EXPECT_EQ(progress.calls(), 0);
}

TEST(ImageGamma, OneKeepsAndClamps) {
    const ImagePtr img = make_grey(5, 1, {0, 65535, -3, 70000, 0});
    image_gamma(img.get(), kPlaneGreen, 1.0);
    EXPECT_EQ(grey_of(img), (Values{0, 65535, 0, 65535, 0}));
}

TEST(ImageGamma, TwoIsTheSquareRootAndHalfTheSquare) {
    const ImagePtr img = make_grey(2, 1, {16384, 16384});
    image_gamma(img.get(), kPlaneGreen, 2.0);
    EXPECT_EQ(grey_of(img), Values(2, static_cast<std::int32_t>(std::sqrt(16384 / 65535.0) * 65535)));
    const ImagePtr other = make_grey(1, 1, {32768});
    image_gamma(other.get(), kPlaneGreen, 0.5);
    EXPECT_EQ(other->green[0], 16384); // 32768^2 / 65535 = 16384.25
}

TEST(ImageGamma, ChangesOnlyTheMaskedPlanes) {
    const ImagePtr img = make_filled(1, 1, kImageColor | kImageAlpha, 32768);
    image_gamma(img.get(), kPlaneRed | kPlaneAlpha, 0.5);
    EXPECT_EQ(picture_of(img.get()), (Picture{1, 1, 6, {16384}, {32768}, {32768}, {16384}}));
}

TEST(ImageGamma, ChangesNothingForZeroNegativeOrNoNumber) {
    const ImagePtr img = make_grey(1, 1, {70000});
    const ProgressCount progress;
    for (double gamma : {0.0, -1.0, std::nan("")}) image_gamma(img.get(), 15, gamma);
    EXPECT_EQ(img->green[0], 70000);
    EXPECT_EQ(progress.calls(), 0);
}

TEST(ImagePosterize, RoundsToSteps) {
    // levels 3: step 16384, offset 8191
    const ImagePtr img = make_grey(6, 1, {0, 8192, 8193, 24577, 65535, -8192});
    image_posterize(img.get(), kPlaneGreen, 3);
    EXPECT_EQ(grey_of(img), (Values{0, 0, 16384, 32768, 65536, 0}));
}

TEST(ImagePosterize, ChangesOnlyTheMaskedPlanes) {
    const ImagePtr img = make_filled(1, 1, kImageColor | kImageAlpha, 60000);
    image_posterize(img.get(), kPlaneBlue | kPlaneAlpha, 0); // step 65536, offset 32767
    EXPECT_EQ(picture_of(img.get()), (Picture{1, 1, 6, {60000}, {60000}, {65536}, {65536}}));
}

TEST(ImagePosterize, RefusesStepsThatAreNone) {
    const ImagePtr img = make_filled(1, 1, kImageGrey, 60000);
    const ProgressCount progress;
    for (std::int32_t levels : {-1, -65538, INT32_MIN, 65536, INT32_MAX})
        image_posterize(img.get(), 15, levels);
    EXPECT_EQ(img->green[0], 60000);
    EXPECT_EQ(progress.calls(), 0);
}

TEST(ImagePosterize, TakesNegativeStepsAndOffsets) {
    ImagePtr img = make_grey(4, 1, {0, 60000, 100000, -40000});
    image_posterize(img.get(), kPlaneGreen, -2); // step -65536, offset -32767
    EXPECT_EQ(grey_of(img), (Values{0, 0, 65536, -65536}));
    img = make_grey(3, 1, {16384, 16385, 60000});
    image_posterize(img.get(), kPlaneGreen, -5); // step -16384, offset -8191
    EXPECT_EQ(grey_of(img), (Values{0, 0, 49152}));
    img = make_grey(3, 1, {INT32_MIN, -1, 60000});
    image_posterize(img.get(), kPlaneGreen, -65537); // step -1, offset 0
    EXPECT_EQ(grey_of(img), (Values{INT32_MIN, -1, 60000}));
}

TEST(ImageLight, OnAFlatPictureIsTheSameEverywhere) {
    const ImagePtr img = make_filled(4, 4, kImageColor | kImageAlpha, 40000);
    const ImagePtr flat = make_filled(4, 4, kImageGrey, 1234);
    image_light(img.get(), flat.get(), {0.3, 0.25, 0.5, 0.0, 1.0});
    const auto lit = static_cast<std::int32_t>(40000 * (0.25 + 0.5 * std::sqrt(0.5)));
    const Picture picture = picture_of(img.get());
    EXPECT_NEAR(picture.red[5], lit, 1);
    EXPECT_EQ(picture.red, Values(16, picture.red[0]));
    EXPECT_EQ(picture.green, picture.red);
    EXPECT_EQ(picture.alpha, Values(16, 40000));
}

TEST(ImageLight, IsBrighterOnTheSideTowardsTheLamp) {
    // A ridge in the middle column; the lamp stands to the right (angle 90 degrees).
    Values ridge;
    for (int i = 0; i < 25; ++i) ridge.push_back(i % 5 == 2 ? 8192 : 0);
    const ImagePtr img = make_filled(5, 5, kImageGrey, 30000);
    image_light(img.get(), make_grey(5, 5, ridge).get(), {1.5707963267948966, 0.2, 0.8, 0.0, 1.0});
    EXPECT_GT(img->green[2 * 5 + 3], img->green[2 * 5 + 1]);
}

TEST(ImageLight, HighlightIsWhiteAndClamped) {
    const ImagePtr img = make_filled(2, 2, kImageGrey, 0);
    const ImagePtr flat = make_filled(2, 2, kImageGrey, 0);
    image_light(img.get(), flat.get(), {0.0, 1.0, 1.0, 0.5, 2.0});
    EXPECT_NEAR(img->green[0], 65535 * 0.5 * std::pow(std::cos(3.141592653589793 / 8), 2), 1);
    image_light(img.get(), flat.get(), {0.0, 1.0, 1.0, 50.0, 2.0});
    EXPECT_EQ(img->green[0], 65535);
    image_light(img.get(), flat.get(), {0.0, -5.0, 0.0, 0.0, 2.0});
    EXPECT_EQ(img->green[0], 0);
}

TEST(ImageLight, RefusesOtherSizes) {
    const ImagePtr img = make_filled(2, 2, kImageGrey, 7);
    const ImagePtr other = make_filled(4, 1, kImageGrey, 7);
    const ProgressCount progress;
    image_light(img.get(), other.get(), {0.0, 0.0, 0.0, 0.0, 1.0});
    EXPECT_EQ(grey_of(img), Values(4, 7));
    EXPECT_EQ(progress.calls(), 0);
}

TEST(ImageLight, TheSteepestSlopeIsLitFromItsOwnSide) {
    // Below the middle -2^31 once and else 0: a slope of -2^31, tilted upright towards the lamp.
    const ImagePtr height = make_grey(3, 3, {0, 0, 0, 0, 0, 0, INT32_MIN, 0, 0});
    const ImagePtr img = make_filled(3, 3, kImageGrey, 10000);
    image_light(img.get(), height.get(), {0.0, 0.0, 1.0, 0.0, 1.0});
    EXPECT_EQ(img->green[4], 7071); // 10000 * cos(45deg - 90deg)
}
