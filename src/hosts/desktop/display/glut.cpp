// The desktop host between the show and freeglut. The show calls GLUT by its own names and checks nothing; the
// linker's --wrap (see CMakeLists.txt) leads the calls below here first, under the names __wrap_<call>, and
// freeglut's own stay reachable as __real_<call>. Everything else of GLUT goes straight to freeglut.
//
// - glutInit: connects to the X server or says why that cannot be done; from then on signals end the show in order.
// - glutEnterGameMode: enters the mode, or opens a window and the surface that stands for the screen.
// - glutReshapeFunc: the show is told one size, 1024x768, once, whatever size its window takes later.
// - glutDisplayFunc: around each frame: requests to end, skipped frames, and a picture that is still to be shown.
// - glutIdleFunc: requests to end; frames while the window is hidden, which freeglut leaves out.
// - glutSwapBuffers: presents the surface, on a screen that may have changed; requests to end.
#include <GL/freeglut.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>

#include "hosts/common/gl_skip.h"
#include "hosts/common/gl_surface.h"
#include "hosts/common/prompt.h"
#include "hosts/common/signals.h"
#include "hosts/common/skip_ahead.h"
#include "hosts/common/sound_calls.h"
#include "hosts/desktop/display/monitors.h"
#include "hosts/desktop/display/present.h"
#include "hosts/desktop/display/screen_mode.h"
#include "hosts/desktop/display/screensaver.h"
#include "hosts/desktop/display/window.h"
#include "hosts/desktop/display/x_server.h"
#include "hosts/desktop/frame_statistics.h"
#include "hosts/desktop/message.h"
#include "hosts/desktop/options.h"

