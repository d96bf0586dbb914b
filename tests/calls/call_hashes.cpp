// Plays the whole show at a few frames a second and prints a hash of its calls about every ten seconds, to compare two
// builds. The language is read from standard input; the fonts are in the working directory.
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <string>

#include "tests/calls/run.h"

int show_main(int argc, char** argv);

namespace {

constexpr unsigned kFrameMs = 370;
constexpr unsigned kFramesPerLine = 27;

// The calls since the last line: their number and an FNV-1a hash.
struct Calls {
    std::uint64_t count = 0;
    std::uint64_t hash = 0xcbf29ce484222325u;

    void add(const void* data, std::size_t size) {
        const unsigned char* bytes = static_cast<const unsigned char*>(data);
        for (std::size_t i = 0; i < size; ++i) hash = (hash ^ bytes[i]) * 0x100000001b3u;
    }

    void add(const recording::Call& call) {
        ++count;
        add(call.name.data(), call.name.size() + 1);
        for (const recording::Argument& argument : call.arguments) {
            if (const double* number = std::get_if<double>(&argument)) {
                add(number, sizeof *number);
            } else {
                const std::string& text = std::get<std::string>(argument);
                add(text.data(), text.size() + 1);
            }
        }
    }

    void print() {
        std::printf("calls: %" PRIu64 ", %016" PRIx64 "\n", count, hash);
        *this = {};
    }
};

} // namespace

int main() {
    // The files' positions from the first file's start to the switch, and from the second one's to the end.
    recording::Script& script = recording::script();
    for (unsigned ms = 0; ms < 74000; ms += kFrameMs) script.positions.push_back(ms);
    for (unsigned ms = 0; ms <= 88000; ms += kFrameMs) script.positions.push_back(ms);
    script.display_calls = kCallsBeforeFrames + static_cast<int>(script.positions.size());

    Calls calls;
    unsigned frame = 0;
    recording::observer() = [&](const recording::Call& call) {
        calls.add(call);
        if (call.name == "glutSwapBuffers" && ++frame % kFramesPerLine == 0) calls.print();
        recording::log().clear();
    };

    char name[] = "skav";
    char* arguments[] = {name, nullptr};
    try {
        show_main(1, arguments);
    } catch (const recording::ScriptEnded&) {
    } catch (const recording::Exited&) {
    }
    calls.print();
    return recording::uploads().empty() ? 1 : 0;
}
