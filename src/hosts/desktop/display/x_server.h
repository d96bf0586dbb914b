// The host's own connection to the X server, apart from GLUT's: for what is asked before GLUT has a window,
// and after it.
#pragma once

#include <X11/Xlib.h>

namespace desktop {

// Opens the connection, or ends the process with status 1 and a line that says what is missing: a display, or OpenGL on
// it. From then on an X error is passed over, and losing the server ends the process at once with status 1 and one
// line.
Display* connect_to_x_server();

} // namespace desktop
