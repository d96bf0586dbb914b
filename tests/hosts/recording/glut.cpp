// GLUT entry points. The main loop follows the script: it calls reshape once with the surface's size, then idle
// and, when a redisplay was asked for, display, until the script's display calls are used up.
#include <GL/glut.h>

#include "tests/hosts/recording/record.h"

using recording::record;

namespace {

recording::Callbacks g_callbacks;
bool g_redisplay = false;

// A callback is logged as being there; which one it is stands in callbacks().
int is_set(bool callback) { return callback ? 1 : 0; }

} // namespace

namespace recording {

const Callbacks& callbacks() { return g_callbacks; }

} // namespace recording

extern "C" {

void glutInit(int* argc, char** argv) { record(__func__, *argc, argv && argv[0] ? argv[0] : ""); }
void glutInitDisplayMode(unsigned mode) { record(__func__, mode); }
void glutInitWindowSize(int width, int height) { record(__func__, width, height); }
void glutInitWindowPosition(int x, int y) { record(__func__, x, y); }
void glutGameModeString(const char* string) { record(__func__, string); }
int glutEnterGameMode() {
    record(__func__);
    return 1;
}
void glutReshapeFunc(void (*callback)(int, int)) {
    record(__func__, is_set(callback));
    g_callbacks.reshape = callback;
}
void glutIdleFunc(void (*callback)()) {
    record(__func__, is_set(callback));
    g_callbacks.idle = callback;
}
void glutDisplayFunc(void (*callback)()) {
    record(__func__, is_set(callback));
    g_callbacks.display = callback;
}
void glutPostRedisplay() {
    record(__func__);
    g_redisplay = true;
}
void glutSwapBuffers() { record(__func__); }

void glutMainLoop() {
    record(__func__);
    const recording::Script& script = recording::script();
    if (g_callbacks.reshape) g_callbacks.reshape(script.surface_width, script.surface_height);
    g_redisplay = true; // a new surface is shown once without being asked
    for (int shown = 0; shown < script.display_calls;) {
        if (g_redisplay && g_callbacks.display) {
            g_redisplay = false;
            ++shown;
            g_callbacks.display();
        }
        if (g_callbacks.idle) g_callbacks.idle();
        if (!g_redisplay) break; // no callback would ever be called again
    }
    throw recording::ScriptEnded{};
}

} // extern "C"
