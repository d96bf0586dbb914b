#include "hosts/desktop/display/screen_mode.h"

#include <cstdlib>

#include "hosts/desktop/display/display_mode.h"
#include "hosts/desktop/display/mode_keeper.h"

namespace desktop {
namespace {

Display* g_display = nullptr; // null while the mode is the desktop's own
DisplayMode g_desktop_mode;

void leave_mode() {
    if (!g_display) return;
    g_desktop_mode.apply(g_display);
    dismiss_mode_keeper();
    g_display = nullptr;
}

} // namespace

void leave_mode_at_exit() { std::atexit(leave_mode); }

void enter_mode(Display* display, Extent size, int rate) {
    g_desktop_mode = DisplayMode::current(display);
    const DisplayMode wanted = g_desktop_mode.with_main_monitor_in(display, size, rate);
    if (wanted == g_desktop_mode || !keep_display_mode(g_desktop_mode)) return;
    g_display = display;
    wanted.apply(display);
    if (DisplayMode::current(display) != wanted) leave_mode();
}

Box main_monitor(Display* display) { return DisplayMode::current(display).main_monitor(); }

} // namespace desktop
