// The packer, by what the decoder makes of its streams.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>
#include <stdexcept>

#include "show/stage/loading_picture_data.h"
#include "show/stage/packed_picture.h"
#include "tools/pack/bit_writer.h"
#include "tools/pack/coefficient_search.h"
#include "tools/pack/picture_packer.h"

namespace {

template <class Color>
Picture paint(int width, int height, Color color) {
    Picture picture{width, height, {}};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (int channel = 0; channel < 3; ++channel)
                picture.rgb.push_back(static_cast<std::uint8_t>(color(x, y, channel)));
    return picture;
}

Picture grey_noise(int width, int height, unsigned seed) {
    std::mt19937 random(seed);
    unsigned level = 0;
    return paint(width, height, [&](int, int, int channel) {
        if (channel == 0) level = random() & 255u;
        return level;
    });
}

Picture grey_gradient(int width, int height) {
    return paint(width, height, [&](int x, int y, int) { return 255 * (x + y) / (width + height - 2); });
}

// Smooth in all three channels, so that halving the colour's resolution costs little.
Picture color_gradient(int width, int height) {
    const int length = std::max(width, height);
    return paint(width, height, [&](int x, int y, int channel) {
        return channel == 0 ? 255 * x / length : channel == 1 ? 255 * y / length : 255 - 255 * x / length;
    });
}

double packed_psnr(const Picture& picture, int quant) {
    const PackedPicture packed = pack_picture(picture, {quant, 0.0});
    EXPECT_EQ(packed.bytes.size(), (packed.bits + 7) / 8);
    const Picture decoded = decode_picture(packed.bytes);
    EXPECT_EQ(decoded.width, picture.width);
    EXPECT_EQ(decoded.height, picture.height);
    return psnr(picture, decoded);
}

// Bits of a block's levels, counted straight from the format.
int count_bits(const std::array<int, 16>& levels) {
    int last = 15;
    while (last > 0 && !levels[static_cast<std::size_t>(last)]) --last;
    if (last == 0) return 4;
    int zeros = 0;
    for (int i = 1; i < last; ++i) zeros += !levels[static_cast<std::size_t>(i)];
    const auto width = [](int x) { return x == 0 ? 0 : static_cast<int>(std::log2(x)) + 1; };
    int bits = 4 + width(last - 1);
    int length = 0;
    int kept = last - zeros;
    for (int i = last; kept > 0; --kept) {
        const int needed = width(std::abs(levels[static_cast<std::size_t>(i)]) - 1);
        const int grown = std::max(length, needed);
        bits += 1 + (grown - length) + 1 + grown;
        length = grown;
        if (kept == 1) break;
        bits += width(zeros);
        for (--i; !levels[static_cast<std::size_t>(i)]; --i) --zeros;
    }
    return bits;
}

} // namespace

TEST(BitWriter, WritesWhatTheReaderReads) {
    BitWriter writer;
    writer.write(1, 1);
    writer.write(5, 4);
    for (unsigned value = 0; value < 70; ++value) writer.write_gamma(value);
    writer.write(0xABCDEF, 24);
    EXPECT_EQ(writer.bytes().size(), (writer.bit_count() + 7) / 8);
    begin_bits(writer.bytes().data(), writer.bytes().size());
    EXPECT_EQ(read_bits(1), 1u);
    EXPECT_EQ(read_bits(4), 5u);
    for (unsigned value = 0; value < 70; ++value) EXPECT_EQ(read_gamma(), value);
    EXPECT_EQ(read_bits(24), 0xABCDEFu);
    EXPECT_EQ(bits_exhausted(), 0);
}

