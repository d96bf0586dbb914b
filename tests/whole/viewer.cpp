#include "tests/whole/viewer.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/extensions/Xfixes.h>
#include <X11/extensions/Xrandr.h>
#include <X11/extensions/scrnsaver.h>

#include <algorithm>
#include <ostream>
#include <stdexcept>

namespace {

struct Free {
    void operator()(void* memory) const { XFree(memory); }
    void operator()(XImage* image) const { XDestroyImage(image); }
    void operator()(XRRScreenResources* resources) const { XRRFreeScreenResources(resources); }
    void operator()(XRRCrtcInfo* info) const { XRRFreeCrtcInfo(info); }
};
template <class T>
using Owned = std::unique_ptr<T, Free>;

XRRScreenResources* read_resources(Display* display) {
    return XRRGetScreenResourcesCurrent(display, DefaultRootWindow(display));
}

std::string size_text(unsigned width, unsigned height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

bool is_visible(Display* display, Window window) {
    XWindowAttributes attributes = {};
    return XGetWindowAttributes(display, window, &attributes) && attributes.map_state == IsViewable;
}

bool has_class(Display* display, Window window, const std::string& name) {
    XClassHint hint = {};
    if (!XGetClassHint(display, window, &hint)) return false;
    const Owned<char> resource_name(hint.res_name), resource_class(hint.res_class);
    return resource_class && name == resource_class.get();
}

Window find_below(Display* display, Window window, const std::string& class_name) {
    if (has_class(display, window, class_name) && is_visible(display, window)) return window;
    Window root = None, parent = None, *list = nullptr;
    unsigned count = 0;
    if (!XQueryTree(display, window, &root, &parent, &list, &count)) return None;
    const Owned<Window> children(list);
    for (unsigned i = 0; i < count; ++i) {
        const Window found = find_below(display, list[i], class_name);
        if (found != None) return found;
    }
    return None;
}

int ignore_error(Display*, XErrorEvent*) { return 0; } // windows come and go while a test looks

} // namespace

std::ostream& operator<<(std::ostream& stream, const Color& color) {
    return stream << "(" << color.red << ", " << color.green << ", " << color.blue << ")";
}

Viewer::Viewer(const std::string& display_name) : display_(XOpenDisplay(display_name.c_str())) {
    if (!display_) throw std::runtime_error("the test's own X server " + display_name + " cannot be reached");
    XSetErrorHandler(ignore_error);
}

Pixels Viewer::picture() const {
    const Window root = DefaultRootWindow(display());
    XWindowAttributes size = {};
    XGetWindowAttributes(display(), root, &size);
    const Owned<XImage> image(XGetImage(display(), root, 0, 0, static_cast<unsigned>(size.width),
                                        static_cast<unsigned>(size.height), AllPlanes, ZPixmap));
    if (!image) throw std::runtime_error("the screen cannot be read");
    std::vector<Color> pixels;
    pixels.reserve(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const unsigned long pixel = XGetPixel(image.get(), x, y);
            pixels.push_back({static_cast<int>(pixel >> 16 & 255), static_cast<int>(pixel >> 8 & 255),
                              static_cast<int>(pixel & 255)});
        }
    }
    return Pixels(size.width, size.height, std::move(pixels));
}

std::string Viewer::mode(int monitor) const {
    const Owned<XRRScreenResources> resources(read_resources(display()));
    const Owned<XRRCrtcInfo> info(XRRGetCrtcInfo(display(), resources.get(), resources->crtcs[monitor]));
    if (!info || info->mode == None) return {};
    return size_text(info->width, info->height);
}

