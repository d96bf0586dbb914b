#include "hosts/desktop/display/x_server.h"

#include <GL/glx.h>
#include <X11/Xatom.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "hosts/desktop/message.h"

namespace desktop {
namespace {

std::string g_error;   // the first one noted, in words; empty without one
bool g_caught = false; // by the innermost trap

int note_error(Display* display, XErrorEvent* error) {
    if (!g_error.empty()) return 0;
    char text[256];
    XGetErrorText(display, error->error_code, text, sizeof text);
    g_error = std::string(text) + " (request " + std::to_string(error->request_code) + "." +
              std::to_string(error->minor_code) + ")";
    return 0;
}

int catch_error(Display*, XErrorEvent*) {
    g_caught = true;
    return 0;
}

// No exit handlers: they would use the connection that is gone. Only what the program has printed is kept. Where the
// server still answers, another client has ended the connection (XKillClient) as it might have closed the window.
int end_without_connection(Display* display) {
    const bool server_is_lost = !XOpenDisplay(DisplayString(display));
    if (server_is_lost) say("the connection to the X server is lost");
    std::fflush(stdout);
    _exit(server_is_lost ? 1 : 0);
}

bool is_set(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value;
}

[[noreturn]] void fail_without_display() {
    if (!is_set("DISPLAY") && is_set("WAYLAND_DISPLAY")) {
        fail(1, "this Wayland session has no X server to play on ($DISPLAY is not set): install Xwayland "
                "(the package "
                "xwayland) and log in again, or choose an X11 session at the login screen");
    }
    if (!is_set("DISPLAY")) {
        fail(1, "no display: $DISPLAY is not set; start it inside a graphical session, or name one with "
                "-display");
    }
    fail(1, std::string("no display: the X server '") + std::getenv("DISPLAY") +
                "' cannot be reached; start it inside a graphical session, or name one with -display");
}

bool has_double_buffered_gl(Display* display) {
    const int attributes[] = {GLX_DOUBLEBUFFER, True, GLX_DEPTH_SIZE, 1, None};
    int count = 0;
    GLXFBConfig* configs = glXChooseFBConfig(display, DefaultScreen(display), attributes, &count);
    if (configs) XFree(configs);
    return count > 0;
}

// The window that a property of `window` names, or None.
Window read_window_property(Display* display, Window window, Atom property) {
    Atom type = None;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char* data = nullptr;
    const int status = XGetWindowProperty(display, window, property, 0, 1, False, XA_WINDOW, &type, &format,
                                          &count, &left, &data);
    if (status != Success || !data) return None;
    const Window result = count == 1 ? *reinterpret_cast<const Window*>(data) : None;
    XFree(data);
    return result;
}

} // namespace

Display* connect_to_x_server() {
    Display* display = XOpenDisplay(nullptr);
    if (!display) fail_without_display();
    XSetErrorHandler(note_error);
    XSetIOErrorHandler(end_without_connection);
    if (!glXQueryExtension(display, nullptr, nullptr)) {
        fail(1, "the X server has no OpenGL (its GLX extension is missing); enable GLX there or use another "
                "display");
    }
    if (!has_double_buffered_gl(display)) {
        fail(1, "the X server's OpenGL offers no double-buffered surface with depth; install or repair its "
                "graphics "
                "driver");
    }
    return display;
}

bool has_x_error() { return !g_error.empty(); }

void end_on_x_error() {
    if (has_x_error()) fail(1, "the X server has refused a request: " + g_error);
}

XErrorTrap::XErrorTrap(Display* display) : display_(display) {
    XSync(display_, False); // errors of earlier requests are not this trap's
    previous_ = XSetErrorHandler(catch_error);
    g_caught = false;
}

XErrorTrap::~XErrorTrap() {
    XSync(display_, False);
    XSetErrorHandler(previous_);
}

bool XErrorTrap::caught() const {
    XSync(display_, False);
    return g_caught;
}

void remove_mark_of_dead_window_manager(Display* display) {
    const Window root = DefaultRootWindow(display);
    const Atom mark = XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False);
    const ServerGrab grab(display); // a window manager may be starting
    const Window named = read_window_property(display, root, mark);
    if (named == None) return;
    const XErrorTrap trap(display);
    read_window_property(display, named, mark);
    if (trap.caught()) XDeleteProperty(display, root, mark);
}

} // namespace desktop
