// Lines on standard error for the user.
#pragma once

#include <string>

namespace desktop {

// "<program>: <text>", in one write.
void say(const std::string& text);

// Says `text` and ends the process with `status`, running the exit handlers.
[[noreturn]] void fail(int status, const std::string& text);

} // namespace desktop
