// From glBegin to glEnd: vertices are transformed and cut into points, lines and triangles, and collected in the queue.
#pragma once

#include <GL/gl.h>

#include "hosts/page/gl/matrices.h"

namespace page::gl {

// Commands.
void begin(GLenum mode);
void end();
void vertex(GLfloat x, GLfloat y, GLfloat z);
void tex_coord(GLfloat s, GLfloat t);
void normal(GLfloat x, GLfloat y, GLfloat z);
void color(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha);
void clear(GLbitfield buffers);

Float4 current_color();

// A material has changed. Between glBegin and glEnd what follows is drawn with it.
void material_changed();

void reset_geometry();

} // namespace page::gl
