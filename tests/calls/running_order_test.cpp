// The whole show with its own scenes: what one leaves is what the next begins with.
#include <GL/glu.h>

#include <algorithm>
#include <cmath>

#include "show/driver/frame.h"
#include "show/driver/loading.h"
#include "show/image/generators.h"
#include "show/image/image.h"
#include "show/image/noise.h"
#include "show/image/random.h"
#include "show/stage/show_time.h"
#include "tests/calls/run.h"
#include "tests/calls/scene_test.h"

namespace {

using Rejected = std::vector<std::string>;

Rejected operator+(Rejected a, const Rejected& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// What GL rejects of each scene's frame, all of it on purpose.
const Rejected kTitleCalls = {"glPopMatrix", "glPopMatrix"};
const Rejected kBars = {"glDisable", "glEnable"};
const Rejected kWall = {"glBlendFunc"};
const Rejected kGyroCalls = {"glPopMatrix", "glPopMatrix"};
const Rejected kCrossCalls = {"glEnable", "glEnable", "glBlendFunc"};
const Rejected kLayer = {"glEnd"};

Rejected rejected_at(double time) {
    if (time < 10.0) return kTitleCalls + kBars;
    if (time < 34.0) return kWall + kBars;
    if (time < 55.0) return kGyroCalls + kBars;
    if (time < 67.5) return kCrossCalls + kBars;
    if (time < 74.0) return kBars;
    if (time < 153.0) {
        const float t = static_cast<float>(time - 74.0);
        return t < 23.2 || t > 71 ? kLayer + kBars : kLayer;
    }
    return kBars;
}

// The show, loaded; frames are shown one by one at times of the music.
class RunningOrder : public testing::Test {
protected:
    void SetUp() override { load_show(); }

    // A frame at a show time; from the switch to the vocal file on, the file's own position counts.
    recording::Log frame(double time) {
        const bool vocal = g_demo_time >= 74.0;
        recording::script().positions = {static_cast<unsigned>(std::lround(time * 1000)) -
                                         (vocal ? 74300u : 0u)};
        return recording::calls_of(show_frame);
    }
};

int index_of(const recording::Log& calls, const recording::Call& call) {
    const auto found = std::find(calls.begin(), calls.end(), call);
    return found == calls.end() ? -1 : static_cast<int>(found - calls.begin());
}

// The arguments of the blend function in force at a place of a log; none when it was not set before.
std::vector<recording::Argument> blend_function(const recording::Log& calls, int place) {
    for (int i = place; i >= 0; --i) {
        const recording::Call& call = calls[static_cast<size_t>(i)];
        if (call.name != "glBlendFunc" || std::get<double>(call.arguments[0]) == GL_ALPHA) continue;
        return call.arguments;
    }
    return {};
}

} // namespace

TEST(Textures, RepeatAsTilesOrClampPlainlyAfterTheLoadingScreen) {
    std::vector<GLint> modes; // of the second axis, as each texture is left
    for (const recording::Call& call : recording::only(recording::calls_of(load_show), "glTexParameteri")) {
        if (std::get<double>(call.arguments[1]) != GL_TEXTURE_WRAP_T) continue;
        modes.push_back(static_cast<GLint>(std::get<double>(call.arguments[2])));
    }
    // The surplus pop of the loading screen makes the upload take GL_CLAMP_TO_EDGE for missing.
    EXPECT_EQ(modes,
              (std::vector<GLint>{GL_CLAMP_TO_EDGE,                                   // loading picture
                                  GL_CLAMP,                                           // title
                                  GL_REPEAT, GL_CLAMP, GL_REPEAT, GL_CLAMP, GL_CLAMP, // greetings
                                  GL_CLAMP,                                           // gyro
                                  GL_CLAMP,                                           // text screen
                                  GL_CLAMP, GL_CLAMP, GL_CLAMP, GL_CLAMP, GL_CLAMP, GL_CLAMP, // scroller
                                  GL_CLAMP}));                                                // credits
}

TEST(Generator, LoadingDrawsForTheTwoTilesTheFilmTheStarsAndTheColourPlasma) {
    const RandomState at_program_load = g_random;
    EXPECT_EQ(at_program_load.s1, 0x31C95435u);
    load_show();
    const RandomState after = g_random;

    g_random = at_program_load;
    Image* tile = image_create(256, 256, 9);
    image_plasma(tile, 4104, 1.0);
    image_plasma(tile, 32768, 0.67);
    image_free(tile);
    Image* film = image_create(512, 128, 1);
    image_fill(film, 0xFF000000);
    image_noise(film, 41728);
    image_free(film);
    random_seed(2222);
    for (int i = 0; i < 3 * 8000; ++i) random_next();
    Image* plasma = image_create(1024, 1024, 2);
    image_plasma(plasma, 33280, 0.8);
    image_free(plasma);
    EXPECT_EQ(g_random.s1, after.s1);
    EXPECT_EQ(g_random.s2, after.s2);
    EXPECT_EQ(g_random.s3, after.s3);
}

TEST_F(RunningOrder, OnlyTheMeantCallsAreRejectedFromTheFirstFrameToTheLast) {
    for (int half_second = 0; half_second < 2 * 162; ++half_second) {
        const double time = half_second * 0.5;
        const size_t before = recording::errors().size();
        frame(time);
        Rejected names;
        for (size_t i = before; i < recording::errors().size(); ++i)
            names.push_back(recording::errors()[i].name);
        ASSERT_EQ(names, rejected_at(g_demo_time)) << g_demo_time;
        ASSERT_EQ(recording::modelview_depth(), 1) << g_demo_time;
        ASSERT_EQ(recording::projection_depth(), 1) << g_demo_time;
    }
}

TEST_F(RunningOrder, EndsWithStatusZero) {
    frame(0.0);
    frame(80.0);
    int status = -1;
    try {
        frame(162.0);
    } catch (const recording::Exited& end) {
        status = end.status;
    }
    EXPECT_EQ(status, 0);
}

TEST_F(RunningOrder, InTheFirstSecondsTheTitleClearsForTheRibbon) {
    frame(0.0);
    const recording::Log calls = frame(3.0);
    EXPECT_EQ(recording::count(calls, "glClear"), 1);
    EXPECT_EQ(calls.front().name, "FMOD_Channel_GetPosition");
    EXPECT_EQ(calls.at(1), recording::calls_of([] { glClearColor(1, 1, 1, 0); }).front());
    EXPECT_GT(recording::count(calls, "glVertex3f"), 1000);
}

TEST_F(RunningOrder, TheClearColourOfTheSecondPassIsOverwrittenByTheTitle) {
    frame(0.0);
    frame(6.2);
    const recording::Log colours = recording::only(frame(8.2), "glClearColor");
    ASSERT_EQ(colours.size(), 2u);
    EXPECT_EQ(std::get<double>(colours[0].arguments[0]), 1.0);
    EXPECT_LT(std::get<double>(colours[1].arguments[0]), 0.8);
}

TEST_F(RunningOrder, AFlashOverTheWallBlendsWithWhatTheRibbonLeft) {
    frame(0.0); // its flash sets the additive function, which the cache then believes in for good
    frame(20.0);
    const recording::Log calls = frame(28.0);
    const double sum = 1.0 + std::exp(-3.5 * 3.5);
    const int flash =
        index_of(calls, recording::calls_of([sum] { glColor4f(1, 1, 1, static_cast<float>(sum)); }).front());
    ASSERT_GE(flash, 0);
    const recording::Log over =
        recording::calls_of([] { glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA); });
    EXPECT_EQ(blend_function(calls, flash), over[0].arguments);
}

