// The pulsing cross: a pierced cube that turns on every odd second.
#include "scenes/scenes.h"

void cross_prepare() {}
void cross_start() {}
void cross_render() {}
void cross_stop() {}
void cross_release() {}
