// glGetIntegerv, glGetFloatv, glGetString: what GLU asks for, and the state that a program is likely to read.
#pragma once

#include <GL/gl.h>

namespace page::gl {

void get_integers(GLenum name, GLint* values);
void get_floats(GLenum name, GLfloat* values);
const GLubyte* get_string(GLenum name);

} // namespace page::gl