TEST_F(RunningOrder, TheLettersOfTheFirstFrameUseTheBlendFunctionOfGlItself) {
    const recording::Log calls = frame(0.0);
    const int title = index_of(calls, recording::calls_of([] { glColor4f(1, 1, 1, 1); }).front());
    ASSERT_GE(title, 0);
    EXPECT_TRUE(blend_function(calls, title).empty());
}

TEST_F(RunningOrder, TheScrollersClockRunsOnWhenItIsRestarted) {
    frame(0.0);
    frame(74.0);
    frame(76.9);
    const recording::Log calls = frame(77.1);
    const float seen = static_cast<float>(g_demo_time - 74.0f);
    EXPECT_NEAR(seen, 3.1f, 0.001f);
    // three seconds in, the text screen has just gone
    EXPECT_EQ(index_of(calls, recording::calls_of([seen] { glColor4f(2, 2, 2, 1 - seen / 3); }).front()), -1);
    // 30t - 420
    EXPECT_GE(index_of(calls, recording::calls_of([seen] { glTranslated(0, 0, 30.0 * seen - 420); }).front()),
              0);
}

TEST_F(RunningOrder, TheVocalFileSwitchShowsTheScrollerInTheSameFrame) {
    frame(0.0);
    frame(73.9);
    const recording::Log calls = frame(74.0);
    EXPECT_EQ(recording::count(calls, "FMOD_System_PlaySound"), 1);
    EXPECT_EQ(recording::count(calls, "glCopyTexImage2D"), 1);
}

TEST_F(RunningOrder, TheCreditsKeepTheFogOfTheScroller) {
    frame(0.0);
    frame(80.0);
    const recording::Log calls = frame(153.0);
    EXPECT_EQ(recording::count(calls, "glFogf"), 0);
    EXPECT_EQ(recording::count(calls, "gluNewQuadric"), 1);
}
