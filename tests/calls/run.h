// Running the show, or parts of it, on the recording host. The show lives in globals that start over only
// with the process: every test needs a process of its own, as ctest gives it.
#pragma once

#include <string>
#include <vector>

#include "show/driver/scene_table.h"
#include "tests/hosts/recording/recording.h"

// How a run of the show's main ended, and what it left behind.
struct ShowRun {
    bool exited = false;  // by the show itself, else by the script's end
    int status = -1;      // when it exited
    std::string output;   // what was printed
    recording::Log calls; // everything from the start of main
};

// Calls the show's main with `typed` on standard input, until it exits or the script's display calls are used
// up.
ShowRun run_show(const std::string& typed);

// Display calls before the first frame: 101 of the warm-up and the one that loads.
constexpr int kCallsBeforeFrames = 102;

// Puts operations into every entry of the scene table that only note themselves in the log, as "start 3" and
// the like. As their arguments follow, for a render, what it saw of the clock (g_scene_time, g_demo_time),
// and for a start and a stop what its entry held (active, start_time).
void note_scenes();

// The noted operations in `calls`, in order, without their arguments.
std::vector<std::string> noted(const recording::Log& calls);
