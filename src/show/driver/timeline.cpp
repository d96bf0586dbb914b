#include "show/driver/timeline.h"

#include <cstdlib>

#include "show/driver/music.h"
#include "show/driver/scene_table.h"
#include "show/stage/render_state.h"
#include "show/stage/show_time.h"

int g_cue = -1;
int g_finished = 0;

namespace {

enum class Verb { kNone, kStart, kStop, kCall };

struct Action {
    Verb verb = Verb::kNone;
    SceneIndex scene = kClear; // what kStart and kStop act on
    void (*call)() = nullptr;  // what kCall calls
};

struct Cue {
    double time; // seconds of show time
    Action actions[4];
};

constexpr Action start(SceneIndex scene) { return {Verb::kStart, scene, nullptr}; }
constexpr Action stop(SceneIndex scene) { return {Verb::kStop, scene, nullptr}; }
constexpr Action call(void (*function)()) { return {Verb::kCall, kClear, function}; }

// Ends the process without any clean-up: nothing is stopped or released, game mode is not left.
void finish() {
    g_finished = 1;
    std::exit(0);
}

// Cues 1 to 14. A stop and a start of the same scene restart it: its next pass begins.
const Cue kCues[] = {
    {0.0, {call(init_gl_state), start(kFlash), start(kGreetings), start(kTitle)}},
    {6.2, {stop(kGreetings), start(kGreetings)}},
    {10.0, {stop(kTitle), stop(kGreetings), start(kGreetings)}},
    {34.0, {stop(kGreetings), start(kGyro)}},
    {40.0, {stop(kGyro), start(kGyro)}},
    {45.5, {stop(kGyro), start(kGyro)}},
    {55.0, {stop(kGyro), start(kCross)}},
    {56.5, {stop(kCross), start(kCross)}},
    {62.0, {stop(kCross), start(kCross)}},
    {67.5, {stop(kCross), start(kTextScreen)}},
    {74.0, {call(music_switch_to_vocal), stop(kTextScreen), start(kScroller)}},
    {77.0, {stop(kScroller), start(kScroller)}},
    {153.0, {stop(kScroller), start(kCredits)}},
    {162.0, {call(finish)}},
};

// Carries out one action of a cue. Starting an active scene and stopping an inactive one do nothing.
void perform(const Action& action, double time) {
    Scene& scene = g_scenes[action.scene];
    switch (action.verb) {
    case Verb::kNone:
        break;
    case Verb::kStart:
        if (scene.active) break;
        scene.start();
        scene.active = 1;
        scene.start_time = time;
        break;
    case Verb::kStop:
        if (!scene.active) break;
        scene.stop();
        scene.active = 0;
        break;
    case Verb::kCall:
        action.call();
        break;
    }
}

} // namespace

void run_timeline() {
    int number = 0;
    for (const Cue& cue : kCues) {
        ++number;
        if (g_cue >= number || g_demo_time < cue.time) continue;
        g_cue = number;
        for (const Action& action : cue.actions) perform(action, cue.time);
    }
}
