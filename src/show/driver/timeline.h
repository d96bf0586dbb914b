// The timeline: cues at fixed show times that start, restart and stop scenes, switch the music to its vocal version
// and end the process. The table of cues is in timeline.cpp.
#pragma once

// Number of the last cue that fired, 1..14; statically -1.
extern int g_cue;

// Set to 1 by the last cue; nothing is drawn after that.
extern int g_finished;

// Fires, in order, every cue whose time has come and that has not fired yet. A cue fires late by at most one frame;
// the scenes it starts count from the cue's own time. After a jump several cues fire in one call. The last cue ends
// the process with status 0.
void run_timeline();
