// The decoder of the packed format, on streams whose results are worked out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

#include "show/stage/packed_picture.h"
#include "tests/support/image.h"
#include "tests/unit/show/stage/packed_stream.h"

namespace {

const std::string kFlat = "0 0000 "; // no change of the DC, no coefficients

std::vector<std::uint8_t> decode(const std::vector<std::uint8_t>& data) {
    std::vector<std::uint8_t> samples(static_cast<std::size_t>(packed_buffer_size(data.data())), 77);
    EXPECT_EQ(decode_packed_n(data.data(), data.size(), samples.data()), 1);
    return samples;
}

// The 16 samples of a block of a picture that is `width` samples wide.
std::vector<int> block_at(const std::vector<std::uint8_t>& samples, int width, int column, int row) {
    std::vector<int> block;
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            block.push_back(samples[static_cast<std::size_t>((4 * row + y) * width + 4 * column + x)]);
    return block;
}

std::vector<int> flat(int value) { return std::vector<int>(16, value); }

// The first block of a picture of one block, for the bits that code it.
std::vector<int> one_block(int quant, const std::string& block) {
    return block_at(decode(packed(1, 1, quant, block)), 4, 0, 0);
}

void start_bits(const std::vector<std::uint8_t>& bytes) { begin_bits(bytes.data(), bytes.size()); }

} // namespace

TEST(BitReader, TakesTheMostSignificantBitFirst) {
    const std::vector<std::uint8_t> bytes = bits("1 01 0011 1000010011 111111000000111111000000 1");
    start_bits(bytes);
    EXPECT_EQ(read_bits(1), 1u);
    EXPECT_EQ(read_bits(2), 1u);
    EXPECT_EQ(read_bits(0), 0u);
    EXPECT_EQ(read_bits(4), 3u);
    EXPECT_EQ(read_bits(10), 531u);
    EXPECT_EQ(read_bits(24), 0xFC0FC0u);
    EXPECT_EQ(read_bits(1), 1u);
}

TEST(BitReader, ReadsZerosPastTheEndAndSaysSo) {
    const std::vector<std::uint8_t> bytes = bits("11111111");
    start_bits(bytes);
    EXPECT_EQ(read_bits(8), 255u);
    EXPECT_EQ(bits_exhausted(), 0);
    EXPECT_EQ(read_bits(3), 0u);
    EXPECT_EQ(bits_exhausted(), 1);
}

TEST(BitReader, StartsAfreshOnTheNextBytes) {
    start_bits({});
    read_bits(5);
    const std::vector<std::uint8_t> bytes = bits("10000001");
    start_bits(bytes);
    EXPECT_EQ(bits_exhausted(), 0);
    EXPECT_EQ(read_bits(8), 129u);
}

TEST(BitReader, FieldsWiderThanTheAccumulatorAreDefined) {
    const std::vector<std::uint8_t> bytes(8, 255);
    start_bits(bytes);
    EXPECT_EQ(read_bits(32), 0xFFFFFFFFu);
    EXPECT_EQ(read_bits(40), 0xFFFFFF00u)
        << "32 bits were left; eight zeros follow, the first eight are lost";
}

TEST(ReadGamma, DecodesExponentialGolombOfOrderZero) {
    const std::vector<std::uint8_t> bytes = bits("1 010 011 00100 00111 0001000");
    start_bits(bytes);
    for (const unsigned expected : {0u, 1u, 2u, 3u, 6u, 7u}) EXPECT_EQ(read_gamma(), expected);
}

TEST(ReadGamma, EndlessZerosEnd) {
    const std::vector<std::uint8_t> bytes(1000, 0);
    start_bits(bytes);
    read_gamma();
    EXPECT_EQ(bits_exhausted(), 1);
}

