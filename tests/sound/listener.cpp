#include "tests/sound/listener.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <thread>

#include "hosts/desktop/sound/position_clock.h"
#include "tests/sound/test_music.h"
#include "tests/sound/urgent.h"

namespace {

constexpr double kRate = 44100;
constexpr std::int64_t kPiece = 512;   // frames of a piece that is looked for
constexpr std::int64_t kStride = 2205; // from one piece to the next: 50 ms
constexpr std::int64_t kReach = 6615;  // how far around the told place: 150 ms
constexpr int kLeastPieces = 8;        // that count: less says nothing

// A program loads for a while before it plays. A sound server needs some of that to find its pace.
constexpr std::chrono::milliseconds kLoading{500};

// What the polls say about the moment `time`, in ms.
double told_at(const std::vector<Poll>& polls, double time) {
    const auto next = std::lower_bound(polls.begin(), polls.end(), time,
                                       [](const Poll& poll, double at) { return poll.after < at; });
    if (next == polls.end()) return polls.back().position;
    if (next == polls.begin()) return next->position;
    const Poll& last = *(next - 1);
    const double part = (time - last.after) / (next->after - last.after);
    return last.position + part * (static_cast<double>(next->position) - last.position);
}

// Of all systems of this process: no call ends a system, and an earlier test's would play on the next test's server.
std::vector<FMOD_SOUND*> g_sounds;

} // namespace

void release_sounds() {
    for (FMOD_SOUND* sound : g_sounds)
        FMOD_Sound_Release(sound); // those that are released already give an error
    g_sounds.clear();
}

FMOD_SYSTEM* start_system() {
    release_sounds();
    make_urgent(true);
    stalls(); // watches from here on
    FMOD_SYSTEM* system = nullptr;
    EXPECT_EQ(FMOD_System_Create(&system), FMOD_OK);
    EXPECT_EQ(FMOD_System_Init(system, 1, FMOD_INIT_NORMAL, nullptr), FMOD_OK);
    std::this_thread::sleep_for(kLoading);
    return system;
}

FMOD_SOUND* open_sound(FMOD_SYSTEM* system, const std::string& path) {
    FMOD_SOUND* sound = nullptr;
    EXPECT_EQ(FMOD_System_CreateSound(system, path.c_str(), FMOD_2D | FMOD_SOFTWARE | FMOD_CREATESTREAM,
                                      nullptr, &sound),
              FMOD_OK);
    g_sounds.push_back(sound);
    return sound;
}

FMOD_CHANNEL* play_sound(FMOD_SYSTEM* system, FMOD_SOUND* sound) {
    FMOD_CHANNEL* channel = nullptr;
    EXPECT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &channel), FMOD_OK);
    return channel;
}

Poll poll(FMOD_CHANNEL* channel) {
    Poll result{};
    result.before = desktop::steady_seconds();
    EXPECT_EQ(FMOD_Channel_GetPosition(channel, &result.position, FMOD_TIMEUNIT_MS), FMOD_OK);
    result.after = desktop::steady_seconds();
    return result;
}

std::vector<Poll> poll_for(FMOD_CHANNEL* channel, double seconds, double interval, unsigned until) {
    std::vector<Poll> polls;
    const double end = desktop::steady_seconds() + seconds;
    while (desktop::steady_seconds() < end) {
        polls.push_back(poll(channel));
        if (polls.back().position >= until) break;
        std::this_thread::sleep_for(std::chrono::duration<double>(interval));
    }
    return polls;
}

std::vector<Poll> polls_of(const std::string& output) {
    std::vector<Poll> polls;
    std::istringstream lines(output.substr(0, output.rfind('\n') + 1)); // the last may be incomplete
    Poll poll{};
    while (lines >> poll.before >> poll.after >> poll.position) polls.push_back(poll);
    return polls;
}

Heard find_heard(const PulseRecorder& recorder, const std::vector<float>& music,
                 const std::vector<Poll>& polls, const Stalls& stalls) {
    Heard heard;
    const float* recorded = recorder.samples().data();
    const std::int64_t end = std::min(recorder.frame_at(polls.back().after), recorder.frames()) - kPiece;
    for (std::int64_t at = recorder.frame_at(polls.front().before); at < end; at += kStride) {
        const double time = recorder.time_of(at);
        const bool counts = stalls.calm(time, time);
        if (counts) ++heard.pieces;
        const auto told = static_cast<std::int64_t>(told_at(polls, time) * kRate / 1000);
        const std::int64_t found = find_piece(music, recorded + 2 * at, kPiece, told - kReach, told + kReach);
        if (found < 0) continue;
        if (counts) ++heard.found;
        std::vector<Run>& runs = heard.runs;
        if (!runs.empty() && std::llabs(found - at - runs.back().lead) <= 1)
            runs.back().end = at + kPiece;
        else
            runs.push_back({at, at + kPiece, found - at});
    }
    return heard;
}

void expect_polls_follow(const PulseRecorder& recorder, const std::vector<float>& music,
                         const std::vector<Poll>& polls, const Stalls& stalls) {
    const Heard heard = find_heard(recorder, music, polls, stalls);
    double worst = 0;
    double worst_at = 0;
    int repeated = 0;
    int fell = 0;

    for (std::size_t i = 0; i < polls.size(); ++i) {
        if (i > 0 && polls[i].position < polls[i - 1].position) ++fell;
        if (!stalls.calm(polls[i].before, polls[i].after)) continue;
        const std::int64_t before = recorder.frame_at(polls[i].before);
        const std::int64_t after = recorder.frame_at(polls[i].after);
        for (const Run& run : heard.runs) {
            const bool after_gap = &run != &heard.runs.front() && before < run.begin + kRate / 3;
            if (before < run.begin || after >= run.end || after_gap) continue;
            const double least = static_cast<double>(before + run.lead) * 1000 / kRate;
            const double most = static_cast<double>(after + run.lead) * 1000 / kRate;
            const double off = polls[i].position - std::clamp<double>(polls[i].position, least, most);
            if (std::fabs(off) > std::fabs(worst)) {
                worst = off;
                worst_at = least;
            }
            const bool apart = i > 0 && polls[i].before - polls[i - 1].after >= 0.002;
            const bool ran = i > 0 && recorder.frame_at(polls[i - 1].before) >= run.begin;
            if (apart && ran && polls[i].position == polls[i - 1].position) ++repeated;
        }
    }
    // For whoever reads the test's log: how close it was.
    std::printf(
        "heard %d of %d pieces that count, %zu run(s), worst %.2f ms at %.0f ms, %d repeated, %d fell\n",
        heard.found, heard.pieces, heard.runs.size(), worst, worst_at, repeated, fell);
    EXPECT_EQ(fell, 0);
    if (heard.pieces < kLeastPieces) GTEST_SKIP() << "the machine stalled too often";
    EXPECT_GE(heard.found, 0.9 * heard.pieces - 4);
    EXPECT_LT(std::fabs(worst), 10) << "at " << worst_at << " ms";
    EXPECT_EQ(repeated, 0);
}
