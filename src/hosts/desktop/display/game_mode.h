// GLUT's game mode, entered only where it will work.
#pragma once

#include <X11/Xlib.h>

namespace desktop {

// Enters the mode that glutGameModeString asked for and returns true, or returns false with the desktop as it
// was: where the screen does not have the mode, or another program holds the pointer (GLUT would wait for it
// for ever). The desktop gets its mode back at exit, and through the mode keeper after any other end.
bool enter_game_mode(Display* display);

} // namespace desktop
