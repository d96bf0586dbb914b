#include "driver/loading.h"

#include <GL/glu.h>
#include <GL/glut.h>

#include "driver/gl_helpers.h"
#include "driver/loading_picture.h"
#include "driver/music.h"
#include "driver/scene_table.h"
#include "driver/show.h"
#include "image/progress.h"

int g_loading_steps = 0;
int g_in_loading = 1;

void loading_step() {
    ++g_loading_steps;
    draw_loading_screen();
}

void load_show() {
    g_progress_hook = loading_step;
    make_loading_picture();
    loading_step();
    glFlush();
    glutSwapBuffers();
    music_open();
    g_quadric = gluNewQuadric();
    link_and_prepare_scenes();
    g_in_loading = 0;
    music_play();
    glutDisplayFunc(g_frame_fn);
}
