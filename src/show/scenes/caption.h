// The caption strip of the greetings, the gyroscope room and the cross: a name in the lower right of the 2D
// overlay.
#pragma once

constexpr int kNoCaption = -1;

// One of eight rows of the texture of words (greetings.h), over-bright and half transparent. kNoCaption
// sets the state and draws nothing. Leaves texturing and blending on, lighting and depth writes off.
void draw_caption(unsigned words, int row);
