#include "show/driver/display.h"

#include <GL/glu.h>
#include <GL/glut.h>

#include "show/driver/loading.h"

int g_game_mode = 0;
int g_warmup_frames = 0;

void (*g_display_cb)() = warmup_display;
void (*g_idle_cb)() = idle_redisplay;
void (*g_reshape_cb)(int width, int height) = reshape;

// Replaces the viewport that main sets: until the first scene sets its own, the whole surface is drawn.
void reshape(int width, int height) {
    glViewport(0, 0, width, height);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    const float aspect = static_cast<float>(width) / static_cast<float>(height);
    gluPerspective(45.0, aspect, 0.1, 100.0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

void idle_redisplay() { glutPostRedisplay(); }

void idle_redisplay_spare() { glutPostRedisplay(); }

void warmup_display() {
    ++g_warmup_frames;
    if (g_warmup_frames > 100) glutDisplayFunc(load_show);
}
