// From glBegin to glEnd: vertices are transformed and cut into points, lines and triangles, and collected in the queue.
#pragma once

#include <GL/gl.h>

namespace page::gl {

// Commands.
void begin(GLenum mode);
void end();
void vertex(GLfloat x, GLfloat y, GLfloat z);
void clear(GLbitfield buffers);

// A material has changed. Between glBegin and glEnd what follows is drawn with it.
void material_changed();

void reset_geometry();

} // namespace page::gl