TEST(BitLength, IsTheSmallestPowerOfTwoAbove) {
    EXPECT_EQ(bit_length(0), 0);
    EXPECT_EQ(bit_length(1), 1);
    EXPECT_EQ(bit_length(2), 2);
    EXPECT_EQ(bit_length(3), 2);
    EXPECT_EQ(bit_length(4), 3);
    EXPECT_EQ(bit_length((1 << 30) - 1), 30);
    EXPECT_EQ(bit_length(1 << 30), 0) << "no power of two in range is above";
    EXPECT_EQ(bit_length(2147483647), 0);
    EXPECT_EQ(bit_length(-1), 0);
}

TEST(PackedHeader, CountsInBlocksOfFourPixels) {
    const std::vector<std::uint8_t> data = packed(255, 3, 20, "");
    EXPECT_EQ(packed_width(data.data()), 1020);
    EXPECT_EQ(packed_height(data.data()), 12);
    EXPECT_EQ(packed_buffer_size(data.data()), 255 * 3 * 24);
}

TEST(DecodePacked, AnEmptyBlockIsItsPrediction) { EXPECT_EQ(one_block(20, kFlat), flat(128)); }

TEST(DecodePacked, PredictsFromUpperAndLeftPredictorsOfNineSixteenths) {
    const std::vector<std::uint8_t> samples =
        decode(packed(2, 2, 20, kFlat + kFlat + kFlat + kFlat + kFlat + kFlat));
    EXPECT_EQ(block_at(samples, 8, 0, 0), flat(128)); // leaves (9 * 128 + 8) >> 4 = 72
    EXPECT_EQ(block_at(samples, 8, 1, 0), flat(100)); // (72 + 128) >> 1, leaves (900 + 8) >> 4 = 56
    EXPECT_EQ(block_at(samples, 8, 0, 1), flat(72));  // leaves (648 + 8) >> 4 = 41
    EXPECT_EQ(block_at(samples, 8, 1, 1), flat(48));  // (41 + 56) >> 1
}

TEST(DecodePacked, ChromaStartsAgainFrom128InEveryColumn) {
    std::string blocks = "1 0 00111 0000 "; // DC 7, kept by all blocks that follow
    for (int i = 1; i < 8; ++i) blocks += kFlat;
    blocks += "1 1 00111 0000 "; // back to 0
    for (int i = 1; i < 4; ++i) blocks += kFlat;
    const std::vector<std::uint8_t> samples = decode(packed(4, 2, 16, blocks));
    EXPECT_EQ(block_at(samples, 16, 0, 0), flat(135));
    EXPECT_EQ(block_at(samples, 16, 0, 2), flat(128)); // Cb
    EXPECT_EQ(block_at(samples, 16, 1, 2), flat(100)); // (72 + 128) >> 1
    EXPECT_EQ(block_at(samples, 16, 2, 2), flat(128)); // Cr begins: no left neighbour
    EXPECT_EQ(block_at(samples, 16, 3, 2), flat(100));
}

TEST(DecodePacked, LumaHasALeftNeighbourInTheMiddleOfTheRow) {
    const std::vector<std::uint8_t> samples = decode(packed(2, 1, 20, kFlat + kFlat));
    EXPECT_EQ(block_at(samples, 8, 1, 0), flat(100));
}

TEST(DecodePacked, WithAnOddNumberOfColumnsCrBeginsAtTheMiddleOneRoundedDown) {
    std::string blocks;
    for (int i = 0; i < 9 + 3; ++i) blocks += kFlat;
    const std::vector<std::uint8_t> samples = decode(packed(3, 3, 20, blocks));
    // Each block leaves (9 * value + 8) >> 4; the next is the mean of what its left and upper neighbours leave.
    const int expected[4][3] = {
        {128, 100, 92},  // leave 72, 56, 52
        {72, 48, 39},    // leave 41, 27, 22
        {41, 25, 18},    // luma ends
        {128, 128, 100}, // Cb and Cr from 128 again: column 1 has no left neighbour
    };
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 3; ++column) {
            EXPECT_EQ(block_at(samples, 12, column, row), flat(expected[row][column]))
                << column << ", " << row;
        }
    }
}

