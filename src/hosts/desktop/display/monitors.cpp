#include "hosts/desktop/display/monitors.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <tuple>

namespace desktop {
namespace {

using common::Box;
using common::Extent;

int g_randr_event = 0; // the number of RandR's first event, from watch_monitors on

struct FreeReply {
    void operator()(XRRScreenResources* reply) const { XRRFreeScreenResources(reply); }
    void operator()(XRRCrtcInfo* reply) const { XRRFreeCrtcInfo(reply); }
    void operator()(XRROutputInfo* reply) const { XRRFreeOutputInfo(reply); }
};
template <class T>
using Reply = std::unique_ptr<T, FreeReply>;

bool has_randr_1_3(Display* display) {
    int event_base = 0, error_base = 0, major = 0, minor = 0;
    if (!XRRQueryExtension(display, &event_base, &error_base)) return false;
    if (!XRRQueryVersion(display, &major, &minor)) return false;
    return major > 1 || (major == 1 && minor >= 3);
}

Reply<XRRScreenResources> read_resources(Display* display) {
    return Reply<XRRScreenResources>(XRRGetScreenResourcesCurrent(display, DefaultRootWindow(display)));
}

// Xlib remembers the root window's size from when the connection was opened; only the server knows it.
Extent read_root_size(Display* display) {
    XWindowAttributes attributes = {};
    XGetWindowAttributes(display, DefaultRootWindow(display), &attributes);
    return {attributes.width, attributes.height};
}

// Pictures per second, 0 where the mode does not say; not of interlaced or doubled lines.
double refresh_rate_of(const XRRModeInfo& mode) {
    const double total = static_cast<double>(mode.hTotal) * mode.vTotal;
    return total > 0 ? static_cast<double>(mode.dotClock) / total : 0;
}

bool matches(const XRRModeInfo& mode, Extent size, int rate) {
    if (static_cast<int>(mode.width) != size.width || static_cast<int>(mode.height) != size.height)
        return false;
    if (mode.modeFlags & (RR_Interlace | RR_DoubleScan)) return false;
    return std::lround(refresh_rate_of(mode)) == rate;
}

// The output's mode of that size and rate, or None.
RRMode find_mode(Display* display, RROutput output, Extent size, int rate) {
    const Reply<XRRScreenResources> resources = read_resources(display);
    if (!resources) return None;
    const Reply<XRROutputInfo> info(XRRGetOutputInfo(display, resources.get(), output));
    if (!info) return None;
    for (int i = 0; i < resources->nmode; ++i) {
        const XRRModeInfo& mode = resources->modes[i];
        const bool offered =
            std::find(info->modes, info->modes + info->nmode, mode.id) != info->modes + info->nmode;
        if (offered && matches(mode, size, rate)) return mode.id;
    }
    return None;
}

} // namespace

bool MonitorLayout::Crtc::operator==(const Crtc& other) const {
    const auto values = [](const Crtc& crtc) {
        return std::tie(crtc.id, crtc.mode, crtc.place.x, crtc.place.y, crtc.place.width, crtc.place.height,
                        crtc.rotation, crtc.outputs);
    };
    return values(*this) == values(other);
}

bool MonitorLayout::operator==(const MonitorLayout& other) const {
    return root_.width == other.root_.width && root_.height == other.root_.height && crtcs_ == other.crtcs_;
}

MonitorLayout MonitorLayout::current(Display* display) {
    MonitorLayout result;
    result.root_ = read_root_size(display);
    result.root_mm_ = {DisplayWidthMM(display, DefaultScreen(display)),
                       DisplayHeightMM(display, DefaultScreen(display))};
    if (!has_randr_1_3(display)) return result;
    const Reply<XRRScreenResources> resources = read_resources(display);
    if (!resources) return result;

    result.primary_ = XRRGetOutputPrimary(display, DefaultRootWindow(display));
    for (int i = 0; i < resources->ncrtc; ++i) {
        const Reply<XRRCrtcInfo> info(XRRGetCrtcInfo(display, resources.get(), resources->crtcs[i]));
        if (!info) continue;
        const Box place = {info->x, info->y, static_cast<int>(info->width), static_cast<int>(info->height)};
        result.crtcs_.push_back({resources->crtcs[i], info->mode, place, info->rotation,
                                 std::vector<RROutput>(info->outputs, info->outputs + info->noutput)});
    }
    return result;
}

const MonitorLayout::Crtc* MonitorLayout::main_crtc() const {
    const Crtc* first = nullptr;
    for (const Crtc& crtc : crtcs_) {
        if (crtc.mode == None || crtc.outputs.empty()) continue;
        if (std::find(crtc.outputs.begin(), crtc.outputs.end(), primary_) != crtc.outputs.end()) return &crtc;
        if (!first) first = &crtc;
    }
    return first;
}

Box MonitorLayout::main_monitor() const {
    const Crtc* crtc = main_crtc();
    return crtc ? crtc->place : Box{0, 0, root_.width, root_.height};
}

double MonitorLayout::refresh_rate(Display* display) const {
    const Crtc* crtc = main_crtc();
    const Reply<XRRScreenResources> resources = crtc ? read_resources(display) : nullptr;
    for (int i = 0; resources && i < resources->nmode; ++i) {
        if (resources->modes[i].id == crtc->mode) return refresh_rate_of(resources->modes[i]);
    }
    return 0;
}

const MonitorLayout::Crtc* MonitorLayout::find(RRCrtc id) const {
    const auto found =
        std::find_if(crtcs_.begin(), crtcs_.end(), [id](const Crtc& crtc) { return crtc.id == id; });
    return found == crtcs_.end() ? nullptr : &*found;
}

// The part of the root window, from its upper left corner, that holds all monitors.
Extent MonitorLayout::used_part() const {
    Extent used = {1, 1};
    for (const Crtc& crtc : crtcs_) {
        if (crtc.mode == None) continue;
        used.width = std::max(used.width, crtc.place.x + crtc.place.width);
        used.height = std::max(used.height, crtc.place.y + crtc.place.height);
    }
    return used;
}

void MonitorLayout::resize_root(Extent size) {
    root_mm_ = {std::max(1, root_mm_.width * size.width / root_.width),
                std::max(1, root_mm_.height * size.height / root_.height)};
    root_ = size;
}

MonitorLayout MonitorLayout::with_main_monitor_in(Display* display, Extent size, int rate) const {
    const Crtc* chosen = main_crtc();
    if (!chosen || !(chosen->rotation & (RR_Rotate_0 | RR_Rotate_180))) return *this;
    const RRMode mode = find_mode(display, chosen->outputs.front(), size, rate);
    if (mode == None) return *this;

    MonitorLayout result = *this;
    for (Crtc& crtc : result.crtcs_) {
        if (crtc.id != chosen->id) continue;
        crtc.mode = mode;
        crtc.place = {crtc.place.x, crtc.place.y, size.width, size.height};
    }
    result.resize_root(result.used_part());
    return result;
}

MonitorLayout MonitorLayout::with_undone(const MonitorLayout& before, const MonitorLayout& after) const {
    MonitorLayout result = *this;
    for (Crtc& crtc : result.crtcs_) {
        const Crtc *earlier = before.find(crtc.id), *later = after.find(crtc.id);
        if (earlier && later && crtc == *later) crtc = *earlier;
    }
    if (result.crtcs_ == crtcs_) return *this;
    const bool root_is_as_left = root_.width == after.root_.width && root_.height == after.root_.height;
    const Extent root = root_is_as_left ? before.root_ : root_, used = result.used_part();
    result.resize_root({std::max(root.width, used.width), std::max(root.height, used.height)});
    return result;
}

void MonitorLayout::apply(Display* display) const {
    const MonitorLayout before = current(display);
    if (before == *this || crtcs_.size() != before.crtcs_.size()) return;
    const Reply<XRRScreenResources> resources = read_resources(display);
    if (!resources) return;

    // The root window can only be resized while no monitor reaches beyond it; so: off, resize, on.
    for (std::size_t i = 0; i < crtcs_.size(); ++i) {
        if (crtcs_[i] == before.crtcs_[i]) continue;
        XRRSetCrtcConfig(display, resources.get(), crtcs_[i].id, CurrentTime, 0, 0, None, RR_Rotate_0,
                         nullptr, 0);
    }
    XRRSetScreenSize(display, DefaultRootWindow(display), root_.width, root_.height, root_mm_.width,
                     root_mm_.height);
    for (std::size_t i = 0; i < crtcs_.size(); ++i) {
        const Crtc& crtc = crtcs_[i];
        if (crtc == before.crtcs_[i] || crtc.mode == None) continue;
        std::vector<RROutput> outputs = crtc.outputs;
        XRRSetCrtcConfig(display, resources.get(), crtc.id, CurrentTime, crtc.place.x, crtc.place.y,
                         crtc.mode, crtc.rotation, outputs.data(), static_cast<int>(outputs.size()));
    }
}

void watch_monitors(Display* display) {
    if (!has_randr_1_3(display)) return;
    int error_base = 0;
    XRRQueryExtension(display, &g_randr_event, &error_base);
    XRRSelectInput(display, DefaultRootWindow(display), RRScreenChangeNotifyMask | RRCrtcChangeNotifyMask);
}

bool is_monitor_change(const XEvent& event) {
    return g_randr_event != 0 &&
           (event.type == g_randr_event + RRScreenChangeNotify || event.type == g_randr_event + RRNotify);
}

} // namespace desktop
