#include "tests/whole/viewer.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/extensions/Xfixes.h>
#include <X11/extensions/Xrandr.h>
#include <X11/extensions/scrnsaver.h>

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

std::string Viewer::mode() const {
    const Owned<XRRScreenResources> resources(
        XRRGetScreenResourcesCurrent(display(), DefaultRootWindow(display())));
    const Owned<XRRCrtcInfo> info(XRRGetCrtcInfo(display(), resources.get(), resources->crtcs[0]));
    if (!info || info->mode == None) return {};
    return std::to_string(info->width) + "x" + std::to_string(info->height);
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
    const Atom property = XInternAtom(display(), "_NET_SUPPORTING_WM_CHECK", False);
    Atom type = None;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(display(), DefaultRootWindow(display()), property, 0, 1, False, XA_WINDOW, &type,
                       &format, &count, &left, &data);
    const Owned<unsigned char> owned(data);
    return count == 1;
}
