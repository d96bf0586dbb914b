#include "hosts/desktop/display/window.h"

#include <GL/glx.h>
#include <GL/glxext.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>

#include <string>

#include "hosts/common/gl_surface.h"

namespace desktop {
namespace {

// GLUT's connection and window are those of the current GL context.
struct CurrentWindow {
    Display* display = glXGetCurrentDisplay();
    Window id = glXGetCurrentDrawable();
};

struct CloseAtoms {
    Window window;
    Atom protocols, delete_window;
};

Bool is_close_request(Display*, XEvent* event, XPointer argument) {
    const CloseAtoms* atoms = reinterpret_cast<const CloseAtoms*>(argument);
    return event->type == ClientMessage && event->xclient.window == atoms->window &&
           event->xclient.message_type == atoms->protocols &&
           static_cast<Atom>(event->xclient.data.l[0]) == atoms->delete_window;
}

void remove_frame(const CurrentWindow& window) {
    struct {
        unsigned long flags, functions, decorations;
        long input_mode;
        unsigned long status;
    } hints = {1UL << 1, 0, 0, 0, 0}; // only `decorations` counts: none
    const Atom property = XInternAtom(window.display, "_MOTIF_WM_HINTS", False);
    XChangeProperty(window.display, window.id, property, property, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&hints), 5);
}

template <class Function>
Function look_up(const char* name) {
    return reinterpret_cast<Function>(glXGetProcAddressARB(reinterpret_cast<const GLubyte*>(name)));
}

} // namespace

common::Extent window_size() {
    const CurrentWindow window;
    ::Window root = None;
    int x = 0, y = 0;
    unsigned width = 0, height = 0, border = 0, depth = 0;
    if (!XGetGeometry(window.display, window.id, &root, &x, &y, &width, &height, &border, &depth)) {
        return common::kPicture;
    }
    return {static_cast<int>(width), static_cast<int>(height)};
}

bool take_close_request() {
    const CurrentWindow window;
    static const Atom protocols = XInternAtom(window.display, "WM_PROTOCOLS", False);
    static const Atom delete_window = XInternAtom(window.display, "WM_DELETE_WINDOW", False);
    CloseAtoms atoms = {window.id, protocols, delete_window};
    XEvent event;
    return XCheckIfEvent(window.display, &event, is_close_request, reinterpret_cast<XPointer>(&atoms));
}

void watch_window(Display* display) { XSelectInput(display, CurrentWindow().id, StructureNotifyMask); }

void name_window_class(const char* name) {
    const CurrentWindow window;
    std::string text = name;
    XClassHint hint = {text.data(), text.data()};
    XSetClassHint(window.display, window.id, &hint);
}

void ask_for_full_screen() {
    const CurrentWindow window;
    remove_frame(window);
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window.id;
    event.xclient.message_type = XInternAtom(window.display, "_NET_WM_STATE", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = 1; // add
    event.xclient.data.l[1] =
        static_cast<long>(XInternAtom(window.display, "_NET_WM_STATE_FULLSCREEN", False));
    event.xclient.data.l[3] = 1; // asked by a normal application
    XSendEvent(window.display, DefaultRootWindow(window.display), False,
               SubstructureRedirectMask | SubstructureNotifyMask, &event);
}

void cover_without_window_manager(const common::Box& monitor) {
    const CurrentWindow window;
    // Only one client at a time, the window manager, may redirect what the root window's children ask for.
    XWindowAttributes root = {};
    XGetWindowAttributes(window.display, DefaultRootWindow(window.display), &root);
    if (root.all_event_masks & SubstructureRedirectMask) return;
    XMoveResizeWindow(window.display, window.id, monitor.x, monitor.y, static_cast<unsigned>(monitor.width),
                      static_cast<unsigned>(monitor.height));
}

void fix_window_size(common::Extent size) {
    const CurrentWindow window;
    XSizeHints hints = {};
    long supplied = 0;
    XGetWMNormalHints(window.display, window.id, &hints, &supplied);
    hints.flags |= PMinSize | PMaxSize;
    hints.min_width = hints.max_width = size.width;
    hints.min_height = hints.max_height = size.height;
    XSetWMNormalHints(window.display, window.id, &hints);
}

void ask_for_vertical_sync() {
    const CurrentWindow window;
    const char* extensions = glXQueryExtensionsString(window.display, DefaultScreen(window.display));
    if (!extensions) return;
    if (common::lists_extension(extensions, "GLX_EXT_swap_control")) {
        const auto set = look_up<PFNGLXSWAPINTERVALEXTPROC>("glXSwapIntervalEXT");
        if (set) set(window.display, window.id, 1);
    } else if (common::lists_extension(extensions, "GLX_MESA_swap_control")) {
        const auto set = look_up<PFNGLXSWAPINTERVALMESAPROC>("glXSwapIntervalMESA");
        if (set) set(1);
    } else if (common::lists_extension(extensions, "GLX_SGI_swap_control")) {
        const auto set = look_up<PFNGLXSWAPINTERVALSGIPROC>("glXSwapIntervalSGI");
        if (set) set(1);
    }
}

} // namespace desktop
