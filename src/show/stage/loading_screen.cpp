#include "show/stage/loading_screen.h"

#include <GL/gl.h>
#include <GL/glut.h>

#include "show/stage/overlay.h"

unsigned g_loading_texture = 0;
int g_loading_steps = 0;

void draw_loading_screen() {
    glClearColor(1, 1, 1, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glLoadIdentity();
    begin_2d();

    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, g_loading_texture);
    glColor3f(2.0f, 2.0f, 2.0f); // above white; intentional, GL clamps it
    glDisable(GL_BLEND);
    glDisable(GL_LIGHTING);
    glDepthMask(GL_FALSE);

    glBegin(GL_QUADS);
    glTexCoord2i(0, 0);
    glVertex3i(307, 256, 1);
    glTexCoord2i(0, 1);
    glVertex3i(307, 512, 1);
    glTexCoord2i(1, 1);
    glVertex3i(717, 512, 1);
    glTexCoord2i(1, 0);
    glVertex3i(717, 256, 1);
    glEnd();

    end_2d();
    glDepthMask(GL_TRUE);
    glEnable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_BLEND);
    end_2d(); // one push, two pops: the second underflows and GL records an error that is not read. Intentional.
    glFlush();
    glutSwapBuffers();
}

void loading_step() {
    ++g_loading_steps;
    draw_loading_screen();
}
