// What is known of the show without running it: when its pieces of music start, when it ends, and the moments
// worth a chapter or a picture in the storyboard. The show's own timeline decides; this table follows it, and
// the tests hold the two together.
#pragma once

#include "hosts/offscreen/times.h"

// A piece of music as the show plays it.
struct Piece {
    ShowTime from;  // when the show starts it
    ShowTime clock; // the show time that its position 0 counts as: the clock may jump forward at the start
};
constexpr Piece kPieces[] = {{0, 0}, {74 * kSecond, 74 * kSecond + 300'000}};

// When the show ends by itself.
constexpr ShowTime kShowEnd = 162 * kSecond;

struct Moment {
    ShowTime time;
    const char* chapter; // its name when a cue opens a chapter here, else null
    const char* caption; // for the storyboard: what is to be seen
};
extern const Moment kMoments[];
extern const int kMomentCount;
