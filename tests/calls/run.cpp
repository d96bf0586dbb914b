#include "tests/calls/run.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <utility>

#include "show/stage/show_time.h"

int show_main(int argc, char** argv);

namespace {

// Standard input made of a text, for as long as this lives.
class TypedInput {
public:
    explicit TypedInput(const std::string& text) : saved_(dup(STDIN_FILENO)) {
        int ends[2];
        if (pipe(ends) != 0) std::abort();
        if (write(ends[1], text.data(), text.size()) != static_cast<ssize_t>(text.size())) std::abort();
        close(ends[1]);
        dup2(ends[0], STDIN_FILENO);
        close(ends[0]);
        std::clearerr(stdin);
        std::setvbuf(stdin, nullptr, _IONBF, 0); // nothing of one input is left for the next
    }
    ~TypedInput() {
        dup2(saved_, STDIN_FILENO);
        close(saved_);
    }
    TypedInput(const TypedInput&) = delete;
    TypedInput& operator=(const TypedInput&) = delete;

private:
    int saved_;
};

void note(const char* operation, int scene, std::vector<recording::Argument> arguments = {}) {
    recording::log().push_back({operation + std::string(" ") + std::to_string(scene), std::move(arguments)});
}

std::vector<recording::Argument> state_of(int scene) {
    return {static_cast<double>(g_scenes[scene].active), g_scenes[scene].start_time};
}

template <int scene>
Scene noting_scene() {
    return {[] { note("prepare", scene); },
            [] { note("start", scene, state_of(scene)); },
            [] {
                note("render", scene, {g_scene_time, g_demo_time});
            },
            [] { note("stop", scene, state_of(scene)); },
            [] { note("release", scene); },
            0,
            0.0,
            nullptr};
}

template <int... scenes>
void note_scenes_of(std::integer_sequence<int, scenes...>) {
    ((g_scenes[scenes] = noting_scene<scenes>()), ...);
}

} // namespace

ShowRun run_show(const std::string& typed) {
    ShowRun run;
    TypedInput input(typed);
    recording::log().clear();
    testing::internal::CaptureStdout();
    char name[] = "skav";
    char* argv[] = {name, nullptr};
    try {
        show_main(1, argv);
    } catch (const recording::ScriptEnded&) {
    } catch (const recording::Exited& end) {
        run.exited = true;
        run.status = end.status;
    }
    run.output = testing::internal::GetCapturedStdout();
    run.calls = recording::log();
    return run;
}

void note_scenes() { note_scenes_of(std::make_integer_sequence<int, kSceneCount>()); }

std::vector<std::string> noted(const recording::Log& calls) {
    std::vector<std::string> found;
    for (const recording::Call& call : calls) {
        if (call.name.find(' ') != std::string::npos) found.push_back(call.name);
    }
    return found;
}