namespace desktop {

extern "C" {

void __wrap_glutInit(int* argc, char** argv);
int __wrap_glutEnterGameMode();
void __wrap_glutReshapeFunc(void (*callback)(int width, int height));
void __wrap_glutDisplayFunc(void (*callback)());
void __wrap_glutIdleFunc(void (*callback)());
void __wrap_glutSwapBuffers();

void __real_glutInit(int* argc, char** argv);
void __real_glutReshapeFunc(void (*callback)(int width, int height));
void __real_glutDisplayFunc(void (*callback)());
void __real_glutIdleFunc(void (*callback)());
void __real_glutSwapBuffers();

} // extern "C"

namespace {

using Clock = std::chrono::steady_clock;
using common::Extent;
using common::kPicture;

Display* g_display = nullptr; // the host's own connection

// Brings what the show draws to the window; null where it draws to the window itself. It lives as long as GLUT's
// context, which ends with the process.
Presenter* g_presenter = nullptr;

// What the show has installed.
void (*g_on_display)() = nullptr;
void (*g_on_idle)() = nullptr;
void (*g_on_reshape)(int width, int height) = nullptr;
bool g_size_told = false;

bool g_hidden = false; // nobody can see the window
bool g_window_destroyed = false;

// Since the window was last placed; watched only for a window that covers a monitor.
bool g_monitors_changed = false;

// A callback that swaps again and again is busy with something long and only keeps the screen alive: it must not wait
// for the refresh every time, so most of its pictures are left out. The last one never is.
constexpr std::chrono::milliseconds kBusyInterval(50);
bool g_swapped_in_callback = false;
bool g_picture_waits = false;
Clock::time_point g_last_shown;

// For --stats; null without it. Lives to the end of the process, when it is printed.
FrameStatistics* g_statistics = nullptr;

double seconds(Clock::time_point time) {
    return std::chrono::duration<double>(time.time_since_epoch()).count();
}

// Collects statistics from here on and prints them at the end.
void start_statistics() {
    const double asked = glutGameModeGet(GLUT_GAME_MODE_REFRESH_RATE), rate = refresh_rate(g_display);
    g_statistics = new FrameStatistics(rate > 0 ? rate : asked);
    common::position_listener = [](unsigned milliseconds) {
        if (common::frame_is_skipped()) return;
        g_statistics->position_read(seconds(Clock::now()), milliseconds);
    };
    std::atexit([] { say("what was shown:\n" + g_statistics->text()); });
}

void fail_for_glut(const char* format, va_list arguments) {
    char text[512];
    std::vsnprintf(text, sizeof text, format, arguments);
    fail(1, std::string("GLUT cannot open its window: ") + text);
}

void ignore_warning(const char*, va_list) {}

// Reads what the server has reported on the host's own connection.
void read_reports() {
    if (has_x_error()) XSync(g_display, False); // a destroyed window causes errors, also ahead of its report
    while (XPending(g_display) > 0) {
        XEvent event;
        XNextEvent(g_display, &event);
        if (event.type == DestroyNotify) g_window_destroyed = true;
        if (is_monitor_change(event)) g_monitors_changed = true;
    }
}

// Ends the process if somebody has asked for that, or an X error demands it.
void end_if_asked() {
    if (const int number = common::noted_signal()) std::exit(128 + number);
    read_reports();
    if (g_window_destroyed || take_close_request()) std::exit(0);
    end_on_x_error();
}

// Ends the process soon after a signal also where it cannot end in order: while the X server hangs no call to it
// returns, at the end neither, and a step of the loading may take long. The mode is undone all the same.
void end_soon_after_a_signal() {
    std::thread([] {
        if (common::wait_until_ready(-1, 0)) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(700));
        _exit(128 + common::noted_signal());
    }).detach();
}

// Keeps the window on the main monitor when somebody changes its mode.
void follow_monitors() {
    if (!g_monitors_changed) return;
    g_monitors_changed = false;
    cover_without_window_manager(main_monitor(g_display));
}

// Whether a display list is being compiled, which would record the copy to the window instead of making it.
bool is_compiling_list() {
    GLint list = 0;
    glGetIntegerv(GL_LIST_INDEX, &list);
    return list != 0;
}

// Brings what has been drawn to the window, unless nobody can see it.
void show_picture() {
    g_picture_waits = g_presenter && is_compiling_list();
    if (g_hidden && g_statistics) g_statistics->hidden();
    if (g_hidden || g_picture_waits) return;
    g_last_shown = Clock::now();
    const Extent window = window_size();
    if (g_presenter) g_presenter->draw_to_window(window);
    __real_glutSwapBuffers();
    if (g_statistics) g_statistics->shown(seconds(Clock::now()));
    if (g_presenter) g_presenter->end(window);
}

void tell_size_once() {
    if (g_size_told) return;
    g_size_told = true;
    if (g_on_reshape) return g_on_reshape(kPicture.width, kPicture.height);
    glViewport(0, 0, kPicture.width, kPicture.height); // as GLUT does for a program that does not ask
}

void on_reshape(int, int) { tell_size_once(); }

void on_display() {
    end_if_asked();
    tell_size_once();
    g_swapped_in_callback = false;
    common::begin_frame();
    common::skip_drawing(common::frame_is_skipped());
    if (g_on_display) g_on_display();
    common::end_frame();
    if (g_picture_waits) show_picture();
}

void on_idle() {
    end_if_asked();
    if (g_on_idle) g_on_idle();
    if (!g_hidden) return;
    on_display();
    if (common::frame_is_skipped()) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

void on_window_status(int status) { g_hidden = status == GLUT_HIDDEN || status == GLUT_FULLY_COVERED; }

// The show has asked its question.
void end_prompt() {
    try {
        common::end_prompt();
    } catch (const std::runtime_error& error) {
        fail(1, error.what());
    }
}

// Opens GLUT's window and, where OpenGL has one to offer, the surface.
void create_window(Extent size) {
    glutInitWindowSize(size.width, size.height);
    glutCreateWindow(program_invocation_short_name);
    const Sharpness sharpness = {options().scale, options().smooth,
                                 draws_in_software(reinterpret_cast<const char*>(glGetString(GL_RENDERER)))};
    try {
        if (common::has_framebuffer_objects()) g_presenter = new Presenter(sharpness, size);
    } catch (const std::runtime_error&) {
        // The show then draws to the window itself.
    }
    const int multiple = g_presenter ? g_presenter->multiple() : 1;
    if (multiple < options().scale) {
        say("this OpenGL cannot draw at the scale " + std::to_string(options().scale) + ", it draws at " +
            std::to_string(multiple));
    }
}

// The size that glutGameModeString was given.
Extent asked_mode_size() {
    return {glutGameModeGet(GLUT_GAME_MODE_WIDTH), glutGameModeGet(GLUT_GAME_MODE_HEIGHT)};
}

// Opens a window of the picture's size. Without a surface the show's absolute places are the window's, which then has
// to keep that size.
void open_plain_window() {
    create_window(kPicture);
    if (!g_presenter) fix_window_size(kPicture);
}

// Opens a window that covers the main monitor, with or without a window manager.
void open_full_screen_window() {
    const common::Box monitor = main_monitor(g_display);
    glutInitWindowPosition(monitor.x, monitor.y);
    create_window({monitor.width, monitor.height});
    if (g_presenter) {
        ask_for_full_screen();
        watch_monitors(g_display);
    } else {
        glutReshapeWindow(kPicture.width, kPicture.height);
        fix_window_size(kPicture);
    }
}

} // namespace

extern "C" {

void __wrap_glutInit(int* argc, char** argv) {
    end_prompt();
    common::handle_signals();
    end_soon_after_a_signal();
    g_display = connect_to_x_server();
    remove_mark_of_dead_window_manager(g_display);
    glutInitErrorFunc(fail_for_glut);
    glutInitWarningFunc(ignore_warning);
    leave_mode_at_exit(); // after GLUT's own exit handler has taken the window away
    __real_glutInit(argc, argv);
}

int __wrap_glutEnterGameMode() {
    if (options().window) {
        open_plain_window();
    } else {
        const int rate = glutGameModeGet(GLUT_GAME_MODE_REFRESH_RATE);
        if (!options().keep_mode) enter_mode(g_display, asked_mode_size(), rate);
        open_full_screen_window();
    }
    glutSetOption(GLUT_ACTION_ON_WINDOW_CLOSE, GLUT_ACTION_EXIT);
    watch_window(g_display);
    glutSetCursor(GLUT_CURSOR_NONE);
    name_window_class(program_invocation_short_name);
    glutWindowStatusFunc(on_window_status);
    __real_glutReshapeFunc(on_reshape);
    ask_for_vertical_sync();
    keep_screen_awake(g_display);
    if (options().stats) start_statistics();
    return glutGetWindow();
}

void __wrap_glutReshapeFunc(void (*callback)(int width, int height)) { g_on_reshape = callback; }

void __wrap_glutDisplayFunc(void (*callback)()) {
    g_on_display = callback;
    __real_glutDisplayFunc(on_display);
}

void __wrap_glutIdleFunc(void (*callback)()) {
    g_on_idle = callback;
    __real_glutIdleFunc(on_idle);
}

void __wrap_glutSwapBuffers() {
    end_if_asked();
    if (common::frame_is_skipped()) return;
    follow_monitors();
    const bool busy = g_swapped_in_callback;
    g_swapped_in_callback = true;
    if (busy && Clock::now() - g_last_shown < kBusyInterval) {
        g_picture_waits = true;
        return;
    }
    show_picture();
}

} // extern "C"

} // namespace desktop
