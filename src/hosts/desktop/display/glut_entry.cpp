#include "hosts/desktop/display/glut_entry.h"

#include <GL/freeglut.h>

#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>

#include "hosts/desktop/display/desktop.h"
#include "hosts/desktop/display/message.h"
#include "hosts/desktop/display/options.h"
#include "hosts/desktop/display/screen_mode.h"
#include "hosts/desktop/display/screensaver.h"
#include "hosts/desktop/display/signals.h"
#include "hosts/desktop/display/surface.h"
#include "hosts/desktop/display/window.h"

using namespace desktop;
using Clock = std::chrono::steady_clock;

namespace {

Options g_options;
Display* g_desktop = nullptr;
std::unique_ptr<Surface> g_surface; // null where the show draws to the window itself

// What the show has installed.
void (*g_display)() = nullptr;
void (*g_idle)() = nullptr;
void (*g_reshape)(int width, int height) = nullptr;
bool g_size_told = false;

bool g_hidden = false; // nobody can see the window

// A callback that swaps again and again is busy with something long and only keeps the screen alive: it must
// not wait for the refresh every time, so most of its pictures are left out. The last one never is.
constexpr std::chrono::milliseconds kBusyInterval(50);
bool g_swapped_in_callback = false;
bool g_picture_waits = false;
Clock::time_point g_last_shown;

void fail_for_glut(const char* format, va_list arguments) {
    char text[512];
    std::vsnprintf(text, sizeof text, format, arguments);
    fail(1, std::string("no OpenGL window can be had: ") + text);
}

void pass_over_warning(const char*, va_list) {}

void end_if_asked() {
    end_if_signalled();
    if (take_close_request()) std::exit(0);
}

// A display list under construction would record the copy instead of running it.
bool is_compiling_list() {
    GLint list = 0;
    glGetIntegerv(GL_LIST_INDEX, &list);
    return list != 0;
}

void show_picture() {
    g_picture_waits = g_surface && is_compiling_list();
    if (g_hidden || g_picture_waits) return;
    g_last_shown = Clock::now();
    if (!g_surface) return __real_glutSwapBuffers();
    g_surface->draw_to_window(window_size());
    __real_glutSwapBuffers();
    g_surface->bind();
}

void tell_size_once() {
    if (g_size_told) return;
    g_size_told = true;
    if (g_reshape) return g_reshape(kPicture.width, kPicture.height);
    glViewport(0, 0, kPicture.width, kPicture.height); // as GLUT does for a program that does not ask
}

void on_reshape(int, int) { tell_size_once(); }

void on_display() {
    end_if_signalled();
    tell_size_once();
    g_swapped_in_callback = false;
    if (g_display) g_display();
    if (g_picture_waits) show_picture();
}

void on_idle() {
    end_if_signalled();
    if (g_idle) g_idle();
    if (!g_hidden) return;
    on_display();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

void on_window_status(int status) { g_hidden = status == GLUT_HIDDEN || status == GLUT_FULLY_COVERED; }

void create_window(Extent size) {
    glutInitWindowSize(size.width, size.height);
    glutCreateWindow(program_invocation_short_name);
    g_surface = Surface::create();
}

// What glutGameModeString was given.
Extent asked_mode_size() {
    return {glutGameModeGet(GLUT_GAME_MODE_WIDTH), glutGameModeGet(GLUT_GAME_MODE_HEIGHT)};
}

// Without a surface the show's absolute places are the window's, which then has to have the picture's size.
void open_plain_window() {
    create_window(kPicture);
    if (!g_surface) fix_window_size(kPicture);
}

// The window covers the monitor from the start, for a desktop without a window manager to see to it.
void open_full_screen_window() {
    const Box monitor = main_monitor(g_desktop);
    glutInitWindowPosition(monitor.x, monitor.y);
    create_window({monitor.width, monitor.height});
    if (g_surface) {
        ask_for_full_screen();
    } else {
        glutReshapeWindow(kPicture.width, kPicture.height);
        fix_window_size(kPicture);
    }
}

} // namespace

int __wrap_main(int argc, char** argv) {
    g_options = read_options(argc, argv);
    const int remaining = static_cast<int>(g_options.remaining.size());
    g_options.remaining.push_back(nullptr);
    return __real_main(remaining, g_options.remaining.data());
}

void __wrap_glutInit(int* argc, char** argv) {
    note_signals();
    g_desktop = connect_to_desktop();
    glutInitErrorFunc(fail_for_glut);
    glutInitWarningFunc(pass_over_warning);
    leave_mode_at_exit(); // after GLUT's own exit handler has taken the window away
    __real_glutInit(argc, argv);
}

int __wrap_glutEnterGameMode() {
    if (g_options.window) {
        open_plain_window();
    } else {
        enter_mode(g_desktop, asked_mode_size(), glutGameModeGet(GLUT_GAME_MODE_REFRESH_RATE));
        open_full_screen_window();
    }
    glutSetOption(GLUT_ACTION_ON_WINDOW_CLOSE, GLUT_ACTION_EXIT);
    glutSetCursor(GLUT_CURSOR_NONE);
    name_window_class(program_invocation_short_name);
    glutWindowStatusFunc(on_window_status);
    __real_glutReshapeFunc(on_reshape);
    ask_for_vertical_sync();
    keep_screen_awake(g_desktop);
    return glutGetWindow();
}

void __wrap_glutReshapeFunc(void (*callback)(int width, int height)) { g_reshape = callback; }

void __wrap_glutDisplayFunc(void (*callback)()) {
    g_display = callback;
    __real_glutDisplayFunc(on_display);
}

void __wrap_glutIdleFunc(void (*callback)()) {
    g_idle = callback;
    __real_glutIdleFunc(on_idle);
}

void __wrap_glutSwapBuffers() {
    end_if_asked();
    const bool busy = g_swapped_in_callback;
    g_swapped_in_callback = true;
    if (busy && Clock::now() - g_last_shown < kBusyInterval) {
        g_picture_waits = true;
        return;
    }
    show_picture();
}
