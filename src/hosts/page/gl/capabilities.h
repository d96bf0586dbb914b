// glEnable and glDisable.
#pragma once

#include <GL/gl.h>

namespace page::gl {

void enable(GLenum capability, bool on);

} // namespace page::gl
