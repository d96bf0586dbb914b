// The host's own connection to the X server, apart from GLUT's: for what is asked before GLUT has a window, and after
// it. And what becomes of X errors, on every connection of the process.
#pragma once

#include <X11/Xlib.h>

namespace desktop {

// Opens the connection, or ends the process with status 1 and a line that says what is missing: a display, or
// OpenGL on it. From then on X errors are noted, see below, and losing the server ends the process at once with
// status 1 and one line; with status 0 where another client has ended the connection, which is one way to close it.
Display* connect_to_x_server();

// Ends the process with status 1 and one line that names the first X error noted outside an XErrorTrap, if there
// is one.
void end_on_x_error();

// Whether there is one.
bool has_x_error();

// Catches the X errors of requests that may fail: those made through `display` while it lives.
class XErrorTrap {
public:
    explicit XErrorTrap(Display* display);
    ~XErrorTrap();
    XErrorTrap(const XErrorTrap&) = delete;
    XErrorTrap& operator=(const XErrorTrap&) = delete;

    // Waits for the server; whether a request made since the beginning has failed.
    bool caught() const;

private:
    Display* display_;
    XErrorHandler previous_;
};

// Keeps every other client waiting while it lives, for a change that depends on what has been read before it.
// Not nested.
class ServerGrab {
public:
    explicit ServerGrab(Display* display) : display_(display) { XGrabServer(display_); }
    ~ServerGrab() {
        XUngrabServer(display_);
        XSync(display_, False);
    }
    ServerGrab(const ServerGrab&) = delete;
    ServerGrab& operator=(const ServerGrab&) = delete;

private:
    Display* display_;
};

// Removes the mark that a window manager which was killed has left on the root window: GLUT fails on it.
void remove_mark_of_dead_window_manager(Display* display);

} // namespace desktop
