#include "hosts/desktop/display/x_server.h"

#include <GL/glx.h>
#include <X11/Xlib.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "hosts/desktop/message.h"

namespace desktop {
namespace {

// What a show does not need (the input focus, a property) must not end it, as Xlib's own handler would.
int pass_over(Display*, XErrorEvent*) { return 0; }

// No exit handlers: they would talk to the server that is gone. Only what the program has printed is kept.
int end_without_server(Display*) {
    say("the connection to the X server is lost");
    std::fflush(stdout);
    _exit(1);
}

[[noreturn]] void fail_without_display() {
    const char* name = std::getenv("DISPLAY");
    if (!name || !*name) {
        fail(1, "no display: $DISPLAY is not set; start it inside a graphical session, or name one with "
                "-display");
    }
    fail(1, std::string("no display: the X server '") + name +
                "' cannot be reached; start it inside a graphical session, or name one with -display");
}

bool has_double_buffered_gl(Display* display) {
    const int attributes[] = {GLX_DOUBLEBUFFER, True, GLX_DEPTH_SIZE, 1, None};
    int count = 0;
    GLXFBConfig* configs = glXChooseFBConfig(display, DefaultScreen(display), attributes, &count);
    if (configs) XFree(configs);
    return count > 0;
}

} // namespace

Display* connect_to_x_server() {
    Display* display = XOpenDisplay(nullptr);
    if (!display) fail_without_display();
    XSetErrorHandler(pass_over);
    XSetIOErrorHandler(end_without_server);
    if (!glXQueryExtension(display, nullptr, nullptr)) {
        fail(1, "the X server has no OpenGL (its GLX extension is missing); enable GLX there or use another "
                "display");
    }
    if (!has_double_buffered_gl(display)) {
        fail(1, "the X server's OpenGL offers no double-buffered surface with depth; install or repair its "
                "graphics driver");
    }
    return display;
}

} // namespace desktop
