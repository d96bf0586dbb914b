// The oldskool text screen: a still panel that asks what the audience wants.
#include "scenes/scenes.h"

void text_screen_prepare() {}
void text_screen_start() {}
void text_screen_render() {}
void text_screen_stop() {}
void text_screen_release() {}
