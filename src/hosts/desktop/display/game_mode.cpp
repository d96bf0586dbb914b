#include "display/game_mode.h"

#include <GL/freeglut.h>

#include <chrono>
#include <thread>

#include "display/display_mode.h"
#include "display/glut_entry.h"
#include "display/mode_keeper.h"

namespace desktop {
namespace {

// A menu that started the program may hold the pointer for a moment longer.
constexpr std::chrono::milliseconds kGrabPatience(2000);

bool pointer_can_be_grabbed(Display* display) {
    const auto give_up = std::chrono::steady_clock::now() + kGrabPatience;
    while (XGrabPointer(display, DefaultRootWindow(display), False, 0, GrabModeAsync, GrabModeAsync, None,
                        None, CurrentTime) != GrabSuccess) {
        if (std::chrono::steady_clock::now() > give_up) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    XUngrabPointer(display, CurrentTime);
    XSync(display, False);
    return true;
}

} // namespace

bool enter_game_mode(Display* display) {
    if (!glutGameModeGet(GLUT_GAME_MODE_POSSIBLE)) return false;
    if (!pointer_can_be_grabbed(display)) return false;
    const DisplayMode before = DisplayMode::current(display);
    keep_display_mode(before);
    __real_glutEnterGameMode();
    if (glutGameModeGet(GLUT_GAME_MODE_ACTIVE)) return true;
    before.restore(display);
    return false;
}

} // namespace desktop
