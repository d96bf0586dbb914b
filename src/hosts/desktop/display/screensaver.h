// Keeping the screen from blanking while nobody touches the keyboard.
#pragma once

#include <X11/Xlib.h>

namespace desktop {

// Suspends the X server's screen saver and power saving, and asks the session's screen saver, where a session
// bus has one, to stay away. Both end with the process. Best effort: fails silently, and waits for the bus
// for a quarter of a second at most.
void keep_screen_awake(Display* display);

} // namespace desktop
