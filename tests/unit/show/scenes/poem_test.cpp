// The poem's letters, drawn with its font: do they fit their texture, and how do they cross the screen?
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "show/image/filters.h"
#include "show/scenes/poem.h"
#include "tests/support/image.h"

namespace {

constexpr int kTextureWidth = 512;
constexpr double kScreenWidth = 1024;
constexpr double kUnitsOfPixel = kScreenWidth / kTextureWidth;
constexpr double kSceneEnd = 79.0; // seconds: from cue 74.0 to cue 153.0
constexpr double kFrame = 1.0 / 120;

// What a line covers of the texture: columns, and rows counted from its baseline. The right and lower bounds
// are not covered any more.
struct Ink {
    int left, right, top, bottom;
};

// Draws line i as the scroller does, but into an image with room on all sides but the left, and measures it.
Ink measure(Font* font, bool english, int i) {
    constexpr int kWidth = 2 * kTextureWidth, kHeight = 64, kBaseline = 40;
    const ImagePtr img(image_create(kWidth, kHeight, kImageGrey));
    image_fill(img.get(), 0xFF000000);
    draw_text(img.get(), font, poem_pen_x(english, i), kBaseline, 20, 20, -12, poem_line(english, i));
    image_rank(img.get(), 1);
    Ink ink = {kWidth, 0, kHeight, -kHeight};
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            if (img->green[y * kWidth + x] == 0) continue;
            ink = {std::min(ink.left, x), std::max(ink.right, x + 1), std::min(ink.top, y - kBaseline),
                   std::max(ink.bottom, y + 1 - kBaseline)};
        }
    }
    return ink;
}

class Poem : public testing::TestWithParam<bool> {
protected:
    void SetUp() override {
        font_.reset(font_load(SKAV_DATA "/Vera.ttf"));
        ASSERT_TRUE(font_);
        for (int i = 0; i < kPoemLines; ++i) ink_.push_back(measure(font_.get(), english(), i));
    }

    bool english() const { return GetParam(); }
    const char* line(int i) const { return poem_line(english(), i); }

    // Where the letters of line i begin and end on the screen.
    double left(int i, double t) const { return poem_left(i, t) + at(i).left * kUnitsOfPixel; }
    double right(int i, double t) const { return poem_left(i, t) + at(i).right * kUnitsOfPixel; }

    bool is_visible(int i, double t) const { return right(i, t) > 0 && left(i, t) < kScreenWidth; }
    bool is_whole(int i, double t) const { return left(i, t) >= 0 && right(i, t) <= kScreenWidth; }

    const Ink& at(int i) const { return ink_[static_cast<std::size_t>(i)]; }

private:
    FontPtr font_;
    std::vector<Ink> ink_;
};

TEST_P(Poem, EveryLineHasAtMost47CharactersOfLatin1) {
    const std::string umlauts = "\xe4\xf6\xfc\xc4\xd6\xdc\xdf";
    for (int i = 0; i < kPoemLines; ++i) {
        const std::string text = line(i);
        EXPECT_FALSE(text.empty()) << i;
        EXPECT_LE(text.size(), 47u) << text;
        for (const char c : text) {
            EXPECT_TRUE((c >= ' ' && c <= '~') || umlauts.find(c) != std::string::npos) << text;
        }
    }
}

TEST_P(Poem, EveryLineIsASentence) {
    for (int i = 0; i < kPoemLines; ++i)
        EXPECT_TRUE(std::strchr(".!?", std::string(line(i)).back())) << line(i);
}

TEST_P(Poem, EveryLineFitsTheTextureAndItsOwnRows) {
    for (int i = 0; i < kPoemLines; ++i) {
        const Ink& ink = at(i);
        ASSERT_LT(ink.left, ink.right) << line(i);
        EXPECT_LE(ink.right, kTextureWidth) << line(i);
        // What the screen shows of the texture's 700 rows is 30 for each line, from a hundredth of them on;
        // baselines stand at 30, 60, 90 and so on.
        EXPECT_GE(ink.top, 7 - 30) << line(i);
        EXPECT_LE(ink.bottom, 7) << line(i);
    }
}