TEST(DecodePacked, TheDcIsARunningValueThatChromaInherits) {
    // +1, +2, -3, +5 and -1 at quantiser 16: one level per step, and the prediction of each first column
    const std::string blocks = "1 0 1 0000  1 0 010 0000  1 1 011 0000  1 0 00101 0000  0 0000  1 1 1 0000";
    const std::vector<std::uint8_t> samples = decode(packed(1, 4, 16, blocks));
    EXPECT_EQ(block_at(samples, 4, 0, 0), flat(129)); // dc 1, leaves (1161 + 8) >> 4 = 73
    EXPECT_EQ(block_at(samples, 4, 0, 1), flat(76));  // dc 3, leaves (684 + 8) >> 4 = 43
    EXPECT_EQ(block_at(samples, 4, 0, 2), flat(43));  // dc 0, leaves (387 + 8) >> 4 = 24
    EXPECT_EQ(block_at(samples, 4, 0, 3), flat(29));  // dc 5
    EXPECT_EQ(block_at(samples, 4, 0, 4), flat(133)); // chroma: 128 + 5, leaves (1197 + 8) >> 4 = 75
    EXPECT_EQ(block_at(samples, 4, 0, 5), flat(79));  // dc 4
}

TEST(DecodePacked, RoundsTowardsZeroBelowZero) {
    EXPECT_EQ(one_block(16, "1 1 1 0000"), flat(128)) << "(-16 + 8) / 16 is 0";
    EXPECT_EQ(one_block(16, "1 1 010 0000"), flat(127)) << "(-32 + 8) / 16 is -1";
    EXPECT_EQ(one_block(8, "1 0 1 0000"), flat(129)) << "(8 + 8) / 16 is 1";
    EXPECT_EQ(one_block(7, "1 0 1 0000"), flat(128)) << "(7 + 8) / 16 is 0";
}

TEST(DecodePacked, ClampsSamplesToBytes) {
    EXPECT_EQ(one_block(16, "1 0 0000000 1 0101100 0000"), flat(255)) << "128 + 172 = 300";
    EXPECT_EQ(one_block(16, "1 1 0000000 1 0000110 0000"), flat(0)) << "128 + (-134 * 16 + 8) / 16 = -5";
}

TEST(DecodePacked, OneCoefficientSpreadsAsItsBasisFunction) {
    // Position 1, level 8, step 15 + 1: 128, 64, -64, -128 before the division.
    const std::vector<int> row = {136, 132, 125, 121};
    std::vector<int> expected;
    for (int y = 0; y < 4; ++y) expected.insert(expected.end(), row.begin(), row.end());
    EXPECT_EQ(one_block(15, "0  0001 0 0001 111"), expected);
}

TEST(DecodePacked, HalvesAreLostInBothPasses) {
    // Position 4 of the zigzag is row 1, column 1 of the block; level 9 at step 1 + 4 makes it 45. The row
    // pass turns row 1 into 45, 45 >> 1 = 22, -22, -45; the column pass then gives rows of these values, of
    // their halves rounded down (22, 11, -11, -23), of 0 - these halves, and of 0 - these values. With 8
    // added and divided by 16:
    EXPECT_EQ(one_block(1, "0 0100 11 0 00001 1000"),
              (std::vector<int>{128 + 3, 128 + 1, 128 + 0, 128 - 2,    //  45  22 -22 -45
                                128 + 1, 128 + 1, 128 + 0, 128 + 0,    //  22  11 -11 -23
                                128 + 0, 128 + 0, 128 + 1, 128 + 1,    // -22 -11  11  23
                                128 - 2, 128 + 0, 128 + 1, 128 + 3})); // -45 -22 22 45
}

