#include "show/driver/loading.h"

#include <GL/glu.h>
#include <GL/glut.h>

#include "show/driver/frame.h"
#include "show/driver/music.h"
#include "show/driver/scene_table.h"
#include "show/image/progress.h"
#include "show/stage/loading_picture.h"
#include "show/stage/loading_screen.h"
#include "show/stage/shapes.h"

int g_in_loading = 1;

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
