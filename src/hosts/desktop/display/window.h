// The X side of GLUT's current window: what GLUT has no call for. All but watch_window use GLUT's own
// connection.
#pragma once

#include <X11/Xlib.h>

#include "hosts/common/geometry.h"

namespace desktop {

// The window's size as the server has it now. GLUT's own idea of it is as old as the last event it read, and it reads
// none during a long callback.
common::Extent window_size();

// Whether the window manager has asked the window to close and GLUT has not read that yet. Takes the request.
bool take_close_request();

// Asks for a DestroyNotify on the host's own connection when another client destroys the window: GLUT ignores the one
// that it gets itself.
void watch_window(Display* display);

// The name by which desktops match a window with the program's entry in their menus; GLUT sets none.
void name_window_class(const char* name);

// Keeps the window manager from drawing a frame around the window and asks it for full screen, on the monitor that
// the window is on. Without a window manager the window stays where it is.
void ask_for_full_screen();

// Moves the window over that part of the root window (y downwards), if there is no window manager that would do so.
void cover_without_window_manager(const common::Box& monitor);

// Keeps the window manager from letting the window have any other size.
void fix_window_size(common::Extent size);

// Asks for buffer swaps in step with the screen's refresh, where GLX lets one ask.
void ask_for_vertical_sync();

} // namespace desktop
