// The credits: a white page behind a pyramid of translucent pipes.
#include "scenes/scenes.h"

void credits_prepare() {}
void credits_start() {}
void credits_render() {}
void credits_stop() {}
void credits_release() {}
