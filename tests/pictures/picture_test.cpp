#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "tests/pictures/comparison.h"
#include "tests/pictures/moments.h"

namespace {

const std::string kPictures = PICTURES_FOLDER;

// The exporter's pictures, or those that somebody else has drawn.
std::string stills_folder() {
    const char* other = std::getenv("STILLS_FOLDER");
    return other ? other : STILLS_FOLDER;
}

class Picture : public testing::TestWithParam<PictureMoment> {};

TEST_P(Picture, ShowsWhatTheReferenceShows) {
    const PictureMoment& moment = GetParam();
    const Rgb shown = reduced(read_png(stills_folder() + "/" + moment.still()), kReduction);
    const Rgb reference = read_png(kPictures + "/references/" + moment.reference());
    const Difference found = difference(shown, reference);
    EXPECT_TRUE(same(found)) << moment.what << ": mean difference " << found.mean << " (at most " << kMostMean
                             << "), far off " << found.far_off << " % (at most " << kMostFarOff
                             << "). If the picture is meant to have changed: tests/pictures/refresh.sh";
}

std::string test_name(const testing::TestParamInfo<PictureMoment>& info) {
    std::string name = info.param.language + "_" + info.param.time;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Moments, Picture, testing::ValuesIn(read_moments(kPictures + "/moments.txt")),
                         test_name);

TEST(Comparison, TellsEveryTwoReferencesApart) {
    const std::vector<PictureMoment> moments = read_moments(kPictures + "/moments.txt");
    std::vector<Rgb> pictures;
    for (const PictureMoment& moment : moments) {
        pictures.push_back(read_png(kPictures + "/references/" + moment.reference()));
    }
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        for (std::size_t j = i + 1; j < pictures.size(); ++j) {
            EXPECT_FALSE(same(difference(pictures[i], pictures[j])))
                << moments[i].reference() << " and " << moments[j].reference();
        }
    }
}

// A picture that is wrong by what a mistake in a scene would change.
TEST(Comparison, SeesAShiftAMirrorAndAChannelSwap) {
    const Rgb right = read_png(kPictures + "/references/en-014.000.png");
    ASSERT_FALSE(right.pixels.empty());
    Rgb shifted = right, mirrored = right, swapped = right;
    for (int y = 0; y < right.height; ++y) {
        for (int x = 0; x < right.width; ++x) {
            const std::size_t pixel = 3 * static_cast<std::size_t>(y * right.width + x);
            for (std::size_t i = 0; i < 3; ++i) {
                shifted.pixels[pixel + i] = right.at(std::min(x + 3, right.width - 1), y)[i];
                mirrored.pixels[pixel + i] = right.at(right.width - 1 - x, y)[i];
                swapped.pixels[pixel + i] = right.at(x, y)[2 - i];
            }
        }
    }
    EXPECT_FALSE(same(difference(right, shifted)));
    EXPECT_FALSE(same(difference(right, mirrored)));
    EXPECT_FALSE(same(difference(right, swapped)));
}

TEST(Comparison, ForgivesRounding) {
    Rgb other = read_png(kPictures + "/references/en-014.000.png");
    const Rgb reference = other;
    for (std::size_t i = 0; i < other.pixels.size(); ++i) {
        other.pixels[i] = static_cast<std::uint8_t>(other.pixels[i] ^ (i % 7 == 0));
    }
    EXPECT_TRUE(same(difference(reference, other)));
}

} // namespace
