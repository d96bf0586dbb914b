#include "show/stage/overlay.h"

#include <GL/gl.h>

void begin_2d() {
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0, 1024, 768, 0, -100, 100);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
}

void end_2d() {
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}

void draw_flat(double x0, double y0, double x1, double y1, double t0, double t1) {
    glBegin(GL_QUADS);
    glTexCoord2d(0, t0);
    glVertex3d(x0, y0, 1);
    glTexCoord2d(0, t1);
    glVertex3d(x0, y1, 1);
    glTexCoord2d(1, t1);
    glVertex3d(x1, y1, 1);
    glTexCoord2d(1, t0);
    glVertex3d(x1, y0, 1);
    glEnd();
}