TEST(CoefficientSearch, FindsTheCheapestOfAllLevels) {
    // Five positions with something in them, every combination of levels from -2 to 2 tried.
    static constexpr double kBasis[4][4] = {
        {1, 1, 1, 1}, {1, 0.5, -0.5, -1}, {1, -1, -1, 1}, {0.5, -1, 1, -0.5}};
    static constexpr double kNorm[4] = {4, 2.5, 4, 2.5};
    constexpr int kQuant = 20;
    constexpr double kWeight = 1.5;
    const std::array<std::size_t, 5> positions = {1, 2, 4, 9, 13};
    std::mt19937 random(5);
    std::uniform_real_distribution<double> level(-1.8, 1.8);
    for (int trial = 0; trial < 20; ++trial) {
        const double lambda = 0.5 + trial;
        std::array<double, 16> wanted = {}; // levels, not rounded
        for (const std::size_t i : positions) wanted[i] = level(random);
        double target[16] = {};
        std::array<double, 16> step_error = {};
        for (std::size_t i = 1; i < 16; ++i) {
            const int v = kZigzag[i] / 4, u = kZigzag[i] % 4;
            const double step = (kQuant + static_cast<int>(i)) / 16.0;
            step_error[i] = kWeight * kNorm[v] * kNorm[u] * step * step;
            for (int at = 0; at < 16; ++at)
                target[at] += wanted[i] * step * kBasis[v][at / 4] * kBasis[u][at % 4];
        }
        double best = 1e300;
        for (int code = 0; code < 3125; ++code) {
            std::array<int, 16> levels = {};
            int rest = code;
            for (const std::size_t i : positions) {
                levels[i] = rest % 5 - 2;
                rest /= 5;
            }
            double cost = lambda * count_bits(levels);
            for (std::size_t i = 1; i < 16; ++i)
                cost += step_error[i] * (wanted[i] - levels[i]) * (wanted[i] - levels[i]);
            best = std::min(best, cost);
        }
        const AcChoice choice = search_coefficients(target, kWeight, kQuant, lambda, 1)[0];
        EXPECT_LE(choice.cost, best + 1e-6) << "trial " << trial;
        EXPECT_EQ(choice.bits, count_bits(choice.levels)) << "trial " << trial;
        double cost = lambda * choice.bits;
        for (std::size_t i = 1; i < 16; ++i)
            cost += step_error[i] * (wanted[i] - choice.levels[i]) * (wanted[i] - choice.levels[i]);
        EXPECT_NEAR(choice.cost, cost, 1e-6) << "trial " << trial;
    }
}

TEST(Packer, FlatGreyPicturesComeBackWithinOneLevel) {
    for (const int level : {0, 1, 40, 128, 200, 254, 255}) {
        const Picture picture = paint(64, 64, [&](int, int, int) { return level; });
        const Picture decoded = decode_picture(pack_picture(picture, {1, 0.0}).bytes);
        for (std::size_t i = 0; i < picture.rgb.size(); ++i)
            ASSERT_NEAR(decoded.rgb[i], level, 1) << "luma has 219 levels for 256 greys";
    }
}

TEST(Packer, WhiteStaysWhiteAtTheQuantiserOfTheLoadingPicture) {
    const Picture white = paint(64, 64, [](int, int, int) { return 255; });
    EXPECT_EQ(decode_picture(pack_picture(white, {20, 0.0}).bytes).rgb, white.rgb);
}

// Floors stand about 1 dB under what the packer reached when they were set: less means that it has become
// worse.
TEST(Packer, GradientsKeepTheirQuality) {
    EXPECT_GT(packed_psnr(grey_gradient(64, 64), 1), 53.0);
    EXPECT_GT(packed_psnr(grey_gradient(64, 64), 20), 48.5);
    EXPECT_GT(packed_psnr(color_gradient(64, 64), 20), 39.0);
    EXPECT_GT(packed_psnr(color_gradient(64, 64), 255), 24.9);
}

TEST(Packer, NoiseKeepsItsQuality) {
    EXPECT_GT(packed_psnr(grey_noise(64, 64, 1), 1), 49.9);
    EXPECT_GT(packed_psnr(grey_noise(64, 64, 2), 20), 41.6);
    EXPECT_GT(packed_psnr(grey_noise(64, 64, 3), 63), 31.9);
}

TEST(Packer, TakesTheSmallestAndTheLongestPictures) {
    EXPECT_GT(packed_psnr(grey_gradient(8, 8), 20), 46.3);
    EXPECT_GT(packed_psnr(grey_gradient(1020, 8), 20), 49.7);
    EXPECT_GT(packed_psnr(grey_gradient(8, 1020), 20), 49.7);
    EXPECT_GT(packed_psnr(color_gradient(1016, 8), 20), 46.9);
    EXPECT_GT(packed_psnr(color_gradient(8, 1016), 20), 47.6);
    EXPECT_GT(packed_psnr(color_gradient(1020, 8), 20), 47.3) << "the Cr half begins within a block";
}

