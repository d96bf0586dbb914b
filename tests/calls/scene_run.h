// Running scenes on the recording host next to what a test expects of them.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "show/driver/scene_table.h"
#include "tests/hosts/recording/recording.h"

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

// Starts and renders a scene of the table at a show time.
void start_at(SceneIndex scene, double time);
void render_at(SceneIndex scene, double time);

// Whether two logs are the same; says where they part.
testing::AssertionResult same_log(const recording::Log& actual, const recording::Log& expected);

// Runs both from the same state (GL, the render-state cache, the random generator) and compares the calls
// they make, the textures they upload and the state they leave behind. What `actual` left is what stays.
testing::AssertionResult same_calls(const std::function<void()>& actual,
                                    const std::function<void()>& expected);

// The modes in which the textures made in `calls` leave their second axis, in order: GL_REPEAT,
// GL_CLAMP_TO_EDGE or GL_CLAMP.
std::vector<unsigned> wrap_modes(const recording::Log& calls);

// The calls of `body` that GL rejects, by name, in order.
std::vector<std::string> rejected_calls_of(const std::function<void()>& body);

// Another working directory, empty but for copies of the named files of the one before, for as long as this
// lives.
class TemporaryDirectory {
public:
    explicit TemporaryDirectory(const std::vector<std::string>& files);
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

private:
    std::filesystem::path before_;
    std::filesystem::path here_;
};
