#include "show/driver/frame.h"

#include <GL/glut.h>

#include "show/driver/music.h"
#include "show/driver/scene_table.h"
#include "show/driver/timeline.h"
#include "show/stage/show_time.h"

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
