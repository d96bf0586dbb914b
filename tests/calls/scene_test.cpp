#include "tests/calls/scene_test.h"

#include <GL/glu.h>

#include <sstream>
#include <utility>

#include "show/image/progress.h"
#include "show/image/random.h"
#include "show/stage/loading_screen.h"
#include "show/stage/render_state.h"
#include "show/stage/shapes.h"
#include "show/stage/show_time.h"
#include "show/text/text.h"

namespace {

// The part of the show's state that outlives a frame and that every scene shares.
struct SharedState {
    recording::GlModel gl = recording::save_gl();
    int render_state = g_render_state;
    RandomState random = g_random;

    void restore() const {
        recording::restore_gl(gl);
        g_render_state = render_state;
        g_random = random;
    }
};

bool operator==(const RandomState& a, const RandomState& b) {
    return a.s1 == b.s1 && a.s2 == b.s2 && a.s3 == b.s3;
}

void print(std::ostream& out, const recording::Log& calls, size_t index) {
    if (index < calls.size()) {
        out << calls[index];
    } else {
        out << "(end)";
    }
}

testing::AssertionResult same_uploads(const std::vector<recording::Upload>& actual,
                                      const std::vector<recording::Upload>& expected) {
    for (size_t i = 0; i < actual.size() && i < expected.size(); ++i) {
        if (actual[i].texture != expected[i].texture || actual[i].pixels != expected[i].pixels) {
            return testing::AssertionFailure() << "upload " << i << " differs";
        }
    }
    if (actual.size() == expected.size()) return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << actual.size() << " uploads where " << expected.size() << " were expected";
}

} // namespace

Names prepare(const std::vector<SceneIndex>& scenes) {
    Names names;
    if (!g_quadric) g_quadric = gluNewQuadric();
    g_demo_time = 0.0;
    for (SceneIndex scene : scenes) {
        const recording::GlModel before = recording::save_gl();
        g_scenes[scene].prepare();
        const unsigned texture = before.next_texture;
        const unsigned list = before.next_list;
        switch (scene) {
        case kTitle:
            names.title = texture;
            break;
        case kGreetings:
            names.wall = texture;
            names.ribbon = texture + 1;
            names.beam = texture + 2;
            names.shaft = texture + 3;
            names.words = texture + 4;
            names.box = list;
            break;
        case kGyro:
            names.glow = texture;
            break;
        case kTextScreen:
            names.panel = texture;
            break;
        case kScroller:
            names.feedback = texture;
            names.bar = texture + 1;
            names.poem = texture + 2;
            names.film = texture + 3;
            names.plasma = texture + 4;
            names.sign = texture + 5;
            names.sprite = texture + 6;
            names.sheet = list;
            break;
        case kCredits:
            names.credits = texture;
            break;
        default:
            break;
        }
    }
    return names;
}

bool has_font(const char* path) {
    Font* font = font_load(path);
    font_free(font);
    return font != nullptr;
}

testing::AssertionResult same_log(const recording::Log& actual, const recording::Log& expected) {
    size_t at = 0;
    while (at < actual.size() && at < expected.size() && actual[at] == expected[at]) ++at;
    if (at == actual.size() && at == expected.size()) return testing::AssertionSuccess();
    std::ostringstream text;
    text << "calls differ from number " << at << " on (" << actual.size() << " calls, " << expected.size()
         << " expected)\n";
    for (size_t i = at < 4 ? 0 : at - 4; i < at; ++i) {
        text << "      both: ";
        print(text, expected, i);
        text << '\n';
    }
    for (size_t i = at; i < at + 3; ++i) {
        text << "    actual: ";
        print(text, actual, i);
        text << "\n  expected: ";
        print(text, expected, i);
        text << '\n';
    }
    return testing::AssertionFailure() << text.str();
}

testing::AssertionResult same_calls(const std::function<void()>& actual,
                                    const std::function<void()>& expected) {
    const SharedState before;
    const recording::Log expected_calls = recording::calls_of(expected);
    const SharedState expected_after;
    before.restore();
    const recording::Log actual_calls = recording::calls_of(actual);
    const SharedState after;

    if (auto same = same_log(actual_calls, expected_calls); !same) return same;
    if (auto same = same_uploads(after.gl.uploads, expected_after.gl.uploads); !same) return same;
    if (after.render_state != expected_after.render_state) {
        return testing::AssertionFailure() << "the render-state cache is left at " << after.render_state
                                           << " instead of " << expected_after.render_state;
    }
    if (!(after.random == expected_after.random)) {
        return testing::AssertionFailure() << "the random generator is left in another state";
    }
    return testing::AssertionSuccess();
}

std::vector<std::string> rejected_calls_of(const std::function<void()>& body) {
    const size_t before = recording::errors().size();
    recording::calls_of(body);
    std::vector<std::string> names;
    for (size_t i = before; i < recording::errors().size(); ++i) names.push_back(recording::errors()[i].name);
    return names;
}

testing::AssertionResult prepares(SceneIndex scene, const std::function<void()>& make_textures) {
    g_progress_hook = loading_step;
    const testing::AssertionResult same = same_calls(g_scenes[scene].prepare, make_textures);
    g_progress_hook = nullptr;
    return same;
}

void leave_greetings_scrolled() {
    g_demo_time = 10.0;
    for (int pass = 1; pass <= 3; ++pass) g_scenes[kGreetings].start();
    g_demo_time = 34.0;
    g_scenes[kGreetings].render();
}

SceneTest::SceneTest(SceneIndex scene, std::vector<SceneIndex> owners) : scene_(scene) {
    owners.push_back(scene);
    names_ = prepare(owners);
}

void SceneTest::start(double time) {
    g_demo_time = time;
    g_scenes[scene_].start();
    starts_.push_back(time);
}

void SceneTest::start_pass(int pass, double time) {
    while (this->pass() < pass) start(time);
}

testing::AssertionResult SceneTest::frame_is_right(double time) {
    g_demo_time = time;
    return same_calls(g_scenes[scene_].render, [this, time] { draw_expected(time); });
}

void SceneTest::expect_right_frames(std::initializer_list<double> times) {
    for (double time : times) EXPECT_TRUE(frame_is_right(time)) << "at " << time << " s";
}

recording::Log SceneTest::frame(double time) const {
    g_demo_time = time;
    return recording::calls_of(g_scenes[scene_].render);
}

WorkingFolder::WorkingFolder(const std::vector<std::string>& files)
    : before_(std::filesystem::current_path()) {
    for (const std::string& file : files) std::filesystem::copy(file, folder_ / file);
    std::filesystem::current_path(folder_.path());
}

WorkingFolder::~WorkingFolder() { std::filesystem::current_path(before_); }
