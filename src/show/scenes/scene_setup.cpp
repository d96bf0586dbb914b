#include "show/scenes/scene_setup.h"

#include <GL/glu.h>

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

void look_at_origin() {
    gluLookAt(-0.0, 0, 35, 0, 0, 0, 0, 1, 1); // the minus is part of the call; logs compare its bits
}
