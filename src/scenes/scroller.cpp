// The scroller: a poem on a film strip, shown on a curled sheet in a room of boxes.
#include "scenes/scenes.h"

void scroller_prepare() {}
void scroller_start() {}
void scroller_render() {}
void scroller_stop() {}
void scroller_release() {}
