#include <GL/glut.h>
#include <gtest/gtest.h>

#include <cmath>

#include "show/driver/frame.h"
#include "show/driver/music.h"
#include "show/driver/timeline.h"
#include "show/stage/render_state.h"
#include "show/stage/show_time.h"
#include "tests/calls/run.h"

using recording::calls_of;
using Names = std::vector<std::string>;

namespace {

// What the timeline does, scene by scene, when show time comes to each of `times` in turn.
Names timeline_at(const std::vector<double>& times) {
    return noted(calls_of([&times] {
        for (double time : times) {
            g_demo_time = time;
            run_timeline();
        }
    }));
}

Names operator+(Names a, const Names& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const Names kCue1 = {"start 1", "start 3", "start 2"};
const Names kCue2 = {"stop 3", "start 3"};
const Names kCue3 = {"stop 2", "stop 3", "start 3"};
const Names kCue4 = {"stop 3", "start 4"};
const Names kRestart4 = {"stop 4", "start 4"};
const Names kCue7 = {"stop 4", "start 5"};
const Names kRestart5 = {"stop 5", "start 5"};
const Names kCue10 = {"stop 5", "start 6"};
const Names kCue11 = {"stop 6", "start 7"};
const Names kCue12 = {"stop 7", "start 7"};
const Names kCue13 = {"stop 7", "start 8"};
const Names kAllButTheEnd = kCue1 + kCue2 + kCue3 + kCue4 + kRestart4 + kRestart4 + kCue7 + kRestart5 +
                            kRestart5 + kCue10 + kCue11 + kCue12 + kCue13;

// Lets the show load and then shows frames at the given positions of the music (ms).
ShowRun run_frames(const std::vector<unsigned>& positions) {
    note_scenes();
    recording::script().positions = positions;
    recording::script().display_calls = kCallsBeforeFrames + static_cast<int>(positions.size());
    return run_show("e");
}

// What is noted of a run from its first frame on, operations of `prepare` left out.
Names noted_in_frames(const ShowRun& run) {
    Names names = noted(run.calls);
    Names frames;
    for (const std::string& name : names) {
        if (name.rfind("prepare", 0) != 0) frames.push_back(name);
    }
    return frames;
}

class Timeline : public testing::Test {
protected:
    void SetUp() override { note_scenes(); }
};

using Frame = Timeline;
using WholeShow = Timeline;

} // namespace

TEST_F(Timeline, ZeroFiresTheFirstCueOnly) {
    EXPECT_EQ(g_cue, -1);
    EXPECT_EQ(timeline_at({0.0}), kCue1);
    EXPECT_EQ(g_cue, 1);
}

TEST_F(Timeline, TheFirstCueSetsUpGlBeforeItStartsScenes) {
    const recording::Log calls = calls_of(run_timeline);
    const recording::Log set_up = calls_of(init_gl_state);
    ASSERT_GT(calls.size(), set_up.size());
    EXPECT_EQ(recording::Log(calls.begin(), calls.begin() + static_cast<long>(set_up.size())), set_up);
}

TEST_F(Timeline, FiresEachCueOnceAtItsTime) {
    const double times[] = {0.0, 6.2, 10.0, 34.0, 40.0, 45.5, 55.0, 56.5, 62.0, 67.5, 74.0, 77.0, 153.0};
    const Names expected[] = {kCue1,     kCue2,     kCue3,  kCue4,  kRestart4, kRestart4, kCue7,
                              kRestart5, kRestart5, kCue10, kCue11, kCue12,    kCue13};
    int cue = 0;
    for (double time : times) {
        if (cue > 0) {
            EXPECT_EQ(timeline_at({std::nextafter(time, 0.0)}), Names{}) << time;
        }
        EXPECT_EQ(timeline_at({time}), expected[cue]) << time;
        EXPECT_EQ(timeline_at({time}), Names{}) << time;
        ++cue;
        EXPECT_EQ(g_cue, cue);
    }
}

TEST_F(Timeline, AJumpFiresEveryCueOnTheWayInOrder) {
    timeline_at({0.0, 5.0});
    EXPECT_EQ(timeline_at({35.0}), kCue2 + kCue3 + kCue4);
    EXPECT_EQ(g_cue, 4);
}

TEST_F(Timeline, AJumpFromTheStartToTheEndFiresEverythingAndExits) {
    g_demo_time = 162.0;
    int status = -1;
    const recording::Log calls = calls_of([&status] {
        try {
            run_timeline();
        } catch (const recording::Exited& end) {
            status = end.status;
        }
    });
    EXPECT_EQ(noted(calls), kAllButTheEnd);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(g_finished, 1);
    EXPECT_EQ(g_cue, 14);
}

TEST_F(Timeline, AStalledClockFiresNothingNew) {
    timeline_at({10.0});
    EXPECT_EQ(timeline_at({10.0, 10.0, 10.0}), Names{});
}

TEST_F(Timeline, AClockThatGoesBackFiresNothingAgain) {
    timeline_at({35.0});
    EXPECT_EQ(timeline_at({5.0, 0.0, 35.0}), Names{});
}

TEST_F(Timeline, AStartedSceneCountsFromTheCuesOwnTime) {
    timeline_at({0.0, 6.5});
    EXPECT_EQ(g_scenes[kGreetings].start_time, 6.2);
    EXPECT_EQ(g_scenes[kTitle].start_time, 0.0);
    timeline_at({10.25});
    EXPECT_EQ(g_scenes[kGreetings].start_time, 10.0);
}

TEST_F(Timeline, ASceneIsMarkedAfterItsStartAndUnmarkedAfterItsStop) {
    const recording::Log calls = calls_of([] {
        for (double time : {0.0, 6.25}) {
            g_demo_time = time;
            run_timeline();
        }
    });
    const recording::Log starts = recording::only(calls, "start 3");
    const recording::Log stops = recording::only(calls, "stop 3");
    ASSERT_EQ(starts.size(), 2u);
    ASSERT_EQ(stops.size(), 1u);
    EXPECT_EQ(starts[0], (recording::Call{"start 3", {0.0, 0.0}}));
    EXPECT_EQ(stops[0], (recording::Call{"stop 3", {1.0, 0.0}}));
    EXPECT_EQ(starts[1], (recording::Call{"start 3", {0.0, 0.0}})); // still the time of the start before
    EXPECT_EQ(g_scenes[kGreetings].start_time, 6.2);
}

TEST_F(Timeline, StopAndStartKeepTheActiveFlag) {
    timeline_at({0.0});
    EXPECT_EQ(g_scenes[kFlash].active, 1);
    EXPECT_EQ(g_scenes[kTitle].active, 1);
    EXPECT_EQ(g_scenes[kGreetings].active, 1);
    timeline_at({10.0});
    EXPECT_EQ(g_scenes[kTitle].active, 0);
    EXPECT_EQ(g_scenes[kGreetings].active, 1);
    timeline_at({153.0});
    for (const Scene& scene : g_scenes) {
        const bool expected = &scene == &g_scenes[kFlash] || &scene == &g_scenes[kCredits];
        EXPECT_EQ(scene.active, expected ? 1 : 0) << &scene - g_scenes;
    }
}

TEST_F(Timeline, AnInactiveSceneIsNotStoppedAndAnActiveOneNotStartedAgain) {
    timeline_at({0.0});
    g_scenes[kTitle].active = 0;
    EXPECT_EQ(timeline_at({10.0}), kCue2 + Names({"stop 3", "start 3"}));
    g_scenes[kGyro].active = 1;
    g_scenes[kGyro].start_time = -1.0;
    EXPECT_EQ(timeline_at({34.0}), Names{"stop 3"});
    EXPECT_EQ(g_scenes[kGyro].start_time, -1.0);
}

TEST_F(Timeline, TheVocalFileIsOpenedWhenItsCueFiresAndBeforeTheScenesChange) {
    music_open();
    music_play();
    timeline_at({73.999});
    EXPECT_EQ(g_vocal, 0);
    g_demo_time = 74.0;
    const recording::Log calls = calls_of(run_timeline);
    Names names;
    for (const recording::Call& call : calls) names.push_back(call.name);
    EXPECT_EQ(names, (Names{"FMOD_Sound_Release", "FMOD_System_CreateSound", "FMOD_System_PlaySound",
                            "stop 6", "start 7"}));
    EXPECT_EQ(g_vocal, 1);
}

TEST_F(Frame, TheFirstDrawsTitleThenGreetingsThenFlash) {
    const ShowRun run = run_frames({0});
    EXPECT_EQ(noted_in_frames(run), kCue1 + Names({"render 2", "render 3", "render 1"}));
}

TEST_F(Frame, EndsWithAFlushAndASwap) {
    const ShowRun run = run_frames({0, 5000});
    recording::Log tail(run.calls.end() - 3, run.calls.end());
    EXPECT_EQ(tail, calls_of([] {
                  glFlush();
                  glutSwapBuffers();
                  glutPostRedisplay();
              }));
}

TEST_F(Frame, TurnsThePositionIntoSecondsInDoublePrecision) {
    run_frames({12345});
    EXPECT_EQ(g_demo_time, 12345.0f * 0.001);
}

TEST_F(Frame, GivesEachSceneItsLocalTime) {
    const ShowRun run = run_frames({0, 6500});
    const recording::Log title = recording::only(run.calls, "render 2");
    const recording::Log greetings = recording::only(run.calls, "render 3");
    ASSERT_EQ(title.size(), 2u);
    ASSERT_EQ(greetings.size(), 2u);
    const double now = 6500.0f * 0.001;
    EXPECT_EQ(title[1], (recording::Call{"render 2", {now - 0.0, now}}));
    EXPECT_EQ(greetings[1], (recording::Call{"render 3", {now - 6.2, now}}));
}

TEST_F(Frame, SkipsInactiveScenesWithoutTouchingTheSceneTime) {
    link_and_prepare_scenes();
    g_cue = 14;
    g_scene_time = 123.0;
    show_frame();
    EXPECT_EQ(g_scene_time, 123.0);
}

TEST_F(Frame, CopesWithASceneThatHasNoRender) {
    link_and_prepare_scenes();
    g_scenes[kTitle].render = nullptr;
    EXPECT_EQ(noted(calls_of(show_frame)), kCue1 + Names({"render 3", "render 1"}));
}

TEST_F(Frame, AfterTheEndDoesNothing) {
    g_finished = 1;
    EXPECT_TRUE(calls_of(show_frame).empty());
}

TEST_F(Frame, IsTheClockTheScenesAFlushAndASwapAndNothingElse) {
    link_and_prepare_scenes();
    show_frame(); // the cue that sets up GL
    Names names;
    for (const recording::Call& call : calls_of(show_frame)) names.push_back(call.name);
    EXPECT_EQ(names, (Names{"FMOD_Channel_GetPosition", "render 2", "render 3", "render 1", "glFlush",
                            "glutSwapBuffers"}));
}

TEST_F(Frame, ReadsTheClockBeforeItsCuesFire) {
    const recording::Log calls = run_frames({0, 6200}).calls;
    size_t read = 0, start = 0;
    for (size_t i = 0; i < calls.size(); ++i) {
        if (calls[i].name == "FMOD_Channel_GetPosition") read = i;
        if (calls[i].name == "start 3") start = i;
    }
    EXPECT_LT(read, start);
}

TEST_F(WholeShow, OpensTheVocalFileAtItsCueAndNotBefore) {
    const recording::Log calls = run_frames({0, 67500, 73999, 74000, 0}).calls;
    std::vector<std::string> opened; // each with the frames that had begun
    int frames = 0;
    for (const recording::Call& call : calls) {
        if (call.name == "FMOD_Channel_GetPosition") ++frames;
        if (call.name != "FMOD_System_CreateSound") continue;
        opened.push_back(std::get<std::string>(call.arguments.at(1)) + " " + std::to_string(frames));
    }
    EXPECT_EQ(opened, (std::vector<std::string>{"zev.mp3 0", "zev_voc.mp3 4"}));
    EXPECT_EQ(g_demo_time, 74.3);
}

TEST_F(WholeShow, EndsWithStatusZeroBeforeAnySceneOfThatFrameIsDrawn) {
    const ShowRun run = run_frames({0, 162000});
    EXPECT_TRUE(run.exited);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(noted_in_frames(run), kCue1 + Names({"render 2", "render 3", "render 1"}) +
                                        Names(kAllButTheEnd.begin() + 3, kAllButTheEnd.end()));
    EXPECT_EQ(run.calls.back().name, "start 8");
}

TEST_F(WholeShow, GoesOnFromTheVocalFileAtItsOffset) {
    // 73.99 s, the switch at 74.0 s, then the vocal file from its start: the clock jumps ahead by 0.3 s.
    const ShowRun run = run_frames({0, 73990, 74000, 0, 2699, 2700, 78700, 87699, 87700});
    const recording::Log scroller = recording::only(run.calls, "render 7");
    const auto at = [](unsigned ms) { return static_cast<float>(ms) * 0.001; };
    ASSERT_EQ(scroller.size(), 4u);
    EXPECT_EQ(scroller[0], (recording::Call{"render 7", {at(74000) - 74.0, at(74000)}}));
    EXPECT_EQ(scroller[1], (recording::Call{"render 7", {at(74300) - 74.0, at(74300)}}));
    EXPECT_EQ(scroller[2], (recording::Call{"render 7", {at(76999) - 74.0, at(76999)}}));
    EXPECT_EQ(scroller[3], (recording::Call{"render 7", {at(77000) - 77.0, at(77000)}})); // restarted
    EXPECT_EQ(recording::count(run.calls, "render 8"), 2);                                // 153.0, 161.999
    EXPECT_TRUE(run.exited);
    EXPECT_EQ(run.status, 0);
}

TEST_F(WholeShow, WithoutMusicItStandsOnItsFirstCue) {
    recording::script().missing_files = {"zev.mp3"};
    const ShowRun run = run_frames({1000, 2000, 3000, 4000});
    EXPECT_FALSE(run.exited);
    EXPECT_EQ(g_cue, 1);
    EXPECT_EQ(g_demo_time, 0.0);
    EXPECT_EQ(recording::count(run.calls, "render 2"), 4);
}

TEST_F(WholeShow, WithoutTheVocalFileItStandsAtTheSwitch) {
    recording::script().missing_files = {"zev_voc.mp3"};
    const ShowRun run = run_frames({0, 74000, 74100, 74200});
    EXPECT_FALSE(run.exited);
    EXPECT_EQ(g_cue, 11);
    EXPECT_EQ(g_demo_time, 74300.0f * 0.001); // position 0 of a file that is not there
}

TEST(Shutdown, ReleasesTheMusicAndEveryLinkedScene) {
    note_scenes();
    link_and_prepare_scenes();
    music_open();
    g_scenes[kGyro].release = nullptr;
    const recording::Log calls = calls_of(shutdown_scenes);
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls[0].name, "FMOD_Sound_Release");
    EXPECT_EQ(noted(calls), (Names{"release 2", "release 3", "release 5", "release 6", "release 7",
                                   "release 8", "release 1"}));
}
