// The clear scene: clears the colour buffer. It is in the table, but never linked or started.
#include <GL/gl.h>

#include "show/scenes/scenes.h"

void clear_prepare() {}
void clear_start() {}
void clear_render() { glClear(GL_COLOR_BUFFER_BIT); }
void clear_stop() {}
void clear_release() {}
