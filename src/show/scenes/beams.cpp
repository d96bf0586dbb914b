#include "show/scenes/beams.h"

#include "show/stage/render_state.h"
#include "show/stage/shapes.h"

void set_up_beam(GLenum orientation, unsigned texture) {
    gluQuadricNormals(g_quadric, GLU_SMOOTH);
    gluQuadricTexture(g_quadric, GL_TRUE);
    gluQuadricOrientation(g_quadric, orientation);
    glEnable(GL_BLEND);
    glBindTexture(GL_TEXTURE_2D, texture);
    set_specular(1.0f, 12);
}

void draw_beam_cylinder() { gluCylinder(g_quadric, 0.3, 0.3, 40, 100, 1); }

void draw_glowing_piece(int i) {
    glPushMatrix();
    glTranslated(0, 0, 40 * i);
    glColor4f(1.0f, 0.0f, 0.0f, 0.5f);
    blend_alpha();
    draw_beam_cylinder();
    glColor4f(1.2f, 0.0f, 0.0f, 0.3f);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    draw_beam_cylinder();
    glPopMatrix();
}

void draw_visible_pieces(float scroll_y, void (*draw_piece)(int i)) {
    for (int i = 0; i < 200; ++i) {
        const double z = 40 * i - 40;
        if (z < scroll_y - 600.0) continue;
        if (z > scroll_y + 600.0) return;
        draw_piece(i);
    }
}
