#include "show/scenes/letterbox.h"

#include <GL/gl.h>

#include "show/stage/overlay.h"
#include "show/stage/shapes.h"

void set_full_viewport() { glViewport(0, 0, 1024, 768); }

void set_picture_viewport() { glViewport(0, 76, 1024, 614); }

// GL_TEXTURE is a matrix mode, not a capability: GL rejects the calls here and below, and texturing stays as it is.
// The bars are black either way. Intentional.
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
    glEnable(GL_LIGHTING); // no effect: begin_letterbox disables it again
    begin_letterbox();
    restore_after_letterbox();
    set_picture_viewport();
    end_2d();
}
