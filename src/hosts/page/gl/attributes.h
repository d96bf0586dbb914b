// The current colour, normal and texture coordinates, which the next vertex takes.
#pragma once

#include <GL/gl.h>

#include "hosts/page/gl/matrices.h"

namespace page::gl {

struct Attributes {
    Float4 color;  // as given, not clamped
    Float4 normal; // the last lane is 0
    GLfloat s, t;
    bool look_changed; // colour or normal, since whoever reads them set this to false
};

extern Attributes g_attributes;

// Commands.
inline void tex_coord(GLfloat s, GLfloat t) {
    g_attributes.s = s;
    g_attributes.t = t;
}
inline void normal(GLfloat x, GLfloat y, GLfloat z) {
    g_attributes.normal = Float4{x, y, z, 0};
    g_attributes.look_changed = true;
}
inline void color(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha) {
    g_attributes.color = Float4{red, green, blue, alpha};
    g_attributes.look_changed = true;
}

void reset_attributes();

} // namespace page::gl
