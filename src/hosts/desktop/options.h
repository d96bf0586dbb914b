// The command line. It is read before the show asks its question, so that a wrong option is refused at once.
#pragma once

#include <vector>

namespace desktop {

struct Options {
    bool window = false; // --window: no full screen
    bool strict = false; // --strict: no show without its files
};

// Reads the command line and returns what remains of it: the program's name and what GLUT itself understands, in
// order. `--help` prints the usage and ends the process with status 0; anything unknown gets one line on standard
// error and status 2. `-display NAME` also becomes $DISPLAY, so that every connection of the process goes to the
// same server.
std::vector<char*> read_options(int argc, char** argv);

// What has been read.
const Options& options();

} // namespace desktop
