// Starting the show in the middle, in exactly the state that it has there. What a frame shows depends on the frames
// before it, so those are run: not in step with the music, but on a clock that counts them, 60 to a second, as fast as
// they come. Then the music that belongs there starts at the place that is asked for.
//
//     common::skip_to(12 * common::kSecond);   // before the show starts
//     ...
//     common::begin_frame();                   // around each of the show's display calls
//     on_display();                            // not drawn and not shown where frame_is_skipped()
//     common::end_frame();
//
// The show notices nothing, for the host's player is behind a skipping_player. All calls come from the show's thread.
#pragma once

#include <memory>

#include "hosts/common/sound_calls.h"
#include "hosts/common/times.h"

namespace common {

// The show will start at `time`, 0..kShowEnd; at 0 nothing is skipped. Where the clock jumps over that time, it is the
// first one behind.
void skip_to(ShowTime time);

// The show's display callback is about to be called; it has returned.
void begin_frame();
void end_frame();

// Whether the present frame is skipped.
bool frame_is_skipped();

// `player`, which plays nothing and tells the position of the clock of frames until nothing is skipped any more. To
// be made after skip_to; the last one made counts.
std::unique_ptr<Player> skipping_player(std::unique_ptr<Player> player);

} // namespace common
