// glVertex, glTexCoord, glNormal and glColor. A display list keeps them, however many follow each other, as one
// command.
#pragma once

#include <GL/gl.h>

#include "hosts/page/gl/attributes.h"
#include "hosts/page/gl/geometry.h"
#include "hosts/page/gl/lists.h"

namespace page::gl {

// These keep the call in the list being compiled. Whether it is also to be executed now.
bool keep_vertex(GLfloat x, GLfloat y, GLfloat z);
bool keep_tex_coord(GLfloat s, GLfloat t);
bool keep_normal(GLfloat x, GLfloat y, GLfloat z);
bool keep_color(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha);

inline void issue_vertex(GLfloat x, GLfloat y, GLfloat z) {
    if (g_compiling == Compiling::no || keep_vertex(x, y, z)) vertex(x, y, z);
}
inline void issue_tex_coord(GLfloat s, GLfloat t) {
    if (g_compiling == Compiling::no || keep_tex_coord(s, t)) tex_coord(s, t);
}
inline void issue_normal(GLfloat x, GLfloat y, GLfloat z) {
    if (g_compiling == Compiling::no || keep_normal(x, y, z)) normal(x, y, z);
}
inline void issue_color(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha) {
    if (g_compiling == Compiling::no || keep_color(red, green, blue, alpha)) color(red, green, blue, alpha);
}

} // namespace page::gl
