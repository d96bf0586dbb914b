// Plays the whole show at a few frames a second and prints a hash of its calls about every ten seconds, to compare two
// builds. The language is read from standard input; the fonts are in the working directory.
#include <cinttypes>
#include <cstdio>

#include "tests/calls/hash.h"
#include "tests/calls/run.h"

int show_main(int argc, char** argv);

namespace {

constexpr unsigned kFrameMs = 370;
constexpr unsigned kFramesPerLine = 27;

} // namespace

int main() {
    // The files' positions from the first file's start to the switch, and from the second one's to the end.
    recording::Script& script = recording::script();
    for (unsigned ms = 0; ms < 74000; ms += kFrameMs) script.positions.push_back(ms);
    for (unsigned ms = 0; ms <= 88000; ms += kFrameMs) script.positions.push_back(ms);
    script.display_calls = kCallsBeforeFrames + static_cast<int>(script.positions.size());

    Hash hash; // of the calls since the last line
    std::uint64_t calls = 0;
    const auto print = [&] {
        std::printf("calls: %" PRIu64 ", %016" PRIx64 "\n", calls, hash.value());
        hash = {};
        calls = 0;
    };
    unsigned frame = 0;
    recording::observer() = [&](const recording::Call& call) {
        hash.add(call);
        ++calls;
        if (call.name == "glutSwapBuffers" && ++frame % kFramesPerLine == 0) print();
        recording::log().clear();
    };

    char name[] = "skav";
    char* arguments[] = {name, nullptr};
    try {
        show_main(1, arguments);
    } catch (const recording::ScriptEnded&) {
    } catch (const recording::Exited&) {
    }
    print();
    return recording::uploads().empty() ? 1 : 0;
}
