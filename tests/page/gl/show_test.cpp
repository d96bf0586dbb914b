// The whole show as the layer draws it, against the pictures of the picture tests and against skav-export, which draws
// with this machine's OpenGL.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/pictures/comparison.h"
#include "tests/pictures/moments.h"

namespace {

const std::string kPictures = PICTURES_FOLDER;
const std::string kExported = EXPORTED_FOLDER;
const std::string kDrawn = DRAWN_FOLDER;

// At full size. Both draw with the same rasteriser; textures are sampled with more or less precision, and every driver
// estimates in its own way how far a texture is minified.
constexpr double kMostMeanHere = 0.6;
constexpr double kMostFarOffHere = 0.05; // per cent

class ShowOnLayer : public testing::TestWithParam<PictureMoment> {};

TEST_P(ShowOnLayer, ShowsWhatTheReferenceShows) {
    const PictureMoment& moment = GetParam();
    const Rgb shown = read_png(kDrawn + "/" + moment.still());
    const Difference reduced_difference =
        difference(reduced(shown, kReduction), read_png(kPictures + "/references/" + moment.reference()));
    EXPECT_TRUE(same(reduced_difference)) << moment.what << ": mean " << reduced_difference.mean
                                          << ", far off " << reduced_difference.far_off << " %";

    const Difference here = difference(shown, read_png(kExported + "/" + moment.still()));
    EXPECT_LE(here.mean, kMostMeanHere) << moment.what;
    EXPECT_LE(here.far_off, kMostFarOffHere) << moment.what;
}

std::string test_name(const testing::TestParamInfo<PictureMoment>& info) {
    std::string name = info.param.language + "_" + info.param.time;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Moments, ShowOnLayer, testing::ValuesIn(read_moments(kPictures + "/moments.txt")),
                         test_name);

} // namespace
