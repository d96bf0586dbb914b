// The command line of skav-export.
#pragma once

#include "hosts/offscreen/times.h"

#include <optional>
#include <string>
#include <vector>

enum class Language { ask, german, english };

struct Options {
    std::string output;           // a file, a folder for several stills, or "-"
    std::vector<ShowTime> stills; // in the order given
    Language language = Language::ask;
    std::string data; // the folder of music and fonts; empty: look for it
    FrameRate rate;
    int scale = 1; // of the picture: 1..4
    bool quiet = false;
    bool help = false;
};

extern const char kHelp[];

// Reads the command line. Throws Failure with kStatusUsage and one line that says what is wrong.
Options parse_options(int argc, char** argv);
