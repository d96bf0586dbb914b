// What holds for every scene of the table.
#include <GL/gl.h>

#include "show/image/progress.h"
#include "show/stage/show_time.h"
#include "tests/calls/expected_layers.h"
#include "tests/calls/scene_test.h"

namespace {

class Scenes : public testing::Test {
protected:
    void SetUp() override { link_and_prepare_scenes(); }
};

// A scene that draws a room, and the distances at which its fog begins and is full.
struct Room {
    SceneIndex scene;
    float fog_begin, fog_end;
};
constexpr Room kRooms[] = {{kGreetings, 0, 400},
                           {kGyro, 100, 600},
                           {kCross, 100, 600},
                           {kTextScreen, 100, 600},
                           {kScroller, 100, 600}};

} // namespace

TEST_F(Scenes, StopAndReleaseDoNothing) {
    for (const Scene& scene : g_scenes) {
        scene.start();
        EXPECT_TRUE(recording::calls_of(scene.stop).empty()) << &scene - g_scenes;
        EXPECT_TRUE(recording::calls_of(scene.release).empty()) << &scene - g_scenes;
    }
}

TEST_F(Scenes, TheStartOfTheFlatOnesDoesNothing) {
    g_demo_time = 10.0;
    for (SceneIndex scene : {kClear, kFlash, kTitle}) {
        EXPECT_TRUE(recording::calls_of(g_scenes[scene].start).empty()) << scene;
    }
}

TEST_F(Scenes, TheClearTheFlashAndTheCrossPrepareNothing) {
    for (SceneIndex scene : {kClear, kFlash, kCross}) {
        EXPECT_TRUE(recording::calls_of(g_scenes[scene].prepare).empty()) << scene;
    }
}

TEST_F(Scenes, EveryStartOfARoomSetsLightsProjectionAndFog) {
    for (const Room& room : kRooms) {
        for (double time : {0.0, 10.0, 45.5, 77.0}) {
            g_demo_time = time;
            EXPECT_TRUE(same_calls(g_scenes[room.scene].start,
                                   [&room] {
                                       expected::light_and_projection();
                                       expected::fog(room.fog_begin, room.fog_end);
                                   }))
                << "scene " << room.scene << " at " << time << " s";
        }
    }
}
