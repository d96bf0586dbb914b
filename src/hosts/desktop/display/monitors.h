// The modes and places of all monitors as a value: read from the server, changed, compared, put in force.
#pragma once

#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>

#include <vector>

#include "hosts/common/geometry.h"

namespace desktop {

class MonitorLayout {
public:
    // What is in force now. Where the server's RandR is older than 1.3 it holds no monitor.
    static MonitorLayout current(Display* display);

    // This with the main monitor, the primary one or else the first that is on, in a mode of the given size (pixels)
    // and refresh rate (Hz, to the nearest integer). The other monitors keep their modes and places. Unchanged where
    // that monitor does not have the mode, or stands upright.
    MonitorLayout with_main_monitor_in(Display* display, common::Extent size, int rate) const;

    // This with the change from `before` to `after` undone: monitors that are still as `after` has them are as in
    // `before`. What somebody else has changed meanwhile stays as it is.
    MonitorLayout with_undone(const MonitorLayout& before, const MonitorLayout& after) const;

    // Place of the main monitor on the root window, y downwards from the top; without one, the root window.
    common::Box main_monitor() const;

    // How often a second the main monitor shows a new picture; 0 where the server does not say.
    double refresh_rate(Display* display) const;

    // Puts this in force. Monitors that are as they should be are not touched. To be called under a ServerGrab, and
    // an XErrorTrap: the server may refuse it, which current() then shows.
    void apply(Display* display) const;

    bool operator==(const MonitorLayout& other) const;
    bool operator!=(const MonitorLayout& other) const { return !(*this == other); }

private:
    struct Crtc {
        RRCrtc id;
        RRMode mode;       // None while it is off
        common::Box place; // on the root window, y downwards
        Rotation rotation;
        std::vector<RROutput> outputs;

        bool operator==(const Crtc& other) const;
    };

    const Crtc* main_crtc() const;
    const Crtc* find(RRCrtc id) const;
    common::Extent used_part() const;
    void resize_root(common::Extent size);

    common::Extent root_ = {0, 0};    // pixels
    common::Extent root_mm_ = {0, 0}; // millimetres; they follow the pixels and are never compared
    RROutput primary_ = None;
    std::vector<Crtc> crtcs_;
};

// Asks the server to report every change of a monitor from here on, by events on that connection.
void watch_monitors(Display* display);

// Whether an event is such a report.
bool is_monitor_change(const XEvent& event);

} // namespace desktop
