#include "show/scenes/caption.h"

#include <GL/gl.h>

#include "show/stage/overlay.h"

void draw_caption(unsigned words, int row) {
    glLoadIdentity();
    begin_2d();
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, words);
    glColor4f(2.0f, 2.0f, 2.0f, 0.5f); // above white; intentional, GL clamps it
    glEnable(GL_BLEND);
    glDisable(GL_LIGHTING);
    glDepthMask(GL_FALSE);
    glTranslated(-100, 0, 0);
    if (row != kNoCaption) draw_flat(512, 668.16, 1024, 768, row * 0.125, (row + 1) * 0.125);
    end_2d();
}
