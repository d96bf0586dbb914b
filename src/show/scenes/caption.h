// The caption of the greetings, the gyroscope room and the cross: a name at the lower right of the screen.
#pragma once

constexpr int kNoCaption = -1;

// Draws row 0..7 of the texture of words (greetings.h), half transparent; kNoCaption sets the same state and draws
// nothing. Leaves texturing and blending on, lighting and depth writes off.
void draw_caption(unsigned words, int row);
