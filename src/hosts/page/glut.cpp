// GLUT in a browser: there is no loop to wait in, so the main loop returns to the browser, and the performer
// (web/performer.js) calls page_frame for each picture that is to be seen. There is no input.
#include <GL/glut.h>
#include <emscripten.h>

#include <cstdlib>

#include "hosts/common/geometry.h"
#include "hosts/page/gl/driver.h"
#include "hosts/page/gl/layer.h"

namespace {

using common::kPicture;

// A display callback that draws nothing is followed by the next one at once, up to so many.
constexpr int kMostCallsWithoutPicture = 1000;

// A callback that swaps again and again is busy with something long and only keeps the screen alive: of its pictures
// one in so many milliseconds is passed on, and the last one.
constexpr double kBusyInterval = 50;

void (*g_on_display)() = nullptr;
void (*g_on_idle)() = nullptr;
void (*g_on_reshape)(int width, int height) = nullptr;

bool g_redisplay = true; // GLUT displays a new window once unasked
bool g_size_told = false;
int g_swaps = 0; // in the current display callback
bool g_picture_waits = false;
double g_last_shown = 0; // ms

// Makes the canvas's context the one that GL draws with.
EM_JS(void, use_context, (), {
    const context = GL.registerContext(Module["context"], {majorVersion : 2});
    GL.makeContextCurrent(context);
});

// Passes on what is in the canvas.
EM_JS(void, pass_picture, (), { Module["present"](); });

void report(const char* message) { emscripten_log(EM_LOG_CONSOLE | EM_LOG_ERROR, "%s", message); }

void show_picture() {
    g_picture_waits = false;
    g_last_shown = emscripten_get_now();
    page::gl::present();
    pass_picture();
}

void display_once() {
    g_redisplay = false;
    g_swaps = 0;
    g_on_display();
    if (g_picture_waits) show_picture();
}

} // namespace

extern "C" {

void glutInit(int*, char**) {}
void glutInitDisplayMode(unsigned int) {} // the layer always has colour and depth
void glutInitWindowSize(int, int) {}
void glutInitWindowPosition(int, int) {}
void glutGameModeString(const char*) {}

int glutEnterGameMode(void) {
    use_context();
    page::gl::set_report(report);
    if (!page::gl::start(page::gl::browser_driver(), kPicture.width, kPicture.height)) std::abort();
    return 1;
}

void glutReshapeFunc(void (*callback)(int, int)) { g_on_reshape = callback; }
void glutIdleFunc(void (*callback)(void)) { g_on_idle = callback; }
void glutDisplayFunc(void (*callback)(void)) { g_on_display = callback; }

void glutPostRedisplay(void) { g_redisplay = true; }

void glutSwapBuffers(void) {
    ++g_swaps;
    if (g_swaps > 1 && emscripten_get_now() - g_last_shown < kBusyInterval) {
        g_picture_waits = true;
        return;
    }
    show_picture();
}

void glutMainLoop(void) { emscripten_exit_with_live_runtime(); }

// Calls the show back until it has drawn a picture. The canvas has width x height pixels; its shape is the picture's.
EMSCRIPTEN_KEEPALIVE void page_frame(int width, int height) {
    page::gl::set_size(width, height);
    if (!g_size_told && g_on_reshape) g_on_reshape(kPicture.width, kPicture.height);
    g_size_told = true;
    g_swaps = 0;
    for (int i = 0; i < kMostCallsWithoutPicture && g_swaps == 0; ++i) {
        if (g_redisplay && g_on_display) display_once();
        if (g_on_idle) g_on_idle();
    }
}

} // extern "C"
