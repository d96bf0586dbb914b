#include "display/display_mode.h"

#include <memory>
#include <tuple>

namespace desktop {
namespace {

struct FreeResources {
    void operator()(XRRScreenResources* resources) const { XRRFreeScreenResources(resources); }
};
using Resources = std::unique_ptr<XRRScreenResources, FreeResources>;

struct FreeCrtcInfo {
    void operator()(XRRCrtcInfo* info) const { XRRFreeCrtcInfo(info); }
};
using CrtcInfo = std::unique_ptr<XRRCrtcInfo, FreeCrtcInfo>;

bool has_randr_1_3(Display* display) {
    int event_base = 0, error_base = 0, major = 0, minor = 0;
    if (!XRRQueryExtension(display, &event_base, &error_base)) return false;
    if (!XRRQueryVersion(display, &major, &minor)) return false;
    return major > 1 || (major == 1 && minor >= 3);
}

Resources read_resources(Display* display) {
    return Resources(XRRGetScreenResourcesCurrent(display, DefaultRootWindow(display)));
}

void turn_off(Display* display, XRRScreenResources* resources, RRCrtc crtc) {
    XRRSetCrtcConfig(display, resources, crtc, CurrentTime, 0, 0, None, RR_Rotate_0, nullptr, 0);
}

} // namespace

bool DisplayMode::Crtc::operator==(const Crtc& other) const {
    return std::tie(id, mode, x, y, width, height, rotation, outputs) ==
           std::tie(other.id, other.mode, other.x, other.y, other.width, other.height, other.rotation,
                    other.outputs);
}

bool DisplayMode::operator==(const DisplayMode& other) const {
    return width_ == other.width_ && height_ == other.height_ && crtcs_ == other.crtcs_;
}

DisplayMode DisplayMode::current(Display* display) {
    DisplayMode result;
    if (!has_randr_1_3(display)) return result;
    const Resources resources = read_resources(display);
    if (!resources) return result;

    // Xlib remembers the root window's size from when the connection was opened; the server knows it.
    XWindowAttributes root = {};
    XGetWindowAttributes(display, DefaultRootWindow(display), &root);
    result.width_ = root.width;
    result.height_ = root.height;
    result.width_mm_ = DisplayWidthMM(display, DefaultScreen(display));
    result.height_mm_ = DisplayHeightMM(display, DefaultScreen(display));

    for (int i = 0; i < resources->ncrtc; ++i) {
        const CrtcInfo info(XRRGetCrtcInfo(display, resources.get(), resources->crtcs[i]));
        if (!info) continue;
        result.crtcs_.push_back({resources->crtcs[i], info->mode, info->x, info->y,
                                 static_cast<int>(info->width), static_cast<int>(info->height),
                                 info->rotation,
                                 std::vector<RROutput>(info->outputs, info->outputs + info->noutput)});
    }
    return result;
}

void DisplayMode::restore(Display* display) const {
    if (empty() || current(display) == *this) return;
    const Resources resources = read_resources(display);
    if (!resources) return;

    // The root window can only be resized while no monitor reaches beyond it; so: off, resize, on.
    XGrabServer(display);
    for (const Crtc& crtc : crtcs_) turn_off(display, resources.get(), crtc.id);
    XRRSetScreenSize(display, DefaultRootWindow(display), width_, height_, width_mm_, height_mm_);
    for (const Crtc& crtc : crtcs_) {
        if (crtc.mode == None) continue;
        std::vector<RROutput> outputs = crtc.outputs;
        XRRSetCrtcConfig(display, resources.get(), crtc.id, CurrentTime, crtc.x, crtc.y, crtc.mode,
                         crtc.rotation, outputs.data(), static_cast<int>(outputs.size()));
    }
    XUngrabServer(display);
    XSync(display, False);
}

} // namespace desktop
