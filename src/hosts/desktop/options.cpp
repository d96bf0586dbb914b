#include "hosts/desktop/options.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "hosts/desktop/message.h"

namespace desktop {
namespace {

Options g_options;

struct GlutOption {
    const char* name;
    bool takes_value;
};

constexpr GlutOption kGlutOptions[] = {
    {"-display", true}, {"-geometry", true}, {"-direct", false}, {"-indirect", false},
    {"-iconic", false}, {"-gldebug", false}, {"-sync", false},
};

const GlutOption* find_glut_option(const std::string& argument) {
    for (const GlutOption& option : kGlutOptions) {
        if (argument == option.name) return &option;
    }
    return nullptr;
}

[[noreturn]] void print_usage_and_exit() {
    std::printf("Usage: %s [--window] [--strict] [-display NAME]\n"
                "\n"
                "  --window        play in a window that can be resized and closed\n"
                "  --strict        do not start if a file that the show needs cannot be used; else\n"
                "                  it plays as far as it can\n"
                "  -display NAME   the X display to play on, instead of $DISPLAY\n"
                "  -h, --help      print this text\n"
                "\n"
                "Without --window it plays full screen: in the 1024x768 mode at 60 Hz where the\n"
                "screen has it, else scaled to the screen as it is.\n",
                program_invocation_short_name);
    std::exit(0);
}

[[noreturn]] void refuse(const std::string& reason) {
    fail(2, reason + "; try '" + program_invocation_short_name + " --help'");
}

} // namespace

std::vector<char*> read_options(int argc, char** argv) {
    std::vector<char*> remaining(argv, argv + std::min(argc, 1));
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--help" || argument == "-h") print_usage_and_exit();
        if (argument == "--window") {
            g_options.window = true;
            continue;
        }
        if (argument == "--strict") {
            g_options.strict = true;
            continue;
        }
        const GlutOption* glut_option = find_glut_option(argument);
        if (!glut_option) refuse("unknown option '" + argument + "'");
        remaining.push_back(argv[i]);
        if (!glut_option->takes_value) continue;
        if (i + 1 == argc) refuse("option '" + argument + "' needs a value");
        remaining.push_back(argv[++i]);
        if (argument == "-display") setenv("DISPLAY", argv[i], 1);
    }
    return remaining;
}

const Options& options() { return g_options; }

} // namespace desktop
