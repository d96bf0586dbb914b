#include <GL/glu.h>
#include <GL/glut.h>
#include <gtest/gtest.h>

#include "show/driver/frame.h"
#include "show/driver/loading.h"
#include "show/image/progress.h"
#include "show/scenes/scenes.h"
#include "show/stage/loading_screen.h"
#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/shapes.h"
#include "tests/calls/run.h"

using recording::calls_of;

namespace {

// The names of the calls that order the loading, one for each run of the same.
std::vector<std::string> milestones(const recording::Log& calls) {
    std::vector<std::string> names;
    for (const recording::Call& call : calls) {
        const bool counts = call.name.find(' ') != std::string::npos || call.name.rfind("FMOD", 0) == 0 ||
                            call.name.rfind("glut", 0) == 0 || call.name == "gluNewQuadric";
        if (counts) names.push_back(call.name);
    }
    return names;
}

} // namespace

TEST(Loading, PreparesEveryLinkedSceneInRenderOrder) {
    note_scenes();
    EXPECT_EQ(noted(calls_of(link_and_prepare_scenes)),
              (std::vector<std::string>{"prepare 2", "prepare 3", "prepare 4", "prepare 5", "prepare 6",
                                        "prepare 7", "prepare 8", "prepare 1"}));
}

TEST(Loading, LinksEachSceneJustBeforeItIsPrepared) {
    note_scenes();
    static std::vector<size_t> linked; // length of the list as each prepare sees it
    for (Scene& scene : g_scenes) {
        scene.prepare = [] {
            size_t length = 0;
            for (const Scene* s = g_scene_list; s; s = s->next) ++length;
            linked.push_back(length);
        };
    }
    link_and_prepare_scenes();
    EXPECT_EQ(linked, (std::vector<size_t>{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(Loading, TheRenderListEndsWithTheFlashAndLeavesOutTheClearScene) {
    note_scenes();
    link_and_prepare_scenes();
    std::vector<long> list;
    for (const Scene* scene = g_scene_list; scene; scene = scene->next) list.push_back(scene - g_scenes);
    EXPECT_EQ(list, (std::vector<long>{2, 3, 4, 5, 6, 7, 8, 1}));
}

TEST(Loading, HappensInOrder) {
    note_scenes();
    const std::vector<std::string> names = milestones(calls_of(load_show));
    const std::vector<std::string> expected = {
        // the loading picture shows itself, one more step, and one more swap
        "glutSwapBuffers", "glutSwapBuffers", "glutSwapBuffers",
        // the music is opened
        "FMOD_System_Create", "FMOD_System_Init", "FMOD_System_CreateSound",
        // the scenes are prepared
        "gluNewQuadric", "prepare 2", "prepare 3", "prepare 4", "prepare 5", "prepare 6", "prepare 7",
        "prepare 8", "prepare 1",
        // the music plays, the show begins
        "FMOD_System_PlaySound", "glutDisplayFunc"};
    EXPECT_EQ(names, expected);
    EXPECT_EQ(recording::callbacks().display, g_frame_fn);
    EXPECT_EQ(g_frame_fn, &show_frame);
    EXPECT_EQ(g_in_loading, 0);
    EXPECT_EQ(g_loading_steps, 2);
    EXPECT_NE(g_quadric, nullptr);
}

TEST(Loading, MakesNoOtherCalls) {
    note_scenes();
    g_frame_fn = [] {};
    const recording::Log calls = calls_of(load_show);
    EXPECT_EQ(recording::callbacks().display, g_frame_fn); // what the variable holds
    size_t music = 0;
    while (music < calls.size() && calls[music].name != "FMOD_System_Create") ++music;
    std::vector<std::string> names;
    for (; music < calls.size(); ++music) names.push_back(calls[music].name);
    EXPECT_EQ(names, (std::vector<std::string>{
                         "FMOD_System_Create", "FMOD_System_Init", "FMOD_System_CreateSound", "gluNewQuadric",
                         "prepare 2", "prepare 3", "prepare 4", "prepare 5", "prepare 6", "prepare 7",
                         "prepare 8", "prepare 1", "FMOD_System_PlaySound", "glutDisplayFunc"}));
}

TEST(Loading, IsMarkedAndHookedUntilEverySceneIsPrepared) {
    note_scenes();
    EXPECT_EQ(g_in_loading, 1);
    static int in_loading = 0;
    static void (*hook)() = nullptr;
    for (Scene& scene : g_scenes) {
        scene.prepare = [] {
            in_loading += g_in_loading;
            hook = g_progress_hook;
        };
    }
    int while_starting_the_music = -1;
    recording::observer() = [&](const recording::Call& call) {
        if (call.name == "FMOD_System_PlaySound") while_starting_the_music = g_in_loading;
    };
    load_show();
    EXPECT_EQ(in_loading, 8);
    EXPECT_EQ(hook, &loading_step);
    EXPECT_EQ(while_starting_the_music, 0);
}

TEST(SceneTable, StandsInItsOrderWithNothingActive) {
    void (*const renders[])() = {clear_render,       flash_render,    title_render,
                                 greetings_render,   gyro_render,     cross_render,
                                 text_screen_render, scroller_render, credits_render};
    for (int i = 0; i < kSceneCount; ++i) {
        EXPECT_EQ(g_scenes[i].render, renders[i]) << i;
        EXPECT_EQ(g_scenes[i].active, 0) << i;
        EXPECT_EQ(g_scenes[i].start_time, 0.0) << i;
        EXPECT_EQ(g_scenes[i].next, nullptr) << i;
    }
    EXPECT_EQ(g_scene_list, nullptr);
}

TEST(Loading, FlushesBeforeTheExtraSwap) {
    note_scenes();
    const recording::Log calls = calls_of(load_show);
    const recording::Log before_music = calls_of([] {
        draw_loading_screen();
        glFlush();
        glutSwapBuffers();
    });
    size_t music = 0;
    while (music < calls.size() && calls[music].name != "FMOD_System_Create") ++music;
    ASSERT_LT(music, calls.size());
    ASSERT_GE(music, before_music.size());
    const auto end = calls.begin() + static_cast<long>(music);
    EXPECT_EQ(recording::Log(end - static_cast<long>(before_music.size()), end), before_music);
}

TEST(Loading, ImageOperationsRedrawTheLoadingScreen) {
    note_scenes();
    EXPECT_EQ(g_progress_hook, nullptr);
    load_show();
    EXPECT_EQ(g_progress_hook, &loading_step);
    const int steps = g_loading_steps;
    EXPECT_EQ(calls_of(report_progress), calls_of(draw_loading_screen));
    EXPECT_EQ(g_loading_steps, steps + 1);
}

TEST(Loading, NothingIsDrawnByAnImageLibraryWithoutAHook) { EXPECT_TRUE(calls_of(report_progress).empty()); }

TEST(LoadingScreen, DrawsThePictureWithItsSurplusPop) {
    g_loading_texture = 77;
    EXPECT_EQ(calls_of(draw_loading_screen), calls_of([] {
                  glClearColor(1, 1, 1, 0);
                  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
                  glLoadIdentity();
                  begin_2d();
                  glEnable(GL_TEXTURE_2D);
                  glBindTexture(GL_TEXTURE_2D, 77);
                  glColor3f(2.0f, 2.0f, 2.0f);
                  glDisable(GL_BLEND);
                  glDisable(GL_LIGHTING);
                  glDepthMask(GL_FALSE);
                  glBegin(GL_QUADS);
                  glTexCoord2i(0, 0);
                  glVertex3i(307, 256, 1);
                  glTexCoord2i(0, 1);
                  glVertex3i(307, 512, 1);
                  glTexCoord2i(1, 1);
                  glVertex3i(717, 512, 1);
                  glTexCoord2i(1, 0);
                  glVertex3i(717, 256, 1);
                  glEnd();
                  end_2d();
                  glDepthMask(GL_TRUE);
                  glEnable(GL_LIGHTING);
                  glDisable(GL_TEXTURE_2D);
                  glDisable(GL_BLEND);
                  end_2d();
                  glFlush();
                  glutSwapBuffers();
              }));
}

TEST(LoadingScreen, LeavesAStackUnderflowBehind) {
    draw_loading_screen();
    EXPECT_EQ(recording::pending_error(), static_cast<unsigned>(GL_STACK_UNDERFLOW));
    EXPECT_EQ(recording::errors().size(), 2u); // one a stack: projection and modelview
}

TEST(LoadingScreen, BypassesTheRenderStateCache) {
    set_render_state(kTexture | kBlend);
    draw_loading_screen();
    EXPECT_EQ(g_render_state, kTexture | kBlend);
}
