#include "driver/show.h"

#include <GL/glut.h>

#include "driver/music.h"
#include "driver/scene_table.h"
#include "driver/timeline.h"

double g_demo_time = 0.0;
double g_scene_time = 0.0;
int g_finished = 0;
void (*g_frame_fn)() = show_frame;

void show_frame() {
    if (g_finished) return;
    g_demo_time = music_position_ms() * 0.001;
    run_timeline();
    for (Scene* scene = g_scene_list; scene; scene = scene->next) {
        if (!scene->active) continue;
        g_scene_time = g_demo_time - scene->start_time;
        if (scene->render) scene->render();
    }
    glFlush();
    glutSwapBuffers();
}

int ramp(int* running, double t0, double duration, double* out) {
    if (!*running) return 1;
    const double d = g_demo_time - t0;
    if (duration > 0) {
        *out = d / duration;
        *running = *out <= 1.0;
    } else {
        *out = 1.0 - d / -duration;
        *running = *out >= 0.0;
    }
    return *running;
}
