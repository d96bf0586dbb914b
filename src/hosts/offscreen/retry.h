// The show cannot go back. When a wanted picture turns out to be made of frames that were skipped, the run
// starts over from just after the show's question, with the knowledge which frames must be drawn.
//
// For that the process splits before anything is opened: the child runs the show, the parent waits, and
// splits again if the child asks for it. The parent passes signals on and ends as its child ends.
#pragma once

#include <cstdint>

#include "hosts/offscreen/frame_set.h"

// What one attempt leaves to the next.
struct Attempt {
    FrameSet must_draw;         // besides the wanted frames
    std::int64_t delivered = 0; // wanted pictures that have already left for a stream and cannot be recalled
};

// Returns in a child process, once for each attempt; never in the parent. Throws Failure if no process can be
// made.
Attempt begin_attempts();

// In the child: ends this attempt. The next one draws the frames from `first` up to, but not including,
// `end`.
[[noreturn]] void try_again(std::int64_t first, std::int64_t end, std::int64_t delivered);
