// GLUT without a window: the display is the off-screen surface, the loop calls back once for each frame, and there is
// no input.
#include <GL/glut.h>

#include <cstdio>
#include <string>

#include "hosts/offscreen/run.h"

using offscreen::Failure;
using offscreen::for_show;
using offscreen::the_run;

namespace {

constexpr int kMostIdleCalls = 10'000; // without a request for a frame

int g_width = 300; // GLUT's own default until the program sets a size
int g_height = 300;
std::string g_game_mode;
bool g_redisplay = true; // GLUT displays a new window once unasked

void (*g_on_display)() = nullptr;
void (*g_on_idle)() = nullptr;
void (*g_on_reshape)(int width, int height) = nullptr;

void display_once() {
    g_redisplay = false;
    the_run().begin_display();
    g_on_display();
    the_run().end_display();
}

} // namespace

extern "C" {

void FGAPIENTRY glutInit(int*, char**) {
    for_show([] { the_run().begin(); });
}

void FGAPIENTRY glutInitDisplayMode(unsigned int) {} // the surface always has colour and depth

void FGAPIENTRY glutInitWindowPosition(int, int) {}

void FGAPIENTRY glutInitWindowSize(int width, int height) {
    g_width = width;
    g_height = height;
}

void FGAPIENTRY glutGameModeString(const char* mode) { g_game_mode = mode; }

int FGAPIENTRY glutEnterGameMode(void) {
    int width = 0;
    int height = 0;
    if (std::sscanf(g_game_mode.c_str(), "%dx%d", &width, &height) == 2) {
        g_width = width;
        g_height = height;
    }
    for_show([] { the_run().open_screen(g_width, g_height); });
    return 1;
}

void FGAPIENTRY glutReshapeFunc(void (*callback)(int, int)) { g_on_reshape = callback; }
void FGAPIENTRY glutIdleFunc(void (*callback)(void)) { g_on_idle = callback; }
void FGAPIENTRY glutDisplayFunc(void (*callback)(void)) { g_on_display = callback; }

void FGAPIENTRY glutPostRedisplay(void) { g_redisplay = true; }

void FGAPIENTRY glutSwapBuffers(void) {
    for_show([] { the_run().swap_buffers(); });
}

void FGAPIENTRY glutMainLoop(void) {
    for_show([] {
        if (g_on_reshape) g_on_reshape(g_width, g_height);
        for (int idle_calls = 0; idle_calls < kMostIdleCalls; ++idle_calls) {
            if (!g_on_display) throw Failure("the show has set no display callback");
            if (g_redisplay) {
                display_once();
                idle_calls = 0;
            }
            if (g_on_idle) g_on_idle();
        }
        throw Failure("the show has stopped asking for frames");
    });
}

} // extern "C"
