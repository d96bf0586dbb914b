#include "hosts/offscreen/gl_skip.h"

#include "hosts/offscreen/gl_next.h"

void set_gl_skip(bool skip) {
    // Drops primitives and clears once their vertices have been processed.
    if (skip) {
        glEnable(GL_RASTERIZER_DISCARD);
    } else {
        glDisable(GL_RASTERIZER_DISCARD);
    }
}
