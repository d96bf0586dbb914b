// CPU time of the show's own code per frame: every scene at moments of each of its passes, on a host whose GL
// functions do nothing. Every benchmark also times as many calls of an empty GL function as the frame makes, and
// reports `x_calls`, the quotient of the shortest times of both: the figure to compare between machines and commits.
// A scene that computes nothing would have 1. `calls` is the number of calls per frame.
#include <GL/gl.h>
#include <GL/glu.h>
#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "show/driver/scene_table.h"
#include "show/stage/shapes.h"
#include "show/stage/show_time.h"
#include "tests/hosts/recording/recording.h"

namespace {

// A start of a scene and moments of the pass that it begins, in seconds of show time.
struct Pass {
    SceneIndex scene;
    const char* name;
    int number; // of the pass, from 1
    double start;
    std::vector<double> moments;
};

const std::vector<Pass>& passes() {
    static const std::vector<Pass> all = {
        {kFlash, "flash", 1, 0.0, {28.25}},
        {kTitle, "title", 1, 0.0, {3.0, 7.0}},
        {kGreetings, "greetings", 1, 0.0, {3.0}},
        {kGreetings, "greetings", 2, 6.2, {8.0}},
        {kGreetings, "greetings", 3, 10.0, {10.5, 14.0, 20.0, 33.0}},
        {kGyro, "gyro", 1, 34.0, {37.0}},
        {kGyro, "gyro", 2, 40.0, {43.0}},
        {kGyro, "gyro", 3, 45.5, {50.0}},
        {kCross, "cross", 1, 55.0, {55.5, 56.2}},
        {kCross, "cross", 2, 56.5, {59.0}},
        {kCross, "cross", 3, 62.0, {65.0}},
        {kTextScreen, "text_screen", 1, 67.5, {70.0}},
        {kScroller, "scroller", 1, 74.0, {75.0}},                           // the text screen fades out
        {kScroller, "scroller", 2, 77.0, {80.0, 90.0, 98.0, 112.0, 118.0}}, // bars, plasma, sprites, stars
        {kScroller, "scroller", 2, 77.0, {125.0, 136.0, 142.5, 148.0}},     // sprites, sign, cube, room
        {kCredits, "credits", 1, 153.0, {154.0, 158.0, 161.0}},
    };
    return all;
}

void prepare_show() {
    static const bool prepared = [] {
        recording::set_logging(false);
        g_quadric = gluNewQuadric();
        link_and_prepare_scenes();
        return true;
    }();
    (void)prepared;
}

// Scenes count their starts and cannot be reset, so passes are measured in ascending order.
void start_pass(const Pass& pass) {
    static int starts[kSceneCount];
    for (; starts[pass.scene] < pass.number; ++starts[pass.scene]) {
        g_demo_time = pass.start;
        g_scenes[pass.scene].start();
    }
}

// CPU time of this thread, which does not depend on what else the machine does.
double seconds_used() {
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

template <class Work>
double seconds_of(const Work& work) {
    const double begin = seconds_used();
    work();
    return seconds_used() - begin;
}

void render_frame(benchmark::State& state, const Pass& pass, double moment) {
    prepare_show();
    start_pass(pass);
    g_demo_time = moment;
    const auto render = g_scenes[pass.scene].render;

    recording::set_logging(true);
    const size_t calls = recording::calls_of(render).size();
    recording::set_logging(false);

    double frame = std::numeric_limits<double>::infinity();
    double bare = std::numeric_limits<double>::infinity();
    for (auto _ : state) {
        const double seconds = seconds_of(render);
        state.SetIterationTime(seconds);
        frame = std::min(frame, seconds);
        bare = std::min(bare, seconds_of([calls] {
                            for (size_t i = 0; i < calls; ++i) {
                                const double x = static_cast<double>(i);
                                glVertex3d(x, x, x);
                            }
                        }));
    }
    state.counters["calls"] = static_cast<double>(calls);
    state.counters["x_calls"] = frame / bare;
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    for (const Pass& pass : passes()) {
        for (double moment : pass.moments) {
            std::string name = pass.name + std::string("/pass ") + std::to_string(pass.number) + "/second ";
            name += std::to_string(moment).substr(0, std::to_string(moment).find('.') + 3);
            benchmark::RegisterBenchmark(name.c_str(), render_frame, pass, moment)
                ->UseManualTime()
                ->Iterations(200)
                ->Unit(benchmark::kMicrosecond);
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
