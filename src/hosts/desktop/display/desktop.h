// The host's own connection to the X server, apart from GLUT's: what is asked of the desktop before GLUT has
// a window, and what must hold for as long as the process lives.
#pragma once

struct _XDisplay; // Xlib's Display

namespace desktop {

// Opens the connection, or ends the process with status 1 and a line that says what is missing: a display, or
// OpenGL on it. From then on an X error is passed over, and losing the server ends the process at once with
// status 1 and one line.
_XDisplay* connect_to_desktop();

} // namespace desktop
