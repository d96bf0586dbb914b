#include "hosts/desktop/options.h"

#include <cstdlib>
#include <cstring>

#include "hosts/common/options.h"

namespace desktop {
namespace {

Options g_options;

const char kAbout[] =
    R"(Plays the show: 162 seconds of music and pictures, full screen. It switches to
1024x768 at 60 Hz where the screen has that mode; otherwise the picture is
scaled to the screen as it is. There and in a window it is drawn at the smallest
multiple of its size that covers the window, up to 4, or without a graphics card
at its size.

Warning: the show contains bright flashing light.
)";

const char kNotes[] =
    R"(Ctrl-C ends the show early. The exit status is 0 when the show has ended or its
window was closed, 1 when something failed, 2 for a bad command line and
128 + n after signal n.
)";

common::CommandLine command_line(Options& options) {
    using common::set;
    return {
        kAbout,
        {{"How much of it:",
          {{"from", 0, "TIME",
            "begin at TIME of the show, in seconds or m:ss, up to 162; what comes before is run without "
            "being drawn",
            [&](const std::string& value) { options.from = common::show_time(value); }}}},
         {"How it looks:",
          {common::language_option(options.language),
           {"window", 0, "", "play in a window that can be resized and closed", set(options.window)},
           {"keep-mode", 0, "", "full screen without asking for the 1024x768 mode", set(options.keep_mode)},
           {"scale", 0, "N", "draw at N times 1024x768, 1 to 4, whatever the window's size",
            [&](const std::string& value) { options.scale = common::whole_number(value, 1, 4); }},
           {"smooth", 0, "", "draw at one multiple more, for smoother edges", set(options.smooth)},
           {"display", 0, "NAME", "the X display to play on, instead of $DISPLAY; also -display",
            [](const std::string& value) { setenv("DISPLAY", value.c_str(), 1); }}}},
         {"Other:",
          {common::data_option(options.data),
           {"strict", 0, "",
            "do not start if a file that the show needs cannot be used; without this it plays as far as "
            "it can",
            set(options.strict)},
           {"stats", 0, "", "say at the end, on standard error, how evenly the frames came",
            set(options.stats)}}}},
        kNotes};
}

} // namespace

std::string read_options(int argc, char** argv) {
    static char display[] = "--display"; // which X programs spell with one dash
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "-display") == 0) argv[i] = display;
    return common::read_options(argc, argv, command_line(g_options)).answer;
}

const Options& options() { return g_options; }

} // namespace desktop
