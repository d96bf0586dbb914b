#include <gtest/gtest.h>

#include <array>
#include <cstdlib>

#include "tests/support/picture.h"
#include "tests/whole/export/programs.h"

namespace {

using Colour = std::array<int, 3>;
constexpr Colour kBlack = {0, 0, 0}, kRed = {255, 0, 0}, kGreen = {0, 255, 0}, kWhite = {255, 255, 255};

Rgb still(const std::string& probe, std::vector<std::string> arguments) {
    TestFolder folder;
    arguments.insert(arguments.end(), {"-q", "--fps", "10", "--still", "0.2", "-o", folder / "a.png"});
    const Finished finished = run_program(export_probe(probe, arguments));
    EXPECT_EQ(finished.status, 0) << finished.err;
    return read_png(folder / "a.png");
}

Colour at(const Rgb& picture, int x, int y) {
    const std::uint8_t* pixel = picture.at(x, y);
    return {pixel[0], pixel[1], pixel[2]};
}

class Scale : public testing::TestWithParam<int> {};

TEST_P(Scale, PicturesTexturesPointsAndLinesGrowByTheScaleAndStaySharp) {
    const int n = GetParam();
    const Rgb picture = still("scale", {"--scale", std::to_string(n)});
    ASSERT_EQ(picture.width, 1024 * n);
    ASSERT_EQ(picture.height, 768 * n);
    // The copied texture: red to 100.5 units, green from there on below 311.5 units above the bottom.
    const int row = 600 * n;
    const int edge = n == 1 ? 100 : 201 * n / 2;
    EXPECT_EQ(at(picture, edge - 1, row), kRed);
    EXPECT_EQ(at(picture, edge + (n == 1), row), n == 1 ? at(picture, 101, row) : at(picture, edge, row));
    EXPECT_EQ(at(picture, 512 * n - 1, 257 * n), kGreen);
    EXPECT_EQ(at(picture, 512 * n, row), kBlack);
    EXPECT_EQ(at(picture, 50 * n, 256 * n - 1), kBlack);
    EXPECT_EQ(at(picture, 50 * n, 256 * n), kRed);
    // The point: 8 x 8 units around (800, 200).
    EXPECT_EQ(at(picture, 796 * n, 196 * n), kWhite);
    EXPECT_EQ(at(picture, 804 * n - 1, 204 * n - 1), kWhite);
    EXPECT_EQ(at(picture, 796 * n - 1, 200 * n), kBlack);
    EXPECT_EQ(at(picture, 804 * n, 200 * n), kBlack);
    // The line: 4 units wide.
    int width = 0;
    for (int y = 380 * n; y < 420 * n; ++y) width += at(picture, 650 * n, y) == kWhite;
    EXPECT_EQ(width, 4 * n);
}

INSTANTIATE_TEST_SUITE_P(OneAndThree, Scale, testing::Values(1, 3));

// The mean of the picture at twice the size is what supersampling shows.
TEST(Supersample, APixelIsTheMeanOfThoseItIsMadeOf) {
    const Rgb twice = still("leftovers", {"--scale", "2"});
    const Rgb smooth = still("leftovers", {"--supersample", "2"});
    ASSERT_EQ(smooth.width, 1024);
    const Rgb expected = reduced(twice, 2);
    int worst = 0;
    for (std::size_t i = 0; i < expected.pixels.size(); ++i) {
        worst = std::max(worst, std::abs(expected.pixels[i] - smooth.pixels[i]));
    }
    EXPECT_LE(worst, 1) << "rounding may differ";
}

TEST(Supersample, AddsToTheScale) {
    const Rgb picture = still("scale", {"--scale", "2", "--supersample", "2"});
    EXPECT_EQ(picture.width, 2048);
    EXPECT_EQ(at(picture, 100, 1200), kRed);
    EXPECT_EQ(at(picture, 1600, 400), kWhite);
}

} // namespace