TEST(DecodePacked, EveryCoefficientHasItsPlaceAndItsStep) {
    for (int position = 1; position < 16; ++position) {
        for (const int sign : {1, -1}) {
            std::array<int, 16> levels = {};
            levels[static_cast<std::size_t>(position)] = sign * 12; // a multiple of 4, whatever the step
            const int zeros_bits = position == 1 ? 0 : static_cast<int>(std::log2(position - 1)) + 1;
            const std::string block = "0 " + binary(static_cast<unsigned>(position), 4) +
                                      binary(static_cast<unsigned>(position - 1), zeros_bits) +
                                      (sign < 0 ? "1" : "0") + "00001" + binary(11, 4);
            const std::array<double, 16> model = transform_model(levels, 10);
            std::vector<int> expected;
            for (const double value : model)
                expected.push_back(
                    static_cast<int>(std::clamp(128 + std::trunc((value + 8) / 16), 0.0, 255.0)));
            EXPECT_EQ(one_block(10, block), expected) << "position " << position << ", sign " << sign;
        }
    }
}

TEST(DecodePacked, CodesRunDownwardsAndMagnitudesOnlyGrow) {
    // last 5, two zeros below it; level -4 (two bits more); run 1 (in two bits); level 1, in two bits as
    // well; run 0 (in one bit); level 8 (one bit more); the zero that is left needs no code.
    const std::string block = "0  0101 010   1 001 11   01   0 1 00   0   0 01 111";
    const std::array<double, 16> model =
        transform_model({0, 0, 8, 1, 0, -4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, 13);
    std::vector<int> expected;
    for (const double value : model) expected.push_back(static_cast<int>(128 + std::trunc((value + 8) / 16)));
    EXPECT_EQ(one_block(13, block), expected);
}

TEST(DecodePacked, MagnitudeLengthStartsAgainWithEveryBlock) {
    const std::string block = "0  0001  0 1 ";
    const std::vector<std::uint8_t> samples = decode(packed(1, 2, 63, "0 0001 0 0001 111" + block + block));
    const std::vector<int> second = block_at(samples, 4, 0, 1);
    // Level 1, step 64: 64, 32, -32, -64, so 4, 2, -1 and -3 on the prediction.
    EXPECT_EQ(second[0] - second[1], 2);
    EXPECT_EQ(second[1] - second[2], 3);
    EXPECT_EQ(second[2] - second[3], 2);
}

TEST(DecodePacked, AFullBlockHasNoRunsToSay) {
    // last 15, no zeros: fifteen levels of 4 without runs; only the first says the magnitude's length.
    std::string block = "0  1111 0000  0 001 11 ";
    std::array<int, 16> levels = {0, 4};
    for (std::size_t i = 2; i < 16; ++i) {
        block += "0 1 11 ";
        levels[i] = 4;
    }
    levels[15] = 4;
    const std::array<double, 16> model = transform_model(levels, 2);
    std::vector<int> expected;
    for (const double value : model) expected.push_back(static_cast<int>(128 + std::trunc((value + 8) / 16)));
    EXPECT_EQ(one_block(2, block), expected);
}

TEST(DecodePacked, TheSizelessFormDecodesTheSame) {
    const std::vector<std::uint8_t> data =
        packed(2, 2, 20, "1 0 00111 0000" + kFlat + kFlat + kFlat + kFlat + kFlat);
    std::vector<std::uint8_t> samples(static_cast<std::size_t>(packed_buffer_size(data.data())));
    decode_packed(data.data(), samples.data());
    EXPECT_EQ(samples, decode(data));
}

TEST(DecodePacked, OddBlockRowsLeaveTheLastChromaRowsAlone) {
    const std::vector<std::uint8_t> samples = decode(packed(1, 3, 20, kFlat + kFlat + kFlat + kFlat));
    ASSERT_EQ(samples.size(), 72u);
    EXPECT_EQ(samples[63], 128);
    for (std::size_t i = 64; i < 72; ++i) EXPECT_EQ(samples[i], 77);
}

TEST(DecodePacked, ATruncatedStreamFailsWithoutReadingOn) {
    const std::vector<std::uint8_t> whole =
        packed(2, 2, 20, kFlat + "1 0 00111 0010 1 0 1" + kFlat + kFlat + kFlat + kFlat);
    std::vector<std::uint8_t> samples(96);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        // A copy of just that size: the address sanitizer sees a byte too many.
        const std::unique_ptr<std::uint8_t[]> cut(new std::uint8_t[size]);
        std::copy_n(whole.begin(), size, cut.get());
        EXPECT_EQ(decode_packed_n(cut.get(), size, samples.data()), 0) << size << " bytes";
    }
    EXPECT_EQ(decode_packed_n(whole.data(), whole.size(), samples.data()), 1);
}

