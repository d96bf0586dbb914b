#include <GL/glu.h>
#include <GL/glut.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "show/driver/display.h"
#include "show/driver/loading.h"
#include "show/stage/language.h"
#include "show/text/text.h"
#include "tests/calls/run.h"

using recording::calls_of;

namespace {

constexpr const char* kEnglish = "German or English Text [G/e]?: English screen text...\n\n";
constexpr const char* kGerman = "German or English Text [G/e]?: German screen text...\n\n";

} // namespace

TEST(Startup, MakesNoFontLibrary) {
    run_show("\n");
    EXPECT_EQ(g_ft_ready, 0);
    EXPECT_EQ(g_ft_library, nullptr);
}

TEST(Prompt, LowercaseESelectsEnglish) {
    EXPECT_EQ(run_show("e\n").output, kEnglish);
    EXPECT_EQ(g_english, 1);
}

TEST(Prompt, UppercaseESelectsGerman) {
    EXPECT_EQ(run_show("E\n").output, kGerman);
    EXPECT_EQ(g_english, 0);
}

TEST(Prompt, AnEmptyLineSelectsGerman) {
    EXPECT_EQ(run_show("\n").output, kGerman);
    EXPECT_EQ(g_english, 0);
}

TEST(Prompt, TheEndOfInputSelectsGerman) {
    EXPECT_EQ(run_show("").output, kGerman);
    EXPECT_EQ(g_english, 0);
}

TEST(Prompt, OnlyTheFirstCharacterCounts) {
    EXPECT_EQ(run_show("ge\n").output, kGerman);
    EXPECT_EQ(g_english, 0);
}

TEST(Prompt, TheRestOfTheLineStaysUnread) {
    int next = 0;
    recording::observer() = [&next](const recording::Call& call) {
        if (call.name == "glutInit") next = std::getchar();
    };
    run_show("ex\n");
    EXPECT_EQ(next, 'x');
}

TEST(Prompt, ALaterRunForgetsTheLanguageOfTheOneBefore) {
    run_show("e\n");
    run_show("g\n");
    EXPECT_EQ(g_english, 0);
}

TEST(Main, MakesItsCallsInOrder) {
    const ShowRun run = run_show("e");
    const recording::Log expected = calls_of([] {
        int argc = 1;
        char name[] = "skav";
        char* argv[] = {name, nullptr};
        glutInit(&argc, argv);
        glutInitDisplayMode(18);
        glutInitWindowSize(1024, 768);
        glutInitWindowPosition(100, 100);
        glutGameModeString("1024x768:32@60");
        glutEnterGameMode();
        glViewport(0, 76, 1024, 614);
        glutReshapeFunc(reshape);
        glutIdleFunc(idle_redisplay);
        glutDisplayFunc(warmup_display);
        EXPECT_THROW(glutMainLoop(), recording::ScriptEnded);
    });
    EXPECT_EQ(run.calls, expected);
    EXPECT_FALSE(run.exited);
    EXPECT_EQ(g_game_mode, 1);
}

TEST(Main, InstallsTheCallbacksOfTheWarmUp) {
    run_show("e");
    EXPECT_EQ(recording::callbacks().reshape, &reshape);
    EXPECT_EQ(recording::callbacks().idle, &idle_redisplay);
    EXPECT_EQ(recording::callbacks().display, &warmup_display);
}

TEST(Main, InstallsWhatTheCallbackVariablesHold) {
    g_display_cb = [] {};
    g_idle_cb = [] {};
    g_reshape_cb = [](int, int) {};
    run_show("e");
    EXPECT_EQ(recording::callbacks().display, g_display_cb);
    EXPECT_EQ(recording::callbacks().idle, g_idle_cb);
    EXPECT_EQ(recording::callbacks().reshape, g_reshape_cb);
}

TEST(Main, AsksBeforeItTouchesTheDisplayAndNotesGameModeBeforeItAsksForIt) {
    int english = -1, before = -1, at_the_string = -1;
    recording::observer() = [&](const recording::Call& call) {
        if (call.name == "glutInit") english = g_english;
        if (call.name == "glutInitWindowPosition") before = g_game_mode;
        if (call.name == "glutGameModeString") at_the_string = g_game_mode;
    };
    run_show("e");
    EXPECT_EQ(english, 1);
    EXPECT_EQ(before, 0);
    EXPECT_EQ(at_the_string, 1);
}

TEST(Reshape, ReplacesTheLetterboxByTheWholeSurface) {
    EXPECT_EQ(calls_of([] { reshape(1280, 720); }), calls_of([] {
                  glViewport(0, 0, 1280, 720);
                  glMatrixMode(GL_PROJECTION);
                  glLoadIdentity();
                  gluPerspective(45.0, 1280.0f / 720.0f, 0.1, 100.0);
                  glMatrixMode(GL_MODELVIEW);
                  glLoadIdentity();
              }));
}

TEST(Reshape, ComputesTheAspectInSinglePrecision) {
    const recording::Log calls = recording::only(calls_of([] { reshape(1000, 700); }), "gluPerspective");
    ASSERT_EQ(calls.size(), 1u);
    const double aspect = std::get<double>(calls[0].arguments[1]);
    EXPECT_EQ(aspect, static_cast<double>(1000.0f / 700.0f));
    EXPECT_NE(aspect, 1000.0 / 700.0);
}

TEST(Idle, OnlyPostsARedisplay) { EXPECT_EQ(calls_of(idle_redisplay), calls_of(glutPostRedisplay)); }

TEST(Idle, SoDoesTheSpareOne) { EXPECT_EQ(calls_of(idle_redisplay_spare), calls_of(glutPostRedisplay)); }

TEST(WarmUp, TheFirstHundredCallsDoNothing) {
    EXPECT_TRUE(calls_of([] {
                    for (int i = 0; i < 100; ++i) warmup_display();
                }).empty());
    EXPECT_EQ(recording::callbacks().display, nullptr);
}

TEST(WarmUp, The101stCallInstallsTheLoader) {
    for (int i = 0; i < 100; ++i) warmup_display();
    EXPECT_EQ(calls_of(warmup_display), calls_of([] { glutDisplayFunc(load_show); }));
    EXPECT_EQ(recording::callbacks().display, &load_show);
    EXPECT_EQ(g_warmup_frames, 101);
}

TEST(WarmUp, TheLoaderRunsAtThe102ndDisplayCall) {
    note_scenes();
    recording::script().display_calls = 101;
    EXPECT_EQ(recording::count(run_show("e").calls, "FMOD_System_Create"), 0);
    g_warmup_frames = 0;
    recording::script().display_calls = 102;
    EXPECT_EQ(recording::count(run_show("e").calls, "FMOD_System_Create"), 1);
}
