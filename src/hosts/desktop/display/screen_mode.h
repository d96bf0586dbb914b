// The display mode that the show asks for.
//
// The host switches modes itself, through RandR: freeglut's game mode knows only the older VidMode extension, which
// leaves the root window at its size, gives the show a window of that size and not of the mode's, and forgets how
// several monitors were arranged.
#pragma once

#include <X11/Xlib.h>

#include "hosts/common/geometry.h"

namespace desktop {

// Registers the exit handler that gives the desktop its mode back. Handlers that are registered later run before it.
void leave_mode_at_exit();

// Brings the main monitor into the mode of that size (pixels) and refresh rate (Hz); leaves it as it is where it does
// not have that mode or the server refuses. The desktop gets its mode back at exit, and from a small second process
// after any other end of this one. `display` has to stay open. At most one call.
void enter_mode(Display* display, common::Extent size, int rate);

// Place of the main monitor on the root window, y downwards from the top.
common::Box main_monitor(Display* display);

// How often a second the main monitor shows a new picture; 0 where the server does not say.
double refresh_rate(Display* display);

} // namespace desktop