TEST(DecodePacked, EndlessZeroBitsEnd) {
    std::vector<std::uint8_t> samples(24);
    std::vector<std::uint8_t> dc = packed(1, 1, 20, "1 0");
    dc.resize(5000);
    EXPECT_EQ(decode_packed_n(dc.data(), dc.size(), samples.data()), 0);
    std::vector<std::uint8_t> magnitude = packed(1, 1, 20, "0 0001 0");
    magnitude.resize(5000);
    EXPECT_EQ(decode_packed_n(magnitude.data(), magnitude.size(), samples.data()), 0);
}

TEST(DecodePacked, HugeMagnitudesAndDcChangesWrap) {
    const auto code = [](std::size_t length) {
        return std::string(length, '0') + "1" + std::string(length, '1') + " ";
    };
    const std::vector<std::uint8_t> data =
        packed(1, 2, 255, "1 0 " + code(40) + "0001 0 " + code(40) + "1 1 " + code(31) + "0000 " + kFlat);
    std::vector<std::uint8_t> samples(48);
    EXPECT_EQ(decode_packed_n(data.data(), data.size(), samples.data()), 1);
}

TEST(DecodePacked, RunsBelowTheFirstPositionAreDamage) {
    std::vector<std::uint8_t> samples(24, 77);
    // Seven zeros below position 5: there is no room for them.
    const std::vector<std::uint8_t> zeros = packed(1, 1, 20, "0 0101 111" + std::string(200, '1'));
    EXPECT_EQ(decode_packed_n(zeros.data(), zeros.size(), samples.data()), 0);
    // Two levels and four zeros from position 6 on, but a run of seven: the second would stand at -2.
    const std::vector<std::uint8_t> run = packed(1, 1, 20, "0 0110 100  0 1 111  0 1" + std::string(40, '0'));
    EXPECT_EQ(decode_packed_n(run.data(), run.size(), samples.data()), 0);
    EXPECT_EQ(samples, std::vector<std::uint8_t>(24, 77)) << "samples from the damage on keep what they held";
}

TEST(DecodePacked, ARunOfMoreThanTheZerosLeftLeadsDownToTheDcAndBelowItToDamage) {
    // Position 15, eight zeros below it, and a run of nine. Then no zeros are left, so that runs take no bits: six
    // more levels stand at 5 to 0, the last in the place of the DC.
    const auto block = [](const std::string& run) {
        std::string text = "0  1111 1000  0 001 11 " + run;
        for (int i = 0; i < 6; ++i) text += " 0 1 11";
        return text;
    };
    std::array<int, 16> levels = {4, 4, 4, 4, 4, 4};
    levels[15] = 4;
    const std::array<double, 16> model = transform_model(levels, 2);
    std::vector<int> expected;
    for (const double value : model) expected.push_back(static_cast<int>(128 + std::trunc((value + 8) / 16)));
    EXPECT_EQ(one_block(2, block("1001")), expected);

    // With a run of ten the sixth level would stand below the DC; with one of fifteen, the first.
    std::vector<std::uint8_t> samples(24);
    for (const char* run : {"1010", "1110", "1111"}) {
        const std::vector<std::uint8_t> data = packed(1, 1, 2, block(run) + std::string(64, '1'));
        EXPECT_EQ(decode_packed_n(data.data(), data.size(), samples.data()), 0) << run;
    }
    // Position 9 with fifteen zeros, of which there is no room for: a run of none, then one of fifteen, to -8.
    const std::vector<std::uint8_t> far =
        packed(1, 1, 2, "0  1001 1111  0 1 0000  0 1 1111" + std::string(64, '1'));
    EXPECT_EQ(decode_packed_n(far.data(), far.size(), samples.data()), 0);
}

