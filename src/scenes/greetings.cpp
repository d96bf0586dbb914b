// The greetings: an endless wall of boxes rising through fog, a beam, a double helix, and names in a strip.
#include "scenes/scenes.h"

void greetings_prepare() {}
void greetings_start() {}
void greetings_render() {}
void greetings_stop() {}
void greetings_release() {}
