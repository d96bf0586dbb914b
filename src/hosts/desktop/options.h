// The command line of skav.
#pragma once

#include <string>

#include "hosts/common/prompt.h"
#include "hosts/common/times.h"

namespace desktop {

struct Options {
    common::ShowTime from = 0; // where the show begins
    common::Language language = common::Language::ask;
    bool window = false;    // no full screen
    bool keep_mode = false; // full screen in the mode that the screen has
    int scale = 0;          // the show is drawn at that multiple of its size, 1..4; 0: as the window needs
    bool smooth = false;    // at one multiple more
    bool stats = false;     // say at the end how evenly the frames came
    std::string data;       // folder; empty: look for it
    bool strict = false;    // no show without its files
};

// Reads the command line, before the show asks its question. Returns what to print instead of playing, or nothing.
// `--display NAME` becomes $DISPLAY, so that every connection of the process goes to the same server. Throws
// common::UsageError.
std::string read_options(int argc, char** argv);

// What has been read.
const Options& options();

} // namespace desktop
