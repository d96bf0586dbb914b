// Linked around Xlib calls of the test show (--wrap): with $TEST_X_CALLS, the calls that read or change the layout of
// the monitors, and those that grab the server, are named in that file, one a line.
#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>

#include <cstdio>
#include <cstdlib>

extern "C" {

int __real_XGrabServer(Display*);
int __wrap_XGrabServer(Display*);
int __real_XUngrabServer(Display*);
int __wrap_XUngrabServer(Display*);
XRRScreenResources* __real_XRRGetScreenResourcesCurrent(Display*, Window);
XRRScreenResources* __wrap_XRRGetScreenResourcesCurrent(Display*, Window);
Status __real_XRRSetCrtcConfig(Display*, XRRScreenResources*, RRCrtc, Time, int, int, RRMode, Rotation,
                               RROutput*, int);
Status __wrap_XRRSetCrtcConfig(Display*, XRRScreenResources*, RRCrtc, Time, int, int, RRMode, Rotation,
                               RROutput*, int);

} // extern "C"

static void log(const char* call) {
    static std::FILE* file =
        std::getenv("TEST_X_CALLS") ? std::fopen(std::getenv("TEST_X_CALLS"), "w") : nullptr;
    if (!file) return;
    std::fprintf(file, "%s\n", call);
    std::fflush(file);
}

int __wrap_XGrabServer(Display* display) {
    log("grab");
    return __real_XGrabServer(display);
}

int __wrap_XUngrabServer(Display* display) {
    log("ungrab");
    return __real_XUngrabServer(display);
}

XRRScreenResources* __wrap_XRRGetScreenResourcesCurrent(Display* display, Window window) {
    log("read");
    return __real_XRRGetScreenResourcesCurrent(display, window);
}

Status __wrap_XRRSetCrtcConfig(Display* display, XRRScreenResources* resources, RRCrtc crtc, Time time, int x,
                               int y, RRMode mode, Rotation rotation, RROutput* outputs, int count) {
    log("change");
    return __real_XRRSetCrtcConfig(display, resources, crtc, time, x, y, mode, rotation, outputs, count);
}