void Viewer::set_mode(const std::string& size, int monitor, int x) const {
    const Owned<XRRScreenResources> resources(read_resources(display()));
    XRRModeInfo* const end = resources->modes + resources->nmode;
    const XRRModeInfo* const mode = std::find_if(resources->modes, end, [&](const XRRModeInfo& info) {
        return size_text(info.width, info.height) == size;
    });
    if (mode == end) throw std::runtime_error("the server has no mode " + size);

    // The other monitors stay where they are, and the root window holds them all.
    int width = x + static_cast<int>(mode->width), height = static_cast<int>(mode->height);
    for (int i = 0; i < resources->ncrtc; ++i) {
        const Owned<XRRCrtcInfo> info(XRRGetCrtcInfo(display(), resources.get(), resources->crtcs[i]));
        if (i == monitor || info->mode == None) continue;
        width = std::max(width, info->x + static_cast<int>(info->width));
        height = std::max(height, info->y + static_cast<int>(info->height));
    }
    RROutput output = resources->outputs[monitor];
    XGrabServer(display());
    XRRAddOutputMode(display(), output, mode->id);
    switch_off(monitor);
    XRRSetScreenSize(display(), DefaultRootWindow(display()), width, height, width / 4, height / 4);
    XRRSetCrtcConfig(display(), resources.get(), resources->crtcs[monitor], CurrentTime, x, 0, mode->id,
                     RR_Rotate_0, &output, 1);
    XUngrabServer(display());
    XSync(display(), False);
}

void Viewer::switch_off(int monitor) const {
    const Owned<XRRScreenResources> resources(read_resources(display()));
    XRRSetCrtcConfig(display(), resources.get(), resources->crtcs[monitor], CurrentTime, 0, 0, None,
                     RR_Rotate_0, nullptr, 0);
    XSync(display(), False);
}

Window Viewer::find_window(const std::string& class_name) const {
    return find_below(display(), DefaultRootWindow(display()), class_name);
}

int Viewer::visible_pointer_pixels() const {
    const Owned<XFixesCursorImage> image(XFixesGetCursorImage(display()));
    if (!image) throw std::runtime_error("the server has no XFixes");
    int count = 0;
    for (int i = 0; i < image->width * image->height; ++i) {
        if (image->pixels[i] >> 24 & 255) ++count;
    }
    return count;
}

void Viewer::move_pointer(int x, int y) const {
    XWarpPointer(display(), None, DefaultRootWindow(display()), 0, 0, 0, 0, x, y);
    XSync(display(), False);
}

void Viewer::resize(Window window, int width, int height) const {
    XResizeWindow(display(), window, static_cast<unsigned>(width), static_cast<unsigned>(height));
    XSync(display(), False);
}

void Viewer::unmap(Window window) const {
    XUnmapWindow(display(), window);
    XSync(display(), False);
}

void Viewer::destroy(Window window) const {
    XDestroyWindow(display(), window);
    XSync(display(), False);
}

void Viewer::kill_client_of(Window window) const {
    XKillClient(display(), window);
    XSync(display(), False);
}

void Viewer::ask_to_close(Window window) const {
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display(), "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display(), "WM_DELETE_WINDOW", False));
    XSendEvent(display(), window, False, NoEventMask, &event);
    XSync(display(), False);
}

void Viewer::blank_after(int seconds) const {
    XSetScreenSaver(display(), seconds, 0, PreferBlanking, AllowExposures);
    XSync(display(), False);
}

bool Viewer::is_blanked() const {
    XScreenSaverInfo info = {};
    XScreenSaverQueryInfo(display(), DefaultRootWindow(display()), &info);
    return info.state == ScreenSaverOn;
}

bool Viewer::is_managed() const {
    // A window manager names itself first and lists its windows, even if there are none, once it is ready.
    const Atom property = XInternAtom(display(), "_NET_CLIENT_LIST", False);
    Atom type = None;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(display(), DefaultRootWindow(display()), property, 0, 1, False, XA_WINDOW, &type,
                       &format, &count, &left, &data);
    const Owned<unsigned char> owned(data);
    return type != None;
}

void Viewer::leave_mark_of_dead_window_manager() const {
    const Window root = DefaultRootWindow(display());
    const Window window = XCreateSimpleWindow(display(), root, 0, 0, 1, 1, 0, 0, 0);
    const Atom property = XInternAtom(display(), "_NET_SUPPORTING_WM_CHECK", False);
    XChangeProperty(display(), root, property, XA_WINDOW, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&window), 1);
    XDestroyWindow(display(), window);
    XSync(display(), False);
}
