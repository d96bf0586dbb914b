#include "hosts/desktop/message.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace desktop {

void say(const std::string& text) {
    const std::string line = std::string(program_invocation_short_name) + ": " + text + "\n";
    std::fputs(line.c_str(), stderr);
}

void fail(int status, const std::string& text) {
    say(text);
    std::exit(status);
}

} // namespace desktop