TEST(Packer, DarkPicturesAreRoundedLikeBrightOnes) {
    // Below the prediction the decoder rounds up; the packer has to lean against it.
    const Picture dark =
        paint(64, 64, [](int x, int y, int) { return ((x / 8) + (y / 8)) % 2 ? 6 + (x & 7) : 230; });
    EXPECT_GT(packed_psnr(dark, 1), 59.2);
}

TEST(Packer, ADearerBitMakesASmallerAndWorsePicture) {
    const Picture picture = grey_noise(64, 64, 9);
    std::size_t size = 1000000;
    double quality = 1000.0;
    for (const double lambda : {1.0, 8.0, 64.0, 512.0}) {
        const PackedPicture packed = pack_picture(picture, {20, lambda});
        const double now = psnr(picture, decode_picture(packed.bytes));
        EXPECT_LT(packed.bytes.size(), size);
        EXPECT_LT(now, quality);
        size = packed.bytes.size();
        quality = now;
    }
}

TEST(Packer, SaysWhatItCannotPack) {
    EXPECT_THROW(pack_picture(grey_gradient(10, 8), {}), std::runtime_error);
    EXPECT_THROW(pack_picture(grey_gradient(8, 6), {}), std::runtime_error);
    EXPECT_THROW(pack_picture(grey_gradient(1024, 8), {}), std::runtime_error);
    EXPECT_THROW(pack_picture(grey_gradient(8, 8), {0, 0.0}), std::runtime_error);
    EXPECT_THROW(pack_picture(grey_gradient(8, 8), {256, 0.0}), std::runtime_error);
    EXPECT_THROW(pack_picture(grey_gradient(8, 8), {20, -1.0}), std::runtime_error);
}

TEST(DecodePicture, SaysWhatIsNoWholePicture) {
    std::vector<std::uint8_t> bytes = pack_picture(grey_gradient(8, 8), {}).bytes;
    bytes.pop_back();
    EXPECT_THROW(decode_picture(bytes), std::runtime_error);
    EXPECT_THROW(decode_picture({}), std::runtime_error);
    EXPECT_THROW(decode_picture({0, 5, 20}), std::runtime_error);
}

TEST(LoadingPicture, IsStoredWholeAndWithoutSurplusBytes) {
    ASSERT_GT(kLoadingPictureSize, 3u);
    EXPECT_EQ(kLoadingPicture[0], 64);
    EXPECT_EQ(kLoadingPicture[1], 64);
    EXPECT_EQ(kLoadingPicture[2], 20);
    std::vector<std::uint8_t> samples(static_cast<std::size_t>(packed_buffer_size(kLoadingPicture)));
    EXPECT_EQ(decode_packed_n(kLoadingPicture, kLoadingPictureSize, samples.data()), 1);
    EXPECT_EQ(decode_packed_n(kLoadingPicture, kLoadingPictureSize - 1, samples.data()), 0);
}

TEST(LoadingPicture, ShowsTheRenderedPicture) {
    const Picture source = read_picture(SKAV_PICTURE, kMaxPackedSide);
    const Picture stored = decode_picture({kLoadingPicture, kLoadingPicture + kLoadingPictureSize});
    ASSERT_EQ(stored.width, source.width);
    ASSERT_EQ(stored.height, source.height);
    EXPECT_GT(psnr(source, stored), 33.0);
}

TEST(LoadingPicture, RunsOutIntoWhite) {
    const Picture stored = decode_picture({kLoadingPicture, kLoadingPicture + kLoadingPictureSize});
    for (std::size_t i = 0; i < 256; ++i)
        for (const std::size_t pixel : {i, 255 * 256 + i, 256 * i, 256 * i + 255})
            for (std::size_t channel = 0; channel < 3; ++channel)
                EXPECT_GE(stored.rgb[3 * pixel + channel], 252) << "pixel " << pixel;
}