TEST(YuvToRgb, UsesVideoRangeCoefficients) {
    const std::uint8_t samples[6] = {16, 235, 81, 0, 90, 240};
    std::uint8_t r[4], g[4], b[4];
    yuv_to_rgb(2, 2, samples, r, g, b);
    // u = -38, v = 112. Red of the third: (298 * 81 - 4768 + 409 * 112 + 128) >> 8 = 255.
    EXPECT_EQ(r[2], 255);
    EXPECT_EQ(g[2], 0);   // (19370 + 3800 - 23296 + 128) >> 8 = 0
    EXPECT_EQ(b[2], 0);   // (19370 - 19608 + 128) >> 8 = -1
    EXPECT_EQ(r[0], 179); // (0 + 45808 + 128) >> 8
    EXPECT_EQ(g[1], 179); // (65262 + 3800 - 23296 + 128) >> 8
    EXPECT_EQ(r[3], 160); // (-4768 + 45808 + 128) >> 8
    EXPECT_EQ(b[1], 178); // (65262 - 19608 + 128) >> 8
}

TEST(YuvToRgb, GreyHasNoColour) {
    const std::uint8_t samples[6] = {16, 235, 126, 255, 128, 128};
    std::uint8_t r[4], g[4], b[4];
    yuv_to_rgb(2, 2, samples, r, g, b);
    const int expected[4] = {0, 255, 128, 255};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(r[i], expected[i]);
        EXPECT_EQ(g[i], expected[i]);
        EXPECT_EQ(b[i], expected[i]);
    }
}

TEST(YuvToRgb, EachChromaSampleServesTwoByTwoPixels) {
    std::vector<std::uint8_t> samples(16, 100);
    // two chroma rows: Cb, Cb, Cr, Cr each
    samples.insert(samples.end(), {128, 160, 128, 128, 128, 128, 128, 160});
    std::uint8_t r[16], g[16], b[16];
    yuv_to_rgb(4, 4, samples.data(), r, g, b);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) {
            const bool blue = y < 2 && x >= 2;
            const bool red = y >= 2 && x >= 2;
            EXPECT_EQ(b[4 * y + x], blue ? 162 : 98) << x << ", " << y; // (25032 + 516 * 32 + 128) >> 8
            EXPECT_EQ(r[4 * y + x], red ? 149 : 98) << x << ", " << y;  // (25032 + 409 * 32 + 128) >> 8
            // (25032 - 100 * 32 + 128) >> 8 and (25032 - 208 * 32 + 128) >> 8
            EXPECT_EQ(g[4 * y + x], blue ? 85 : red ? 72 : 98) << x << ", " << y;
        }
}

TEST(BytesToPlane, RepeatsTheByte) {
    const std::uint8_t bytes[4] = {0, 1, 128, 255};
    std::int32_t plane[5] = {-1, -1, -1, -1, -1};
    bytes_to_plane(bytes, plane, 4);
    EXPECT_EQ(plane[0], 0);
    EXPECT_EQ(plane[1], 0x0101);
    EXPECT_EQ(plane[2], 0x8080);
    EXPECT_EQ(plane[3], 0xFFFF);
    EXPECT_EQ(plane[4], -1);
}