TEST_P(Poem, NoTwoLinesOverlapOnTheScreen) {
    for (double t = 0; t <= kSceneEnd; t += kFrame) {
        for (int i = 0; i < kPoemLines; ++i) {
            for (int j = i + 1; j < kPoemLines; ++j) {
                const double from = std::max({left(i, t), left(j, t), 0.0});
                const double to = std::min({right(i, t), right(j, t), kScreenWidth});
                ASSERT_LE(to - from, 0) << line(i) << " / " << line(j) << " at " << t;
            }
        }
    }
}

TEST_P(Poem, EveryLineIsOnceWholeOnTheScreen) {
    for (int i = 0; i < kPoemLines; ++i) {
        int frames = 0;
        for (double t = 0; t <= kSceneEnd; t += kFrame) frames += is_whole(i, t);
        EXPECT_GT(frames, 0) << line(i);
    }
}

TEST_P(Poem, TheLinesComeInTheirOrder) {
    double before = -1;
    for (int i = 0; i < kPoemLines; ++i) {
        double t = 0;
        while (t < kSceneEnd && !is_visible(i, t)) t += kFrame;
        EXPECT_LT(t, kSceneEnd) << line(i);
        EXPECT_GT(t, before) << line(i);
        before = t;
    }
}

TEST_P(Poem, ThePauseHasNoText) {
    for (double t = 48.7; t <= 53.3; t += kFrame) {
        for (int i = 0; i < kPoemLines; ++i) ASSERT_FALSE(is_visible(i, t)) << line(i) << " at " << t;
    }
    EXPECT_TRUE(is_visible(10, 48.2));
    EXPECT_TRUE(is_visible(11, 53.6));
}

TEST_P(Poem, TheToastIsOnTheScreenWithTheSign) {
    EXPECT_TRUE(is_visible(13, 60.0)) << "the sign comes in";
    EXPECT_TRUE(is_whole(13, 60.6));
    EXPECT_TRUE(is_whole(14, 63.03));
    EXPECT_TRUE(is_visible(14, 64.0)) << "the sign is gone";
}

TEST_P(Poem, TheShortLineEndsBeforeTheNextOneHalfAScreenLater) {
    EXPECT_LT(at(18).right * kUnitsOfPixel, 512 + at(19).left * kUnitsOfPixel);
    EXPECT_LE(std::strlen(line(18)), 22u);
}

TEST_P(Poem, TheLastLineIsWholeForASecondBeforeTheEnd) {
    EXPECT_TRUE(is_whole(21, kSceneEnd - 1.2));
    EXPECT_TRUE(is_whole(21, kSceneEnd - 0.25));
}

std::string language(const testing::TestParamInfo<bool>& english) {
    return english.param ? "English" : "German";
}
INSTANTIATE_TEST_SUITE_P(, Poem, testing::Bool(), language);

TEST(PoemLines, AreTwoPoems) {
    for (int i = 0; i < kPoemLines; ++i) EXPECT_STRNE(poem_line(false, i), poem_line(true, i));
}

TEST(PoemLines, StartAtTenPixelsButForThree) {
    for (const bool english : {false, true}) {
        for (int i = 0; i < kPoemLines; ++i) {
            const int x = i == 2 ? 20 : i == 3 ? 0 : i == 13 && !english ? 0 : 10;
            EXPECT_EQ(poem_pen_x(english, i), x) << i;
        }
    }
}

TEST(PoemLines, CrossTheScreenInFiveRuns) {
    for (const double t : {0.0, 20.0, 70.5}) {
        EXPECT_EQ(poem_left(0, t), 0.5 * 1024 - 243.2 * t);
        EXPECT_EQ(poem_left(5, t), 5.5 * 1024 - 243.2 * t);
        EXPECT_EQ(poem_left(6, t), 8.5 * 1024 - 281.6 * t);
        EXPECT_EQ(poem_left(7, t), 10.0 * 1024 - 294.4 * t);
        EXPECT_EQ(poem_left(10, t), 13.0 * 1024 - 294.4 * t);
        EXPECT_EQ(poem_left(11, t), 23.0 * 1024 - 422.4 * t);
        EXPECT_EQ(poem_left(18, t), 30.0 * 1024 - 422.4 * t);
        EXPECT_EQ(poem_left(19, t), 30.5 * 1024 - 422.4 * t);
        EXPECT_EQ(poem_left(21, t), 32.5 * 1024 - 422.4 * t);
    }
}

} // namespace
