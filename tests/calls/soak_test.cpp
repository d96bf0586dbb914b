// Many whole shows, one after the other, on a clock that jumps from frame to frame.
#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

#include "tests/calls/hash.h"
#include "tests/calls/run.h"

namespace {

constexpr int kShows = 20;
constexpr unsigned kFrameMs = 1000;

// What is left of a whole show.
struct Result {
    std::uint64_t hash = 0; // of all calls and uploads
    long calls = 0;
    long frames = 0;
    long first_bytes = 0, most_bytes = 0; // in use after the first frame, and at most after a later one
    long peak_kilobytes = 0;              // resident
    int status = -1;
};

// The positions of the music at each frame of a whole show.
std::vector<unsigned> positions_of_a_show() {
    std::vector<unsigned> positions;
    for (unsigned at = 0; at < 74000; at += kFrameMs) positions.push_back(at);
    positions.push_back(74000); // the switch to the vocal file
    for (unsigned at = 0; at < 162000 - 74300; at += kFrameMs) positions.push_back(at);
    positions.push_back(162000 - 74300);
    return positions;
}

Result whole_show() {
    Result result;
    Hash hash;
    recording::script().positions = positions_of_a_show();
    recording::script().display_calls =
        kCallsBeforeFrames + static_cast<int>(recording::script().positions.size());
    bool playing = false;
    recording::observer() = [&](const recording::Call& call) {
        hash.add(call);
        ++result.calls;
        if (call.name == "FMOD_System_PlaySound") playing = true;
        if (call.name != "glutSwapBuffers") return;
        // What the host keeps for tests to read is not the show's.
        recording::Log().swap(recording::log());
        recording::Log().swap(recording::errors());
        if (!playing) return;
        const auto bytes = static_cast<long>(mallinfo2().uordblks);
        if (++result.frames == 1) result.first_bytes = bytes;
        result.most_bytes = std::max(result.most_bytes, bytes);
    };
    result.status = run_show("e").status;
    for (const recording::Upload& upload : recording::uploads())
        hash.add(upload.pixels.data(), upload.pixels.size());
    result.hash = hash.value();
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    result.peak_kilobytes = usage.ru_maxrss;
    return result;
}

// The same in a process of its own, as the show's globals need it.
Result whole_show_in_a_process() {
    int ends[2];
    if (pipe(ends) != 0) return {};
    const pid_t child = fork();
    if (child == 0) {
        const Result result = whole_show();
        const bool written = write(ends[1], &result, sizeof result) == sizeof result;
        _exit(written ? 0 : 1);
    }
    close(ends[1]);
    Result result;
    if (read(ends[0], &result, sizeof result) != sizeof result) result = {};
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return result;
}

} // namespace

TEST(Soak, TwentyWholeShowsMakeTheSameCallsInTheSameMemory) {
    Result first;
    for (int i = 0; i < kShows; ++i) {
        const Result show = whole_show_in_a_process();
        if (i == 0) first = show;
        ASSERT_EQ(show.status, 0);
        ASSERT_EQ(show.frames,
                  static_cast<long>(positions_of_a_show().size()) - 1); // the last one ends the show
        EXPECT_EQ(show.hash, first.hash) << "show " << i;
        EXPECT_EQ(show.calls, first.calls) << "show " << i;
        // Switching the music and the scenes takes a few handles; frames take nothing.
        EXPECT_LE(show.most_bytes - show.first_bytes, 4096) << "show " << i;
        EXPECT_LE(show.peak_kilobytes, first.peak_kilobytes * 1.05) << "show " << i;
    }
    std::printf(
        "%ld calls in %ld frames, hash %016lx, %ld bytes more than after the first frame, peak %ld KiB\n",
        first.calls, first.frames, static_cast<unsigned long>(first.hash),
        first.most_bytes - first.first_bytes, first.peak_kilobytes);
}
