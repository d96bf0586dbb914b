// The clear scene: clears the colour buffer. It keeps its place in the table but is never linked nor started.
#include <GL/gl.h>

#include "show/scenes/scenes.h"

void clear_prepare() {}
void clear_start() {}
void clear_render() { glClear(GL_COLOR_BUFFER_BIT); }
void clear_stop() {}
void clear_release() {}
