// Running scenes on the recording host next to what a test expects of them.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "show/driver/scene_table.h"
#include "tests/hosts/recording/recording.h"
#include "tests/support/files.h"

// The GL names of what the scenes make, 0 where nothing was made.
struct Names {
    unsigned title = 0;
    unsigned wall = 0, ribbon = 0, beam = 0, shaft = 0, words = 0; // made by the greetings
    unsigned box = 0;                                              // display list of the greetings
    unsigned glow = 0;                                             // gyro
    unsigned panel = 0;                                            // text screen
    unsigned feedback = 0, bar = 0, poem = 0, film = 0;            // scroller
    unsigned plasma = 0, sign = 0, sprite = 0;                     // scroller
    unsigned sheet = 0;                                            // display list of the scroller
    unsigned credits = 0;
};

// Prepares scenes, in the given order, at show time 0 and without a loading screen; also makes the shared
// quadric.
Names prepare(const std::vector<SceneIndex>& scenes);

// Whether the working directory has a font file that can be opened.
bool has_font(const char* path);

// Whether two logs are the same; says where they part.
testing::AssertionResult same_log(const recording::Log& actual, const recording::Log& expected);

// Runs both from the same state (GL, the render-state cache, the random generator) and compares the calls
// they make, the textures they upload and the state they leave behind. What `actual` left is what stays.
testing::AssertionResult same_calls(const std::function<void()>& actual,
                                    const std::function<void()>& expected);

// The calls of `body` that GL rejects, by name, in order.
std::vector<std::string> rejected_calls_of(const std::function<void()>& body);

// Whether a scene prepares itself with the calls and uploads of `make_textures`, both while every image operation
// redraws the loading screen.
testing::AssertionResult prepares(SceneIndex scene, const std::function<void()>& make_textures);

// A single-precision value, as the scenes pass most angles and alphas.
inline float rounded(double value) { return static_cast<float>(value); }

// Shows the greetings once, prepared before, so that they leave a scroll height of 4900 behind.
void leave_greetings_scrolled();

// One scene, prepared after the `owners` of the textures that it shares. A fixture says what a frame calls.
class SceneTest : public testing::Test {
protected:
    explicit SceneTest(SceneIndex scene, std::vector<SceneIndex> owners = {});

    // What a frame at a show time should call.
    virtual void draw_expected(double time) = 0;

    void start(double time);

    // Starts the scene at a show time until it has been started `pass` times.
    void start_pass(int pass, double time);

    // How many times it has been started.
    int pass() const { return static_cast<int>(starts_.size()); }

    // Seconds since the last start, or the first one, as the scenes count them.
    float seconds_in(double time) const {
        return seconds_since(starts_.empty() ? 0.0 : starts_.back(), time);
    }
    float seconds_since_first_start(double time) const { return seconds_since(starts_.front(), time); }

    // Whether the frame at a show time is as expected.
    testing::AssertionResult frame_is_right(double time);
    void expect_right_frames(std::initializer_list<double> times);

    // The calls of the frame at a show time.
    recording::Log frame(double time) const;

    Names names_;

private:
    static float seconds_since(double start, double time) {
        return rounded(time - static_cast<double>(rounded(start)));
    }

    SceneIndex scene_;
    std::vector<double> starts_;
};

// Another working directory for as long as this lives, empty but for copies of the named files of the one before.
class WorkingFolder {
public:
    explicit WorkingFolder(const std::vector<std::string>& files);
    ~WorkingFolder();
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

private:
    TestFolder folder_;
    std::filesystem::path before_;
};
