// The modes and places of all monitors, as a value: read from the server, compared, put back.
#pragma once

#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>

#include <vector>

namespace desktop {

class DisplayMode {
public:
    // What is in force now. Empty where the server's RandR is older than 1.3.
    static DisplayMode current(Display* display);

    bool empty() const { return crtcs_.empty(); }

    // Puts everything back as it was when this value was read; sends nothing if it still is. Returns when the
    // server has done so.
    void restore(Display* display) const;

private:
    struct Crtc {
        RRCrtc id;
        RRMode mode; // None while it is off
        int x, y;    // pixels
        int width, height;
        Rotation rotation;
        std::vector<RROutput> outputs;

        bool operator==(const Crtc& other) const;
    };

    bool operator==(const DisplayMode& other) const;

    int width_ = 0, height_ = 0;       // of the root window, pixels
    int width_mm_ = 0, height_mm_ = 0; // of the root window, millimetres
    std::vector<Crtc> crtcs_;
};

} // namespace desktop