TEST(LoadPackedPicture, MakesAnImageOfThreePlanes) {
    const std::vector<std::uint8_t> data = packed(1, 2, 20, kFlat + kFlat + kFlat);
    for (const ImagePtr& img : {ImagePtr(load_packed_picture(data.data())),
                                ImagePtr(load_packed_picture_n(data.data(), data.size()))}) {
        ASSERT_NE(img, nullptr);
        EXPECT_EQ(img->width, 4);
        EXPECT_EQ(img->height, 8);
        EXPECT_EQ(img->flags, 2u);
        EXPECT_EQ(img->alpha, nullptr);
        for (const std::int32_t* plane : {img->red, img->green, img->blue}) {
            EXPECT_EQ(plane[0], 130 * 257); // (298 * 128 - 4768 + 128) >> 8
            EXPECT_EQ(plane[31], 65 * 257); // (298 * 72 - 4768 + 128) >> 8
        }
    }
}

TEST(LoadPackedPicture, GivesEachPlaneItsColour) {
    // At quantiser 16 a level of the DC is a step of one: luma 128, Cb 128 + 40, Cr 128 - 19 (a DC of -20,
    // rounded towards zero).
    const std::vector<std::uint8_t> data = packed(2, 2, 16,
                                                  kFlat + kFlat + kFlat + kFlat + // luma
                                                      "1 0 00000 101000 0000 " +  // 0 + 40
                                                      "1 1 00000 111100 0000 ");  // 40 - 60
    const ImagePtr img(load_packed_picture_n(data.data(), data.size()));
    ASSERT_NE(img, nullptr);
    for (const int pixel : {0, 3, 24, 27}) {     // the corners of the first block
        EXPECT_EQ(img->red[pixel], 100 * 257);   // (33376 - 409 * 19 + 128) >> 8
        EXPECT_EQ(img->green[pixel], 130 * 257); // (33376 - 100 * 40 + 208 * 19 + 128) >> 8
        EXPECT_EQ(img->blue[pixel], 211 * 257);  // (33376 + 516 * 40 + 128) >> 8
    }
}

TEST(LoadPackedPicture, OfOddSizeSplitsItsColourRowsInTheMiddleOfABlock) {
    std::string blocks;
    for (int i = 0; i < 9 + 3; ++i) blocks += kFlat;
    const ImagePtr img(load_packed_picture(packed(3, 3, 20, blocks).data()));
    ASSERT_NE(img, nullptr);
    ASSERT_EQ(img->width, 12);
    const auto red = [&img](int x, int y) { return img->red[y * 12 + x] / 257; };
    EXPECT_EQ(red(0, 0), 130); // luma 128, Cr 128, from the second half of block column 1
    EXPECT_EQ(red(3, 0), 130);
    EXPECT_EQ(red(4, 0), 53); // luma 100, Cr 100: (298 * 100 - 4768 - 409 * 28 + 128) >> 8
    EXPECT_EQ(red(4, 8), 10); // luma 25, a row without colour: (298 * 25 - 4768 + 128) >> 8
}

TEST(LoadPackedPicture, RowsWithoutColourAreGrey) {
    const std::vector<std::uint8_t> data = packed(1, 1, 20, kFlat);
    const ImagePtr img(load_packed_picture(data.data()));
    ASSERT_NE(img, nullptr);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(img->red[i], 130 * 257);
        EXPECT_EQ(img->green[i], 130 * 257);
        EXPECT_EQ(img->blue[i], 130 * 257);
    }
}

TEST(LoadPackedPicture, IsNullForWhatIsNoWholePicture) {
    const std::vector<std::uint8_t> data = packed(1, 2, 20, kFlat + kFlat + kFlat);
    for (std::size_t size = 0; size < data.size(); ++size)
        EXPECT_EQ(load_packed_picture_n(data.data(), size), nullptr) << size;
    const std::uint8_t empty[3] = {0, 0, 20};
    EXPECT_EQ(load_packed_picture_n(empty, 3), nullptr);
}
