#include "scenes/stage.h"

#include <GL/glu.h>

#include "driver/gl_helpers.h"

void set_up_lights() {
    static constexpr float kAmbient[4] = {0.8f, 0.8f, 0.8f, 1.0f};
    static constexpr float kGrey[4] = {0.5f, 0.5f, 0.5f, 0.5f};
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, kAmbient);
    glLightfv(GL_LIGHT0, GL_DIFFUSE, kGrey);
    glLightfv(GL_LIGHT0, GL_SPECULAR, kGrey);
    glEnable(GL_LIGHT0);
}

void set_up_projection() {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(70.0, 1.3333333333333333, 0.1, 500.0);
    glMatrixMode(GL_MODELVIEW);
}

void set_up_fog(float start, float end) {
    static constexpr float kColor[4] = {0.5f, 0.5f, 0.5f, 1.0f};
    glFogi(GL_FOG_MODE, GL_LINEAR);
    glFogf(GL_FOG_START, start);
    glFogf(GL_FOG_END, end);
    glFogfv(GL_FOG_COLOR, kColor);
    glEnable(GL_FOG);
}

void look_at_origin() { gluLookAt(-0.0, 0, 35, 0, 0, 0, 0, 1, 1); }

void blend_alpha() { glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA); }

void set_white(double alpha) { glColor4f(1.0f, 1.0f, 1.0f, static_cast<float>(alpha)); }

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

void set_full_viewport() { glViewport(0, 0, 1024, 768); }

void set_picture_viewport() { glViewport(0, 76, 1024, 614); }

// 0x1702 names a matrix, not a capability: GL rejects both calls, and texturing stays as it is under the
// bars, which come out black with or without it. Meant.
void begin_letterbox() {
    glDisable(GL_BLEND);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE);
    glColor4f(0.0f, 0.0f, 0.0f, 0.0f);
    set_full_viewport();
    begin_2d();
    glDepthMask(GL_FALSE);
    draw_rect(0, 0, 1024, 76.8);
    draw_rect(0, 691.2, 1024, 768);
}

void restore_after_letterbox() {
    glEnable(GL_BLEND);
    glEnable(GL_LIGHTING);
    glEnable(GL_TEXTURE);
    glDepthMask(GL_TRUE);
}

void draw_letterbox() {
    glEnable(GL_LIGHTING); // for an instant: begin_letterbox switches it off again
    begin_letterbox();
    restore_after_letterbox();
    set_picture_viewport();
    end_2d();
}
