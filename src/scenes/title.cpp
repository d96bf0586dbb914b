// The title: black lettering on a white screen, faded out from second 6.
#include "scenes/scenes.h"

void title_prepare() {}
void title_start() {}
void title_render() {}
void title_stop() {}
void title_release() {}
