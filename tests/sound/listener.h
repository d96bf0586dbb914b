// Polls the FMOD Ex calls the way a program does, and compares what they said with a recording.
#pragma once

#include <string>
#include <vector>

#include "show/fmod_ex.h"
#include "tests/sound/pulse_recorder.h"
#include "tests/sound/stalls.h"

// What one poll said, and when: between `before` and `after`, in seconds of the steady clock.
struct Poll {
    double before;
    double after;
    unsigned position; // ms
};

// A system that plays, made with the calls of the show and checked to have succeeded. The calling thread is
// urgent from then on, as are the system's.
// Sounds of earlier systems are released.
FMOD_SYSTEM* start_system();
FMOD_SOUND* open_sound(FMOD_SYSTEM* system, const std::string& path);
FMOD_CHANNEL* play_sound(FMOD_SYSTEM* system, FMOD_SOUND* sound);

// Releases all sounds that were opened here.
void release_sounds();

// One poll of the channel's position.
Poll poll(FMOD_CHANNEL* channel);

// Polls every `interval` seconds for `seconds`, or until the position reaches `until` ms.
std::vector<Poll> poll_for(FMOD_CHANNEL* channel, double seconds, double interval = 0.002,
                           unsigned until = ~0u);

// The polls that the program sound_player has printed.
std::vector<Poll> polls_of(const std::string& output);

// A stretch of a recording in which the music ran on without a gap.
struct Run {
    std::int64_t begin; // recorded frames
    std::int64_t end;
    std::int64_t lead; // music frame minus recorded frame
};

// Where `music` was really played while `polls` were taken.
struct Heard {
    std::vector<Run> runs;
    int pieces = 0; // looked for while the machine did not stall
    int found = 0;  // of them
};

// Looks for a piece of the music every 50 ms around the place that the polls say.
Heard find_heard(const PulseRecorder& recorder, const std::vector<float>& music,
                 const std::vector<Poll>& polls, const Stalls& stalls);

// Expects that the music was heard, but for a tenth of it and a moment's start; that every poll told, within 10 ms, what
// was audible then; that no position was less than the one before; and that no position came twice 2 ms apart while the
// sound ran. Wherever the device itself left a gap, the polls within a third of a second after it are exempt from all
// but the third; and what a stall of the machine has touched is exempt as well. Skips the test where nothing is left.
void expect_polls_follow(const PulseRecorder& recorder, const std::vector<float>& music,
                         const std::vector<Poll>& polls, const Stalls& stalls = ::stalls());
