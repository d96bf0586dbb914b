// The command line. It is read before the program's own main, so that a wrong option does not first have to
// answer the program's questions.
#pragma once

#include <string>
#include <vector>

namespace desktop {

struct Options {
    bool window = false;          // --window: no full screen
    std::vector<char*> remaining; // the program's name and what GLUT itself understands, in order
};

// What the command line asks for. `--help` prints the usage and ends the process with status 0; anything
// unknown gets one line on standard error and status 2. `-display NAME` also becomes $DISPLAY, so that every
// connection of the process goes to the same server.
Options read_options(int argc, char** argv);

} // namespace desktop
