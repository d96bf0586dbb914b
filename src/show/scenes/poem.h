// The scroller's poem, in German and English: its lines, where they are in the texture, how they cross the screen.
//
// The texture is 512 pixels wide and has one line in every 30 rows. On the screen a line is 1024 units wide (the
// whole screen), so a pixel takes two units. The lines enter one after another from the right; speed and spacing
// change from stanza to stanza.
#pragma once

constexpr int kPoemLines = 22;

// Line i, 0..21, in Latin-1. At most 47 characters, so that it fits the texture.
const char* poem_line(bool english, int i);

// The x at which the pen of line i starts, in pixels.
int poem_pen_x(bool english, int i);

// The left edge of line i on the screen, in overlay units, at scene time t (seconds).
double poem_left(int i, double t);
